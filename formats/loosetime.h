#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

/// Times as people and programs that were careless wrote them.

/// Reads a time at the offset and moves it past it: h:mm:ss,mmm, mm:ss,mmm, h:mm:ss, with
/// points, colons or semicolons for the comma, blanks beside the marks and one or more
/// digits each. Seconds; the fraction is a decimal one, so "1,5" is one and a half.
/// Nothing, and the offset stays, where there is none.
std::optional<double> ReadLooseTime(std::string_view text, std::size_t& at);

struct LooseTimeLine {
    double start = 0;
    double end = 0;
    /// What stands behind the times: coordinates, or the beginning of the text.
    std::string_view rest;
};

/// Two times with an arrow of some kind between them, and nothing before them.
std::optional<LooseTimeLine> ReadLooseTimeLine(std::string_view line);

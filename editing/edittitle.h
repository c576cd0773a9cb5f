#pragma once

#include "model/subtitles.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// The marks that are open at some place of a text.
struct OpenMarks {
    bool bold = false;
    bool italic = false;
};

/// What is open at the caret, which stands before the byte with that number. The
/// character after the caret counts as well, so that a caret just before the end
/// of a mark is past it.
OpenMarks MarksAtCaret(std::string_view text, std::size_t caret);

/// The text with "</b>" and "</i>" added for marks that are still open at its end.
std::string WithClosingMarks(std::string text);

/// The end of a title that lasts that many seconds, to the millisecond.
double EndAfter(double start, double duration);

/// Why a title must not have these times beside its neighbours; empty when it may.
/// Half a millisecond, which no box shows, is not looked at.
std::string_view WhyNot(const SUBTITLES& titles, std::int32_t index, double start, double end);

/// Writes the title as one undo step. false: it was like that already.
bool StoreTitle(SUBTITLES& titles, std::int32_t index, const std::string& text, double start,
                double end);

/// The text with a blank for every carriage return and line feed that is not half
/// of a pair.
std::string BlanksForLoneBreaks(std::string text);

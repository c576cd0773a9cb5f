#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What the times of a Timed Text file are counted in, as its root element says.
struct TimedTextRates {
    /// Frames per second, in effect and as counted within "hh:mm:ss:ff".
    double frameRate = 30;
    /// Ticks per second.
    double tickRate = 1;
};

/// A time expression: "00:00:01.500", "00:00:01:12", "1.5s", "1500ms", "36f", "15000t".
struct TimedTextTime {
    enum class Unit : std::uint8_t {
        Clock,
        ClockFrames,
        Hours,
        Minutes,
        Seconds,
        Milliseconds,
        Frames,
        Ticks
    };

    double seconds = 0;
    Unit unit = Unit::Clock;
    /// Digits of the fraction.
    std::uint8_t decimals = 3;
};

/// Nothing when the text is no time expression.
std::optional<TimedTextTime> ParseTimedTextTime(std::string_view text, const TimedTextRates& rates);

/// In the same unit and with as many decimals, or as many more as milliseconds need.
/// 32768 hours or more are the run-time error "Overflow"; below 0 is written as 0.
void AppendTimedTextTime(std::string& out, double seconds, const TimedTextTime& form,
                         const TimedTextRates& rates);

#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The rules of the boxes that take an amount of time as minutes and seconds, and
/// the steps of the spinners beside them. A box keeps its text where nothing is
/// answered, and so it does where its text is no number; a comma is taken for a point.

struct MinutesSeconds {
    std::string minutes;
    std::string seconds;
};

/// What becomes of 60 seconds and more.
enum class SecondsRule {
    CarryIntoMinutes,
    Clamp,
};

/// The amount of seconds that the boxes read now; nothing unless both are numbers.
std::optional<double> AmountOf(std::string_view minutes, std::string_view seconds);

/// What the minutes box must hold instead: 0 to 3600.
std::optional<std::string> MinutesInRange(std::string_view minutes);
/// What both boxes must hold instead, after the seconds were changed.
std::optional<MinutesSeconds> SecondsInRange(std::string_view minutes, std::string_view seconds,
                                             SecondsRule rule);

enum class Spin { Down, Up };

/// A minute less or more, within 0 to 3599.
std::optional<std::string> StepMinutes(std::string_view minutes, Spin step);
/// A tenth of a second less or more, within 0 and 60 (excluded).
std::optional<std::string> StepSeconds(std::string_view seconds, Spin step);
/// A second less, while that is above 0, or more, below 100 hours.
std::optional<std::string> StepTime(std::string_view time, Spin step);

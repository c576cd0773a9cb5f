#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// How a file writes its times: 1:02:03.45, 02:03.450.
struct ClockForm {
    /// The least number of digits of the hours.
    std::uint8_t hourDigits = 2;
    /// Without hours where they are 0.
    bool shortened = false;
    /// Digits of the fraction, 0 to 3; the point is left out with them.
    std::uint8_t decimals = 3;
    char point = '.';

    bool operator==(const ClockForm&) const = default;
};

struct ClockTime {
    double seconds = 0;
    ClockForm form;
    /// `AppendClock` in this form gives the text again.
    bool plain = false;
};

/// The whole text as [-][hours:]minutes:seconds[.fraction], with "." or ","; the
/// fraction is a decimal one of any length. Nothing when it is anything else.
std::optional<ClockTime> ParseClock(std::string_view text);

/// Rounded to the form's last digit, led by "-" when negative. 32768 hours or more
/// are the run-time error "Overflow".
void AppendClock(std::string& out, double seconds, const ClockForm& form);

/// Does `AppendClock` in the other form give the very text that the time was read from?
bool WrittenLike(const ClockTime& time, const ClockForm& form);

/// The form with as few decimals as tell the same, but not fewer than `least`.
ClockForm ShortestForm(double seconds, ClockForm form, std::uint8_t least);

/// Are both written alike in that form?
bool SameClock(double a, double b, const ClockForm& form);

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Numbers in texts, always with "." as the decimal mark whatever the locale.

/// The decimal number that the text begins with, after any blanks: sign, digits,
/// at most one ".". 0 when there is none. Never fails.
double Val(std::string_view text);

/// The number that the whole text is (blanks at both ends and an exponent
/// allowed), or nothing. A number that a double cannot hold is none.
std::optional<double> Number(std::string_view text);

/// As `Number`, but a text that is no number is the run-time error "Type mismatch".
double ToNumber(std::string_view text);

/// The plain decimal form with at most 15 significant digits and no trailing
/// zeros: 3.003, 0.5, 100. Never an exponent.
std::string NumberText(double value);

/// The number with exactly three decimals, halves away from zero: 0.000, 5.500.
std::string ThousandthsText(double value);

/// Rounded to the nearest whole number, halves to even. Out of range is the
/// run-time error "Overflow".
std::int32_t RoundToLong(double value);
std::int16_t RoundToInteger(double value);

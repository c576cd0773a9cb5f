#pragma once

#include <optional>
#include <string_view>

/// Numbers and times as people type them into boxes. Nothing is answered for a text that
/// is none, as a whole.

/// Sign, digits, a point or a comma, an exponent; blanks at both ends.
std::optional<double> TypedNumber(std::string_view text);

/// 'hh:mm:ss,mmm' and its shorter forms h:mm:ss, mm:ss and ss.mmm, with point or comma;
/// a sign and blanks at both ends. The fraction is a decimal one ("7,9" is 7.9 s), rounded
/// to the millisecond. Below 32768 hours.
std::optional<double> TypedTime(std::string_view text);

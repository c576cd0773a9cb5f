#include "model/times.h"

#include "model/numbers.h"
#include "platform/base/runtimeerror.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <optional>

namespace {

std::optional<double> WholeSeconds(std::string_view text, std::size_t mark) {
    const std::size_t first = text.find(':');
    if (first == std::string_view::npos || mark == std::string_view::npos)
        return std::nullopt;
    const std::size_t second = text.find(':', first + 1);
    if (second == std::string_view::npos || mark < second)
        return std::nullopt;
    const auto hours = Number(text.substr(0, first));
    const auto minutes = Number(text.substr(first + 1, second - first - 1));
    const auto seconds = Number(text.substr(second + 1, mark - second - 1));
    if (!hours || !minutes || !seconds)
        return std::nullopt;
    return (*hours * 60 + *minutes) * 60 + *seconds;
}

void AppendPadded(std::string& text, std::int64_t value, int width) {
    const std::string digits = std::to_string(value);
    for (auto missing = width - static_cast<int>(digits.size()); missing > 0; --missing)
        text += '0';
    text += digits;
}

} // namespace

double ParseTime(std::string_view text) {
    const bool negative = text.starts_with('-');
    if (negative)
        text.remove_prefix(1);
    std::size_t mark = text.find(',');
    if (mark == std::string_view::npos)
        mark = text.find('.');

    double value = WholeSeconds(text, mark).value_or(0);
    const std::size_t fraction = mark == std::string_view::npos ? 0 : mark + 1;
    if (const auto milliseconds = Number(text.substr(fraction, 3)))
        value += *milliseconds / 1000;
    return negative ? -value : value;
}

std::string FormatTime(double seconds) {
    const double value = std::abs(seconds);
    const double hours = std::floor(value / 3600);
    if (!(hours <= std::numeric_limits<std::int16_t>::max()))
        throw RuntimeError(RuntimeError::Number::Overflow);
    double rest = std::fmax(0.0, value - hours * 3600);
    const double minutes = std::floor(rest / 60);
    rest -= minutes * 60;
    const auto milliseconds = static_cast<std::int64_t>(std::floor(rest * 1000 + 0.5));

    std::string text;
    AppendPadded(text, static_cast<std::int64_t>(hours), 2);
    text += ':';
    AppendPadded(text, static_cast<std::int64_t>(minutes), 2);
    text += ':';
    AppendPadded(text, milliseconds / 1000, 2);
    text += '.';
    AppendPadded(text, milliseconds % 1000, 3);
    // The ninth character is the decimal mark up to 99 hours; from 100 hours on
    // it is a digit of the seconds, and is overwritten all the same.
    text[8] = ',';
    if (seconds < 0)
        text.insert(0, 1, '-');
    return text;
}

double RoundTime(double seconds) { return std::floor(seconds * 1000 + 0.5) * 0.001; }

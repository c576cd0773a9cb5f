#include "model/times.h"

#include "base/runtimeerror.h"
#include "model/numbers.h"

#include <array>
#include <charconv>
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

/// The value of 'hh:mm:ss,mmm' of digits alone, the form in which nearly every
/// time arrives; the general way gives the same, only slower.
std::optional<double> PlainTime(std::string_view text) {
    constexpr std::string_view Shape = "00:00:00,000";
    if (text.size() != Shape.size())
        return std::nullopt;
    unsigned wrong = 0;
    std::array<unsigned, Shape.size()> digits{};
    for (std::size_t i = 0; i < Shape.size(); ++i) {
        digits[i] = static_cast<unsigned char>(text[i]) - static_cast<unsigned>(Shape[i]);
        wrong |= static_cast<unsigned>(digits[i] > (Shape[i] == '0' ? 9U : 0U));
    }
    if (wrong != 0)
        return std::nullopt;
    const unsigned hours = digits[0] * 10 + digits[1];
    const unsigned minutes = digits[3] * 10 + digits[4];
    const unsigned seconds = digits[6] * 10 + digits[7];
    const unsigned milliseconds = digits[9] * 100 + digits[10] * 10 + digits[11];
    return static_cast<double>((hours * 60 + minutes) * 60 + seconds) +
           static_cast<double>(milliseconds) / 1000;
}

constexpr auto DigitPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < pairs.size(); ++i)
        pairs[i] = static_cast<char>('0' + (i % 2 == 0 ? i / 20 : i / 2 % 10));
    return pairs;
}();

/// A number below 100.
char* PutTwoDigits(char* to, std::size_t value) {
    to[0] = DigitPairs[2 * value];
    to[1] = DigitPairs[2 * value + 1];
    return to + 2;
}

char* PutHours(char* to, unsigned hours) {
    constexpr std::ptrdiff_t Room = 5;
    return hours < 100 ? PutTwoDigits(to, hours) : std::to_chars(to, to + Room, hours).ptr;
}

} // namespace

double ParseTime(std::string_view text) {
    if (const auto plain = PlainTime(text))
        return *plain;
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
    std::string text;
    AppendTime(text, seconds);
    return text;
}

void AppendTime(std::string& text, double seconds) {
    const double value = std::abs(seconds);
    constexpr double TooManyHours = std::numeric_limits<std::int16_t>::max() + 1.0;
    if (!(value / 3600 < TooManyHours))
        throw RuntimeError(RuntimeError::Number::Overflow);
    const auto hours = static_cast<unsigned>(value / 3600);
    double rest = value - hours * 3600.0;
    rest = rest < 0 ? 0 : rest;
    const auto minutes = static_cast<unsigned>(rest / 60);
    rest -= minutes * 60.0;
    const double halfUp = rest * 1000 + 0.5;
    const auto milliseconds = static_cast<unsigned>(halfUp);

    std::array<char, 20> form{};
    char* to = form.data();
    if (seconds < 0)
        *to++ = '-';
    char* const time = to;
    to = PutHours(to, hours);
    *to++ = ':';
    to = PutTwoDigits(to, minutes);
    *to++ = ':';
    to = PutTwoDigits(to, milliseconds / 1000);
    *to++ = '.';
    *to++ = static_cast<char>('0' + milliseconds / 100 % 10);
    to = PutTwoDigits(to, milliseconds % 100);
    // The ninth character is the decimal mark up to 99 hours; from 100 hours on
    // it is a digit of the seconds, and is overwritten all the same.
    time[8] = ',';
    text.append(form.data(), to);
}

double RoundTime(double seconds) {
    return std::floor(seconds * 1000 + 0.5) * 0.001;
}

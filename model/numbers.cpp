#include "model/numbers.h"

#include "base/runtimeerror.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

constexpr std::string_view Blanks = " \t\r\n";

constexpr bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

/// How many characters at the start form sign, digits and at most one "."
/// with at least one digit; 0 when they do not.
std::size_t DecimalLength(std::string_view text) {
    std::size_t at = 0;
    if (at < text.size() && (text[at] == '-' || text[at] == '+'))
        ++at;
    bool digits = false;
    for (; at < text.size() && IsDigit(text[at]); ++at)
        digits = true;
    if (at < text.size() && text[at] == '.') {
        const std::size_t mark = at++;
        for (; at < text.size() && IsDigit(text[at]); ++at)
            digits = true;
        if (!digits)
            return 0;
        if (at == mark + 1)
            return mark;
    }
    return digits ? at : 0;
}

/// Nothing when the number is too large for a double, or too close to 0.
std::optional<double> Convert(std::string_view number) {
    if (!number.empty() && number.front() == '+')
        number.remove_prefix(1);
    double value = 0;
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), value);
    return error == std::errc() ? std::optional(value) : std::nullopt;
}

/// Without an exponent, a number that does not fit begins with a digit other than 0 before
/// its point, or it is as good as 0.
double Nearest(std::string_view number) {
    const std::string_view whole = number.substr(0, number.find('.'));
    if (whole.find_first_of("123456789") == std::string_view::npos)
        return 0;
    constexpr double Largest = std::numeric_limits<double>::max();
    return number.front() == '-' ? -Largest : Largest;
}

template <typename WHOLE>
WHOLE RoundTo(double value) {
    double rounded = std::floor(value);
    const double rest = value - rounded;
    if (rest > 0.5 || (rest == 0.5 && std::fmod(rounded, 2.0) != 0.0))
        rounded += 1;
    if (!(rounded >= static_cast<double>(std::numeric_limits<WHOLE>::min()) &&
          rounded <= static_cast<double>(std::numeric_limits<WHOLE>::max())))
        throw RuntimeError(RuntimeError::Number::Overflow);
    return static_cast<WHOLE>(rounded);
}

} // namespace

double Val(std::string_view text) {
    const std::size_t first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos)
        return 0;
    text.remove_prefix(first);
    const std::size_t length = DecimalLength(text);
    if (length == 0)
        return 0;
    const std::string_view number = text.substr(0, length);
    return Convert(number).value_or(Nearest(number));
}

std::optional<double> Number(std::string_view text) {
    const std::size_t first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos)
        return std::nullopt;
    text = text.substr(first, text.find_last_not_of(Blanks) - first + 1);
    std::size_t length = DecimalLength(text);
    if (length == 0)
        return std::nullopt;
    if (text.find('.') == length)
        ++length;
    if (length < text.size() && (text[length] == 'e' || text[length] == 'E')) {
        std::size_t at = length + 1;
        if (at < text.size() && (text[at] == '-' || text[at] == '+'))
            ++at;
        const std::size_t digits = at;
        while (at < text.size() && IsDigit(text[at]))
            ++at;
        if (at > digits)
            length = at;
    }
    if (length != text.size())
        return std::nullopt;
    return Convert(text);
}

double ToNumber(std::string_view text) {
    const std::optional<double> value = Number(text);
    if (!value)
        throw RuntimeError(RuntimeError::Number::TypeMismatch);
    return *value;
}

std::string NumberText(double value) {
    if (!std::isfinite(value))
        return value > 0 ? "inf" : value < 0 ? "-inf" : "nan";
    // 15 significant digits as d.dddde+xx; the point is then put where the exponent says.
    std::array<char, 32> buffer{};
    const auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(),
                                            std::abs(value), std::chars_format::scientific, 14);
    const std::string_view form(buffer.data(), static_cast<std::size_t>(end - buffer.data()));
    const std::size_t mark = form.find('e');
    std::string digits(1, form[0]);
    digits += form.substr(2, mark - 2);
    digits.erase(digits.find_last_not_of('0') + 1);
    if (digits.empty())
        return "0";
    const int exponent = static_cast<int>(Val(form.substr(mark + 1)));

    std::string text = value < 0 ? "-" : "";
    if (exponent < 0) {
        text += "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
    } else {
        const auto whole = static_cast<std::size_t>(exponent) + 1;
        if (digits.size() <= whole)
            text += digits + std::string(whole - digits.size(), '0');
        else
            text += digits.substr(0, whole) + "." + digits.substr(whole);
    }
    return text;
}

std::string ThousandthsText(double value) {
    // Rounded on the decimal form, so that 1.0005 gives 1.001 although the
    // nearest binary number lies just below it.
    std::string text = NumberText(std::abs(value));
    std::size_t mark = text.find('.');
    if (mark == std::string::npos) {
        mark = text.size();
        text += '.';
    }
    const bool up = text.size() > mark + 4 && text[mark + 4] >= '5';
    text.resize(mark + 4, '0');
    if (up) {
        std::size_t at = text.size();
        while (at > 0) {
            --at;
            if (text[at] == '.')
                continue;
            if (text[at] != '9') {
                ++text[at];
                break;
            }
            text[at] = '0';
            if (at == 0)
                text.insert(0, 1, '1');
        }
    }
    const bool zero = text.find_first_not_of("0.") == std::string::npos;
    return value < 0 && !zero ? "-" + text : text;
}

std::int32_t RoundToLong(double value) {
    return RoundTo<std::int32_t>(value);
}

std::int16_t RoundToInteger(double value) {
    return RoundTo<std::int16_t>(value);
}

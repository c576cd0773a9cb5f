#include "editing/typed.h"

#include "model/numbers.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace {

constexpr double TooManyHours = 32768;

bool AllDigits(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view Blanks = " \t\r\n";
    const std::size_t first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

/// Seconds with a fraction; the fraction as ParseTime counts it, so that a full time is
/// the same number by both ways.
std::optional<double> Seconds(std::string_view text, double before) {
    const std::size_t mark = text.find_first_of(".,");
    const std::string_view whole = text.substr(0, mark);
    const std::string_view fraction =
        mark == std::string_view::npos ? std::string_view() : text.substr(mark + 1);
    if (!AllDigits(whole) || !AllDigits(fraction) || whole.size() + fraction.size() == 0)
        return std::nullopt;
    const double thousandths = std::floor(Val("." + std::string(fraction)) * 1000 + 0.5);
    return before + Val(whole) + thousandths / 1000;
}

} // namespace

std::optional<double> TypedNumber(std::string_view text) {
    std::string number(text);
    if (number.find('.') == std::string::npos)
        if (const std::size_t comma = number.find(','); comma != std::string::npos)
            number[comma] = '.';
    return Number(number);
}

std::optional<double> TypedTime(std::string_view text) {
    text = Trimmed(text);
    const bool negative = text.starts_with('-');
    if (negative || text.starts_with('+'))
        text.remove_prefix(1);
    double before = 0;
    int colons = 0;
    for (std::size_t at = text.find(':'); at != std::string_view::npos; at = text.find(':')) {
        const std::string_view piece = text.substr(0, at);
        if (++colons > 2 || piece.empty() || !AllDigits(piece))
            return std::nullopt;
        before = (before + Val(piece)) * 60;
        text.remove_prefix(at + 1);
    }
    const std::optional<double> seconds = Seconds(text, before);
    if (!seconds || !(*seconds / 3600 < TooManyHours))
        return std::nullopt;
    return negative ? -*seconds : *seconds;
}

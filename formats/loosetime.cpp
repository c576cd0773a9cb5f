#include "formats/loosetime.h"

#include "base/ascii.h"
#include "base/utf8.h"
#include "formats/mending.h"

#include <array>
#include <cstdint>

namespace {

constexpr std::size_t MostGroups = 4;
constexpr std::size_t MostDigits = 9;

/// The offset behind the blanks of any kind that begin there.
std::size_t SkipBlanks(std::string_view text, std::size_t at) {
    return text.size() - TrimWide(text.substr(at)).size() == at
               ? at
               : static_cast<std::size_t>(TrimWide(text.substr(at)).data() - text.data());
}

struct Groups {
    std::array<std::string_view, MostGroups> digits;
    /// The mark in front of each but the first.
    std::array<char, MostGroups> marks{};
    std::size_t count = 0;
};

std::string_view ReadDigits(std::string_view text, std::size_t& at) {
    const std::size_t begin = at;
    while (at < text.size() && IsAsciiDigit(text[at]))
        ++at;
    return text.substr(begin, at - begin);
}

Groups ReadGroups(std::string_view text, std::size_t& at) {
    Groups groups;
    groups.digits[0] = ReadDigits(text, at);
    if (groups.digits[0].empty())
        return groups;
    groups.count = 1;
    while (groups.count < MostGroups) {
        std::size_t next = SkipBlanks(text, at);
        if (next >= text.size() ||
            std::string_view(":;.,").find(text[next]) == std::string_view::npos)
            break;
        const char mark = text[next];
        next = SkipBlanks(text, next + 1);
        const std::string_view digits = ReadDigits(text, next);
        if (digits.empty())
            break;
        groups.digits[groups.count] = digits;
        groups.marks[groups.count] = mark;
        ++groups.count;
        at = next;
    }
    return groups;
}

std::optional<double> WholeNumber(std::string_view digits) {
    if (digits.size() > MostDigits)
        return std::nullopt;
    double value = 0;
    for (const char c : digits)
        value = value * 10 + (c - '0');
    return value;
}

/// The decimal fraction, cut to the millisecond.
double Fraction(std::string_view digits) {
    double milliseconds = 0;
    for (std::size_t i = 0; i < 3; ++i)
        milliseconds = milliseconds * 10 + (i < digits.size() ? digits[i] - '0' : 0);
    return milliseconds / 1000;
}

/// How many of the groups are hours, minutes and seconds; 0 when they are no time.
std::size_t WholeGroups(const Groups& groups) {
    const auto isColon = [&](std::size_t i) {
        return groups.marks[i] == ':' || groups.marks[i] == ';';
    };
    switch (groups.count) {
    case 4:
        return 3;
    case 3:
        if (groups.marks[1] == groups.marks[2])
            return groups.marks[1] == ',' ? 0 : 3;
        return isColon(1) ? (isColon(2) ? 3 : 2) : 0;
    case 2:
        return groups.marks[1] == ':' ? 2 : 0;
    default:
        return 0;
    }
}

struct Arrow {
    std::size_t end = 0;
    bool pointed = false;
};

/// A run of dashes, arrow heads and blanks.
std::optional<Arrow> ReadArrow(std::string_view text, std::size_t at) {
    Arrow arrow;
    bool any = false;
    at = SkipBlanks(text, at);
    while (at < text.size()) {
        std::size_t next = at;
        const char32_t c = NextCodePoint(text, next);
        const bool head = c == '>' || c == 0x2192 || c == 0x21D2 || c == 0xBB || c == 0x203A;
        const bool dash = c == '-' || c == '=' || c == '~' || c == 0xAD || c == 0x2212 ||
                          (c >= 0x2010 && c <= 0x2015);
        if (!head && !dash)
            break;
        any = true;
        arrow.pointed = arrow.pointed || head;
        at = SkipBlanks(text, next);
    }
    if (!any)
        return std::nullopt;
    arrow.end = at;
    return arrow;
}

} // namespace

std::optional<double> ReadLooseTime(std::string_view text, std::size_t& at) {
    std::size_t next = at;
    const Groups groups = ReadGroups(text, next);
    const std::size_t whole = WholeGroups(groups);
    if (whole == 0)
        return std::nullopt;
    double seconds = 0;
    for (std::size_t i = 0; i < whole; ++i) {
        const auto value = WholeNumber(groups.digits[i]);
        if (!value)
            return std::nullopt;
        seconds = seconds * 60 + *value;
    }
    if (whole < groups.count)
        seconds += Fraction(groups.digits[whole]);
    at = next;
    return seconds;
}

std::optional<LooseTimeLine> ReadLooseTimeLine(std::string_view line) {
    line = TrimWide(line);
    LooseTimeLine times;
    std::size_t at = 0;
    const std::optional<double> start = ReadLooseTime(line, at);
    if (!start)
        return std::nullopt;
    const std::optional<Arrow> arrow = ReadArrow(line, at);
    if (!arrow)
        return std::nullopt;
    at = arrow->end;
    const std::optional<double> end = ReadLooseTime(line, at);
    if (!end)
        return std::nullopt;
    times.start = *start;
    times.end = *end;
    times.rest = TrimWide(line.substr(at));
    // Words may well begin with "10:30 - 11:15"; no line of words is two times and an
    // arrow head.
    if (!arrow->pointed &&
        (!times.rest.empty() || line.size() < std::string_view("0:00:00-0:00:00").size()))
        return std::nullopt;
    return times;
}

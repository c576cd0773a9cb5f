#include "fit/spoken.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace {

/// Of speech that neither drags nor hurries.
constexpr double LettersPerSecond = 16;
/// A sign of Chinese, Japanese or Korean is a syllable.
constexpr double LettersPerSyllableSign = 2.5;
constexpr double Breath = 0.25;
constexpr double ShortestTitle = 0.3;
constexpr double LongestTitle = 8;

bool IsLetter(char32_t sign) {
    if (sign < 0x80)
        return (sign >= '0' && sign <= '9') || (sign >= 'a' && sign <= 'z') ||
               (sign >= 'A' && sign <= 'Z');
    const bool punctuation = sign < 0xC0 || (sign >= 0x2000 && sign <= 0x2BFF) ||
                             (sign >= 0x3000 && sign <= 0x303F) || sign >= 0x1F000;
    return !punctuation;
}

bool IsSyllable(char32_t sign) {
    return (sign >= 0x3040 && sign <= 0xA4CF) || (sign >= 0xAC00 && sign <= 0xD7AF) ||
           (sign >= 0x20000 && sign <= 0x3FFFF);
}

/// The next sign of UTF-8; a byte that is none stands for itself.
char32_t NextSign(std::string_view text, std::size_t& at) {
    const auto lead = static_cast<unsigned char>(text[at++]);
    int more = 0;
    if (lead >= 0xF0)
        more = 3;
    else if (lead >= 0xE0)
        more = 2;
    else if (lead >= 0xC0)
        more = 1;
    char32_t sign = more == 0 ? lead : lead & (0x3FU >> static_cast<unsigned>(more));
    for (; more > 0 && at < text.size(); --more) {
        const auto next = static_cast<unsigned char>(text[at]);
        if ((next & 0xC0U) != 0x80U)
            break;
        sign = (sign << 6U) | (next & 0x3FU);
        ++at;
    }
    return sign;
}

char Closing(char32_t opening) {
    switch (opening) {
    case '[':
        return ']';
    case '(':
        return ')';
    case '<':
        return '>';
    case '{':
        return '}';
    default:
        return 0;
    }
}

/// A name in front of what is said: "JOHN: ".
std::string_view WithoutName(std::string_view line) {
    const std::size_t colon = line.find(": ");
    if (colon == std::string_view::npos || colon > 24)
        return line;
    const std::string_view name = line.substr(0, colon);
    const bool lower =
        std::any_of(name.begin(), name.end(), [](char c) { return c >= 'a' && c <= 'z'; });
    return lower ? line : line.substr(colon + 1);
}

double LettersOf(std::string_view line) {
    line = WithoutName(line);
    double letters = 0;
    for (std::size_t at = 0; at < line.size();) {
        const std::size_t begin = at;
        const char32_t sign = NextSign(line, at);
        if (const char closing = Closing(sign)) {
            const std::size_t end = line.find(closing, begin);
            if (end != std::string_view::npos)
                at = end + 1;
            continue;
        }
        constexpr char32_t Note = 0x266A;
        constexpr char32_t Notes = 0x266B;
        if (sign == Note || sign == Notes)
            return 0;
        if (IsLetter(sign))
            letters += IsSyllable(sign) ? LettersPerSyllableSign : 1.2;
    }
    return letters;
}

} // namespace

double SpokenLength(std::string_view text) {
    double letters = 0;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        letters += LettersOf(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return letters > 0 ? Breath + letters / LettersPerSecond : 0;
}

std::vector<SpokenTitle> SpokenTitles(std::span<const FitTitle> titles, TitleEnds ends) {
    std::vector<SpokenTitle> spoken;
    spoken.reserve(titles.size());
    double last = 0;
    for (std::size_t i = 0; i < titles.size(); ++i) {
        SpokenTitle title;
        title.source = i;
        title.start =
            std::isnan(titles[i].start) ? last : std::clamp(titles[i].start, -FarAway, FarAway);
        last = title.start;
        const double length = SpokenLength(titles[i].text);
        title.spoken = length > 0;
        double shown = titles[i].end - title.start;
        if (!(shown > 0))
            shown = length;
        if (ends == TitleEnds::Spoken && title.spoken)
            shown = std::min(shown, length);
        title.end = title.start + std::clamp(shown, ShortestTitle, LongestTitle);
        spoken.push_back(title);
    }
    std::stable_sort(spoken.begin(), spoken.end(),
                     [](const SpokenTitle& a, const SpokenTitle& b) { return a.start < b.start; });
    return spoken;
}

#include "formats/entities.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>

namespace {

struct Entity {
    std::string_view name;
    char32_t character;
};

/// The names of the characters from 160 on, in their order.
constexpr std::array<std::string_view, 96> Latin1{
    "nbsp",   "iexcl",  "cent",   "pound",  "curren", "yen",    "brvbar", "sect",   "uml",
    "copy",   "ordf",   "laquo",  "not",    "shy",    "reg",    "macr",   "deg",    "plusmn",
    "sup2",   "sup3",   "acute",  "micro",  "para",   "middot", "cedil",  "sup1",   "ordm",
    "raquo",  "frac14", "frac12", "frac34", "iquest", "Agrave", "Aacute", "Acirc",  "Atilde",
    "Auml",   "Aring",  "AElig",  "Ccedil", "Egrave", "Eacute", "Ecirc",  "Euml",   "Igrave",
    "Iacute", "Icirc",  "Iuml",   "ETH",    "Ntilde", "Ograve", "Oacute", "Ocirc",  "Otilde",
    "Ouml",   "times",  "Oslash", "Ugrave", "Uacute", "Ucirc",  "Uuml",   "Yacute", "THORN",
    "szlig",  "agrave", "aacute", "acirc",  "atilde", "auml",   "aring",  "aelig",  "ccedil",
    "egrave", "eacute", "ecirc",  "euml",   "igrave", "iacute", "icirc",  "iuml",   "eth",
    "ntilde", "ograve", "oacute", "ocirc",  "otilde", "ouml",   "divide", "oslash", "ugrave",
    "uacute", "ucirc",  "uuml",   "yacute", "thorn",  "yuml"};
constexpr char32_t FirstLatin1 = 160;

constexpr std::array<Entity, 19> Others{{{"amp", '&'},
                                         {"lt", '<'},
                                         {"gt", '>'},
                                         {"quot", '"'},
                                         {"apos", '\''},
                                         {"hellip", 0x2026},
                                         {"ndash", 0x2013},
                                         {"mdash", 0x2014},
                                         {"lsquo", 0x2018},
                                         {"rsquo", 0x2019},
                                         {"sbquo", 0x201A},
                                         {"ldquo", 0x201C},
                                         {"rdquo", 0x201D},
                                         {"bdquo", 0x201E},
                                         {"bull", 0x2022},
                                         {"euro", 0x20AC},
                                         {"trade", 0x2122},
                                         {"lrm", 0x200E},
                                         {"rlm", 0x200F}}};

constexpr std::size_t LongestName = 8;

bool IsLetterOrDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

std::optional<char32_t> ByName(std::string_view name) {
    const auto* latin = std::find(Latin1.begin(), Latin1.end(), name);
    if (latin != Latin1.end())
        return FirstLatin1 + static_cast<char32_t>(latin - Latin1.begin());
    const auto* other = std::find_if(Others.begin(), Others.end(),
                                     [name](const Entity& entity) { return entity.name == name; });
    return other != Others.end() ? std::optional(other->character) : std::nullopt;
}

std::optional<char32_t> ByNumber(std::string_view digits) {
    int base = 10;
    if (digits.starts_with('x') || digits.starts_with('X')) {
        digits.remove_prefix(1);
        base = 16;
    }
    std::uint32_t value = 0;
    const auto* end = digits.data() + digits.size();
    const auto result = std::from_chars(digits.data(), end, value, base);
    const bool surrogate = value >= 0xD800 && value < 0xE000;
    const bool control = value < 0x20 && value != '\t';
    if (digits.empty() || result.ec != std::errc() || result.ptr != end || value > 0x10FFFF ||
        surrogate || control)
        return std::nullopt;
    return value;
}

} // namespace

std::optional<char32_t> ReadEntity(std::string_view text, std::size_t& at) {
    if (at >= text.size() || text[at] != '&')
        return std::nullopt;
    const std::size_t begin = at + 1;
    const bool number = begin < text.size() && text[begin] == '#';
    std::size_t end = number ? begin + 1 : begin;
    while (end < text.size() && end - begin <= LongestName && IsLetterOrDigit(text[end]))
        ++end;
    const std::string_view name = text.substr(begin, end - begin);
    const std::optional<char32_t> character = number ? ByNumber(name.substr(1)) : ByName(name);
    if (character)
        at = end < text.size() && text[end] == ';' ? end + 1 : end;
    return character;
}

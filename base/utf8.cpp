#include "base/utf8.h"

#include <array>
#include <cstdint>
#include <cstring>

namespace {

constexpr bool IsAscii(char c) {
    return static_cast<unsigned char>(c) < 0x80;
}

/// How many bytes from the offset on are ASCII, looked at eight at a time.
std::size_t AsciiLength(std::string_view text, std::size_t at) {
    constexpr std::uint64_t HighBits = 0x8080808080808080;
    const std::size_t start = at;
    while (at + sizeof(std::uint64_t) <= text.size()) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data() + at, sizeof word);
        if ((word & HighBits) != 0)
            break;
        at += sizeof word;
    }
    while (at < text.size() && IsAscii(text[at]))
        ++at;
    return at - start;
}

struct Lead {
    std::uint8_t mask;
    std::uint8_t bits;
    std::size_t length;
    char32_t least;
};

constexpr std::array<Lead, 3> Leads{
    {{0xE0, 0xC0, 2, 0x80}, {0xF0, 0xE0, 3, 0x800}, {0xF8, 0xF0, 4, 0x10000}}};

constexpr bool IsScalarValue(char32_t codePoint) {
    return codePoint < 0xD800 || (codePoint > 0xDFFF && codePoint <= 0x10FFFF);
}

constexpr char HalfLead = '\xED';
constexpr std::size_t HalfLength = 3;

bool IsHalf(std::string_view text, std::size_t at) {
    return text.size() - at >= HalfLength && text[at] == HalfLead &&
           (static_cast<std::uint8_t>(text[at + 1]) & 0xE0) == 0xA0 &&
           (static_cast<std::uint8_t>(text[at + 2]) & 0xC0) == 0x80;
}

} // namespace

char32_t NextCodePoint(std::string_view text, std::size_t& at) {
    const auto first = static_cast<std::uint8_t>(text[at]);
    if (first < 0x80) {
        ++at;
        return first;
    }
    for (const Lead& lead : Leads) {
        if ((first & lead.mask) != lead.bits)
            continue;
        if (text.size() - at < lead.length)
            break;
        char32_t codePoint = first & static_cast<std::uint8_t>(~lead.mask);
        for (std::size_t i = 1; i < lead.length; ++i) {
            const auto next = static_cast<std::uint8_t>(text[at + i]);
            if ((next & 0xC0) != 0x80) {
                ++at;
                return InvalidByte;
            }
            codePoint = (codePoint << 6) | (next & 0x3FU);
        }
        if (codePoint < lead.least || !IsScalarValue(codePoint))
            break;
        at += lead.length;
        return codePoint;
    }
    ++at;
    return InvalidByte;
}

std::size_t ValidUtf8Length(std::string_view text) {
    std::size_t at = 0;
    while (true) {
        at += AsciiLength(text, at);
        // Text in other scripts has few ASCII bytes in a row.
        while (at < text.size() && !IsAscii(text[at])) {
            const std::size_t before = at;
            if (NextCodePoint(text, at) == InvalidByte)
                return before;
        }
        if (at >= text.size())
            return text.size();
    }
}

char32_t NextCodePointOrHalf(std::string_view text, std::size_t& at) {
    const std::size_t here = at;
    const char32_t codePoint = NextCodePoint(text, at);
    if (codePoint != InvalidByte || !IsHalf(text, here))
        return codePoint;
    at = here + HalfLength;
    return 0xD000 | static_cast<char32_t>(text[here + 1] & 0x3F) << 6 |
           static_cast<char32_t>(text[here + 2] & 0x3F);
}

std::size_t FindHalf(std::string_view text, std::size_t at) {
    while ((at = text.find(HalfLead, at)) != std::string_view::npos && !IsHalf(text, at))
        ++at;
    return at;
}

std::string WithoutHalves(std::string text) {
    std::size_t half = FindHalf(text);
    if (half == std::string::npos)
        return text;
    std::string without;
    without.reserve(text.size());
    std::size_t at = 0;
    for (; half != std::string::npos; half = FindHalf(text, at)) {
        without.append(text, at, half - at);
        at = half;
        const char32_t first = NextCodePointOrHalf(text, at);
        std::size_t behind = at;
        const char32_t second = at < text.size() ? NextCodePointOrHalf(text, behind) : 0;
        const bool joined = IsHighHalf(first) && IsLowHalf(second);
        if (joined)
            at = behind;
        AppendUtf8(without, joined ? JoinedHalves(first, second) : ReplacementCharacter);
    }
    return without.append(text, at);
}

void AppendUtf8(std::string& text, char32_t codePoint) {
    const auto put = [&text](char32_t bits) {
        text += static_cast<char>(bits);
    };
    if (codePoint < 0x80) {
        put(codePoint);
    } else if (codePoint < 0x800) {
        put(0xC0 | (codePoint >> 6));
        put(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        put(0xE0 | (codePoint >> 12));
        put(0x80 | ((codePoint >> 6) & 0x3F));
        put(0x80 | (codePoint & 0x3F));
    } else {
        put(0xF0 | (codePoint >> 18));
        put(0x80 | ((codePoint >> 12) & 0x3F));
        put(0x80 | ((codePoint >> 6) & 0x3F));
        put(0x80 | (codePoint & 0x3F));
    }
}

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// What `NextCodePoint` answers for a byte that is no part of valid UTF-8.
inline constexpr char32_t InvalidByte = 0xFFFFFFFF;
/// What stands for text that cannot be decoded.
inline constexpr char32_t ReplacementCharacter = 0xFFFD;

/// The length of the valid UTF-8 that the text begins with.
std::size_t ValidUtf8Length(std::string_view text);
inline bool IsValidUtf8(std::string_view text) {
    return ValidUtf8Length(text) == text.size();
}

/// The code point at the offset, which moves past it; past one byte when it is invalid.
char32_t NextCodePoint(std::string_view text, std::size_t& at);
void AppendUtf8(std::string& text, char32_t codePoint);

// Half a character of UTF-16, a surrogate without its other half, is no text and has no
// valid UTF-8. What was read of UTF-16 holds it as three bytes all the same (ED A0 80 to
// ED BF BF), so that it can be written back.

constexpr bool IsHighHalf(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
constexpr bool IsLowHalf(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}
constexpr char32_t JoinedHalves(char32_t high, char32_t low) {
    return 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
}

/// Like `NextCodePoint`, but knows half a character.
char32_t NextCodePointOrHalf(std::string_view text, std::size_t& at);
/// Where half a character begins, from the offset on; `npos` when none does.
std::size_t FindHalf(std::string_view text, std::size_t at = 0);
/// With two halves that meet joined, and each that is left alone replaced by
/// `ReplacementCharacter`: what other encodings than UTF-16 can hold.
std::string WithoutHalves(std::string text);

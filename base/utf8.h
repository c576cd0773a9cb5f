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

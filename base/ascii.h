#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

/// The letters A to Z alone, whatever the locale: names of formats, tags and code pages.

constexpr char AsciiLower(char c) {
    return static_cast<char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c);
}

inline std::string AsciiLower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) { return AsciiLower(c); });
    return lower;
}

/// Is each byte a character of its own?
inline bool IsAscii(std::string_view text) {
    unsigned char all = 0;
    for (const char c : text)
        all = static_cast<unsigned char>(all | static_cast<unsigned char>(c));
    return all < 0x80;
}

constexpr bool IsAsciiDigit(char c) {
    return c >= '0' && c <= '9';
}

/// Is the text the lower-case word, whatever its own letter case?
inline bool IsWord(std::string_view text, std::string_view word) {
    return text.size() == word.size() &&
           std::equal(text.begin(), text.end(), word.begin(),
                      [](char c, char wanted) { return AsciiLower(c) == wanted; });
}

inline bool StartsWithWord(std::string_view text, std::string_view word) {
    return IsWord(text.substr(0, word.size()), word);
}

/// The offset of a lower-case word, found in any letter case, or `npos`.
inline std::size_t FindWord(std::string_view text, std::string_view word) {
    for (std::size_t at = 0; at + word.size() <= text.size(); ++at) {
        if (AsciiLower(text[at]) == word.front() && IsWord(text.substr(at, word.size()), word))
            return at;
    }
    return std::string_view::npos;
}

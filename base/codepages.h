#pragma once

#include "base/multibyte.h"

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

/// Conversions between the single-byte code pages of old subtitle files and
/// UTF-8. Bytes that a code page leaves undefined are kept: they become the
/// characters U+0080..U+00FF of the same value, and come back as they were.

/// Windows-1252, or another page by its usual name ("windows-1250", "ISO-8859-2",
/// "KOI8-R", "Shift_JIS"). An unknown name is answered with Windows-1252.
class CodePage {
  public:
    explicit CodePage(std::string_view name = "windows-1252");

    /// Does the platform know an encoding of that name?
    static bool Knows(std::string_view name);

    const std::string& Name() const { return m_name; }
    /// The character of one byte; that of Windows-1252 where a character has several.
    char32_t Character(char byte) const;
    std::string ToUtf8(std::string_view bytes) const;
    /// Empty when the text holds a character that the page lacks.
    std::optional<std::string> FromUtf8(std::string_view utf8) const;

  private:
    struct Pair {
        char32_t character;
        std::uint8_t byte;
    };

    void KeepUndefined();
    void SortByCharacter();

    std::string m_name;
    std::shared_ptr<const MultiByte> m_multiByte;
    char32_t m_high[128];
    std::array<Pair, 128> m_byCharacter{};
};

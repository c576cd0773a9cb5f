#include "base/codepages.h"

#include "base/ascii.h"
#include "base/bytedecoder.h"
#include "base/utf8.h"

#include <algorithm>

namespace {

constexpr const char* DefaultName = "windows-1252";
constexpr char32_t NoCharacter = 0;
/// Where an undefined byte goes whose own value is another byte's character: a
/// range for private use.
constexpr char32_t PrivateUse = 0xF700;

/// The bytes 0x80 to 0x9F of Windows-1252; from 0xA0 on it is Latin-1.
constexpr std::array<char32_t, 32> Windows1252{
    0x20AC,      NoCharacter, 0x201A, 0x0192, 0x201E, 0x2026,      0x2020, 0x2021,
    0x02C6,      0x2030,      0x0160, 0x2039, 0x0152, NoCharacter, 0x017D, NoCharacter,
    NoCharacter, 0x2018,      0x2019, 0x201C, 0x201D, 0x2022,      0x2013, 0x2014,
    0x02DC,      0x2122,      0x0161, 0x203A, 0x0153, NoCharacter, 0x017E, 0x0178};

/// Fills the upper half of a page; false when it is unknown, multi-byte or not
/// an extension of ASCII.
bool FillFromPlatform(const std::string& name, char32_t (&high)[128]) {
    const ByteDecoder decoder(name);
    if (!decoder.Valid())
        return false;
    for (unsigned byte = 0; byte < 0x80; ++byte) {
        char32_t character = NoCharacter;
        if (decoder.Decode(byte, character) != ByteDecoder::Outcome::Character || character != byte)
            return false;
    }
    bool any = false;
    for (unsigned byte = 0x80; byte < 0x100; ++byte) {
        char32_t& character = high[byte - 0x80];
        character = NoCharacter;
        const auto outcome = decoder.Decode(byte, character);
        if (outcome == ByteDecoder::Outcome::NotSingleByte)
            return false;
        any = any || outcome == ByteDecoder::Outcome::Character;
    }
    return any;
}

void FillWindows1252(char32_t (&high)[128]) {
    for (std::size_t i = 0; i < std::size(high); ++i)
        high[i] = i < Windows1252.size() ? Windows1252[i] : static_cast<char32_t>(0x80 + i);
}

bool IsDefaultName(std::string_view name) {
    const std::string lower = AsciiLower(name);
    return lower.empty() || lower == DefaultName || lower == "cp1252";
}

/// A "/" would select the converter's own extras, a NUL would cut the name short.
bool IsPlain(std::string_view name) {
    return name.find_first_of(std::string_view("/\0", 2)) == std::string_view::npos;
}

} // namespace

bool CodePage::Knows(std::string_view name) {
    if (IsDefaultName(name))
        return true;
    const std::string own(name);
    return IsPlain(name) && (ByteDecoder(own).Valid() || MultiByte::Open(own) != nullptr);
}

CodePage::CodePage(std::string_view name)
    : m_name(name) {
    const bool own = IsDefaultName(name) || !IsPlain(name);
    if (own || !FillFromPlatform(m_name, m_high)) {
        m_multiByte = own ? nullptr : MultiByte::Open(m_name);
        if (!m_multiByte)
            m_name = DefaultName;
        FillWindows1252(m_high);
    }
    KeepUndefined();
    SortByCharacter();
}

void CodePage::KeepUndefined() {
    for (std::size_t i = 0; i < std::size(m_high); ++i) {
        if (m_high[i] != NoCharacter)
            continue;
        const auto own = static_cast<char32_t>(0x80 + i);
        const bool taken = std::find(std::begin(m_high), std::end(m_high), own) != std::end(m_high);
        m_high[i] = taken ? PrivateUse + own : own;
    }
}

void CodePage::SortByCharacter() {
    for (std::size_t i = 0; i < m_byCharacter.size(); ++i)
        m_byCharacter[i] = {m_high[i], static_cast<std::uint8_t>(0x80 + i)};
    std::stable_sort(m_byCharacter.begin(), m_byCharacter.end(),
                     [](const Pair& a, const Pair& b) { return a.character < b.character; });
}

char32_t CodePage::Character(char byte) const {
    const auto value = static_cast<std::uint8_t>(byte);
    return value < 0x80 ? value : m_high[value - 0x80];
}

std::string CodePage::ToUtf8(std::string_view bytes) const {
    if (m_multiByte)
        return m_multiByte->ToUtf8(bytes);
    std::string text;
    text.reserve(bytes.size() + bytes.size() / 8);
    for (const char byte : bytes)
        AppendUtf8(text, Character(byte));
    return text;
}

std::optional<std::string> CodePage::FromUtf8(std::string_view utf8) const {
    if (m_multiByte)
        return m_multiByte->FromUtf8(utf8);
    std::string bytes;
    bytes.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();) {
        const char32_t character = NextCodePoint(utf8, at);
        if (character < 0x80) {
            bytes += static_cast<char>(character);
            continue;
        }
        const auto found = std::lower_bound(
            m_byCharacter.begin(), m_byCharacter.end(), character,
            [](const Pair& pair, char32_t wanted) { return pair.character < wanted; });
        if (found == m_byCharacter.end() || found->character != character)
            return std::nullopt;
        bytes += static_cast<char>(found->byte);
    }
    return bytes;
}

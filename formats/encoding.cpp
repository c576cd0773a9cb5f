#include "formats/encoding.h"

#include "base/codepages.h"
#include "base/utf8.h"
#include "formats/guess.h"

#include <utility>

namespace {

constexpr std::string_view Mark8 = "\xEF\xBB\xBF";
constexpr std::string_view Mark16Little = "\xFF\xFE";
constexpr std::string_view Mark16Big = "\xFE\xFF";

char32_t UnitAt(std::string_view bytes, std::size_t at, bool bigEndian) {
    const auto first = static_cast<unsigned char>(bytes[at]);
    const auto second = static_cast<unsigned char>(bytes[at + 1]);
    return bigEndian ? static_cast<char32_t>(first << 8 | second)
                     : static_cast<char32_t>(second << 8 | first);
}

std::string FromUtf16(std::string_view bytes, bool bigEndian) {
    std::string text;
    text.reserve(bytes.size() / 2 + bytes.size() / 8);
    std::size_t at = 0;
    while (at + 1 < bytes.size()) {
        char32_t character = UnitAt(bytes, at, bigEndian);
        at += 2;
        if (IsHighHalf(character) && at + 1 < bytes.size()) {
            const char32_t low = UnitAt(bytes, at, bigEndian);
            if (IsLowHalf(low)) {
                character = JoinedHalves(character, low);
                at += 2;
            }
        }
        AppendUtf8(text, character);
    }
    if (at < bytes.size())
        AppendUtf8(text, ReplacementCharacter);
    return text;
}

void AppendUnit(std::string& bytes, char32_t unit, bool bigEndian) {
    const auto high = static_cast<char>(unit >> 8 & 0xFF);
    const auto low = static_cast<char>(unit & 0xFF);
    bytes += bigEndian ? high : low;
    bytes += bigEndian ? low : high;
}

std::string ToUtf16(std::string_view utf8, bool bigEndian) {
    std::string bytes(bigEndian ? Mark16Big : Mark16Little);
    bytes.reserve(2 * utf8.size() + bytes.size());
    for (std::size_t at = 0; at < utf8.size();) {
        char32_t character = NextCodePointOrHalf(utf8, at);
        if (character == InvalidByte)
            character = ReplacementCharacter;
        if (character >= 0x10000) {
            AppendUnit(bytes, 0xD800 + ((character - 0x10000) >> 10), bigEndian);
            character = 0xDC00 + ((character - 0x10000) & 0x3FF);
        }
        AppendUnit(bytes, character, bigEndian);
    }
    return bytes;
}

/// Valid pieces are kept, single bytes between them are read in the code page.
std::string Mended(std::string_view text, const CodePage& page) {
    std::string mended;
    mended.reserve(text.size() + text.size() / 8);
    while (!text.empty()) {
        const std::size_t valid = ValidUtf8Length(text);
        mended += text.substr(0, valid);
        text.remove_prefix(valid);
        if (text.empty())
            break;
        AppendUtf8(mended, page.Character(text.front()));
        text.remove_prefix(1);
    }
    return mended;
}

} // namespace

DecodedText::DecodedText(FileBytes bytes, const std::string& codePage)
    : m_bytes(std::move(bytes)) {
    const std::string_view all = m_bytes.View();
    if (all.starts_with(Mark16Little) || all.starts_with(Mark16Big)) {
        const bool bigEndian = all.starts_with(Mark16Big);
        m_encoding = bigEndian ? FileStyle::Encoding::Utf16BigEndian
                               : FileStyle::Encoding::Utf16LittleEndian;
        m_skip = Mark16Little.size();
        m_converted = FromUtf16(all.substr(m_skip), bigEndian);
    } else if (all.starts_with(Mark8)) {
        m_skip = Mark8.size();
        if (IsValidUtf8(all))
            return;
        m_converted = Mended(all.substr(m_skip), CodePage(codePage));
    } else {
        if (IsValidUtf8(all))
            return;
        m_encoding = FileStyle::Encoding::CodePage;
        const CodePage page(codePage == GuessedPage ? GuessCodePage(all) : codePage);
        m_codePage = page.Name();
        m_converted = page.ToUtf8(all);
    }
    m_inPlace = false;
    m_bytes = {};
}

std::string_view Utf8Mark(const FileStyle& style) {
    const bool marked = style.encoding == FileStyle::Encoding::Utf8 && style.byteOrderMark;
    return marked ? Mark8 : std::string_view();
}

std::string Encode(std::string utf8, const FileStyle& style, const std::string& codePage) {
    switch (style.encoding) {
    case FileStyle::Encoding::Utf8:
        break;
    case FileStyle::Encoding::Utf16LittleEndian:
        return ToUtf16(utf8, false);
    case FileStyle::Encoding::Utf16BigEndian:
        return ToUtf16(utf8, true);
    case FileStyle::Encoding::CodePage: {
        utf8 = WithoutHalves(std::move(utf8));
        std::optional<std::string> bytes =
            CodePage(style.codePage.empty() ? codePage : style.codePage).FromUtf8(utf8);
        if (bytes && (!IsValidUtf8(*bytes) || *bytes == utf8))
            return std::move(*bytes);
        return utf8;
    }
    }
    return WithoutHalves(std::move(utf8));
}

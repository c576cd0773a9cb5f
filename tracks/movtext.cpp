#include "tracks/movtext.h"

#include "base/utf8.h"

#include <algorithm>
#include <cstdint>
#include <vector>

namespace {

/// Numbers are big-endian.
class Bytes {
  public:
    explicit Bytes(std::string_view bytes)
        : m_bytes(bytes) {}

    bool Has(std::size_t count) const { return m_bytes.size() >= count; }
    /// 0 where the bytes end.
    std::uint32_t Number(std::size_t size) {
        std::uint32_t number = 0;
        for (const char c : Take(size))
            number = number << 8 | static_cast<unsigned char>(c);
        return number;
    }
    std::string_view Take(std::size_t count) {
        const std::string_view taken = m_bytes.substr(0, count);
        m_bytes.remove_prefix(taken.size());
        return taken;
    }

  private:
    std::string_view m_bytes;
};

/// Characters from `first` up to `last`, counted from 0.
struct Style {
    std::size_t first = 0;
    std::size_t last = 0;
    bool bold = false;
    bool italic = false;
};

std::vector<Style> StylesOf(Bytes bytes) {
    constexpr std::size_t HeadSize = 8;
    constexpr std::size_t StyleSize = 12;
    std::vector<Style> styles;
    while (bytes.Has(HeadSize)) {
        const std::uint32_t size = bytes.Number(4);
        const bool isStyles = bytes.Take(4) == "styl";
        Bytes box(bytes.Take(std::max<std::size_t>(size, HeadSize) - HeadSize));
        for (std::uint32_t left = isStyles ? box.Number(2) : 0; left > 0 && box.Has(StyleSize);
             --left) {
            Style style;
            style.first = box.Number(2);
            style.last = box.Number(2);
            box.Take(2);
            const std::uint32_t face = box.Number(1);
            style.bold = (face & 1U) != 0;
            style.italic = (face & 2U) != 0;
            box.Take(5);
            styles.push_back(style);
        }
    }
    return styles;
}

std::string FromUtf16(std::string_view text) {
    std::string out;
    Bytes bytes(text);
    while (bytes.Has(2)) {
        std::uint32_t unit = bytes.Number(2);
        const bool high = unit >= 0xD800 && unit < 0xDC00;
        if (high && bytes.Has(2)) {
            const std::uint32_t low = bytes.Number(2);
            const bool pair = low >= 0xDC00 && low < 0xE000;
            unit = pair ? 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00) : 0xFFFD;
        } else if (unit >= 0xD800 && unit < 0xE000) {
            unit = 0xFFFD;
        }
        AppendUtf8(out, static_cast<char32_t>(unit));
    }
    return out;
}

/// What is open changes at a character: tags close and open so that they nest.
class Tagger {
  public:
    explicit Tagger(std::string& out)
        : m_out(out) {}

    void Become(bool italic, bool bold) {
        if (italic == m_italic && bold == m_bold)
            return;
        // Italics are the outer ones.
        if (m_bold && (!bold || italic != m_italic))
            Put("</b>", m_bold, false);
        if (m_italic && !italic)
            Put("</i>", m_italic, false);
        if (!m_italic && italic)
            Put("<i>", m_italic, true);
        if (!m_bold && bold)
            Put("<b>", m_bold, true);
    }

  private:
    void Put(const char* tag, bool& open, bool isOpen) {
        m_out += tag;
        open = isOpen;
    }

    std::string& m_out;
    bool m_italic = false;
    bool m_bold = false;
};

} // namespace

std::string MovText(std::string_view sample) {
    Bytes bytes(sample);
    const std::size_t length = bytes.Number(2);
    std::string text(bytes.Take(length));
    if (text.starts_with("\xFE\xFF"))
        text = FromUtf16(std::string_view(text).substr(2));
    const std::vector<Style> styles = StylesOf(bytes);

    std::string out;
    Tagger tagger(out);
    std::size_t character = 0;
    std::size_t style = 0;
    for (std::size_t at = 0; at < text.size(); ++character) {
        while (style < styles.size() && styles[style].last <= character)
            ++style;
        const bool within = style < styles.size() && styles[style].first <= character;
        tagger.Become(within && styles[style].italic, within && styles[style].bold);
        const std::size_t begin = at;
        const char32_t code = NextCodePoint(text, at);
        if (code == U'\n')
            out += "\r\n";
        else if (code == InvalidByte)
            AppendUtf8(out, ReplacementCharacter);
        else if (code != U'\r')
            out.append(text, begin, at - begin);
    }
    tagger.Become(false, false);
    return out;
}

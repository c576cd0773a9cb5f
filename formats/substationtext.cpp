#include "formats/copybut.h"
#include "formats/substation.h"
#include "formats/writing.h"

#include <array>

namespace {

constexpr std::string_view LineBreak = "\\N";
/// Invisible; keeps a backslash and the letter after it apart.
constexpr std::string_view Joiner = "\xE2\x81\xA0";

constexpr CharacterSet OfLines("{\\");
constexpr CharacterSet OfTexts("<\r\n");
constexpr CharacterSet OfForeignTexts("<\r\n{}\\");

struct Code {
    std::string_view code;
    std::string_view tag;
};
constexpr std::array<Code, 4> Codes{
    {{"{\\i1}", "<i>"}, {"{\\i0}", "</i>"}, {"{\\b1}", "<b>"}, {"{\\b0}", "</b>"}}};

std::size_t TakeTag(std::string_view rest, std::string& out) {
    for (const Code& code : Codes) {
        if (rest.starts_with(code.tag)) {
            out += code.code;
            return code.tag.size();
        }
    }
    return 0;
}

std::size_t TakeCode(std::string_view rest, std::string& out) {
    for (const Code& code : Codes) {
        if (rest.starts_with(code.code)) {
            out += code.tag;
            return code.code.size();
        }
    }
    return 0;
}

/// What an override block says that plain text can tell, and whether a drawing is on.
class BlockReader {
  public:
    explicit BlockReader(std::string& out)
        : m_out(out) {}

    void Read(std::string_view block) {
        for (std::size_t at = block.find('\\'); at != std::string_view::npos;) {
            const std::size_t next = std::min(block.find('\\', at + 1), block.size());
            Take(block.substr(at + 1, next - at - 1));
            at = next == block.size() ? std::string_view::npos : next;
        }
    }
    bool Drawing() const { return m_drawing; }

  private:
    void Take(std::string_view code) {
        if (code == "i1" || code == "b1")
            m_out.append("<").append(code.substr(0, 1)).append(">");
        else if (code == "i0" || code == "b0")
            m_out.append("</").append(code.substr(0, 1)).append(">");
        else if (code.size() == 2 && code[0] == 'p' && code[1] >= '0' && code[1] <= '9')
            m_drawing = code[1] != '0';
    }

    std::string& m_out;
    bool m_drawing = false;
};

std::size_t TakeEscape(std::string_view rest, std::string& out) {
    const char next = rest.size() > 1 ? rest[1] : '\0';
    switch (next) {
    case 'N':
        out += LineEnd;
        return 2;
    case 'n':
        out += ' ';
        return 2;
    case 'h':
        out += "\xC2\xA0";
        return 2;
    case '{':
    case '}':
        out += next;
        return 2;
    default:
        break;
    }
    out += '\\';
    return rest.substr(1).starts_with(Joiner) ? 1 + Joiner.size() : 1;
}

} // namespace

std::string SubStationToText(std::string_view raw) {
    std::string text;
    text.reserve(raw.size());
    CopyBut(raw, OfLines, text, [&](std::string_view rest) -> std::size_t {
        if (rest.front() == '{')
            return TakeCode(rest, text);
        if (!rest.starts_with(LineBreak))
            return 0;
        text += LineEnd;
        return LineBreak.size();
    });
    return text;
}

void TextToSubStation(std::string_view text, std::string& out) {
    CopyBut(text, OfTexts, out, [&](std::string_view rest) -> std::size_t {
        if (rest.front() == '<')
            return TakeTag(rest, out);
        out += LineBreak;
        return rest.starts_with(LineEnd) ? LineEnd.size() : 1;
    });
}

void ForeignTextToSubStation(std::string_view text, std::string& out) {
    bool inBlock = false;
    CopyBut(text, OfForeignTexts, out, [&](std::string_view rest) -> std::size_t {
        const char next = rest.size() > 1 ? rest[1] : '\0';
        switch (rest.front()) {
        case '<':
            return TakeTag(rest, out);
        case '{':
            // Files of other formats have these blocks too.
            inBlock = inBlock || next == '\\';
            out += inBlock ? "{" : "\\{";
            return 1;
        case '}':
            out += inBlock ? "}" : "\\}";
            inBlock = false;
            return 1;
        case '\\':
            out += '\\';
            if (!inBlock && std::string_view("Nnh{}").find(next) != std::string_view::npos)
                out += Joiner;
            return 1;
        default:
            out += LineBreak;
            return rest.starts_with(LineEnd) ? LineEnd.size() : 1;
        }
    });
}

std::string SubStationPlainText(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    BlockReader blocks(plain);
    bool open = true;
    std::size_t drawing = std::string::npos;
    CopyBut(text, OfLines, plain, [&](std::string_view rest) -> std::size_t {
        if (rest.front() == '\\')
            return TakeEscape(rest, plain);
        // Once no block ends, none does further on.
        const std::size_t end = open ? rest.find('}') : std::string_view::npos;
        open = end != std::string_view::npos;
        if (!open)
            return 0;
        if (drawing != std::string::npos)
            plain.resize(drawing);
        blocks.Read(rest.substr(0, end));
        drawing = blocks.Drawing() ? plain.size() : std::string::npos;
        return end + 1;
    });
    if (drawing != std::string::npos)
        plain.resize(drawing);
    return plain;
}

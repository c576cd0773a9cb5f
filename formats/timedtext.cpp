#include "formats/timedtext.h"

#include "base/ascii.h"
#include "formats/copybut.h"
#include "formats/packed.h"
#include "formats/reading.h"
#include "formats/timedtextpatch.h"
#include "formats/timedtextsource.h"
#include "formats/writing.h"

#include <algorithm>

namespace {

constexpr const char* Keeps = "Timed Text";

constexpr std::string_view NewHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\r\n"
    "<tt xmlns=\"http://www.w3.org/ns/ttml\" xmlns:tts=\"http://www.w3.org/ns/ttml#styling\" "
    "xml:lang=\"\" xml:space=\"preserve\">\r\n"
    "  <body>\r\n"
    "    <div>";
constexpr std::string_view NewFoot = "\r\n    </div>\r\n  </body>\r\n</tt>\r\n";

ReadOutcome Read(std::string_view text, double /*frameRate*/, SUBTITLES& titles, FileStyle& style,
                 const Progress& progress) {
    const TimedTextSource source(text);
    if (!source.Valid())
        return ReadOutcome::Corrupt;
    style.format = Keeps;
    style.kept = text;
    ProgressMeter meter(progress, text.size());
    const auto& elements = source.Elements();
    titles.Reserve(static_cast<std::int32_t>(elements.size()));
    for (std::size_t i = 0; i < elements.size(); ++i) {
        if (!meter.Continue(elements[i].all.begin))
            return ReadOutcome::Cancelled;
        titles.Add(elements[i].startTime, elements[i].endTime, elements[i].text, ElementExtra(i));
    }
    return source.Faulty() ? ReadOutcome::Corrupt : ReadOutcome::Complete;
}

void WriteNew(const SUBTITLES& titles, std::string& out) {
    constexpr std::size_t BesideEach = 64;
    ReserveFor(titles, BesideEach, out);
    out += NewHead;
    const TimedTextTime form;
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        out += "\r\n      <p begin=\"";
        AppendTimedTextTime(out, titles.StartTime(i), form, {});
        out += "\" end=\"";
        AppendTimedTextTime(out, titles.EndTime(i), form, {});
        out += "\">";
        out += TextToTimedText(titles.Text(i), {}, "tts:");
        out += "</p>";
    }
    out += NewFoot;
}

bool Differs(const TimedTextSource& source, const SUBTITLES& titles) {
    const auto& elements = source.Elements();
    if (static_cast<std::size_t>(titles.Count()) != elements.size())
        return true;
    std::int32_t i = 0;
    return std::any_of(elements.begin(), elements.end(), [&](const auto& element) {
        ++i;
        return titles.StartTime(i) != element.startTime || titles.EndTime(i) != element.endTime ||
               titles.Text(i) != element.text;
    });
}

void Write(const SUBTITLES& titles, double /*frameRate*/, const FileStyle& style,
           std::string& out) {
    if (style.format != Keeps)
        return WriteNew(titles, out);
    const TimedTextSource source(style.kept);
    const bool room = !source.Elements().empty() || source.FirstPlace();
    if (source.HasSequenceOfGroups() && Differs(source, titles))
        return WriteNew(titles, out);
    if (!source.Valid() || !room)
        return titles.Count() == 0 ? void(out += style.kept) : WriteNew(titles, out);
    PatchTimedText(source, titles, out);
}

/// Writes runs of text in one look, each in a span of its own where it has one: tags may
/// cross in a title, but not in XML.
class SpanWriter {
  public:
    SpanWriter(std::string_view prefix, std::string_view stylePrefix, std::string& out)
        : m_prefix(prefix)
        , m_stylePrefix(stylePrefix)
        , m_out(out) {}

    /// How much of the text it has taken; 0: nothing that it knows.
    std::size_t Take(std::string_view rest) {
        switch (rest.front()) {
        case '&':
            return Put("&amp;");
        case '>':
            return Put("&gt;");
        case '<':
            return TakeTag(rest);
        case '\r':
        case '\n':
            Leave();
            m_out.append("<").append(m_prefix).append("br/>");
            return rest.starts_with(LineEnd) ? LineEnd.size() : 1;
        default:
            // XML has no such character.
            return Put(" ");
        }
    }
    /// Before any character of the text.
    void Enter() {
        if (m_inSpan || !(m_italic || m_bold))
            return;
        m_out.append("<").append(m_prefix).append("span");
        if (m_stylePrefix.empty())
            m_out += " xmlns:tts=\"http://www.w3.org/ns/ttml#styling\"";
        const std::string_view style = m_stylePrefix.empty() ? "tts:" : m_stylePrefix;
        if (m_italic)
            m_out.append(" ").append(style).append("fontStyle=\"italic\"");
        if (m_bold)
            m_out.append(" ").append(style).append("fontWeight=\"bold\"");
        m_out += ">";
        m_inSpan = true;
    }
    void Leave() {
        if (m_inSpan)
            m_out.append("</").append(m_prefix).append("span>");
        m_inSpan = false;
    }

  private:
    std::size_t Put(std::string_view text) {
        Enter();
        m_out += text;
        return 1;
    }
    std::size_t TakeTag(std::string_view rest) {
        for (const bool on : {true, false}) {
            for (const char letter : {'i', 'b'}) {
                const std::string tag = std::string(on ? "<" : "</") + letter + ">";
                if (!rest.starts_with(tag))
                    continue;
                Leave();
                (letter == 'i' ? m_italic : m_bold) = on;
                return tag.size();
            }
        }
        return Put("&lt;");
    }

    std::string_view m_prefix;
    std::string_view m_stylePrefix;
    std::string& m_out;
    bool m_italic = false;
    bool m_bold = false;
    bool m_inSpan = false;
};

constexpr CharacterSet Special(std::string_view("&<>\0\x01\x02\x03\x04\x05\x06\x07\x08\x0B\x0C"
                                                "\r\n\x0E\x0F\x10\x11\x12\x13\x14\x15\x16\x17"
                                                "\x18\x19\x1A\x1B\x1C\x1D\x1E\x1F",
                                                34));

/// XML has no such characters.
std::string WithoutControls(std::string_view text) {
    std::string without(text);
    for (char& c : without) {
        if (Special.Holds(c) && std::string_view("&<>\r\n").find(c) == std::string_view::npos)
            c = ' ';
    }
    return without;
}

} // namespace

bool IsTimedText(std::string_view text) {
    constexpr std::string_view Space = " \t\r\n";
    while (true) {
        const std::size_t at = text.find_first_not_of(Space);
        if (at == std::string_view::npos || text[at] != '<')
            return false;
        text.remove_prefix(at);
        const bool comment = text.starts_with("<!--");
        if (!comment && !text.starts_with("<?") && !text.starts_with("<!"))
            break;
        const std::string_view end = comment ? "-->" : ">";
        const std::size_t close = text.find(end);
        if (close == std::string_view::npos)
            return false;
        text.remove_prefix(close + end.size());
    }
    const std::size_t end = std::min(text.find_first_of(" \t\r\n/>"), text.size());
    const std::string_view name = text.substr(1, end - 1);
    return name == "tt" || name.ends_with(":tt");
}

std::string TextToTimedText(std::string_view text, std::string_view prefix,
                            std::string_view stylePrefix) {
    std::string out;
    out.reserve(text.size() + 16);
    SpanWriter spans(prefix, stylePrefix, out);
    while (!text.empty()) {
        const std::size_t plain = Special.Find(text, 0);
        if (plain > 0) {
            spans.Enter();
            out += text.substr(0, plain);
            text.remove_prefix(plain);
        } else {
            text.remove_prefix(spans.Take(text));
        }
    }
    spans.Leave();
    return out;
}

Format TimedTextFormat() {
    return {.name = "Timed Text",
            .extensions = {".ttml", ".dfxp", ".xml"},
            .description = "Timed Text files",
            .mimeType = "application/ttml+xml",
            .corruptMessage = "File is corrupt or not in Timed Text format.",
            .unicode = true,
            .recognise = [](const TextBeginning& beginning) { return IsTimedText(beginning.text); },
            .read = Read,
            .write = Write,
            // In some files frames are counted.
            .losses = {.grain = 1.0 / 24},
            .exact = true,
            .keeps = Keeps,
            .keptParts = "regions and styles",
            .adoptedText = WithoutControls,
            .isSpecial =
                [](const TitleExtra&) {
                    return false;
                }};
}

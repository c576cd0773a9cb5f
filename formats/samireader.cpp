#include "base/ascii.h"
#include "formats/linereader.h"
#include "formats/packed.h"
#include "formats/reading.h"
#include "formats/sami.h"
#include "formats/timedtext.h"
#include "formats/writing.h"

namespace {

constexpr const char* Keeps = "SAMI";

/// Cuts the body into text and tags, whatever lines they stand on: a text or a tag
/// over several lines becomes one line with single blanks at the joins.
class SamiScanner {
  public:
    explicit SamiScanner(LineReader& lines)
        : m_lines(lines) {}

    /// All lines are read; the last one may not be used up.
    bool AtEnd() const { return m_lines.AtEnd(); }
    std::string_view Buffer() const { return m_buffer; }

    /// The text up to the next "<".
    std::string_view ReadTextToTag() {
        return m_buffer.starts_with('<') ? std::string_view() : ReadTo('<', 0);
    }
    /// The tag up to and including the next ">".
    std::string_view ReadTag() { return ReadTo('>', 1); }

  private:
    /// Answers a view of the line where one line holds all of it.
    std::string_view ReadTo(char mark, std::size_t taken) {
        m_joined.clear();
        std::string_view result;
        while (true) {
            if (m_buffer.empty() && !m_lines.AtEnd()) {
                m_buffer = Trim(m_lines.Next());
                continue;
            }
            const std::size_t found = m_buffer.find(mark);
            const bool ends = found != std::string_view::npos;
            const std::string_view part = ends ? m_buffer.substr(0, found + taken) : m_buffer;
            m_buffer.remove_prefix(part.size());
            result = Join(result, part);
            if (ends || m_lines.AtEnd())
                return result;
        }
    }

    std::string_view Join(std::string_view result, std::string_view part) {
        if (result.empty())
            return Trim(part);
        part = TrimRight(part);
        if (part.empty())
            return result;
        if (m_joined.empty())
            m_joined = result;
        m_joined += ' ';
        m_joined += part;
        return m_joined;
    }

    LineReader& m_lines;
    std::string_view m_buffer;
    std::string m_joined;
};

class SamiReader {
  public:
    SamiReader(std::string_view text, SUBTITLES& titles, FileStyle& style, const Progress& progress)
        : m_lines(text)
        , m_scanner(m_lines)
        , m_titles(titles)
        , m_style(style)
        , m_meter(progress, text.size())
        , m_room(titles, text.size()) {}

    ReadOutcome Read() {
        if (!ReadHeader())
            return ReadOutcome::Corrupt;
        const ReadOutcome outcome = ReadBody();
        KeepSami(m_parts, m_style);
        return outcome;
    }

  private:
    using Handler = bool (SamiReader::*)(std::string_view tag);
    struct TagRow {
        std::string_view name;
        Handler handler;
    };

    ReadOutcome ReadBody() {
        while (!m_scanner.AtEnd() && !m_bodyEnded) {
            if (!m_meter.Continue(m_lines.Position()))
                return ReadOutcome::Cancelled;
            m_pending += m_scanner.ReadTextToTag();
            if (!TakeTag(m_scanner.ReadTag()))
                return ReadOutcome::Corrupt;
        }
        return m_bodyEnded ? ReadOutcome::Complete : ReadOutcome::Corrupt;
    }

    /// Up to the body tag; what follows it on its line is dropped. False when no
    /// line is left after it.
    bool ReadHeader() {
        constexpr std::string_view BodyTag = "<body>";
        bool found = false;
        while (!found && !m_lines.AtEnd()) {
            std::string_view line = m_lines.Next();
            const std::size_t at = FindWord(line, BodyTag);
            found = at != std::string_view::npos;
            if (found)
                line = line.substr(0, at + BodyTag.size());
            m_parts.header += line;
            m_parts.header += LineEnd;
        }
        return !m_lines.AtEnd();
    }

    /// False when the tag breaks the format.
    bool TakeTag(std::string_view tag) {
        const std::string_view inner =
            tag.size() < 2 ? std::string_view() : Trim(tag.substr(1, tag.size() - 2));
        const std::string_view name = inner.substr(0, inner.find(' '));
        static constexpr TagRow Rows[] = {{"br", &SamiReader::TakeBreak},
                                          {"p", &SamiReader::TakeParagraph},
                                          {"sync", &SamiReader::TakeSync},
                                          {"/body", &SamiReader::TakeBodyEnd}};
        for (const TagRow& row : Rows) {
            if (IsWord(name, row.name))
                return (this->*row.handler)(tag);
        }
        return TakeOther(tag);
    }

    bool TakeBreak(std::string_view /*tag*/) {
        if (m_pending.empty())
            return true;
        TrimPending();
        m_pending += LineEnd;
        return true;
    }

    bool TakeParagraph(std::string_view tag) {
        if (FindWord(tag, "class") == std::string_view::npos)
            return true;
        const std::size_t equals = tag.find('=');
        if (equals == std::string_view::npos)
            return false;
        const std::string_view value = Trim(tag.substr(equals + 1));
        m_parts.paragraphClass = Trim(value.substr(0, value.find('>')));
        return true;
    }

    bool TakeSync(std::string_view tag) {
        constexpr std::string_view Word = "start";
        const std::size_t start = FindWord(tag, Word);
        if (start == std::string_view::npos)
            return false;
        const std::size_t equals = tag.find('=', start + Word.size());
        if (equals == std::string_view::npos)
            return false;
        const double time = LeadingNumber(tag.substr(equals + 1)) / 1000;
        TrimPending();
        AddPending(time);
        m_pending.clear();
        m_lastSync = time;
        return true;
    }

    bool TakeBodyEnd(std::string_view tag) {
        // A title that is still open has no end of its own.
        constexpr double LastTitleLength = 10;
        AddPending(m_lastSync + LastTitleLength);
        m_bodyEnded = true;
        m_parts.footer = tag;
        m_parts.footer += m_scanner.Buffer();
        m_parts.footer += LineEnd;
        while (!m_lines.AtEnd()) {
            m_parts.footer += m_lines.Next();
            m_parts.footer += LineEnd;
        }
        return true;
    }

    /// Tags that say nothing about times and lines are text.
    bool TakeOther(std::string_view tag) {
        const bool spaced = !m_pending.empty() && (tag == "<i>" || tag == "</i>");
        if (spaced)
            m_pending += ' ';
        m_pending += tag;
        if (spaced)
            m_pending += ' ';
        return true;
    }

    void TrimPending() {
        const std::string_view trimmed = Trim(m_pending);
        if (trimmed.size() == m_pending.size())
            return;
        m_pending.erase(0, static_cast<std::size_t>(trimmed.data() - m_pending.data()));
        m_pending.resize(trimmed.size());
    }

    void AddPending(double end) {
        if (m_pending.empty() || m_pending == LineEnd)
            return;
        m_titles.Add(m_lastSync, end, m_pending);
        m_room.Added(m_lines.Position());
    }

    LineReader m_lines;
    SamiScanner m_scanner;
    SUBTITLES& m_titles;
    FileStyle& m_style;
    SamiParts m_parts;
    ProgressMeter m_meter;
    RoomMaker m_room;
    std::string m_pending;
    double m_lastSync = 0;
    bool m_bodyEnded = false;
};

} // namespace

std::optional<SamiParts> KeptSami(const FileStyle& style) {
    if (style.format != Keeps)
        return std::nullopt;
    PackedReader reader(style.kept);
    return SamiParts{reader.Text(), reader.Text(), reader.Text()};
}

void KeepSami(const SamiParts& parts, FileStyle& style) {
    style.format = Keeps;
    style.kept.clear();
    PutText(style.kept, parts.header);
    PutText(style.kept, parts.paragraphClass);
    PutText(style.kept, parts.footer);
}

ReadOutcome ReadSAMI(std::string_view text, double /*frameRate*/, SUBTITLES& titles,
                     FileStyle& style, const Progress& progress) {
    return SamiReader(text, titles, style, progress).Read();
}

Format SamiFormat() {
    return {.name = "SAMI",
            .extensions = {".smi"},
            .description = "SAMI files",
            .mimeType = "application/x-sami",
            .corruptMessage = "File is corrupt or not in SAMI format.",
            .recognise =
                [](const TextBeginning& beginning) {
                    return beginning.firstLine.starts_with('<') && !IsTimedText(beginning.text);
                },
            .read = ReadSAMI,
            .write = WriteSAMI,
            .losses = {.emptyTitles = true, .overlaps = true, .blanks = true, .markup = true},
            .mend = MendSami,
            .holdsLanguages = HoldsSeveralLanguages,
            .keeps = Keeps};
}

#include "formats/subrip.h"

#include "base/ascii.h"
#include "base/utf8.h"
#include "formats/linereader.h"
#include "formats/reading.h"
#include "formats/tags.h"
#include "formats/writing.h"
#include "model/times.h"

namespace {

/// Where the times stand on their line, whatever stands between them.
constexpr std::size_t TimeLength = 12;
constexpr std::size_t EndColumn = 17;
constexpr std::string_view Arrow = " --> ";

/// The offset behind so many characters; columns are counted in them, not in bytes.
std::size_t OffsetOf(std::string_view line, std::size_t column) {
    std::size_t at = 0;
    for (; column > 0 && at < line.size(); --column)
        NextCodePoint(line, at);
    return at;
}

double TimeAt(std::string_view line, std::size_t column) {
    const std::string_view rest = line.substr(OffsetOf(line, column));
    return rest.empty() ? 0 : ParseTime(rest.substr(0, OffsetOf(rest, TimeLength)));
}

struct Times {
    double start;
    double end;
};

Times TimesOf(std::string_view line) {
    // Nearly every line is as it is written.
    if (line.size() >= EndColumn + TimeLength &&
        line.substr(TimeLength, EndColumn - TimeLength) == Arrow &&
        IsAscii(line.substr(0, EndColumn + TimeLength)))
        return {ParseTime(line.substr(0, TimeLength)),
                ParseTime(line.substr(EndColumn, TimeLength))};
    return {TimeAt(line, 0), TimeAt(line, EndColumn)};
}

/// The lines of one title up to its empty line. Codes are rare, and the lines
/// mostly end as those of a title do: then the text is one piece of the file.
class TextReader {
  public:
    explicit TextReader(LineReader& lines)
        : m_lines(lines) {}

    std::string Next() {
        const std::size_t begin = m_lines.Position();
        std::string_view last = m_lines.Next();
        bool onePiece = true;
        while (!m_lines.AtEnd()) {
            const bool joined = m_lines.EndedByCrLf();
            const std::string_view line = m_lines.Next();
            if (line.empty())
                break;
            onePiece = onePiece && joined;
            last = line;
        }
        const std::string_view block = m_lines.Text().substr(
            begin,
            static_cast<std::size_t>(last.data() - m_lines.Text().data()) + last.size() - begin);
        if (onePiece && !HasCodes(begin, block.size()))
            return std::string(block);
        return Converted(block);
    }

  private:
    /// The search for the next code is not repeated for each title.
    bool HasCodes(std::size_t begin, std::size_t size) {
        if (!m_sought || m_nextCode < begin) {
            m_nextCode = std::min(m_lines.Text().find("{y", begin), m_lines.Text().size());
            m_sought = true;
        }
        return m_nextCode < begin + size;
    }

    static std::string Converted(std::string_view block) {
        std::string text;
        text.reserve(block.size() + block.size() / 8);
        OpenStyles open;
        LineReader lines(block);
        MicroDVDCodesToTags(lines.Next(), open, text);
        while (!lines.AtEnd()) {
            text += LineEnd;
            MicroDVDCodesToTags(lines.Next(), open, text);
        }
        CloseOpenTags(open, text);
        return text;
    }

    LineReader& m_lines;
    std::size_t m_nextCode = 0;
    bool m_sought = false;
};

ReadOutcome Read(std::string_view text, double /*frameRate*/, SUBTITLES& titles,
                 FileStyle& /*style*/, const Progress& progress) {
    LineReader lines(text);
    TextReader texts(lines);
    ProgressMeter meter(progress, text.size());
    RoomMaker room(titles, text.size());
    while (!lines.AtEnd()) {
        if (!meter.Continue(lines.Position()))
            return ReadOutcome::Cancelled;
        if (LeadingNumber(lines.Next()) == 0)
            return ReadOutcome::Corrupt;
        const std::string_view times = lines.Next();
        // A block that ends with its number or its times is no title.
        if (lines.AtEnd())
            break;
        const auto [start, end] = TimesOf(times);
        titles.Add(start, end, texts.Next());
        room.Added(lines.Position());
    }
    return ReadOutcome::Complete;
}

bool IsLineEnd(char c) {
    return c == '\r' || c == '\n';
}

bool HasEmptyLine(std::string_view text) {
    if (text.empty())
        return false;
    if (IsLineEnd(text.back()))
        return true;
    LineReader lines(text);
    while (!lines.AtEnd())
        if (lines.Next().empty())
            return true;
    return false;
}

/// An empty line would end the title: those of the text that begins at the offset go.
void DropEmptyLines(std::string& out, std::size_t begin) {
    if (!HasEmptyLine(std::string_view(out).substr(begin)))
        return;
    const std::string text = out.substr(begin);
    out.resize(begin);
    LineReader lines(text);
    while (!lines.AtEnd()) {
        const std::string_view line = lines.Next();
        if (line.empty())
            continue;
        if (out.size() > begin)
            out += LineEnd;
        out += line;
    }
}

void Write(const SUBTITLES& titles, double /*frameRate*/, const FileStyle& style,
           std::string& out) {
    constexpr std::size_t BesideEach = 50;
    ReserveFor(titles, BesideEach, out);
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        AppendNumber(out, i);
        out += LineEnd;
        AppendTime(out, titles.StartTime(i));
        out += Arrow;
        AppendTime(out, titles.EndTime(i));
        out += LineEnd;
        const std::size_t begin = out.size();
        if (style.subRipStyles)
            out += titles.Text(i);
        else
            StripTags(titles.Text(i), out);
        DropEmptyLines(out, begin);
        out += LineEnd;
        out += LineEnd;
    }
}

} // namespace

std::int32_t TitlesWithStyles(const SUBTITLES& titles) {
    std::int32_t count = 0;
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        const std::string& text = titles.Text(i);
        for (const char* tag : {"<i>", "<b>", "</i>", "</b>"}) {
            if (text.find(tag) != std::string::npos) {
                ++count;
                break;
            }
        }
    }
    return count;
}

Format SubRipFormat() {
    return {
        .name = "SubRip",
        .extensions = {".srt"},
        .description = "SubRip files",
        .mimeType = "application/x-subrip",
        .corruptMessage = "File is corrupt or not in SubRip format.",
        .recognise =
            [](const TextBeginning& beginning) { return LeadingNumber(beginning.firstLine) > 0; },
        .read = Read,
        .write = Write,
        .mend =
            [](std::string_view text, std::size_t) {
                return MendSubRip(text);
            }};
}

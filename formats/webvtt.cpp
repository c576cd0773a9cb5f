#include "formats/webvtt.h"

#include "formats/linereader.h"
#include "formats/reading.h"
#include "formats/writing.h"

namespace {

constexpr std::string_view Signature = "WEBVTT";
constexpr std::string_view Arrow = "-->";
constexpr std::string_view Blanks = " \t";

bool IsSignature(std::string_view line) {
    return line.starts_with(Signature) &&
           (line.size() == Signature.size() || Blanks.find(line[Signature.size()]) != Blanks.npos);
}

/// A file of our own.
FramedFile NewFile(std::string_view lineEnd) {
    const std::string end(lineEnd);
    FramedFile file;
    file.header = std::string(Signature) + end + end;
    file.footer = end;
    file.before = end + end;
    file.between = " --> ";
    file.after = end;
    return file;
}

/// Finds the cues of a file, one after the other.
class CueScanner {
  public:
    explicit CueScanner(std::string_view text)
        : m_lines(text)
        , m_text(text) {
        m_signature = IsSignature(m_lines.Next());
    }

    bool HasSignature() const { return m_signature; }
    /// How the first line ends.
    std::string_view FirstLineEnd() const {
        const std::size_t at = m_text.find_first_of("\r\n");
        if (at == std::string_view::npos)
            return LineEnd;
        return m_text.substr(at, m_text.substr(at).starts_with(LineEnd) ? 2 : 1);
    }
    std::size_t Position() const { return m_lines.Position(); }
    /// Up to the first cue.
    std::string_view Header() const { return m_text.substr(0, m_header); }
    /// From the end of the last cue's text.
    std::string_view Rest() const { return m_text.substr(m_done); }
    /// A line of times could not be read; what it belongs to is no cue.
    bool Faulty() const { return m_faulty; }

    struct Cue {
        TitleFrame frame;
        ClockTime start;
        ClockTime end;
    };

    bool Next(Cue& cue) {
        std::size_t block = 0;
        for (int line = 0; !m_lines.AtEnd();) {
            const std::size_t at = m_lines.Position();
            const std::string_view text = m_lines.Next();
            if (text.empty()) {
                line = 0;
                continue;
            }
            if (++line == 1)
                block = at;
            // The times stand on the first line of a block, or below an identifier.
            if (line > 2 || text.find(Arrow) == std::string_view::npos)
                continue;
            if (TakeTimes(at, text, cue)) {
                Frame(block, cue);
                return true;
            }
            m_faulty = true;
        }
        return false;
    }

  private:
    /// The two times as they stand in the line.
    bool TakeTimes(std::size_t at, std::string_view line, Cue& cue) const {
        const std::size_t arrow = line.find(Arrow);
        const std::size_t start = line.find_first_not_of(Blanks);
        const std::string_view first = line.substr(start, arrow - start);
        const std::size_t second = line.find_first_not_of(Blanks, arrow + Arrow.size());
        if (start >= arrow || second == std::string_view::npos)
            return false;
        const std::size_t firstSize = first.find_last_not_of(Blanks) + 1;
        const std::size_t secondEnd = std::min(line.find_first_of(Blanks, second), line.size());
        cue.frame.start = m_text.substr(at + start, firstSize);
        cue.frame.end = m_text.substr(at + second, secondEnd - second);
        const auto from = ParseClock(cue.frame.start);
        const auto to = ParseClock(cue.frame.end);
        if (!from || !to)
            return false;
        cue.start = *from;
        cue.end = *to;
        return true;
    }

    void Frame(std::size_t block, Cue& cue) {
        if (m_header == 0)
            m_done = m_header = block;
        const std::size_t start = Offset(cue.frame.start);
        const std::size_t between = start + cue.frame.start.size();
        const std::size_t end = Offset(cue.frame.end);
        const std::size_t after = end + cue.frame.end.size();
        cue.frame.before = m_text.substr(m_done, start - m_done);
        cue.frame.between = m_text.substr(between, end - between);
        const std::size_t text = m_lines.Position();
        cue.frame.after = m_text.substr(after, text - after);
        m_done = TextEnd();
        cue.frame.text = m_text.substr(text, m_done - text);
    }

    /// The text ends before an empty line, or the times of a further cue.
    std::size_t TextEnd() {
        std::size_t end = m_lines.Position();
        while (!m_lines.AtEnd()) {
            const LineReader before = m_lines;
            const std::string_view line = m_lines.Next();
            if (line.empty() || line.find(Arrow) != std::string_view::npos) {
                m_lines = before;
                break;
            }
            end = Offset(line) + line.size();
        }
        return end;
    }

    std::size_t Offset(std::string_view part) const {
        return static_cast<std::size_t>(part.data() - m_text.data());
    }

    LineReader m_lines;
    std::string_view m_text;
    std::size_t m_header = 0;
    std::size_t m_done = 0;
    bool m_signature = false;
    bool m_faulty = false;
};

FrameReader::Reading Understood(const CueScanner::Cue& cue, std::string_view lineEnd) {
    const std::string_view raw = cue.frame.text;
    FrameReader::Reading reading;
    reading.start = cue.start;
    reading.end = cue.end;
    const CueLook look = LookAtCue(raw, lineEnd);
    reading.text = look.differsFromText ? WebVttToText(raw) : std::string(raw);
    reading.keepTimes = look.innerTimes;
    reading.plainText = look.comesBack;
    // An entity may be the way in which we write the character too.
    if (!look.comesBack) {
        std::string again;
        TextToWebVtt(reading.text, lineEnd, again);
        reading.plainText = again == raw;
    }
    return reading;
}

void AppendText(const OwnPieces& own, const SUBTITLES& titles, std::int32_t index,
                std::string_view lineEnd, std::string& out) {
    const std::string& text = titles.Text(index);
    const bool unchanged = own.text.data() != nullptr && WebVttToText(own.text) == text;
    const bool moves = own.start.data() != nullptr && own.end.data() != nullptr;
    if (!unchanged && !moves)
        return TextToWebVtt(text, lineEnd, out);
    std::string cue(unchanged ? own.text : std::string_view());
    if (!unchanged)
        TextToWebVtt(text, lineEnd, cue);
    const auto start = moves ? ParseClock(own.start) : std::nullopt;
    const auto end = moves ? ParseClock(own.end) : std::nullopt;
    if (start && end && HasInnerTimes(cue))
        cue = MovedInnerTimes(cue, start->seconds, end->seconds, titles.StartTime(index),
                              titles.EndTime(index));
    out += cue;
}

} // namespace

ReadOutcome ReadWebVtt(std::string_view text, double /*frameRate*/, SUBTITLES& titles,
                       FileStyle& style, const Progress& progress) {
    CueScanner scanner(text);
    if (!scanner.HasSignature())
        return ReadOutcome::Corrupt;
    const std::string lineEnd(scanner.FirstLineEnd());
    FramedFile file = NewFile(lineEnd);
    ProgressMeter meter(progress, text.size());
    RoomMaker room(titles, text.size());
    FrameReader frames(file, titles);
    CueScanner::Cue cue;
    bool cancelled = false;
    bool any = false;
    while (!cancelled && scanner.Next(cue)) {
        if (!any)
            file.clock.shortened = cue.start.form.shortened;
        any = true;
        frames.Add(cue.frame, Understood(cue, lineEnd));
        room.Added(scanner.Position());
        cancelled = !meter.Continue(scanner.Position());
    }
    file.empty = !any;
    file.header = any ? scanner.Header() : text;
    if (any && !cancelled)
        file.footer = scanner.Rest();
    KeepFrames(file, WebVttKeeps, style);
    if (cancelled)
        return ReadOutcome::Cancelled;
    return scanner.Faulty() ? ReadOutcome::Corrupt : ReadOutcome::Complete;
}

void WriteWebVtt(const SUBTITLES& titles, double /*frameRate*/, const FileStyle& style,
                 std::string& out) {
    constexpr std::size_t BesideEach = 40;
    const std::optional<FramedFile> kept = KeptFrames(style, WebVttKeeps);
    const FramedFile file = kept ? *kept : NewFile(LineEnd);
    ReserveFor(titles, BesideEach, out);
    FrameWriter writer(file, out);
    writer.Header();
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        const OwnPieces own = kept ? PiecesOf(titles.Extra(i)) : OwnPieces();
        writer.Title(own, titles.StartTime(i), titles.EndTime(i));
        AppendText(own, titles, i, file.after, out);
    }
    writer.Footer();
}

Format WebVttFormat() {
    return {.name = "WebVTT",
            .extensions = {".vtt"},
            .description = "WebVTT files",
            .mimeType = "text/vtt",
            .corruptMessage = "File is corrupt or not in WebVTT format.",
            .unicode = true,
            .recognise =
                [](const TextBeginning& beginning) { return IsSignature(beginning.firstLine); },
            .read = ReadWebVtt,
            .write = WriteWebVtt,
            .exact = true,
            .keeps = WebVttKeeps,
            .keptParts = "positions and styles",
            .plainText = WebVttPlainText,
            .adoptedText =
                [](std::string_view text) {
                    std::string cue;
                    TextToWebVtt(text, LineEnd, cue);
                    return WebVttToText(cue);
                },
            .isSpecial =
                [](const TitleExtra& extra) {
                    return PiecesOf(extra).after.data() != nullptr;
                }};
}

#include "formats/subviewer.h"

#include "formats/clocktime.h"
#include "formats/copybut.h"
#include "formats/linereader.h"
#include "formats/reading.h"
#include "formats/tags.h"
#include "formats/writing.h"

namespace {

/// Nothing but that the file was one.
constexpr const char* SbvKeeps = "SBV";
constexpr const char* SubViewerKeeps = "SubViewer";
constexpr std::string_view Break = "[br]";
constexpr ClockForm SbvClock{.hourDigits = 1, .shortened = false, .decimals = 3, .point = '.'};
constexpr ClockForm SubViewerClock{
    .hourDigits = 2, .shortened = false, .decimals = 2, .point = '.'};

constexpr std::string_view NewHeader = "[INFORMATION]\r\n"
                                       "[TITLE]\r\n"
                                       "[AUTHOR]\r\n"
                                       "[SOURCE]\r\n"
                                       "[FILEPATH]\r\n"
                                       "[DELAY]0\r\n"
                                       "[COMMENT]\r\n"
                                       "[END INFORMATION]\r\n"
                                       "[SUBTITLE]\r\n"
                                       "[COLF]&HFFFFFF,[STYLE]no,[SIZE]18,[FONT]Arial\r\n";

struct Times {
    ClockTime start;
    ClockTime end;
};

std::optional<Times> TimesOf(std::string_view line) {
    const std::size_t comma = line.find(',');
    if (comma == std::string_view::npos)
        return std::nullopt;
    const auto start = ParseClock(Trim(line.substr(0, comma)));
    const auto end = ParseClock(Trim(line.substr(comma + 1)));
    if (!start || !end || start->form.shortened || end->form.shortened)
        return std::nullopt;
    return Times{*start, *end};
}

void AppendLine(std::string_view line, std::string& text) {
    static constexpr CharacterSet Bracket("[");
    CopyBut(line, Bracket, text, [&](std::string_view rest) -> std::size_t {
        if (!rest.starts_with(Break))
            return 0;
        text += LineEnd;
        return Break.size();
    });
}

class BlockReader {
  public:
    BlockReader(std::string_view text, SUBTITLES& titles, const Progress& progress)
        : m_lines(text)
        , m_titles(titles)
        , m_meter(progress, text.size())
        , m_room(titles, text.size()) {}

    /// What stands in front of the first times goes to the header, if there may be one.
    ReadOutcome Read(std::string* header, bool breaks) {
        bool first = true;
        while (!m_lines.AtEnd()) {
            if (!m_meter.Continue(m_lines.Position()))
                return ReadOutcome::Cancelled;
            const std::size_t at = m_lines.Position();
            const std::string_view line = m_lines.Next();
            if (const auto times = TimesOf(line)) {
                first = false;
                m_titles.Add(times->start.seconds, times->end.seconds, Text(breaks));
                m_room.Added(m_lines.Position());
            } else if (first && header != nullptr && (line.empty() || line.starts_with('['))) {
                header->append(m_lines.Text().substr(at, m_lines.Position() - at));
            } else if (!Trim(line).empty()) {
                return ReadOutcome::Corrupt;
            }
        }
        return ReadOutcome::Complete;
    }

  private:
    std::string Text(bool breaks) {
        std::string text;
        bool first = true;
        while (!m_lines.AtEnd()) {
            const std::string_view line = m_lines.Next();
            if (line.empty())
                break;
            if (!first)
                text += LineEnd;
            first = false;
            if (breaks)
                AppendLine(line, text);
            else
                text += line;
        }
        return text;
    }

    LineReader m_lines;
    SUBTITLES& m_titles;
    ProgressMeter m_meter;
    RoomMaker m_room;
};

ReadOutcome ReadSbv(std::string_view text, double /*frameRate*/, SUBTITLES& titles,
                    FileStyle& style, const Progress& progress) {
    style.format = SbvKeeps;
    return BlockReader(text, titles, progress).Read(nullptr, false);
}

ReadOutcome ReadSubViewer(std::string_view text, double /*frameRate*/, SUBTITLES& titles,
                          FileStyle& style, const Progress& progress) {
    style.format = SubViewerKeeps;
    return BlockReader(text, titles, progress).Read(&style.kept, true);
}

/// The lines of a text, without the empty ones, which would end the title.
void AppendLines(std::string_view text, std::string_view between, std::string& out) {
    LineReader lines(text);
    for (bool first = true; !lines.AtEnd();) {
        const std::string_view line = lines.Next();
        if (line.empty())
            continue;
        if (!first)
            out += between;
        first = false;
        out += line;
    }
    out += LineEnd;
}

void WriteBlocks(const SUBTITLES& titles, const ClockForm& clock, std::string_view between,
                 std::string& out) {
    constexpr std::size_t BesideEach = 32;
    ReserveFor(titles, BesideEach, out);
    std::string plain;
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        AppendClock(out, titles.StartTime(i), clock);
        out += ',';
        AppendClock(out, titles.EndTime(i), clock);
        out += LineEnd;
        plain.clear();
        StripTags(titles.Text(i), plain);
        AppendLines(plain, between, out);
        out += LineEnd;
    }
}

void WriteSbv(const SUBTITLES& titles, double /*frameRate*/, const FileStyle& /*style*/,
              std::string& out) {
    WriteBlocks(titles, SbvClock, LineEnd, out);
}

void WriteSubViewer(const SUBTITLES& titles, double /*frameRate*/, const FileStyle& style,
                    std::string& out) {
    out += style.format == SubViewerKeeps ? std::string_view(style.kept) : NewHeader;
    WriteBlocks(titles, SubViewerClock, Break, out);
}

/// Both begin with their times, and differ in how many digits these have.
bool BeginsWithTimes(const TextBeginning& beginning, const ClockForm& clock) {
    const auto times = TimesOf(beginning.firstLine);
    return times && times->start.form.decimals == clock.decimals;
}

} // namespace

Format SbvFormat() {
    return {.name = "SBV",
            .extensions = {".sbv"},
            .description = "SBV files",
            .mimeType = "",
            .corruptMessage = "File is corrupt or not in SBV format.",
            .unicode = true,
            .recognise =
                [](const TextBeginning& beginning) { return BeginsWithTimes(beginning, SbvClock); },
            .read = ReadSbv,
            .write = WriteSbv,
            .keeps = SbvKeeps};
}

Format SubViewerFormat() {
    return {.name = "SubViewer",
            .extensions = {".sub"},
            .description = "SubViewer files",
            .mimeType = "text/x-subviewer",
            .corruptMessage = "File is corrupt or not in SubViewer format.",
            .sharesExtensions = true,
            .recognise =
                [](const TextBeginning& beginning) {
                    return beginning.firstLine.starts_with("[INFORMATION]") ||
                           BeginsWithTimes(beginning, SubViewerClock);
                },
            .read = ReadSubViewer,
            .write = WriteSubViewer,
            .losses = {.grain = 0.01},
            .keeps = SubViewerKeeps,
            .adoptedText =
                [](std::string_view text) {
                    std::string adopted;
                    AppendLine(text, adopted);
                    return adopted;
                }};
}

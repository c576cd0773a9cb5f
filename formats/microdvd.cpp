#include "formats/microdvd.h"

#include "formats/linereader.h"
#include "formats/reading.h"
#include "formats/tags.h"
#include "formats/writing.h"
#include "model/numbers.h"

#include <cmath>

namespace {

/// The lines of a title stand apart by "|". The last one is taken as it stands:
/// only what a "|" ends has its codes converted.
std::string TitleText(std::string_view text) {
    std::size_t bar = text.find('|');
    if (bar == std::string_view::npos)
        return std::string(text);
    // Each "|" becomes two characters; few titles have more than three lines.
    constexpr std::size_t MoreLines = 2;
    std::string title;
    title.reserve(text.size() + MoreLines);
    OpenStyles open;
    for (; bar != std::string_view::npos; bar = text.find('|')) {
        MicroDVDCodesToTags(text.substr(0, bar), open, title);
        title += LineEnd;
        text.remove_prefix(bar + 1);
    }
    title += text;
    CloseOpenTags(open, title);
    return title;
}

/// The number ends at its first character that is no digit: {25.9} is frame 25.
double FrameNumber(std::string_view text) {
    return std::trunc(LeadingNumber(text));
}

/// The line begins with "{". Where a brace is missing, what would follow it is
/// looked for from the start of the line.
void AddTitle(std::string_view line, double frameRate, SUBTITLES& titles) {
    const double start = FrameNumber(line.substr(1)) / frameRate;
    const std::size_t brace = line.find('{', 1);
    const std::size_t afterBrace = brace == std::string_view::npos ? 0 : brace + 1;
    const double end = FrameNumber(line.substr(afterBrace)) / frameRate;
    const std::size_t close = line.find('}', afterBrace);
    const std::size_t afterClose = close == std::string_view::npos ? 0 : close + 1;
    titles.Add(start, end, TitleText(line.substr(afterClose)));
}

ReadOutcome Read(std::string_view text, double frameRate, SUBTITLES& titles, FileStyle& /*style*/,
                 const Progress& progress) {
    LineReader lines(text);
    ProgressMeter meter(progress, text.size());
    RoomMaker room(titles, text.size());
    while (!lines.AtEnd()) {
        if (!meter.Continue(lines.Position()))
            return ReadOutcome::Cancelled;
        const std::string_view line = Trim(lines.Next());
        if (line.empty())
            continue;
        if (line.front() != '{')
            return ReadOutcome::Corrupt;
        AddTitle(line, frameRate, titles);
        room.Added(lines.Position());
    }
    return ReadOutcome::Complete;
}

void AppendFrame(std::string& out, double time, double frameRate) {
    out += '{';
    AppendNumber(out, RoundToLong(time * frameRate));
    out += '}';
}

void Write(const SUBTITLES& titles, double frameRate, const FileStyle& /*style*/,
           std::string& out) {
    constexpr std::size_t BesideEach = 26;
    ReserveFor(titles, BesideEach, out);
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        AppendFrame(out, titles.StartTime(i), frameRate);
        AppendFrame(out, titles.EndTime(i), frameRate);
        TagsToMicroDVDCodes(titles.Text(i), out);
        out += LineEnd;
    }
}

} // namespace

Format MicroDvdFormat() {
    return {.name = "MicroDVD",
            .extensions = {".sub"},
            .description = "MicroDVD Subtitle files",
            .mimeType = "text/x-microdvd",
            .corruptMessage = "File is corrupt or not in MicroDVD format.",
            .needsFrameRate = true,
            .recognise =
                [](const TextBeginning& beginning) { return beginning.firstLine.starts_with('{'); },
            .read = Read,
            .write = Write,
            .losses = {.lineMark = '|'},
            .mend =
                [](std::string_view text, std::size_t) {
                    return MendMicroDvd(text);
                }};
}

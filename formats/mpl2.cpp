#include "formats/mpl2.h"

#include "base/ascii.h"
#include "formats/linereader.h"
#include "formats/reading.h"
#include "formats/tags.h"
#include "formats/writing.h"
#include "model/numbers.h"

#include <optional>

namespace {

constexpr double Tenths = 10;

/// Takes "[123]"; the number is 0 where there is none.
std::optional<double> TakeTime(std::string_view& line) {
    if (!line.starts_with('['))
        return std::nullopt;
    const std::size_t close = line.find(']');
    if (close == std::string_view::npos)
        return std::nullopt;
    const std::string_view number = line.substr(1, close - 1);
    const std::string_view digits = number.substr(number.starts_with('-') ? 1 : 0);
    if (!std::all_of(digits.begin(), digits.end(), IsAsciiDigit))
        return std::nullopt;
    line.remove_prefix(close + 1);
    return LeadingNumber(number) / Tenths;
}

bool BeginsWithTimes(std::string_view line) {
    const bool numbered = line.size() > 1 && IsAsciiDigit(line[1]);
    return numbered && TakeTime(line) && TakeTime(line);
}

std::string TitleText(std::string_view rest) {
    std::string text;
    for (bool more = true; more;) {
        const std::size_t bar = rest.find('|');
        more = bar != std::string_view::npos;
        const std::string_view line = rest.substr(0, bar);
        if (line.starts_with('/'))
            text.append("<i>").append(line.substr(1)).append("</i>");
        else
            text += line;
        if (more)
            text += LineEnd;
        rest.remove_prefix(more ? bar + 1 : rest.size());
    }
    return text;
}

ReadOutcome Read(std::string_view text, double /*frameRate*/, SUBTITLES& titles,
                 FileStyle& /*style*/, const Progress& progress) {
    LineReader lines(text);
    ProgressMeter meter(progress, text.size());
    RoomMaker room(titles, text.size());
    while (!lines.AtEnd()) {
        if (!meter.Continue(lines.Position()))
            return ReadOutcome::Cancelled;
        std::string_view line = Trim(lines.Next());
        if (line.empty())
            continue;
        const auto start = TakeTime(line);
        const auto end = start ? TakeTime(line) : std::nullopt;
        if (!end)
            return ReadOutcome::Corrupt;
        titles.Add(*start, *end, TitleText(line));
        room.Added(lines.Position());
    }
    return ReadOutcome::Complete;
}

void AppendTenths(std::string& out, double time) {
    out += '[';
    AppendNumber(out, RoundToLong(time * Tenths));
    out += ']';
}

/// Italics hold for whole lines: for each that begins in them, or with them.
void AppendText(std::string_view text, std::string& out) {
    bool italic = false;
    LineReader lines(text);
    for (bool first = true; !lines.AtEnd(); first = false) {
        const std::string_view line = lines.Next();
        if (!first)
            out += '|';
        std::string plain;
        StripTags(line, plain);
        const bool slanted = italic || line.starts_with("<i>");
        if (slanted)
            out += '/';
        // Any other slash at the begin of a line would mean italics, and a bar begins one.
        bool begins = !slanted;
        for (const char c : plain) {
            if (c == '/' && begins)
                out += ' ';
            out += c;
            begins = c == '|';
        }
        const std::size_t on = line.rfind("<i>");
        const std::size_t off = line.rfind("</i>");
        if (on != std::string_view::npos || off != std::string_view::npos)
            italic = off == std::string_view::npos || (on != std::string_view::npos && on > off);
    }
    out += LineEnd;
}

void Write(const SUBTITLES& titles, double /*frameRate*/, const FileStyle& /*style*/,
           std::string& out) {
    constexpr std::size_t BesideEach = 22;
    ReserveFor(titles, BesideEach, out);
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        AppendTenths(out, titles.StartTime(i));
        AppendTenths(out, titles.EndTime(i));
        AppendText(titles.Text(i), out);
    }
}

} // namespace

Format Mpl2Format() {
    return {.name = "MPL2",
            .extensions = {".txt"},
            .description = "MPL2 files",
            .mimeType = "text/x-mpl2",
            .corruptMessage = "File is corrupt or not in MPL2 format.",
            .sharesExtensions = true,
            .recognise =
                [](const TextBeginning& beginning) { return BeginsWithTimes(beginning.firstLine); },
            .read = Read,
            .write = Write,
            .losses = {.grain = 1 / Tenths, .lineMark = '|'}};
}

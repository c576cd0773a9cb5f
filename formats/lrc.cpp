#include "formats/lrc.h"

#include "base/ascii.h"
#include "formats/clocktime.h"
#include "formats/linereader.h"
#include "formats/packed.h"
#include "formats/reading.h"
#include "formats/tags.h"
#include "formats/webvtt.h"
#include "formats/writing.h"
#include "model/numbers.h"

#include <algorithm>
#include <array>

namespace {

constexpr const char* Keeps = "LRC";
constexpr double Hundredths = 100;
/// A title that nothing follows has no end of its own.
constexpr double LastTitleLength = 10;

/// Takes "[01:02.50]".
std::optional<double> TakeTime(std::string_view& line) {
    if (line.size() < 2 || line[0] != '[' || !(IsAsciiDigit(line[1]) || line[1] == '-'))
        return std::nullopt;
    const std::size_t close = line.find(']');
    if (close == std::string_view::npos)
        return std::nullopt;
    const auto time = ParseClock(line.substr(1, close - 1));
    if (!time)
        return std::nullopt;
    line.remove_prefix(close + 1);
    return time->seconds;
}

/// "[ti:words]": the name before the colon; empty when the line is none such.
std::string_view TagName(std::string_view line) {
    const std::size_t colon = line.find(':');
    if (!line.starts_with('[') || colon == std::string_view::npos ||
        line.find(']') == std::string_view::npos)
        return {};
    const std::string_view name = line.substr(1, colon - 1);
    const bool letters = std::all_of(name.begin(), name.end(), [](char c) {
        return (AsciiLower(c) >= 'a' && AsciiLower(c) <= 'z') || c == '#' || c == '_';
    });
    return letters ? name : std::string_view();
}

struct Line {
    double time;
    std::string_view words;
};

class LrcReader {
  public:
    LrcReader(std::string_view text, const Progress& progress)
        : m_lines(text)
        , m_meter(progress, text.size()) {}

    ReadOutcome Read(SUBTITLES& titles, std::string& header) {
        ReadOutcome outcome = ReadOutcome::Complete;
        while (!m_lines.AtEnd() && outcome == ReadOutcome::Complete) {
            outcome = m_meter.Continue(m_lines.Position()) ? TakeLine(m_lines.Next(), header)
                                                           : ReadOutcome::Cancelled;
        }
        AddTitles(titles);
        return outcome;
    }

  private:
    ReadOutcome TakeLine(std::string_view line, std::string& header) {
        std::array<double, 64> times{};
        std::size_t count = 0;
        std::string_view rest = Trim(line).empty() ? std::string_view() : line;
        while (const auto time = TakeTime(rest)) {
            // A chorus bears the times of all its turns.
            if (count < times.size())
                times[count++] = *time;
        }
        m_turns = m_turns || count > 1;
        for (std::size_t i = 0; i < count; ++i)
            m_found.push_back({times[i] - m_offset, rest});
        if (count > 0 || rest.empty())
            return ReadOutcome::Complete;
        const std::string_view name = TagName(rest);
        if (name.empty())
            return ReadOutcome::Corrupt;
        // Its times are taken into account here, and must not be so once more.
        if (IsWord(name, "offset"))
            m_offset = LeadingNumber(Trim(rest.substr(name.size() + 2))) / 1000;
        else
            header.append(rest).append(LineEnd);
        return ReadOutcome::Complete;
    }

    void AddTitles(SUBTITLES& titles) const {
        std::vector<Line> lines = m_found;
        if (m_turns)
            std::stable_sort(lines.begin(), lines.end(),
                             [](const Line& a, const Line& b) { return a.time < b.time; });
        titles.Reserve(static_cast<std::int32_t>(lines.size()));
        for (std::size_t i = 0; i < lines.size(); ++i) {
            if (lines[i].words.empty())
                continue;
            const double end =
                i + 1 < lines.size() ? lines[i + 1].time : lines[i].time + LastTitleLength;
            titles.Add(lines[i].time, end, std::string(lines[i].words),
                       InnerTimesOf(lines[i], end));
        }
    }

    /// The times to which those between the words belong.
    static TitleExtra InnerTimesOf(const Line& line, double end) {
        if (!HasInnerTimes(line.words))
            return {};
        std::string bytes;
        PutNumber(bytes, line.time);
        PutNumber(bytes, end);
        return TitleExtra(std::move(bytes));
    }

    LineReader m_lines;
    ProgressMeter m_meter;
    std::vector<Line> m_found;
    double m_offset = 0;
    /// A line stands for several titles.
    bool m_turns = false;
};

ReadOutcome Read(std::string_view text, double /*frameRate*/, SUBTITLES& titles, FileStyle& style,
                 const Progress& progress) {
    style.format = Keeps;
    return LrcReader(text, progress).Read(titles, style.kept);
}

/// Minutes, however many, with two digits at least.
void AppendTag(std::string& out, double time) {
    const std::int32_t hundredths = RoundToLong(time * Hundredths);
    const std::int32_t minutes = std::abs(hundredths / 6000);
    out += hundredths < 0 ? "[-" : "[";
    if (minutes < 10)
        out += '0';
    AppendNumber(out, minutes);
    std::string rest;
    AppendClock(rest, std::abs(hundredths % 6000) / Hundredths,
                {.hourDigits = 2, .shortened = true, .decimals = 2, .point = '.'});
    out.append(rest, 2);
    out += ']';
}

std::string OneLine(std::string_view text) {
    std::string line;
    LineReader lines(text);
    for (bool first = true; !lines.AtEnd(); first = false) {
        if (!first)
            line += ' ';
        line += lines.Next();
    }
    return line;
}

/// As a line holds the text of another format.
std::string AsLine(std::string_view text) {
    std::string words;
    StripTags(text, words);
    return OneLine(words);
}

/// A line holds no line ends, and one without words would be no title.
void AppendWords(const SUBTITLES& titles, std::int32_t index, bool kept, std::string& out) {
    std::string words;
    StripTags(titles.Text(index), words);
    const std::string_view extra = titles.Extra(index).Bytes();
    if (kept && !extra.empty()) {
        PackedReader reader(extra);
        const auto start = reader.Number<double>();
        const auto end = reader.Number<double>();
        words = MovedInnerTimes(words, start, end, titles.StartTime(index), titles.EndTime(index));
    }
    const std::string line = OneLine(words);
    std::string_view rest = line;
    if (line.empty() || TakeTime(rest))
        out += ' ';
    out.append(line).append(LineEnd);
}

void Write(const SUBTITLES& titles, double /*frameRate*/, const FileStyle& style,
           std::string& out) {
    constexpr std::size_t BesideEach = 28;
    const bool kept = style.format == Keeps;
    if (kept)
        out += style.kept;
    ReserveFor(titles, BesideEach, out);
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        AppendTag(out, titles.StartTime(i));
        AppendWords(titles, i, kept, out);
        if (i == titles.Count() || titles.EndTime(i) < titles.StartTime(i + 1)) {
            AppendTag(out, titles.EndTime(i));
            out += LineEnd;
        }
    }
}

bool IsLrc(const TextBeginning& beginning) {
    std::string_view line = beginning.firstLine;
    if (TakeTime(line))
        return true;
    constexpr std::array<std::string_view, 10> Names{"ti", "ar", "al", "au",     "by",
                                                     "la", "re", "ve", "length", "offset"};
    const std::string_view name = TagName(line);
    return std::any_of(Names.begin(), Names.end(),
                       [&](std::string_view known) { return IsWord(name, known); });
}

} // namespace

Format LrcFormat() {
    return {.name = "LRC",
            .extensions = {".lrc"},
            .description = "LRC files",
            .mimeType = "",
            .corruptMessage = "File is corrupt or not in LRC format.",
            .unicode = true,
            .recognise = IsLrc,
            .read = Read,
            .write = Write,
            .losses = {.grain = 1 / Hundredths, .overlaps = true},
            .keeps = Keeps,
            .keptParts = "times within the words",
            .plainText = WebVttPlainText,
            .adoptedText = AsLine};
}

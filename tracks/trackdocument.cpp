#include "tracks/trackdocument.h"

#include "base/ascii.h"
#include "base/codepages.h"
#include "base/utf8.h"
#include "formats/clocktime.h"
#include "formats/linereader.h"
#include "formats/reading.h"
#include "formats/webvtt.h"
#include "tracks/movtext.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>

namespace {

constexpr std::string_view LineEnd = "\r\n";
/// In seconds.
constexpr double LongestUntold = 3;

using Packets = std::vector<TextPacket>;
using Maker = void (*)(const TrackPackets& track, SUBTITLES& titles, FileStyle& style);

/// The lines of a text, joined by CR LF; those that are empty go.
std::string FilledLines(std::string_view text) {
    std::string filled;
    LineReader lines(text);
    while (!lines.AtEnd()) {
        const std::string_view line = lines.Next();
        if (Trim(line).empty())
            continue;
        if (!filled.empty())
            filled += LineEnd;
        filled += line;
    }
    return filled;
}

void PlainTitles(const TrackPackets& track, SUBTITLES& titles, FileStyle& /*style*/) {
    for (const TextPacket& packet : track.packets) {
        std::string text = FilledLines(packet.payload);
        if (!text.empty())
            titles.Add(packet.start, packet.end, std::move(text));
    }
}

void MovTitles(const TrackPackets& track, SUBTITLES& titles, FileStyle& /*style*/) {
    for (const TextPacket& packet : track.packets) {
        std::string text = FilledLines(MovText(packet.payload));
        if (!text.empty())
            titles.Add(packet.start, packet.end, std::move(text));
    }
}

void Read(const Format& format, std::string_view file, SUBTITLES& titles, FileStyle& style) {
    constexpr double AnyFrameRate = 25;
    format.read(file, AnyFrameRate, titles, style, {});
}

// --- SubStation Alpha

/// ReadOrder, Layer, Style, Name, MarginL, MarginR, MarginV, Effect, Text.
struct Dialogue {
    std::array<std::string_view, 9> fields;
    double start = 0;
    double end = 0;

    std::int32_t Order() const {
        std::int32_t order = 0;
        std::from_chars(fields[0].data(), fields[0].data() + fields[0].size(), order);
        return order;
    }
};

std::optional<Dialogue> DialogueOf(const TextPacket& packet) {
    Dialogue dialogue;
    dialogue.start = packet.start;
    dialogue.end = packet.end;
    std::string_view rest = packet.payload;
    for (std::size_t i = 0; i + 1 < dialogue.fields.size(); ++i) {
        const std::size_t comma = rest.find(',');
        if (comma == std::string_view::npos ||
            rest.substr(0, comma).find_first_of("\r\n") != std::string_view::npos)
            return std::nullopt;
        dialogue.fields[i] = Trim(rest.substr(0, comma));
        rest.remove_prefix(comma + 1);
    }
    dialogue.fields.back() = rest;
    return dialogue;
}

constexpr std::string_view EventsFormat =
    "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text";

/// Where the titles belong in the head, and how their fields follow one another.
struct Events {
    std::size_t end = 0;
    std::vector<std::string> fields;
};

Events EventsOf(std::string_view head) {
    Events events;
    bool within = false;
    LineReader lines(head);
    while (!lines.AtEnd()) {
        const std::string_view line = Trim(lines.Next());
        if (line.starts_with('[')) {
            within = StartsWithWord(line, "[events]");
            continue;
        }
        if (!within || line.empty())
            continue;
        events.end = lines.Position();
        if (!StartsWithWord(line, "format:"))
            continue;
        events.fields.clear();
        std::string_view rest = line.substr(line.find(':') + 1);
        while (!rest.empty()) {
            const std::size_t comma = std::min(rest.find(','), rest.size());
            events.fields.push_back(AsciiLower(Trim(rest.substr(0, comma))));
            rest.remove_prefix(std::min(comma + 1, rest.size()));
        }
    }
    return events;
}

void AppendField(std::string& out, const std::string& field, const Dialogue& dialogue) {
    static constexpr std::array<std::pair<std::string_view, std::size_t>, 8> Fields{
        {{"layer", 1},
         {"style", 2},
         {"name", 3},
         {"actor", 3},
         {"marginl", 4},
         {"marginr", 5},
         {"marginv", 6},
         {"effect", 7}}};
    constexpr ClockForm Centiseconds{
        .hourDigits = 1, .shortened = false, .decimals = 2, .point = '.'};
    if (field == "start" || field == "end")
        return AppendClock(out, field == "start" ? dialogue.start : dialogue.end, Centiseconds);
    if (field == "marked") {
        out += dialogue.fields[1].starts_with("Marked") ? dialogue.fields[1] : "Marked=0";
        return;
    }
    for (const auto& [name, place] : Fields)
        if (field == name)
            out += dialogue.fields[place];
}

/// A line end within a title would end its line.
void AppendText(std::string& out, std::string_view text) {
    while (!text.empty() && (text.back() == '\r' || text.back() == '\n' || text.back() == '\0'))
        text.remove_suffix(1);
    LineReader lines(text);
    for (bool first = true; !lines.AtEnd(); first = false)
        out.append(first ? "" : "\\N").append(lines.Next());
}

void ScriptTitles(const TrackPackets& track, SUBTITLES& titles, FileStyle& style) {
    std::string_view head = track.head;
    while (!head.empty() && (head.back() == '\0' || head.back() == '\n' || head.back() == '\r'))
        head.remove_suffix(1);
    const bool unix =
        head.find('\n') != std::string_view::npos && head.find(LineEnd) == std::string_view::npos;
    const std::string_view lineEnd = unix ? "\n" : LineEnd;
    std::string file(head);
    file += lineEnd;
    Events events = EventsOf(file);
    if (events.fields.empty()) {
        file.append("[Events]").append(lineEnd).append(EventsFormat).append(lineEnd);
        events = EventsOf(file);
    }
    std::vector<Dialogue> dialogues;
    for (const TextPacket& packet : track.packets)
        if (const auto dialogue = DialogueOf(packet))
            dialogues.push_back(*dialogue);
    // As the script had them; the film has them by their times.
    std::stable_sort(dialogues.begin(), dialogues.end(),
                     [](const Dialogue& a, const Dialogue& b) { return a.Order() < b.Order(); });
    std::string lines;
    for (const Dialogue& dialogue : dialogues) {
        lines += "Dialogue: ";
        for (const std::string& field : events.fields) {
            if (&field != &events.fields.front())
                lines += ',';
            if (field == "text")
                AppendText(lines, dialogue.fields.back());
            else
                AppendField(lines, field, dialogue);
        }
        lines += lineEnd;
    }
    file.insert(events.end, lines);
    Read(*FormatOfTrack(track.codec), file, titles, style);
}

// --- WebVTT

/// An arrow would begin another cue.
void AppendCue(std::string& out, std::string_view text) {
    constexpr std::string_view Arrow = "-->";
    for (std::size_t at = text.find(Arrow); at != std::string_view::npos; at = text.find(Arrow)) {
        out.append(text.substr(0, at)).append("--&gt;");
        text.remove_prefix(at + Arrow.size());
    }
    out += text;
}

void CueTitles(const TrackPackets& track, SUBTITLES& titles, FileStyle& style) {
    constexpr ClockForm Milliseconds;
    std::string file = track.head.starts_with("WEBVTT") ? track.head : "WEBVTT";
    while (file.ends_with('\n') || file.ends_with('\r') || file.ends_with('\0'))
        file.pop_back();
    file += LineEnd;
    for (const TextPacket& packet : track.packets) {
        const std::string text = FilledLines(
            packet.timesFromStart ? MovedInnerTimes(packet.payload, 0, packet.end - packet.start,
                                                    packet.start, packet.end)
                                  : packet.payload);
        const std::string name = FilledLines(packet.name);
        if (text.empty())
            continue;
        file += LineEnd;
        if (!name.empty() && name.find("-->") == std::string::npos &&
            name.find('\n') == std::string::npos)
            file.append(name).append(LineEnd);
        AppendClock(file, packet.start, Milliseconds);
        file += " --> ";
        AppendClock(file, packet.end, Milliseconds);
        if (const std::string settings = FilledLines(packet.settings);
            !settings.empty() && settings.find('\n') == std::string::npos)
            file.append(" ").append(settings);
        file += LineEnd;
        AppendCue(file, text);
        file += LineEnd;
    }
    Read(*FormatOfTrack(track.codec), file, titles, style);
}

// --- Timed Text

/// Each packet is a document. Its times are those of the film, or count from its own begin.
void DocumentTitles(const TrackPackets& track, SUBTITLES& titles, FileStyle& style) {
    const Format& format = *FormatOfTrack(track.codec);
    if (track.packets.size() == 1 && track.packets.front().start < 0.0005)
        return Read(format, track.packets.front().payload, titles, style);
    for (const TextPacket& packet : track.packets) {
        constexpr double Slack = 0.1;
        SUBTITLES own;
        FileStyle ownStyle;
        Read(format, packet.payload, own, ownStyle);
        const bool fromBegin = own.Count() > 0 && own.StartTime(1) < packet.start - Slack;
        const double shift = fromBegin ? packet.start : 0;
        for (std::int32_t i = 1; i <= own.Count(); ++i)
            titles.Add(own.StartTime(i) + shift, own.EndTime(i) + shift, own.Text(i));
    }
}

struct Kind {
    std::string_view codec;
    const char* name;
    /// A file name of the format; null where nothing reads the titles.
    const char* format;
    Maker make;
};

constexpr std::array<Kind, 13> Kinds{{{"subrip", "SubRip", ".srt", PlainTitles},
                                      {"text", "plain text", ".srt", PlainTitles},
                                      {"mov_text", "MP4 text", ".srt", MovTitles},
                                      {"ass", "SubStation Alpha", ".ass", ScriptTitles},
                                      {"ssa", "SubStation Alpha", ".ssa", ScriptTitles},
                                      {"webvtt", "WebVTT", ".vtt", CueTitles},
                                      {"ttml", "Timed Text", ".ttml", DocumentTitles},
                                      {"hdmv_pgs_subtitle", "PGS pictures", nullptr, nullptr},
                                      {"dvd_subtitle", "VobSub pictures", nullptr, nullptr},
                                      {"dvb_subtitle", "DVB pictures", nullptr, nullptr},
                                      {"xsub", "XSUB pictures", nullptr, nullptr},
                                      {"dvb_teletext", "Teletext", nullptr, nullptr},
                                      {"eia_608", "closed captions", nullptr, nullptr}}};

const Kind* KindOf(std::string_view codec) {
    const auto* const found = std::find_if(Kinds.begin(), Kinds.end(),
                                           [&](const Kind& kind) { return kind.codec == codec; });
    return found == Kinds.end() ? nullptr : found;
}

/// All have an end, none lies before the film, all are UTF-8.
TrackPackets Prepared(const TrackPackets& track, const std::string& codePage) {
    TrackPackets prepared = track;
    const CodePage page(codePage);
    Packets& packets = prepared.packets;
    const bool binary = track.codec == "mov_text";
    for (std::size_t i = 0; i < packets.size(); ++i) {
        TextPacket& packet = packets[i];
        if (packet.end <= packet.start) {
            const bool next = i + 1 < packets.size() && packets[i + 1].start > packet.start;
            packet.end = packet.start + LongestUntold;
            packet.end = next ? std::min(packet.end, packets[i + 1].start) : packet.end;
        }
        packet.start = std::max(packet.start, 0.0);
        packet.end = std::max(packet.end, 0.0);
        if (!binary && !IsValidUtf8(packet.payload))
            packet.payload = page.ToUtf8(packet.payload);
    }
    return prepared;
}

} // namespace

const Format* FormatOfTrack(std::string_view codec) {
    const Kind* kind = KindOf(codec);
    return kind == nullptr || kind->format == nullptr ? nullptr : FormatByName(kind->format);
}

std::string TrackKind(std::string_view codec) {
    const Kind* kind = KindOf(codec);
    return kind == nullptr ? "unknown (" + std::string(codec) + ")" : kind->name;
}

std::int32_t TitlesIn(std::string_view codec, const TextPacket& packet) {
    if (codec == "ttml") {
        SUBTITLES titles;
        FileStyle style;
        Read(*FormatOfTrack(codec), packet.payload, titles, style);
        return titles.Count();
    }
    if (codec == "ass" || codec == "ssa")
        return DialogueOf(packet) ? 1 : 0;
    return FilledLines(codec == "mov_text" ? MovText(packet.payload) : packet.payload).empty() ? 0
                                                                                               : 1;
}

void TitlesOfTrack(const TrackPackets& track, const std::string& codePage, SUBTITLES& titles,
                   FileStyle& style) {
    const Kind* kind = KindOf(track.codec);
    if (kind != nullptr && kind->make != nullptr)
        kind->make(Prepared(track, codePage), titles, style);
}

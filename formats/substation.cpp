#include "formats/substation.h"

#include "base/ascii.h"
#include "formats/reading.h"
#include "formats/substationscanner.h"
#include "formats/writing.h"

#include <map>

namespace {

constexpr const char* Keeps = "SubStation Alpha";

constexpr std::string_view AdvancedHeader =
    "[Script Info]\r\n"
    "ScriptType: v4.00+\r\n"
    "WrapStyle: 0\r\n"
    "ScaledBorderAndShadow: yes\r\n"
    "PlayResX: 384\r\n"
    "PlayResY: 288\r\n"
    "\r\n"
    "[V4+ Styles]\r\n"
    "Format: Name, Fontname, Fontsize, PrimaryColour, SecondaryColour, OutlineColour, BackColour, "
    "Bold, Italic, Underline, StrikeOut, ScaleX, ScaleY, Spacing, Angle, BorderStyle, Outline, "
    "Shadow, Alignment, MarginL, MarginR, MarginV, Encoding\r\n"
    "Style: Default,Arial,16,&H00FFFFFF,&H000000FF,&H00000000,&H00000000,0,0,0,0,100,100,0,0,1,1,"
    "0,2,10,10,10,1\r\n"
    "\r\n"
    "[Events]\r\n"
    "Format: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\r\n";

constexpr std::string_view SimpleHeader =
    "[Script Info]\r\n"
    "ScriptType: v4.00\r\n"
    "PlayResX: 384\r\n"
    "PlayResY: 288\r\n"
    "\r\n"
    "[V4 Styles]\r\n"
    "Format: Name, Fontname, Fontsize, PrimaryColour, SecondaryColour, TertiaryColour, BackColour, "
    "Bold, Italic, BorderStyle, Outline, Shadow, Alignment, MarginL, MarginR, MarginV, AlphaLevel, "
    "Encoding\r\n"
    "Style: Default,Arial,16,16777215,255,0,0,0,0,1,1,0,2,10,10,10,0,1\r\n"
    "\r\n"
    "[Events]\r\n"
    "Format: Marked, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\r\n";

constexpr ClockForm Centiseconds{.hourDigits = 1, .shortened = false, .decimals = 2, .point = '.'};

FramedFile NewFile(std::string_view header, const char* firstField) {
    FramedFile file;
    file.header = header;
    file.footer = LineEnd;
    file.before = std::string(LineEnd) + "Dialogue: " + firstField + ",";
    file.between = ",";
    file.after = ",Default,,0,0,0,,";
    file.clock = Centiseconds;
    return file;
}

std::string_view LeadingLineEnd(std::string_view text) {
    const std::size_t at = text.find_first_of("\r\n");
    if (at == std::string_view::npos)
        return LineEnd;
    return text.substr(at, text.substr(at).starts_with(LineEnd) ? 2 : 1);
}

/// How often each piece has come, and which came most often.
class Census {
  public:
    void Count(std::string piece) {
        const int count = ++m_counts[piece];
        if (count <= m_most)
            return;
        m_most = count;
        m_usual = std::move(piece);
    }
    const std::string& UsualOr(const std::string& other) const {
        return m_most == 0 ? other : m_usual;
    }

  private:
    std::map<std::string, int> m_counts;
    std::string m_usual;
    int m_most = 0;
};

/// What most of the first titles have in common, a new one gets.
FramedFile UsualPieces(std::string_view text) {
    constexpr int Sample = 200;
    const std::string lineEnd(LeadingLineEnd(text));
    FramedFile file;
    file.footer = lineEnd;
    file.clock = Centiseconds;
    Census befores;
    Census afters;
    DialogueScanner scanner(text);
    DialogueScanner::Dialogue dialogue;
    for (int i = 0; i < Sample && scanner.Next(dialogue); ++i) {
        if (i == 0 && dialogue.start.form.decimals >= Centiseconds.decimals)
            file.clock = dialogue.start.form;
        const std::string before = (i == 0 ? lineEnd : "") + std::string(dialogue.frame.before);
        // Not with comments in between.
        if (before.starts_with(lineEnd) &&
            before.find_first_of("\r\n", lineEnd.size()) == std::string::npos)
            befores.Count(before);
        afters.Count(std::string(dialogue.frame.after));
    }
    const DialogueScanner::PlainFields& plain = scanner.Plain();
    file.before = befores.UsualOr(lineEnd + "Dialogue: " + plain.before);
    file.between = plain.between;
    file.after = afters.UsualOr(plain.after);
    return file;
}

FrameReader::Reading Understood(const DialogueScanner::Dialogue& dialogue) {
    const std::string_view raw = dialogue.frame.text;
    FrameReader::Reading reading;
    reading.start = dialogue.start;
    reading.end = dialogue.end;
    reading.text = SubStationToText(raw);
    if (raw.find('<') != std::string_view::npos) {
        std::string again;
        TextToSubStation(reading.text, again);
        reading.plainText = again == raw;
    }
    return reading;
}

void WriteFrames(const FramedFile& file, bool kept, const SUBTITLES& titles, std::string& out) {
    ReserveFor(titles, file.before.size() + file.after.size() + 24, out);
    FrameWriter writer(file, out);
    writer.Header();
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        const OwnPieces own = kept ? PiecesOf(titles.Extra(i)) : OwnPieces();
        writer.Title(own, titles.StartTime(i), titles.EndTime(i));
        const std::string& text = titles.Text(i);
        if (!kept)
            ForeignTextToSubStation(text, out);
        else if (own.text.data() != nullptr && SubStationToText(own.text) == text)
            out += own.text;
        else
            TextToSubStation(text, out);
    }
    writer.Footer();
}

void Write(const SUBTITLES& titles, const FileStyle& style, const FramedFile& fresh,
           std::string& out) {
    const std::optional<FramedFile> kept = KeptFrames(style, Keeps);
    WriteFrames(kept ? *kept : fresh, kept.has_value(), titles, out);
}

void WriteAdvanced(const SUBTITLES& titles, double /*frameRate*/, const FileStyle& style,
                   std::string& out) {
    Write(titles, style, NewFile(AdvancedHeader, "0"), out);
}

void WriteSimple(const SUBTITLES& titles, double /*frameRate*/, const FileStyle& style,
                 std::string& out) {
    Write(titles, style, NewFile(SimpleHeader, "Marked=0"), out);
}

bool IsScript(const TextBeginning& beginning) {
    return StartsWithWord(beginning.firstLine, "[script info]");
}

Format Row() {
    return {.name = "",
            .extensions = {},
            .description = "",
            .mimeType = "text/x-ssa",
            .corruptMessage = "",
            .unicode = true,
            .recognise = IsScript,
            .read = ReadSubStation,
            .write = nullptr,
            .losses = {.grain = 0.01},
            .exact = true,
            .keeps = Keeps,
            .keptParts = "positions and styles",
            .plainText = SubStationPlainText,
            .adoptedText =
                [](std::string_view text) {
                    std::string raw;
                    ForeignTextToSubStation(text, raw);
                    return SubStationToText(raw);
                },
            .isSpecial =
                [](const TitleExtra& extra) {
                    return PiecesOf(extra).after.data() != nullptr;
                }};
}

} // namespace

ReadOutcome ReadSubStation(std::string_view text, double /*frameRate*/, SUBTITLES& titles,
                           FileStyle& style, const Progress& progress) {
    FramedFile file = UsualPieces(text);
    DialogueScanner scanner(text);
    ProgressMeter meter(progress, text.size());
    RoomMaker room(titles, text.size());
    FrameReader frames(file, titles);
    DialogueScanner::Dialogue dialogue;
    bool cancelled = false;
    bool any = false;
    while (!cancelled && scanner.Next(dialogue)) {
        any = true;
        frames.Add(dialogue.frame, Understood(dialogue));
        room.Added(scanner.Position());
        cancelled = !meter.Continue(scanner.Position());
    }
    file.empty = !any;
    file.header = any ? scanner.Header() : text;
    if (any && !cancelled)
        file.footer = scanner.Rest();
    KeepFrames(file, Keeps, style);
    if (cancelled)
        return ReadOutcome::Cancelled;
    return scanner.Faulty() ? ReadOutcome::Corrupt : ReadOutcome::Complete;
}

Format AdvancedSubStationFormat() {
    Format row = Row();
    row.name = "Advanced SubStation Alpha";
    row.extensions = {".ass"};
    row.description = "Advanced SubStation Alpha files";
    row.corruptMessage = "File is corrupt or not in Advanced SubStation Alpha format.";
    row.write = WriteAdvanced;
    return row;
}

Format SubStationFormat() {
    Format row = Row();
    row.name = "SubStation Alpha";
    row.extensions = {".ssa"};
    row.description = "SubStation Alpha files";
    row.corruptMessage = "File is corrupt or not in SubStation Alpha format.";
    row.write = WriteSimple;
    return row;
}

#include "formats/frames.h"

#include "formats/packed.h"

#include <algorithm>
#include <array>
#include <utility>

namespace {

// An extra: one byte that says which pieces follow, and these.
enum Piece : std::uint8_t {
    Before = 1,
    Start = 2,
    Between = 4,
    End = 8,
    After = 16,
    Text = 32,
    First = 64,
};

std::string_view WithoutLead(std::string_view piece) {
    return piece.substr(std::min(piece.find_first_not_of("\r\n"), piece.size()));
}

} // namespace

std::string_view FramedFile::Lead() const {
    return std::string_view(before).substr(0, before.size() - WithoutLead(before).size());
}

void KeepFrames(const FramedFile& file, const char* format, FileStyle& style) {
    style.format = format;
    style.kept.clear();
    for (const std::string* piece :
         {&file.header, &file.footer, &file.before, &file.between, &file.after})
        PutText(style.kept, *piece);
    PutNumber(style.kept, file.clock.hourDigits);
    PutNumber(style.kept, static_cast<std::uint8_t>(file.clock.shortened));
    PutNumber(style.kept, file.clock.decimals);
    PutNumber(style.kept, file.clock.point);
    PutNumber(style.kept, static_cast<std::uint8_t>(file.empty));
}

std::optional<FramedFile> KeptFrames(const FileStyle& style, const char* format) {
    if (style.format != format)
        return std::nullopt;
    PackedReader reader(style.kept);
    FramedFile file;
    for (std::string* piece :
         {&file.header, &file.footer, &file.before, &file.between, &file.after})
        *piece = reader.Text();
    file.clock.hourDigits = reader.Number<std::uint8_t>();
    file.clock.shortened = reader.Number<std::uint8_t>() != 0;
    file.clock.decimals = reader.Below<std::uint8_t>(4);
    file.clock.point = reader.Number<char>();
    file.empty = reader.Number<std::uint8_t>() != 0;
    return reader.Failed() ? std::nullopt : std::optional(std::move(file));
}

OwnPieces PiecesOf(const TitleExtra& extra) {
    OwnPieces own;
    if (extra.Empty())
        return own;
    PackedReader reader(extra.Bytes());
    const auto pieces = reader.Number<std::uint8_t>();
    const std::array<std::pair<Piece, std::string_view*>, 6> all{{{Before, &own.before},
                                                                  {Start, &own.start},
                                                                  {Between, &own.between},
                                                                  {End, &own.end},
                                                                  {After, &own.after},
                                                                  {Text, &own.text}}};
    for (const auto& [piece, view] : all) {
        if ((pieces & piece) != 0)
            *view = reader.View();
    }
    own.first = (pieces & First) != 0;
    return own;
}

void FrameReader::Add(const TitleFrame& frame, Reading reading) {
    std::uint8_t pieces = 0;
    m_packed.assign(1, '\0');
    const auto put = [&](Piece piece, std::string_view text) {
        pieces = static_cast<std::uint8_t>(pieces | piece);
        PutText(m_packed, text);
    };
    const bool first = std::exchange(m_first, false);
    const std::string_view usual =
        std::string_view(m_file.before).substr(first ? m_file.Lead().size() : 0);
    if (frame.before != usual)
        put(Before, frame.before);
    if (reading.keepTimes || !WrittenLike(reading.start, m_file.clock))
        put(Start, frame.start);
    if (frame.between != m_file.between)
        put(Between, frame.between);
    if (reading.keepTimes || !WrittenLike(reading.end, m_file.clock))
        put(End, frame.end);
    if (frame.after != m_file.after)
        put(After, frame.after);
    if (!reading.plainText)
        put(Text, frame.text);
    if (pieces == 0)
        return m_titles.Add(reading.start.seconds, reading.end.seconds, std::move(reading.text));
    if (first)
        pieces = static_cast<std::uint8_t>(pieces | First);
    m_packed.front() = static_cast<char>(pieces);
    // Titles that are alike often stand together.
    if (m_last.Bytes() != m_packed)
        m_last = TitleExtra(m_packed);
    m_titles.Add(reading.start.seconds, reading.end.seconds, std::move(reading.text), m_last);
}

void FrameWriter::Title(const OwnPieces& own, double start, double end) {
    const std::string_view before = Usual(own.before, m_file.before);
    if (!m_any && m_file.empty && !m_file.header.ends_with(m_file.Lead()))
        m_out += m_file.Lead();
    if (!m_any)
        m_out += WithoutLead(before);
    else if (own.first && own.before.data() != nullptr)
        m_out.append(m_file.Lead()).append(before);
    else
        m_out += before;
    m_any = true;
    Time(start, own.start);
    m_out += Usual(own.between, m_file.between);
    Time(end, own.end);
    m_out += Usual(own.after, m_file.after);
}

void FrameWriter::Time(double seconds, std::string_view own) {
    const std::optional<ClockTime> written = own.data() == nullptr ? std::nullopt : ParseClock(own);
    if (!written)
        return AppendClock(m_out, seconds, m_file.clock);
    ClockForm finest = written->form;
    finest.decimals = std::max(finest.decimals, m_file.clock.decimals);
    if (SameClock(written->seconds, seconds, finest))
        m_out += own;
    else
        AppendClock(m_out, seconds, ShortestForm(seconds, finest, written->form.decimals));
}

void FrameWriter::Footer() {
    m_out += m_any ? std::string_view(m_file.footer) : WithoutLead(m_file.footer);
}

#include "formats/recoverylayout.h"

#include "formats/sami.h"

#include <cstring>

namespace {

constexpr std::uint32_t MostUndoRecords = 100;

/// In the place of an encoding: a code page, whose name follows.
constexpr std::uint8_t NamedPage = 4;

/// Titles in a row that carry the same write it once: this stands for that of the one
/// before.
constexpr std::uint32_t SameAsBefore = 0xFFFFFFFF;

void ReadKeptSami(PackedReader& reader, FileStyle& style) {
    const bool keep = reader.Below<std::uint8_t>(2) != 0;
    SamiParts parts;
    parts.header = reader.Text();
    parts.paragraphClass = reader.Text();
    parts.footer = reader.Text();
    if (keep)
        KeepSami(parts, style);
}

} // namespace

namespace RecoveryLayout {

void PutStyle(std::string& out, const FileStyle& style) {
    const bool named = style.encoding == FileStyle::Encoding::CodePage && !style.codePage.empty();
    PutNumber(out, named ? NamedPage : static_cast<std::uint8_t>(style.encoding));
    if (named)
        PutText(out, style.codePage);
    PutNumber(out, static_cast<std::uint8_t>(style.byteOrderMark));
    PutText(out, style.format);
    PutText(out, style.kept);
}

FileStyle ReadStyle(PackedReader& reader, std::uint32_t layout) {
    FileStyle style;
    const auto encoding = reader.Below<std::uint8_t>(NamedPage + 1);
    style.encoding = encoding == NamedPage ? FileStyle::Encoding::CodePage
                                           : static_cast<FileStyle::Encoding>(encoding);
    if (encoding == NamedPage)
        style.codePage = reader.Text();
    style.byteOrderMark = reader.Below<std::uint8_t>(2) != 0;
    if (layout == First) {
        ReadKeptSami(reader, style);
    } else {
        style.format = reader.Text();
        style.kept = reader.Text();
    }
    return style;
}

void PutNotes(std::string& out, const RecoveryNotes& notes) {
    PutText(out, notes.mediaFile);
    PutText(out, notes.subtitleFile);
    PutNumber(out, notes.frameRate);
    PutStyle(out, notes.style);
}

RecoveryNotes ReadNotes(PackedReader& reader, std::uint32_t layout) {
    RecoveryNotes notes;
    notes.mediaFile = reader.Text();
    notes.subtitleFile = reader.Text();
    notes.frameRate = reader.Number<double>();
    notes.style = ReadStyle(reader, layout);
    return notes;
}

void PutDraft(std::string& out, const Draft& draft) {
    PutNumber(out, draft.title);
    for (const std::string* text : {&draft.original, &draft.text, &draft.start, &draft.duration})
        PutText(out, *text);
}

Draft ReadDraft(PackedReader& reader) {
    Draft draft;
    draft.title = reader.Number<std::int32_t>();
    for (std::string* text : {&draft.original, &draft.text, &draft.start, &draft.duration})
        *text = reader.Text();
    return draft;
}

void PutHistory(std::string& out, const UndoHistory& history) {
    PutNumber(out, static_cast<std::uint32_t>(history.Count()));
    for (auto age = static_cast<std::int16_t>(history.Count() - 1); age >= 0; --age) {
        const UndoHistory::Record& record = history.At(age);
        PutNumber(out, static_cast<std::uint8_t>(record.kind));
        PutNumber(out, record.title);
        PutNumber(out, record.start);
        PutNumber(out, record.end);
        PutText(out, record.text);
        PutText(out, record.extra.Bytes());
    }
}

std::vector<UndoHistory::Record> ReadHistory(PackedReader& reader, std::uint32_t layout) {
    std::vector<UndoHistory::Record> records(reader.Below<std::uint32_t>(MostUndoRecords + 1));
    for (UndoHistory::Record& record : records) {
        record.kind = static_cast<UndoHistory::Kind>(reader.Below<std::uint8_t>(3));
        record.title = reader.Number<std::int32_t>();
        record.start = reader.Number<double>();
        record.end = reader.Number<double>();
        record.text = reader.Text();
        if (layout > First)
            record.extra = TitleExtra(reader.Text());
    }
    return records;
}

// Only of titles that have any, each led by its title's number; 0 ends them.
void PutExtras(std::string& out, const SUBTITLES& titles) {
    const TitleExtra* before = nullptr;
    for (std::int32_t i = 1; titles.HasExtras() && i <= titles.Count(); ++i) {
        const TitleExtra& extra = titles.Extra(i);
        if (extra.Empty())
            continue;
        PutNumber(out, i);
        if (before != nullptr && *before == extra)
            PutNumber(out, SameAsBefore);
        else
            PutText(out, extra.Bytes());
        before = &extra;
    }
    PutNumber(out, std::int32_t{0});
}

std::vector<NumberedExtra> ReadExtras(PackedReader& reader, std::uint32_t layout) {
    std::vector<NumberedExtra> extras;
    if (layout == First)
        return extras;
    while (const auto index = reader.Number<std::int32_t>()) {
        PackedReader ahead = reader;
        if (!extras.empty() && ahead.Number<std::uint32_t>() == SameAsBefore) {
            reader = ahead;
            extras.emplace_back(index, extras.back().second);
        } else {
            extras.emplace_back(index, TitleExtra(reader.Text()));
        }
    }
    return extras;
}

void PutTitle(std::string& out, const SUBTITLES& titles, std::int32_t index) {
    const std::string& text = titles.Text(index);
    const double start = titles.StartTime(index);
    const double end = titles.EndTime(index);
    const auto length = static_cast<std::uint32_t>(text.size());
    char lead[LeastTitleSize];
    std::memcpy(lead, &start, 8);
    std::memcpy(lead + 8, &end, 8);
    std::memcpy(lead + 16, &length, 4);
    out.append(lead, sizeof lead);
    out.append(text);
}

void ReadTitles(PackedReader& reader, std::uint32_t count, SUBTITLES& titles) {
    // No more room is made than the bytes can fill.
    if (count > reader.Left() / LeastTitleSize)
        return reader.Fail();
    for (std::uint32_t i = 0; i < count && !reader.Failed(); ++i) {
        const auto start = reader.Number<double>();
        const auto end = reader.Number<double>();
        std::string text = reader.Text();
        if (!reader.Failed())
            titles.Add(start, end, std::move(text));
    }
}

} // namespace RecoveryLayout

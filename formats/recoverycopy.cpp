#include "formats/recoverycopy.h"

#include "base/checksum.h"
#include "base/largeblocks.h"
#include "formats/packed.h"
#include "formats/sami.h"

#include <cstring>
#include <utility>
#include <vector>

// A copy: magic, version, flags (1: declined), time, length of the body, checksum of
// the body and of all before it. The body: notes, undo history, what some titles carry
// beside times and text, and the titles.

namespace {

constexpr std::string_view Magic = "QuelmarR";
constexpr std::uint32_t Version = 2;
/// Knew of no formats that keep things of their own but SAMI. Still read.
constexpr std::uint32_t FirstVersion = 1;
constexpr std::uint32_t DeclinedFlag = 1;
constexpr std::size_t ChecksumAt = 8 + 4 + 4 + 8 + 8;
constexpr std::size_t HeaderSize = ChecksumAt + 8;
constexpr std::uint32_t MostUndoRecords = 100;

void PutNotes(std::string& out, const RecoveryNotes& notes) {
    PutText(out, notes.mediaFile);
    PutText(out, notes.subtitleFile);
    PutNumber(out, notes.frameRate);
    PutNumber(out, static_cast<std::uint8_t>(notes.style.encoding));
    PutNumber(out, static_cast<std::uint8_t>(notes.style.byteOrderMark));
    PutText(out, notes.style.format);
    PutText(out, notes.style.kept);
}

void ReadKeptSami(PackedReader& cursor, FileStyle& style) {
    const bool keep = cursor.Below<std::uint8_t>(2) != 0;
    SamiParts parts;
    parts.header = cursor.Text();
    parts.paragraphClass = cursor.Text();
    parts.footer = cursor.Text();
    if (keep)
        KeepSami(parts, style);
}

RecoveryNotes ReadNotes(PackedReader& cursor, std::uint32_t version) {
    RecoveryNotes notes;
    notes.mediaFile = cursor.Text();
    notes.subtitleFile = cursor.Text();
    notes.frameRate = cursor.Number<double>();
    notes.style.encoding = static_cast<FileStyle::Encoding>(cursor.Below<std::uint8_t>(4));
    notes.style.byteOrderMark = cursor.Below<std::uint8_t>(2) != 0;
    if (version == FirstVersion) {
        ReadKeptSami(cursor, notes.style);
    } else {
        notes.style.format = cursor.Text();
        notes.style.kept = cursor.Text();
    }
    return notes;
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

std::vector<UndoHistory::Record> ReadHistory(PackedReader& cursor, std::uint32_t version) {
    std::vector<UndoHistory::Record> records(cursor.Below<std::uint32_t>(MostUndoRecords + 1));
    for (UndoHistory::Record& record : records) {
        record.kind = static_cast<UndoHistory::Kind>(cursor.Below<std::uint8_t>(3));
        record.title = cursor.Number<std::int32_t>();
        record.start = cursor.Number<double>();
        record.end = cursor.Number<double>();
        record.text = cursor.Text();
        if (version > FirstVersion)
            record.extra = TitleExtra(cursor.Text());
    }
    return records;
}

/// Only of titles that have any, each led by its title's number; 0 ends them. Titles in
/// a row that share one write it once: 0xFFFFFFFF stands for that of the one before.
constexpr std::uint32_t SameAsBefore = 0xFFFFFFFF;

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

using NumberedExtra = std::pair<std::int32_t, TitleExtra>;

std::vector<NumberedExtra> ReadExtras(PackedReader& cursor, std::uint32_t version) {
    std::vector<NumberedExtra> extras;
    if (version == FirstVersion)
        return extras;
    while (const auto index = cursor.Number<std::int32_t>()) {
        PackedReader ahead = cursor;
        if (!extras.empty() && ahead.Number<std::uint32_t>() == SameAsBefore) {
            cursor = ahead;
            extras.emplace_back(index, extras.back().second);
        } else {
            extras.emplace_back(index, TitleExtra(cursor.Text()));
        }
    }
    return extras;
}

constexpr std::size_t LeastTitleSize = 8 + 8 + 4;

void PutTitles(std::string& out, const SUBTITLES& titles) {
    PutNumber(out, static_cast<std::uint32_t>(titles.Count()));
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        const std::string& text = titles.Text(i);
        const double start = titles.StartTime(i);
        const double end = titles.EndTime(i);
        const auto length = static_cast<std::uint32_t>(text.size());
        char lead[LeastTitleSize];
        std::memcpy(lead, &start, 8);
        std::memcpy(lead + 8, &end, 8);
        std::memcpy(lead + 16, &length, 4);
        out.append(lead, sizeof lead);
        out.append(text);
    }
}

void ReadTitles(PackedReader& cursor, SUBTITLES& titles) {
    const auto count = cursor.Number<std::uint32_t>();
    // No more room is made than the bytes can fill.
    if (count > cursor.Left() / LeastTitleSize)
        return cursor.Fail();
    titles.Reserve(static_cast<std::int32_t>(count));
    for (std::uint32_t i = 0; i < count && !cursor.Failed(); ++i) {
        const auto start = cursor.Number<double>();
        const auto end = cursor.Number<double>();
        titles.Add(start, end, cursor.Text());
    }
}

struct Header {
    std::uint32_t version;
    RecoveryStamp stamp;
    std::string_view body;
};

std::string Seal(std::string_view body, const RecoveryStamp& stamp, std::uint32_t version) {
    std::string copy;
    copy.reserve(HeaderSize + body.size());
    copy.append(Magic);
    PutNumber(copy, version);
    PutNumber(copy, stamp.declined ? DeclinedFlag : std::uint32_t{0});
    PutNumber(copy, stamp.time);
    PutNumber(copy, static_cast<std::uint64_t>(body.size()));
    PutNumber(copy, Checksum(body, Checksum(copy)));
    copy.append(body);
    return copy;
}

std::optional<Header> Open(std::string_view copy) {
    if (copy.size() < HeaderSize || !copy.starts_with(Magic))
        return std::nullopt;
    PackedReader cursor(copy.substr(Magic.size()));
    const auto version = cursor.Number<std::uint32_t>();
    const auto flags = cursor.Number<std::uint32_t>();
    const RecoveryStamp stamp{cursor.Number<std::int64_t>(), (flags & DeclinedFlag) != 0};
    const auto length = cursor.Number<std::uint64_t>();
    const auto checksum = cursor.Number<std::uint64_t>();
    const std::string_view body = copy.substr(HeaderSize);
    if (version < FirstVersion || version > Version || length != body.size() ||
        checksum != Checksum(body, Checksum(copy.substr(0, ChecksumAt))))
        return std::nullopt;
    return Header{version, stamp, body};
}

} // namespace

RecoveryBody::RecoveryBody(const SUBTITLES& titles, const RecoveryNotes& notes) {
    PutNotes(m_bytes, notes);
    PutHistory(m_bytes, titles.History());
    PutExtras(m_bytes, titles);
    m_titlesAt = m_bytes.size();
    // The window waits for this: room is made once.
    std::size_t size = m_titlesAt + 4 + static_cast<std::size_t>(titles.Count()) * LeastTitleSize;
    for (std::int32_t i = 1; i <= titles.Count(); ++i)
        size += titles.Text(i).size();
    m_bytes.reserve(size);
    AdviseLargePages(m_bytes.data(), m_bytes.capacity());
    PutTitles(m_bytes, titles);
}

std::uint64_t RecoveryBody::TitlesFingerprint() const {
    return Checksum(std::string_view(m_bytes).substr(m_titlesAt));
}

std::string SealRecoveryCopy(const RecoveryBody& body, const RecoveryStamp& stamp) {
    return Seal(body.Bytes(), stamp, Version);
}

std::optional<std::string> RestampRecoveryCopy(std::string_view copy, const RecoveryStamp& stamp) {
    const auto header = Open(copy);
    return header ? std::optional(Seal(header->body, stamp, header->version)) : std::nullopt;
}

std::optional<RecoveredDocument> ReadRecoveryCopy(std::string_view copy) {
    const auto header = Open(copy);
    if (!header)
        return std::nullopt;
    PackedReader cursor(header->body);
    RecoveredDocument document;
    document.stamp = header->stamp;
    document.notes = ReadNotes(cursor, header->version);
    std::vector<UndoHistory::Record> history = ReadHistory(cursor, header->version);
    const std::vector<NumberedExtra> extras = ReadExtras(cursor, header->version);
    ReadTitles(cursor, document.titles);
    for (const auto& [index, extra] : extras)
        document.titles.Extra(index, extra);
    if (cursor.Failed() || cursor.Left() != 0)
        return std::nullopt;
    document.titles.RestoreHistory(std::move(history));
    document.titles.UndoEnabled(true);
    return document;
}

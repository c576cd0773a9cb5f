#include "formats/recoverycopy.h"

#include "base/largeblocks.h"

#include <bit>
#include <cstring>
#include <utility>
#include <vector>

// A copy: magic, version, flags (1: declined), time, length of the body, checksum of
// the body and of all before it. The body: notes, undo history, titles. Numbers are
// little-endian, texts are led by their length.

namespace {

constexpr std::string_view Magic = "QuelmarR";
constexpr std::uint32_t Version = 1;
constexpr std::uint32_t DeclinedFlag = 1;
constexpr std::size_t ChecksumAt = 8 + 4 + 4 + 8 + 8;
constexpr std::size_t HeaderSize = ChecksumAt + 8;
constexpr std::uint32_t MostUndoRecords = 100;

// FNV-1a by words of eight bytes, each folded: fast enough not to be noticed.
constexpr std::uint64_t ChecksumStart = 0xcbf29ce484222325ULL;

std::uint64_t Checksum(std::string_view bytes, std::uint64_t sum = ChecksumStart) {
    const auto mix = [&sum](std::uint64_t word) {
        sum = (sum ^ word) * 0x100000001b3ULL;
        sum ^= sum >> 32U;
    };
    while (bytes.size() >= 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data(), 8);
        mix(word);
        bytes.remove_prefix(8);
    }
    for (const char byte : bytes)
        mix(static_cast<unsigned char>(byte));
    return sum;
}

template <typename NUMBER>
void PutNumber(std::string& out, NUMBER number) {
    static_assert(std::endian::native == std::endian::little);
    char bytes[sizeof number];
    std::memcpy(bytes, &number, sizeof number);
    out.append(bytes, sizeof number);
}

void PutText(std::string& out, std::string_view text) {
    PutNumber(out, static_cast<std::uint32_t>(text.size()));
    out.append(text);
}

/// Reads as the above writes; `Failed` once anything lies outside the bytes.
class Cursor {
  public:
    explicit Cursor(std::string_view bytes)
        : m_bytes(bytes) {}

    template <typename NUMBER>
    NUMBER Number() {
        NUMBER number{};
        const std::string_view bytes = Bytes(sizeof number);
        if (!m_failed)
            std::memcpy(&number, bytes.data(), sizeof number);
        return number;
    }

    std::string Text() { return std::string(Bytes(Number<std::uint32_t>())); }

    /// A number that must be below the limit.
    template <typename NUMBER>
    NUMBER Below(NUMBER limit) {
        const auto number = Number<NUMBER>();
        m_failed = m_failed || number >= limit;
        return m_failed ? NUMBER{} : number;
    }

    std::size_t Left() const { return m_bytes.size(); }
    bool Failed() const { return m_failed; }
    void Fail() { m_failed = true; }

  private:
    std::string_view Bytes(std::size_t count) {
        if (m_failed || count > m_bytes.size()) {
            m_failed = true;
            return {};
        }
        const std::string_view bytes = m_bytes.substr(0, count);
        m_bytes.remove_prefix(count);
        return bytes;
    }

    std::string_view m_bytes;
    bool m_failed = false;
};

void PutNotes(std::string& out, const RecoveryNotes& notes) {
    PutText(out, notes.mediaFile);
    PutText(out, notes.subtitleFile);
    PutNumber(out, notes.frameRate);
    PutNumber(out, static_cast<std::uint8_t>(notes.style.encoding));
    PutNumber(out, static_cast<std::uint8_t>(notes.style.byteOrderMark));
    PutNumber(out, static_cast<std::uint8_t>(notes.style.keepSamiHeader));
    PutText(out, notes.style.samiHeader);
    PutText(out, notes.style.samiClass);
    PutText(out, notes.style.samiFooter);
}

RecoveryNotes ReadNotes(Cursor& cursor) {
    RecoveryNotes notes;
    notes.mediaFile = cursor.Text();
    notes.subtitleFile = cursor.Text();
    notes.frameRate = cursor.Number<double>();
    notes.style.encoding = static_cast<FileStyle::Encoding>(cursor.Below<std::uint8_t>(4));
    notes.style.byteOrderMark = cursor.Below<std::uint8_t>(2) != 0;
    notes.style.keepSamiHeader = cursor.Below<std::uint8_t>(2) != 0;
    notes.style.samiHeader = cursor.Text();
    notes.style.samiClass = cursor.Text();
    notes.style.samiFooter = cursor.Text();
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
    }
}

std::vector<UndoHistory::Record> ReadHistory(Cursor& cursor) {
    std::vector<UndoHistory::Record> records(cursor.Below<std::uint32_t>(MostUndoRecords + 1));
    for (UndoHistory::Record& record : records) {
        record.kind = static_cast<UndoHistory::Kind>(cursor.Below<std::uint8_t>(3));
        record.title = cursor.Number<std::int32_t>();
        record.start = cursor.Number<double>();
        record.end = cursor.Number<double>();
        record.text = cursor.Text();
    }
    return records;
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

void ReadTitles(Cursor& cursor, SUBTITLES& titles) {
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
    RecoveryStamp stamp;
    std::string_view body;
};

std::string Seal(std::string_view body, const RecoveryStamp& stamp) {
    std::string copy;
    copy.reserve(HeaderSize + body.size());
    copy.append(Magic);
    PutNumber(copy, Version);
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
    Cursor cursor(copy.substr(Magic.size()));
    const auto version = cursor.Number<std::uint32_t>();
    const auto flags = cursor.Number<std::uint32_t>();
    const RecoveryStamp stamp{cursor.Number<std::int64_t>(), (flags & DeclinedFlag) != 0};
    const auto length = cursor.Number<std::uint64_t>();
    const auto checksum = cursor.Number<std::uint64_t>();
    const std::string_view body = copy.substr(HeaderSize);
    if (version != Version || length != body.size() ||
        checksum != Checksum(body, Checksum(copy.substr(0, ChecksumAt))))
        return std::nullopt;
    return Header{stamp, body};
}

} // namespace

RecoveryBody::RecoveryBody(const SUBTITLES& titles, const RecoveryNotes& notes) {
    PutNotes(m_bytes, notes);
    PutHistory(m_bytes, titles.History());
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
    return Seal(body.Bytes(), stamp);
}

std::optional<std::string> RestampRecoveryCopy(std::string_view copy, const RecoveryStamp& stamp) {
    const auto header = Open(copy);
    return header ? std::optional(Seal(header->body, stamp)) : std::nullopt;
}

std::optional<RecoveredDocument> ReadRecoveryCopy(std::string_view copy) {
    const auto header = Open(copy);
    if (!header)
        return std::nullopt;
    Cursor cursor(header->body);
    RecoveredDocument document;
    document.stamp = header->stamp;
    document.notes = ReadNotes(cursor);
    std::vector<UndoHistory::Record> history = ReadHistory(cursor);
    ReadTitles(cursor, document.titles);
    if (cursor.Failed() || cursor.Left() != 0)
        return std::nullopt;
    document.titles.RestoreHistory(std::move(history));
    document.titles.UndoEnabled(true);
    return document;
}

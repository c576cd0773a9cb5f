#include "formats/recoverycopy.h"

#include "base/checksum.h"
#include "base/largeblocks.h"
#include "formats/recoverylayout.h"
#include "formats/recoveryversions.h"
#include "formats/sealedblocks.h"

#include <algorithm>
#include <map>
#include <utility>

// A copy: magic, layout, flags (1: declined), time, length of all behind the header, the
// blocks' sum, checksum of the header so far; then the blocks. Copies of the layouts 1 and
// 2 have one checksum for the header and all behind it, and no blocks. Numbers are
// little-endian, texts are led by their length.

namespace {

using namespace RecoveryLayout;

constexpr std::string_view Magic = "QuelmarR";
constexpr std::uint32_t DeclinedFlag = 1;
constexpr std::size_t OldChecksumAt = 8 + 4 + 4 + 8 + 8;
constexpr std::size_t OldHeaderSize = OldChecksumAt + 8;
constexpr std::size_t HeaderSumAt = OldHeaderSize;
constexpr std::size_t HeaderSize = HeaderSumAt + 8;
constexpr std::int32_t TitlesInBlock = 512;

/// Kinds of blocks. The count of `Notes` is the number of titles.
enum Kind : std::uint32_t { Notes = 1, DraftText, History, Extras, Titles };

struct Header {
    std::uint32_t layout = 0;
    RecoveryStamp stamp;
    std::uint64_t length = 0;
    /// Of the blocks; of everything in an old layout.
    std::uint64_t sum = 0;
};

std::string HeaderOf(const RecoveryStamp& stamp, std::uint64_t length, std::uint64_t sum) {
    std::string header(Magic);
    PutNumber(header, InBlocks);
    PutNumber(header, stamp.declined ? DeclinedFlag : std::uint32_t{0});
    PutNumber(header, stamp.time);
    PutNumber(header, length);
    PutNumber(header, sum);
    PutNumber(header, Checksum(header));
    return header;
}

/// Nothing when it is no header, or a damaged one. That of an old layout says nothing of
/// its own damage.
std::optional<Header> ReadHeader(std::string_view copy) {
    if (copy.size() < OldHeaderSize || !copy.starts_with(Magic))
        return std::nullopt;
    PackedReader reader(copy.substr(Magic.size()));
    Header header;
    header.layout = reader.Number<std::uint32_t>();
    header.stamp.declined = (reader.Number<std::uint32_t>() & DeclinedFlag) != 0;
    header.stamp.time = reader.Number<std::int64_t>();
    header.length = reader.Number<std::uint64_t>();
    header.sum = reader.Number<std::uint64_t>();
    if (header.layout < First || header.layout > InBlocks)
        return std::nullopt;
    if (header.layout == InBlocks &&
        (reader.Number<std::uint64_t>() != Checksum(copy.substr(0, HeaderSumAt)) ||
         reader.Failed()))
        return std::nullopt;
    return header;
}

std::string_view OldBody(std::string_view copy, const Header& header) {
    const std::string_view body = copy.substr(OldHeaderSize);
    const bool whole = header.length == body.size() &&
                       header.sum == Checksum(body, Checksum(copy.substr(0, OldChecksumAt)));
    return whole ? body : std::string_view();
}

std::optional<RecoveredDocument> ReadOldCopy(std::string_view copy, const Header& header) {
    PackedReader reader(OldBody(copy, header));
    RecoveredDocument document;
    document.stamp = header.stamp;
    document.notes = ReadNotes(reader, header.layout);
    std::vector<UndoHistory::Record> history = ReadHistory(reader, header.layout);
    const std::vector<NumberedExtra> extras = ReadExtras(reader, header.layout);
    const auto count = reader.Number<std::uint32_t>();
    ReadTitles(reader, count, document.titles);
    for (const auto& [index, extra] : extras)
        document.titles.Extra(index, extra);
    if (reader.Failed() || reader.Left() != 0)
        return std::nullopt;
    document.titles.RestoreHistory(std::move(history));
    document.titles.UndoEnabled(true);
    return document;
}

/// Puts a document together from the blocks that there are.
class Assembly {
  public:
    explicit Assembly(const std::vector<SealedBlock>& blocks) {
        for (const SealedBlock& block : blocks)
            Take(block);
        m_document.earlier = RecoveryVersions::Read(blocks, m_whole);
        Number();
    }

    /// Everything was there, and in order.
    bool Whole() const { return m_whole && m_hasNotes && m_document.lostTitles == 0; }
    RecoveredDocument Document() && { return std::move(m_document); }

  private:
    void Take(const SealedBlock& block) {
        PackedReader reader(block.body);
        switch (block.kind) {
        case Notes: {
            RecoveryNotes notes = ReadNotes(reader, InBlocks);
            notes.draft = std::move(m_document.notes.draft);
            m_document.notes = std::move(notes);
            m_count = block.count;
            m_hasNotes = true;
            break;
        }
        case DraftText:
            m_document.notes.draft = ReadDraft(reader);
            break;
        case History:
            m_history = ReadHistory(reader, InBlocks);
            break;
        case Extras:
            for (auto& [index, extra] : ReadExtras(reader, InBlocks))
                m_extras[static_cast<std::uint32_t>(index)] = std::move(extra);
            break;
        case Titles:
            ReadTitles(reader, block.count, m_document.titles);
            for (std::uint32_t i = 0; m_numbers.size() < Count(); ++i)
                m_numbers.push_back(block.first + i);
            break;
        default:
            return;
        }
        m_whole = m_whole && !reader.Failed() && reader.Left() == 0;
    }

    // By the numbers that the titles had, gaps are known.
    void Number() {
        SUBTITLES& titles = m_document.titles;
        const std::uint32_t last = m_numbers.empty() ? 0 : m_numbers.back();
        const std::uint32_t all = std::max(m_count, last);
        m_document.lostTitles =
            static_cast<std::int32_t>(all - std::min<std::size_t>(all, Count()));
        for (std::size_t i = 0; !m_extras.empty() && i < m_numbers.size(); ++i)
            if (const auto extra = m_extras.find(m_numbers[i]); extra != m_extras.end())
                titles.Extra(static_cast<std::int32_t>(i + 1), extra->second);
        if (m_document.lostTitles == 0)
            titles.RestoreHistory(std::move(m_history));
        titles.UndoEnabled(true);
    }

    std::size_t Count() const { return static_cast<std::size_t>(m_document.titles.Count()); }

    RecoveredDocument m_document;
    std::vector<UndoHistory::Record> m_history;
    std::map<std::uint32_t, TitleExtra> m_extras;
    /// The number of each title that was read.
    std::vector<std::uint32_t> m_numbers;
    std::uint32_t m_count = 0;
    bool m_hasNotes = false;
    bool m_whole = true;
};

} // namespace

RecoveryBody::RecoveryBody(const SUBTITLES& titles, const RecoveryNotes& notes)
    : m_hasDraft(notes.draft.has_value()) {
    {
        BlockScope block(m_bytes, Notes);
        block.Count(static_cast<std::uint32_t>(titles.Count()));
        PutNotes(m_bytes, notes);
    }
    if (notes.draft) {
        const BlockScope block(m_bytes, DraftText);
        PutDraft(m_bytes, *notes.draft);
    }
    {
        const BlockScope block(m_bytes, History);
        PutHistory(m_bytes, titles.History());
    }
    {
        const BlockScope block(m_bytes, Extras);
        PutExtras(m_bytes, titles);
    }
    m_titlesAt = m_bytes.size();
    // The window waits for this: room is made once.
    const auto count = static_cast<std::size_t>(titles.Count());
    std::size_t size =
        m_titlesAt + count * LeastTitleSize + (count / TitlesInBlock + 1) * BlockScope::HeadSize;
    for (std::int32_t i = 1; i <= titles.Count(); ++i)
        size += titles.Text(i).size();
    m_bytes.reserve(size);
    AdviseLargePages(m_bytes.data(), m_bytes.capacity());
    for (std::int32_t first = 1; first <= titles.Count(); first += TitlesInBlock) {
        const std::int32_t last = std::min(first + TitlesInBlock - 1, titles.Count());
        BlockScope block(m_bytes, Titles, static_cast<std::uint32_t>(first));
        block.Count(static_cast<std::uint32_t>(last - first + 1));
        for (std::int32_t i = first; i <= last; ++i)
            PutTitle(m_bytes, titles, i);
    }
}

RecoveryBody::RecoveryBody(const SUBTITLES& titles, const RecoveryNotes& notes,
                           const Versions& earlier)
    : RecoveryBody(titles, notes) {
    for (std::size_t age = 0; age < std::min(MostVersions, earlier.Count()); ++age)
        m_earlier.push_back(earlier.At(age));
}

std::uint64_t RecoveryBody::TitlesFingerprint() const {
    return Checksum(std::string_view(m_bytes).substr(m_titlesAt));
}

std::string SealRecoveryCopy(const RecoveryBody& body, const RecoveryStamp& stamp) {
    std::string copy;
    copy.reserve(HeaderSize + body.Bytes().size());
    copy.append(HeaderSize, '\0');
    copy.append(body.Bytes());
    RecoveryVersions::Put(copy, body.Earlier(), RecoveryBody::MostVersionBytes);
    const std::uint64_t sum = SealBlocks(copy, HeaderSize);
    copy.replace(0, HeaderSize, HeaderOf(stamp, copy.size() - HeaderSize, sum));
    return copy;
}

std::optional<std::string> RestampRecoveryCopy(std::string_view copy, const RecoveryStamp& stamp) {
    auto document = ReadRecoveryCopy(copy);
    if (!document)
        return std::nullopt;
    Versions earlier;
    for (Version& version : document->earlier)
        earlier.Restore(std::move(version));
    return SealRecoveryCopy({document->titles, document->notes, earlier}, stamp);
}

std::optional<RecoveredDocument> ReadRecoveryCopy(std::string_view copy) {
    const auto header = ReadHeader(copy);
    if (!header)
        return std::nullopt;
    if (header->layout < InBlocks)
        return ReadOldCopy(copy, *header);
    const std::string_view behind = copy.substr(HeaderSize);
    const ReadBlocks read = ReadSealedBlocks(behind);
    if (!read.whole || header->length != behind.size() || header->sum != read.sum)
        return std::nullopt;
    Assembly assembly(read.blocks);
    if (!assembly.Whole())
        return std::nullopt;
    RecoveredDocument document = std::move(assembly).Document();
    document.stamp = header->stamp;
    return document;
}

bool IsLaterRecoveryCopy(std::string_view copy) {
    if (!copy.starts_with(Magic))
        return false;
    PackedReader reader(copy.substr(Magic.size()));
    return reader.Number<std::uint32_t>() > InBlocks;
}

std::optional<RecoveredDocument> SalvageRecoveryCopy(std::string_view copy) {
    if (auto document = ReadRecoveryCopy(copy))
        return document;
    RecoveredDocument document = Assembly(ReadSealedBlocks(copy).blocks).Document();
    if (document.titles.Count() == 0)
        return std::nullopt;
    if (const auto header = ReadHeader(copy); header && header->layout == InBlocks)
        document.stamp = header->stamp;
    document.damaged = true;
    return document;
}

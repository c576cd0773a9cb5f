#include "formats/sealedblocks.h"

#include "base/checksum.h"

#include <cstring>
#include <optional>

// A block: mark, kind, first, count, length of the body, checksum of the body, checksum
// of all before it; then the body.

namespace {

constexpr std::string_view Mark = "QBlk";
constexpr std::size_t LengthAt = 16;
constexpr std::size_t BodySumAt = 24;
constexpr std::size_t HeadSumAt = 32;

template <typename NUMBER>
void Overwrite(std::string& bytes, std::size_t at, NUMBER number) {
    std::memcpy(bytes.data() + at, &number, sizeof number);
}

template <typename NUMBER>
NUMBER NumberAt(std::string_view bytes, std::size_t at) {
    NUMBER number{};
    std::memcpy(&number, bytes.data() + at, sizeof number);
    return number;
}

/// The head that the bytes begin with, and the body that it tells of, so far as it is
/// there; nothing when the head is damaged.
std::optional<SealedBlock> ReadBlock(std::string_view bytes) {
    if (bytes.size() < BlockScope::HeadSize || !bytes.starts_with(Mark) ||
        Checksum(bytes.substr(0, HeadSumAt)) != NumberAt<std::uint64_t>(bytes, HeadSumAt))
        return std::nullopt;
    const auto length = NumberAt<std::uint64_t>(bytes, LengthAt);
    return SealedBlock{NumberAt<std::uint32_t>(bytes, 4), NumberAt<std::uint32_t>(bytes, 8),
                       NumberAt<std::uint32_t>(bytes, 12),
                       bytes.substr(BlockScope::HeadSize, static_cast<std::size_t>(length))};
}

bool BodyIsWhole(std::string_view bytes, const SealedBlock& block) {
    return block.body.size() == NumberAt<std::uint64_t>(bytes, LengthAt) &&
           Checksum(block.body) == NumberAt<std::uint64_t>(bytes, BodySumAt);
}

std::uint64_t Together(std::uint64_t sum, std::uint64_t headSum) {
    return Checksum({reinterpret_cast<const char*>(&headSum), sizeof headSum}, sum);
}

} // namespace

BlockScope::BlockScope(std::string& bytes, std::uint32_t kind, std::uint32_t first)
    : m_bytes(bytes)
    , m_at(bytes.size())
    , m_kind(kind)
    , m_first(first) {
    m_bytes.append(HeadSize, '\0');
}

BlockScope::~BlockScope() {
    std::memcpy(m_bytes.data() + m_at, Mark.data(), Mark.size());
    Overwrite(m_bytes, m_at + 4, m_kind);
    Overwrite(m_bytes, m_at + 8, m_first);
    Overwrite(m_bytes, m_at + 12, m_count);
    Overwrite(m_bytes, m_at + LengthAt,
              static_cast<std::uint64_t>(m_bytes.size() - m_at - HeadSize));
}

std::uint64_t SealBlocks(std::string& bytes, std::size_t from) {
    std::uint64_t sum = ChecksumStart;
    for (std::size_t at = from; at < bytes.size();) {
        const auto length = static_cast<std::size_t>(NumberAt<std::uint64_t>(bytes, at + LengthAt));
        const std::string_view all = bytes;
        const std::uint64_t bodySum = Checksum(all.substr(at + BlockScope::HeadSize, length));
        Overwrite(bytes, at + BodySumAt, bodySum);
        Overwrite(bytes, at + HeadSumAt, Checksum(all.substr(at, HeadSumAt)));
        sum = Together(sum, NumberAt<std::uint64_t>(bytes, at + HeadSumAt));
        at += BlockScope::HeadSize + length;
    }
    return sum;
}

ReadBlocks ReadSealedBlocks(std::string_view bytes) {
    ReadBlocks read;
    read.sum = ChecksumStart;
    while (!bytes.empty()) {
        if (const auto block = ReadBlock(bytes)) {
            if (BodyIsWhole(bytes, *block)) {
                read.blocks.push_back(*block);
                read.sum = Together(read.sum, NumberAt<std::uint64_t>(bytes, HeadSumAt));
            } else {
                read.whole = false;
            }
            bytes.remove_prefix(BlockScope::HeadSize + block->body.size());
            continue;
        }
        read.whole = false;
        const std::size_t next = bytes.find(Mark, 1);
        bytes.remove_prefix(next == std::string_view::npos ? bytes.size() : next);
    }
    return read;
}

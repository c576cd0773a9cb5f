#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// Bytes laid out in blocks, each with checksums of its own, so that what is damaged costs
// no more than its block.

/// A block that was read. What `kind`, `first` and `count` say is its writer's affair.
struct SealedBlock {
    std::uint32_t kind = 0;
    std::uint32_t first = 0;
    std::uint32_t count = 0;
    std::string_view body;
};

/// Lays out one block at the end of the bytes: what is appended to them while this lives
/// is its body. It has no checksums until it is sealed.
class BlockScope {
  public:
    BlockScope(std::string& bytes, std::uint32_t kind, std::uint32_t first = 0);
    /// The numbers that the block is to bear are known now at the latest.
    ~BlockScope();
    BlockScope(const BlockScope&) = delete;
    BlockScope& operator=(const BlockScope&) = delete;

    void Count(std::uint32_t count) { m_count = count; }

    /// What a block takes beside its body.
    static constexpr std::size_t HeadSize = 40;

  private:
    std::string& m_bytes;
    const std::size_t m_at;
    std::uint32_t m_kind;
    std::uint32_t m_first;
    std::uint32_t m_count = 0;
};

/// Gives all blocks in these bytes, which hold nothing else, their checksums. Answers one
/// sum of them all.
std::uint64_t SealBlocks(std::string& bytes, std::size_t from);

/// What could be read of blocks. The bodies are views of the bytes.
struct ReadBlocks {
    std::vector<SealedBlock> blocks;
    /// The sum that sealing answered.
    std::uint64_t sum = 0;
    /// Nothing but whole blocks lies in the bytes.
    bool whole = true;
};

/// Never fails. Behind damage, reading goes on with the next block that is whole.
ReadBlocks ReadSealedBlocks(std::string_view bytes);

#include "base/largeblocks.h"

#ifdef __linux__

#include <cstdint>

#include <sys/mman.h>

namespace {

constexpr std::uintptr_t LargePage = std::uintptr_t{2} << 20;

} // namespace

void AdviseLargePages(const void* block, std::size_t size) {
    // Only the pages that lie wholly in the block.
    const std::uintptr_t before = reinterpret_cast<std::uintptr_t>(block) % LargePage;
    const std::size_t skipped = before == 0 ? 0 : LargePage - before;
    if (size < skipped + LargePage)
        return;
    // The hint changes nothing that the block holds.
    auto* first = static_cast<char*>(const_cast<void*>(block)) + skipped;
    madvise(first, (size - skipped) / LargePage * LargePage, MADV_HUGEPAGE);
}

#else

void AdviseLargePages(const void* /*block*/, std::size_t /*size*/) {}

#endif

#include "platform/base/largeblocks.h"

#ifdef __linux__

#include <cstdint>

#include <sys/mman.h>

namespace {

constexpr std::uintptr_t LargePage = std::uintptr_t{2} << 20;

} // namespace

void AdviseLargePages(const void* block, std::size_t size) {
    const auto begin = reinterpret_cast<std::uintptr_t>(block);
    const std::uintptr_t first = (begin + LargePage - 1) / LargePage * LargePage;
    const std::uintptr_t last = (begin + size) / LargePage * LargePage;
    if (first < last)
        madvise(reinterpret_cast<void*>(first), last - first, MADV_HUGEPAGE);
}

#else

void AdviseLargePages(const void* /*block*/, std::size_t /*size*/) {}

#endif

#include "benchmarks/memory.h"

#include <cstddef>
#include <vector>

#ifdef __GLIBC__
#include <malloc.h>
#endif

void TouchMemory() {
    constexpr std::size_t size = std::size_t{2} << 30;
    const std::vector<char> memory(size, 1);
    // Read, so that the writing is not left out.
    static_cast<void>(*static_cast<const volatile char*>(&memory.back()));
}

void TakeMemoryFresh() {
#ifdef __GLIBC__
    mallopt(M_MMAP_THRESHOLD, 128 * 1024);
#endif
}

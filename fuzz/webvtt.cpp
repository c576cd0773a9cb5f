#include "fuzz/fuzzing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TryReader("x.vtt", TextOf(data, size));
    return 0;
}

#include "fuzz/fuzzing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TryReader("x.ttml", TextOf(data, size));
    return 0;
}

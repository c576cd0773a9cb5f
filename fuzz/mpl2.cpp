#include "fuzz/fuzzing.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TryReader("x.txt", TextOf(data, size));
    return 0;
}

#include "fuzz/fuzzing.h"

#include <cstring>

/// Its files share their extension with another format's.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    for (const Format& format : Formats()) {
        if (std::strcmp(format.name, "SubViewer") == 0)
            TryReader(format, TextOf(data, size));
    }
    return 0;
}

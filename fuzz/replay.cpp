// Runs a fuzz target over stored inputs, where there is no libFuzzer: the folders
// and files that are named.
#include "base/wholefile.h"
#include "fuzz/fuzzing.h"

#include <cstdio>
#include <filesystem>

namespace {

int Replay(const std::filesystem::path& file) {
    const auto bytes = ReadWholeFile(file);
    if (!bytes)
        return 0;
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes->data.get()), bytes->size);
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    int inputs = 0;
    for (int i = 1; i < argc; ++i) {
        if (!std::filesystem::is_directory(argv[i])) {
            inputs += Replay(argv[i]);
            continue;
        }
        for (const auto& entry : std::filesystem::recursive_directory_iterator(argv[i]))
            inputs += Replay(entry.path());
    }
    std::printf("%d inputs\n", inputs);
    return inputs > 0 ? 0 : 1;
}

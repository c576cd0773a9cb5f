// generate COUNT FILE: writes that many titles; .srt with the tags that other
// programs write too, anything else as the program saves it.
#include "base/wholefile.h"
#include "benchmarks/generating.h"
#include "formats/save.h"
#include "model/numbers.h"

#include <cstdio>
#include <string_view>

int main(int argc, char** argv) {
    if (argc != 3 || !(Val(argv[1]) >= 1)) {
        std::fputs("Usage: generate COUNT FILE\n", stderr);
        return 2;
    }
    const SUBTITLES titles = GeneratedTitles(RoundToLong(Val(argv[1])));
    const bool subRip = std::string_view(argv[2]).ends_with(".srt");
    const bool written = subRip ? WriteWholeFile(argv[2], SubRipWithTags(titles), false)
                                : SaveTitles(argv[2], "", titles, {}, {}).written;
    if (!written)
        std::fprintf(stderr, "generate: %s cannot be written\n", argv[2]);
    return written ? 0 : 1;
}

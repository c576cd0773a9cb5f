#include "formats/mending.h"
#include "fuzz/fuzzing.h"

namespace {

void Try(MendedText (*mend)(std::string_view), const char* extension, std::string_view text) {
    const MendedText once = mend(text);
    TryReader(extension, once.text);
    const MendedText again = mend(once.text);
    Require(again.mends.empty(), "a mended text needs no mending");
    Require(again.text == once.text, "a mended text stays as it is");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = TextOf(data, size);
    Try(MendSubRip, "x.srt", text);
    Try(MendMicroDvd, "x.sub", text);
    Try([](std::string_view wild) { return MendSami(wild); }, "x.smi", text);
    return 0;
}

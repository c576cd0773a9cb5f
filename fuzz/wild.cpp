#include "formats/mending.h"
#include "fuzz/fuzzing.h"

namespace {

void Try(const MendedText& mended, const char* extension) {
    TryReader(extension, mended.text);
    SUBTITLES titles;
    FileStyle style;
    const ReadOutcome outcome = FormatByName(extension)->read(mended.text, 25, titles, style, {});
    Require(outcome == ReadOutcome::Complete, "a mended text is read to its end");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = TextOf(data, size);
    Try(MendSubRip(text), "x.srt");
    Try(MendMicroDvd(text), "x.sub");
    for (std::size_t language = 0; language < 2; ++language)
        Try(MendSami(text, language), "x.smi");
    return 0;
}

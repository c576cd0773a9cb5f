#include "formats/recoverycopy.h"

#include "fuzz/fuzzing.h"

/// The checksums would stop nearly every input at the door, so besides the input
/// itself a sealed document that holds it as its text is read.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = TextOf(data, size);
    (void)ReadRecoveryCopy(text);
    (void)SalvageRecoveryCopy(text);

    SUBTITLES titles;
    titles.Add(1, 2, std::string(text));
    Versions earlier;
    earlier.Keep(titles, {});
    const std::string copy = SealRecoveryCopy(RecoveryBody(titles, {}, earlier), {});
    const auto read = ReadRecoveryCopy(copy);
    Require(read && read->titles.Count() == 1 && read->titles.Text(1) == text,
            "a sealed copy reads back");
    Require(read->earlier.size() == 1 && TitlesOf(read->earlier[0]).Text(1) == text,
            "and so does a version in it");
    std::string damaged = copy;
    const std::size_t at = size == 0 ? 0 : data[0] * copy.size() / 256;
    damaged[at] = static_cast<char>(damaged[at] ^ (1 << (size % 8)));
    Require(!ReadRecoveryCopy(damaged), "a copy with a changed bit is refused");
    const auto salvaged = SalvageRecoveryCopy(damaged);
    // A text that looks like blocks itself may be taken for some.
    Require(!salvaged || text.find("QBlk") != text.npos ||
                (salvaged->damaged && salvaged->titles.Count() == 1 &&
                 salvaged->titles.Text(1) == text),
            "what is salvaged is right");
    Require(!ReadRecoveryCopy(std::string_view(copy).substr(0, at)), "a torn copy is refused");
    return 0;
}

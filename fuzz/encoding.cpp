#include "formats/encoding.h"

#include "base/codepages.h"
#include "base/utf8.h"
#include "fuzz/fuzzing.h"

#include <algorithm>
#include <array>

namespace {

FileBytes BytesOf(std::string_view text) {
    FileBytes bytes;
    bytes.data = std::make_unique<char[]>(text.size() + 1);
    bytes.size = text.size();
    std::copy(text.begin(), text.end(), bytes.data.get());
    return bytes;
}

} // namespace

/// The first byte picks the code page.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::array<const char*, 4> Pages{"windows-1252", "KOI8-R", "windows-1253", "x"};
    if (size == 0)
        return 0;
    const std::string page = Pages[data[0] % Pages.size()];
    const std::string_view file = TextOf(data + 1, size - 1);

    const DecodedText decoded(BytesOf(file), page);
    const std::string text(decoded.Text());
    Require(IsValidUtf8(WithoutHalves(text)), "what was decoded is UTF-8");
    FileStyle style;
    style.encoding = decoded.Encoding();
    style.byteOrderMark = decoded.ByteOrderMark();

    const std::string encoded = Encode(std::string(Utf8Mark(style)) + text, style, page);
    const bool utf16 = style.encoding == FileStyle::Encoding::Utf16LittleEndian ||
                       style.encoding == FileStyle::Encoding::Utf16BigEndian;
    const bool mended = utf16 ? file.size() % 2 != 0 : style.byteOrderMark;
    Require(mended || encoded == file, "what was not mended comes back byte for byte");
    if (!utf16)
        Require(FindHalf(text) == std::string::npos, "only UTF-16 has half characters");
    const DecodedText again(BytesOf(encoded), page);
    Require(again.Text() == text, "what was written reads back");
    Require(again.Encoding() == style.encoding, "the encoding stays");
    return 0;
}

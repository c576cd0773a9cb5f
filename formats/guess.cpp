#include "formats/guess.h"

#include "base/ascii.h"
#include "base/codepages.h"

#ifdef QUELMAR_GUESS
#include <uchardet/uchardet.h>
#endif

#include <algorithm>
#include <memory>

namespace {

constexpr const char* Usual = "windows-1252";

#ifdef QUELMAR_GUESS

/// More of a long file tells nothing new.
constexpr std::size_t Enough = std::size_t{1} << 20;
/// Of fewer bytes beyond ASCII nothing can be told, and of fewer than the second nothing rare.
constexpr std::ptrdiff_t Fewest = 4;
constexpr std::ptrdiff_t FewestForRare = 20;

struct Page {
    std::string_view told;
    /// The one that has letters where `told` has control characters; empty: `told` has none.
    std::string_view windows;
    bool rare = false;
};
/// Those whose names need a second look.
constexpr Page Pages[] = {
    {"ISO-8859-1", "windows-1252"},       {"ISO-8859-15", "windows-1252"},
    {"ISO-8859-2", "windows-1250"},       {"ISO-8859-6", "windows-1256"},
    {"ISO-8859-7", "windows-1253"},       {"ISO-8859-8", "windows-1255"},
    {"ISO-8859-9", "windows-1254"},       {"ISO-8859-13", "windows-1257"},
    {"ISO-8859-3", "windows-1254", true}, {"ISO-8859-4", "windows-1257", true},
    {"ISO-8859-10", Usual, true},         {"ISO-8859-14", Usual, true},
    {"ISO-8859-16", "windows-1250", true}};

bool IsHigh(char byte) {
    return static_cast<unsigned char>(byte) >= 0x80;
}

/// The control characters of the ISO pages, which no text has.
bool IsControl(char byte) {
    return IsHigh(byte) && static_cast<unsigned char>(byte) < 0xA0;
}

std::string Told(std::string_view bytes) {
    const std::unique_ptr<uchardet, void (*)(uchardet_t)> detector(uchardet_new(), uchardet_delete);
    if (uchardet_handle_data(detector.get(), bytes.data(), bytes.size()) != 0)
        return {};
    uchardet_data_end(detector.get());
    return uchardet_get_charset(detector.get());
}

std::string Likely(std::string_view bytes) {
    const std::ptrdiff_t high = std::count_if(bytes.begin(), bytes.end(), IsHigh);
    const std::string told = high < Fewest ? std::string() : Told(bytes);
    const std::string lower = AsciiLower(told);
    // The whole text is no UTF-8, and has no mark.
    if (told.empty() || lower == "ascii" || lower.starts_with("utf-"))
        return Usual;
    const auto* const page = std::find_if(std::begin(Pages), std::end(Pages),
                                          [&](const Page& known) { return known.told == told; });
    if (page == std::end(Pages)) {
        const bool rare = lower.starts_with("mac-") || lower.starts_with("ibm");
        return rare && high < FewestForRare ? Usual : told;
    }
    if (page->rare && high < FewestForRare)
        return Usual;
    const bool same = page->windows == Usual || page->told == "ISO-8859-9";
    return same || std::any_of(bytes.begin(), bytes.end(), IsControl) ? std::string(page->windows)
                                                                      : told;
}

bool ComesBack(std::string_view bytes, const CodePage& page) {
    return page.FromUtf8(page.ToUtf8(bytes)) == bytes;
}

#endif

} // namespace

std::string GuessCodePage([[maybe_unused]] std::string_view bytes) {
#ifdef QUELMAR_GUESS
    const std::string likely = Likely(bytes.substr(0, Enough));
    if (likely != Usual && CodePage::Knows(likely) && ComesBack(bytes, CodePage(likely)))
        return likely;
#endif
    return Usual;
}

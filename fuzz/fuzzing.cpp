#include "fuzz/fuzzing.h"

#include "base/runtimeerror.h"
#include "base/utf8.h"
#include "formats/proof.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>

void Require(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

namespace {

/// From 0 to below 100 hours: what the columns of SubRip hold.
bool CanBeHeld(double time) {
    return time >= 0 && time < 359'999;
}

/// Written in any format and read again, titles have the same number, times and words.
void TryComingBack(SUBTITLES titles) {
    titles.UndoEnabled(false);
    for (std::int32_t i = titles.Count(); i >= 1; --i)
        if (!CanBeHeld(titles.StartTime(i)) || !CanBeHeld(titles.EndTime(i)))
            titles.Delete(i);
    for (const Format& format : Formats()) {
        std::string file;
        format.write(titles, 25, {}, file);
        SUBTITLES again;
        FileStyle style;
        Require(format.read(file, 25, again, style, {}) == ReadOutcome::Complete,
                "what was written is no corrupt file");
        const std::string difference = FirstDifference(format, 25, {}, titles, again);
        Require(difference.empty(), (std::string(format.name) + ": " + difference).c_str());
    }
}

} // namespace

void TryReader(const char* extension, std::string_view text) {
    TryReader(*FormatByName(extension), text);
}

void TryReader(const Format& format, std::string_view text) {
    SUBTITLES titles;
    FileStyle style;
    double last = 0;
    const auto progress = [&last](double done) {
        Require(done >= last && done <= 1, "progress goes from 0 to 1");
        last = done;
        return true;
    };
    format.read(text, 25, titles, style, progress);

    const bool valid = IsValidUtf8(text);
    std::size_t size = 0;
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        size += titles.Text(i).size();
        Require(!valid || IsValidUtf8(titles.Text(i)), "valid text stays valid");
    }
    // A line end of one byte becomes two; a code of three becomes at most eight. The words
    // of a chorus come as often as it has times.
    const std::size_t most = std::strcmp(format.name, "LRC") == 0 ? 64 : 4;
    Require(size <= most * text.size() + 16, "texts come from the file alone");
    if (format.exact && format.IsOf(style)) {
        std::string same;
        WriteFile(format, titles, 25, style, same);
        Require(same == text, "a file that is kept comes back byte for byte");
    }
    TryWriters(titles, style);
    TryComingBack(std::move(titles));
}

void TryWriters(const SUBTITLES& titles, const FileStyle& style) {
    for (const Format& format : Formats()) {
        std::string out;
        try {
            WriteFile(format, titles, 25, style, out);
        } catch (const RuntimeError& error) {
            Require(error.text() == "Overflow", "only times are out of range");
        }
    }
}

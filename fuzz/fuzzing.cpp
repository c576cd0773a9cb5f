#include "fuzz/fuzzing.h"

#include "base/runtimeerror.h"
#include "base/utf8.h"

#include <cstdio>
#include <cstdlib>

void Require(bool holds, const char* what) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

void TryReader(const char* extension, std::string_view text) {
    SUBTITLES titles;
    FileStyle style;
    double last = 0;
    const auto progress = [&last](double done) {
        Require(done >= last && done <= 1, "progress goes from 0 to 1");
        last = done;
        return true;
    };
    FormatByName(extension)->read(text, 25, titles, style, progress);

    const bool valid = IsValidUtf8(text);
    std::size_t size = 0;
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        size += titles.Text(i).size();
        Require(!valid || IsValidUtf8(titles.Text(i)), "valid text stays valid");
    }
    // A line end of one byte becomes two; a code of three becomes at most eight.
    Require(size <= 4 * text.size() + 16, "texts come from the file alone");
    TryWriters(titles, style);
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

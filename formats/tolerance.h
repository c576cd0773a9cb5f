#pragma once

#include "formats/format.h"

#include <optional>
#include <string>
#include <vector>

/// What a tolerant reading makes of a file that was read by the rules and came out wrong:
/// something to ask the user about, never done unasked.
struct MendOffer {
    /// "A tolerant reading finds 1000 titles instead of 1 (999 blank lines between blocks).
    /// Use it?" Where there are languages, it asks which.
    std::string question;
    /// "1000 titles instead of 1": what the question says of the titles.
    std::string finds;
    std::vector<Mend> mends;
    /// More than one: the user is asked which is wanted.
    std::vector<MendedLanguage> languages;
    /// What `TakeOffer` takes where nobody is asked.
    std::size_t language = 0;

    const Format* format = nullptr;
    double frameRate = 0;
    /// All there is to mend is a line that names the frame rate and was taken for a title.
    bool onlyFrameRate = false;
    /// The file as it was read, UTF-8.
    std::string text;
};

/// Nothing when the strict reading of the text ended well and its titles look right, or
/// when a tolerant one finds no better. A file in several languages is always asked about.
std::optional<MendOffer> OfferMending(const Format& format, std::string_view text, double frameRate,
                                      ReadOutcome strictly, const SUBTITLES& titles);

/// Puts the titles of the tolerant reading in the place of those there. The style keeps its
/// encoding. Undo is as after a load.
void TakeOffer(const MendOffer& offer, std::size_t language, SUBTITLES& titles, FileStyle& style);

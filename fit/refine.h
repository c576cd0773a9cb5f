#pragma once

#include "fit/speechtrack.h"

#include <span>
#include <vector>

/// Titles of one piece: [first, last) of the spoken titles.
struct Stretch {
    std::size_t first = 0;
    std::size_t last = 0;
    double offset = 0;
    double rate = 1;
    double confidence = 0;
};

/// The offset of the stretch to about 10 ms: where the starts of its titles agree best
/// with the rises of speech, at most `reach` seconds away from the offset it has.
double RefinedOffset(const SpeechTrack& track, std::span<const SpokenTitle> titles,
                     const Stretch& stretch, double reach);

/// The same by right titles: the difference from their starts that most titles share.
double RefinedOffset(std::span<const SpokenTitle> right, std::span<const SpokenTitle> titles,
                     const Stretch& stretch, double reach);

/// Where the speech rises nearest to and most clearly around the moment, less the
/// moment: at most 1 s away; 0 where nothing rises.
double Residual(const SpeechTrack& track, double moment);

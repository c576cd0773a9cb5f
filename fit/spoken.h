#pragma once

#include "fit/ticks.h"

#include <span>
#include <string_view>
#include <vector>

/// How long the text takes to speak, in seconds; 0 when nothing of it is spoken: sounds
/// in brackets, music signs, no letters.
double SpokenLength(std::string_view text);

enum class TitleEnds {
    /// Titles stay on longer than they are spoken: cut their ends by the text.
    Spoken,
    /// Both sides are titles, whose ends agree.
    AsGiven,
};

/// The titles in the order of their starts (equal ones as given), ends mended. A
/// title whose start is no number goes with the one before it.
std::vector<SpokenTitle> SpokenTitles(std::span<const FitTitle> titles, TitleEnds ends);

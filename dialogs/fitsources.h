#pragma once

#include "dialogs/fithost.h"

#include <filesystem>
#include <string>

/// The list as the fitting knows titles, in its order.
std::vector<FitTitle> TitlesToFit(const SUBTITLES& titles);

/// The speech in the film's sound. Sound that was mapped before is not read again.
FitSource SoundOf(const std::filesystem::path& film);
/// The titles of another file, taken as right.
FitSource TitlesOf(const std::filesystem::path& file, const std::string& codePage,
                   double frameRate);

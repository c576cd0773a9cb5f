#pragma once

#include "dialogs/fithost.h"

#include <filesystem>
#include <memory>
#include <string>

class SoundMapper;

/// The list as the fitting knows titles, in its order.
std::vector<FitTitle> TitlesToFit(const SUBTITLES& titles);

/// The speech in a sound track of the film, counted from 1; 0: the one that players play by
/// themselves. Sound that was mapped before is not read again.
FitSource SoundOf(const std::filesystem::path& film, int track);
/// The same of a film that is being mapped already.
FitSource SoundOf(const std::filesystem::path& film, std::shared_ptr<const SoundMapper> mapper);
/// The titles of another file, taken as right.
FitSource TitlesOf(const std::filesystem::path& file, const std::string& codePage,
                   double frameRate);

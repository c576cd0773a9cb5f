#pragma once

#include "model/filestyle.h"
#include "model/subtitles.h"

#include <ostream>
#include <string>

/// The subtitles in films, for the command line. Both answer false, with the reason in `fault`,
/// when the film cannot be read.

/// One line each, its fields parted by tabs.
bool PrintTracks(const std::string& film, std::ostream& out, std::string& fault);
/// Puts the titles of a track, counted from 1, in place of those there.
bool TitlesOfFilm(const std::string& film, int track, const std::string& codePage,
                  SUBTITLES& titles, FileStyle& style, std::string& fault);

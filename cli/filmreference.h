#pragma once

#include "fit/fit.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// What fits can be made by in a film or sound file.

struct FilmSpeech {
    SpeechCurve curve;
    /// Until all sound was read, and from then until all was listened to.
    double decodeSeconds = 0;
    double speechSeconds = 0;
};

/// Listens to a sound track, counted from 1, 0 being the one that the player takes.
/// Nothing, with the reason in `message`, when there is nothing to be heard.
std::optional<FilmSpeech> SpeechOfFilm(const std::filesystem::path& film, int track,
                                       std::string& message);

/// The titles of a text track, counted from 1; 0: of each that is text. Tracks without
/// titles are left out.
std::vector<RightTitles> TextTracksOf(const std::filesystem::path& film, int track);

#pragma once

#include "model/subtitles.h"

#include <limits>
#include <ostream>
#include <string>

/// Which part of a film is told, in seconds; what lies outside the film is left out.
struct SoundStretch {
    double from = 0;
    double to = std::numeric_limits<double>::infinity();
    double step = 0.1;
};

// Films are named in UTF-8. Tracks are counted from 1; 0: the one that is played. Both answer
// false, and the reason in `fault`, when there is no sound.

/// One line for each step: time in seconds, least and greatest sample from -1 to 1, loudness
/// in dB, probability of speech.
bool PrintSound(const std::string& film, int track, const SoundStretch& stretch, std::ostream& out,
                std::string& fault);
/// Adds a title "..." for each stretch of speech.
bool TitlesOfSpeech(const std::string& film, int track, SUBTITLES& titles, std::string& fault);

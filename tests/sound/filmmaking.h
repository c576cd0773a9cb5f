#pragma once

#include "media/soundreader.h"
#include "tests/core/formattesting.h"

#include <filesystem>
#include <string>
#include <vector>

/// A click is a short tone of this length about its peak (seconds); one comes every
/// `ClickPeriod`, the first one `FirstClick` after the sound begins.
inline constexpr double FirstClick = 1.25;
inline constexpr double ClickPeriod = 2.5;
/// What ffmpeg's "aevalsrc" makes of them.
std::string ClickSound(double seconds, int frequency = 48000);
/// Pictures for `seconds`, and how they are put in front of the sound.
std::string Pictures(double seconds);

/// Runs ffmpeg with these words in the folder; throws when it fails.
void Ffmpeg(const TestFolder& folder, const std::string& words);

/// When the clicks of some sound come: the peaks of what is loud, in seconds.
std::vector<double> Clicks(SoundReader& reader);

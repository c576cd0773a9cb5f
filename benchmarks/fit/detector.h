#pragma once

#include "benchmarks/fit/film.h"

inline constexpr const char* DetectorName = "sound";

/// A value from 0 to 1 for each 10 ms.
std::vector<float> DetectSpeech(const Samples& sound);

#pragma once

#include "fit/fit.h"

#include <cstdint>
#include <vector>

/// Films of numbers: what is spoken in them, the titles for it, and the curve that
/// a detector would draw. The same seed gives the same film everywhere.
struct FittingFilm {
    double length = 0;
    std::vector<FitTitle> titles;
};

/// A number from 0 to 1 that depends on its arguments alone.
double Chance(std::uint32_t seed, std::uint32_t number);

/// About one title each four seconds, now and then a pause.
FittingFilm MakeFilm(std::uint32_t seed, double length);

/// Speech exactly during the titles. `noise` from 0 (a perfect detector) to 1.
SpeechCurve SpeechOf(const FittingFilm& film, double noise = 0, std::uint32_t seed = 1);

/// The titles with times old = (new - offset) / rate.
std::vector<FitTitle> Misplaced(std::vector<FitTitle> titles, double offset, double rate = 1);

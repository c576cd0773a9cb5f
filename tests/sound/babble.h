#pragma once

#include "tests/core/fittingfilms.h"

#include <string>

/// The bytes of a wave file in which a buzz comes and goes four times a second wherever
/// something is said in the film, over noise: speech to a detector.
std::string Babble(const FittingFilm& film);

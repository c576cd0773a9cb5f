#pragma once

#include "benchmarks/fit/film.h"

#include <optional>

/// A file of titles to be fitted to a film, and where each belongs.
struct Case {
    std::string kind;
    std::vector<FitTitle> titles;
    /// The right new start of each title; nothing for one without a place in the film.
    std::vector<std::optional<double>> right;
    double rate = 1;
    /// The film is another one, so that no answer is the right one.
    bool otherFilm = false;
};

/// The cases for one film. `stranger` is another film, whose titles do not belong.
std::vector<Case> CasesFor(const MadeFilm& film, const std::vector<FitTitle>& titles,
                           const MadeFilm& stranger, std::uint64_t seed);
/// Files that are written otherwise: for the deaf, half of the titles, a late beginning.
std::vector<Case> ReducedCasesFor(const MadeFilm& film, std::uint64_t seed);

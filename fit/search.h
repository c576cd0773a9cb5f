#pragma once

#include "fit/evidence.h"
#include "fit/workers.h"

#include <cstdint>
#include <span>
#include <vector>

/// What explanations of the speech cost, in the unit of the evidence.
struct PathCosts {
    /// A further piece, where the titles leave a long gap, and the addition where they leave none.
    float cut = 15;
    float cutWithoutGap = 3;
    /// Titles that have no place: for the run, for each, and for each second of the film
    /// that stays without titles where they were.
    float run = 17;
    float withoutPlace = 0.45F;
    float emptySecond = 0.5F;
    /// An offset for each 100 s that it is away from 0.
    float away = 0.5F;
};

/// The place of each title on the best path: an index into the grid, or `NoPlace`.
inline constexpr std::int32_t NoPlace = -1;

struct Path {
    float score = 0;
    std::vector<std::int32_t> places;
    /// By how much each title's being elsewhere (or having a place at all) would be
    /// the worse explanation.
    std::vector<float> margins;
};

/// The score of the best path alone; needs little memory.
float BestScore(const Evidence& evidence, const PathCosts& costs, const Stop& stop);

/// The best path. Titles keep their order, and do not overlap where a new piece begins.
/// With `margins` it takes twice the time.
Path BestPath(const Evidence& evidence, const PathCosts& costs, bool margins, const Stop& stop);

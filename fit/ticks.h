#pragma once

#include "fit/fit.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

/// Moments as whole numbers of 10 ms, the step of a speech curve.
using Ticks = std::int32_t;

inline constexpr Ticks TicksPerSecond = 100;

/// Nothing is longer than this: some 83 hours. What is further away counts as so far.
inline constexpr double FarAway = 300000;

/// The nearest tick; what is no number is 0.
inline Ticks TicksOf(double seconds) {
    if (std::isnan(seconds))
        return 0;
    return static_cast<Ticks>(
        std::floor(std::clamp(seconds, -FarAway, FarAway) * TicksPerSecond + 0.5));
}

inline double SecondsOf(Ticks ticks) {
    return static_cast<double>(ticks) / TicksPerSecond;
}

/// A title ready for the search: in order, with its end where its text is spoken, at
/// the titles' own rate.
struct SpokenTitle {
    /// Index among the titles given.
    std::size_t source = 0;
    double start = 0;
    double end = 0;
    /// Something is said; else the title only goes along with its neighbours.
    bool spoken = true;
};

/// The offsets that are looked at: low, low + Step, ...
struct OffsetGrid {
    static constexpr Ticks Step = 10;
    Ticks low = 0;
    std::int32_t count = 0;

    Ticks At(std::int32_t place) const { return low + Step * place; }
    /// The nearest place, within the grid.
    std::int32_t Nearest(Ticks offset) const {
        const Ticks place = (offset - low + Step / 2) / Step;
        return std::clamp(place, 0, count - 1);
    }
};

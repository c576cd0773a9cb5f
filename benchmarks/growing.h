#pragma once

#include <cmath>

/// A time that grows faster than the size to this power misses its goal.
constexpr double MostGrowth = 1.1;

/// To what power of the size a time grows that takes `times` as long for `sizes` as much.
inline double GrowthExponent(double times, double sizes) {
    return std::log(times) / std::log(sizes);
}

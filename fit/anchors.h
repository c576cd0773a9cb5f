#pragma once

#include "fit/refine.h"

#include <span>
#include <vector>

/// An anchor by its place in the order of the titles.
struct PlacedAnchor {
    std::size_t title = 0;
    double start = 0;
};

/// The anchors of titles that are there, in the order of the titles; of two for the same
/// title the later given.
std::vector<PlacedAnchor> PlacedAnchors(std::span<const FitAnchor> anchors,
                                        std::span<const SpokenTitle> titles);

/// Bends the stretches so that each anchor is met exactly: before the first and after the
/// last of a stretch its rate holds, between two the line through both.
std::vector<Stretch> ThroughAnchors(const std::vector<Stretch>& stretches,
                                    std::span<const SpokenTitle> titles,
                                    std::span<const PlacedAnchor> anchors);

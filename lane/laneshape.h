#pragma once

#include "lane/lanetitles.h"
#include "lane/laneview.h"

#include <cstdint>

/// How the lane's height is shared out: the time ruler above, below it the tracks. In
/// pixels, from the lane's upper edge.
struct LaneShape {
    double height = 0;
    double ruler = 0;
    int tracks = 1;

    double TrackTop(int track) const { return ruler + track * TrackHeight(); }
    double TrackHeight() const { return (height - ruler) / tracks; }
    /// The track at this height, the nearest one outside.
    int TrackAt(double y) const;
};

/// What lies under a place of the lane.
struct LaneHit {
    enum class Part : std::uint8_t { Ground, Start, Middle, End };
    Part part = Part::Ground;
    /// 0 on the ground.
    std::int32_t title = 0;
    friend bool operator==(const LaneHit&, const LaneHit&) = default;
};

/// Of blocks that meet or overlap, the one whose inside is hit counts, then the one that was
/// drawn last. Narrow blocks can be taken by edges that lie a little outside.
LaneHit HitLane(const LaneTitles& titles, const LaneView& view, const LaneShape& shape, double x,
                double y);

#include "lane/laneshape.h"

#include <algorithm>
#include <cmath>

namespace {

/// How far from a block's edge the edge is taken (in pixels): inside, and outside.
constexpr double EdgeInside = 6;
constexpr double EdgeOutside = 4;
/// An edge takes no more of a block than this share.
constexpr double EdgeShare = 0.25;
/// A block narrower than this is taken by its edges from outside alone (in pixels).
constexpr double Narrow = 12;

struct Candidate {
    LaneHit hit;
    /// Pixels outside the block; 0 inside.
    double away = 0;
};

LaneHit::Part PartAt(double x, double left, double right) {
    const double width = right - left;
    const double edge = width < Narrow ? 0 : std::min(EdgeInside, width * EdgeShare);
    if (x < left + edge)
        return LaneHit::Part::Start;
    return x > right - edge ? LaneHit::Part::End : LaneHit::Part::Middle;
}

} // namespace

int LaneShape::TrackAt(double y) const {
    return std::clamp(static_cast<int>(std::floor((y - ruler) / TrackHeight())), 0, tracks - 1);
}

LaneHit HitLane(const LaneTitles& titles, const LaneView& view, const LaneShape& shape, double x,
                double y) {
    if (y < shape.ruler || y >= shape.height)
        return {};
    const int track = shape.TrackAt(y);
    Candidate best;
    best.away = EdgeOutside + 1;
    titles.Within(view.Time(x - EdgeOutside), view.Time(x + EdgeOutside), [&](std::int32_t title) {
        if (titles.Track(title) != track)
            return;
        const double left = view.X(titles.Start(title));
        const double right = std::max(left + 1, view.X(titles.End(title)));
        const double away = std::max({left - x, x - right, 0.0});
        if (away <= EdgeOutside && away <= best.away)
            best = {{PartAt(x, left, right), title}, away};
    });
    return best.hit;
}

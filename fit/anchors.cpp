#include "fit/anchors.h"

#include <algorithm>
#include <cmath>

namespace {

/// The stretch [first, last) with its rate, moved so that the anchor is met.
Stretch Through(const Stretch& stretch, std::size_t first, std::size_t last,
                const PlacedAnchor& anchor, std::span<const SpokenTitle> titles) {
    Stretch through = stretch;
    through.first = first;
    through.last = last;
    through.offset = anchor.start - titles[anchor.title].start * stretch.rate;
    return through;
}

/// The line through both anchors, if it is one that a film could be played at.
bool Between(Stretch& line, const PlacedAnchor& a, const PlacedAnchor& b,
             std::span<const SpokenTitle> titles) {
    constexpr double MostBent = 0.1;
    const double old = titles[b.title].start - titles[a.title].start;
    const double rate = old > 0 ? (b.start - a.start) / old : 0;
    if (!(std::abs(rate - line.rate) <= MostBent))
        return false;
    line.rate = rate;
    line.offset = a.start - titles[a.title].start * rate;
    line.first = a.title + 1;
    line.last = b.title + 1;
    return true;
}

void Bend(std::vector<Stretch>& bent, const Stretch& stretch, std::span<const SpokenTitle> titles,
          std::span<const PlacedAnchor> anchors) {
    std::size_t next = stretch.first;
    for (std::size_t i = 0; i < anchors.size(); ++i) {
        Stretch line = stretch;
        if (i > 0 && Between(line, anchors[i - 1], anchors[i], titles)) {
            bent.push_back(line);
        } else {
            // The titles between two anchors that no line joins go with the nearer one.
            std::size_t first = next;
            if (i > 0) {
                const std::size_t middle = (anchors[i - 1].title + anchors[i].title + 1) / 2;
                if (middle > next) {
                    bent.push_back(Through(stretch, next, middle, anchors[i - 1], titles));
                    first = middle;
                }
            }
            bent.push_back(Through(stretch, first, anchors[i].title + 1, anchors[i], titles));
        }
        next = anchors[i].title + 1;
    }
    if (next < stretch.last)
        bent.push_back(Through(stretch, next, stretch.last, anchors.back(), titles));
}

} // namespace

std::vector<PlacedAnchor> PlacedAnchors(std::span<const FitAnchor> anchors,
                                        std::span<const SpokenTitle> titles) {
    std::vector<PlacedAnchor> placed;
    for (const FitAnchor& anchor : anchors) {
        if (!std::isfinite(anchor.start) || std::abs(anchor.start) > FarAway)
            continue;
        const auto title = std::find_if(titles.begin(), titles.end(), [&](const SpokenTitle& t) {
            return anchor.title >= 1 && t.source + 1 == static_cast<std::size_t>(anchor.title);
        });
        if (title == titles.end())
            continue;
        const PlacedAnchor found{static_cast<std::size_t>(title - titles.begin()), anchor.start};
        const auto same = std::find_if(placed.begin(), placed.end(), [&](const PlacedAnchor& p) {
            return p.title == found.title;
        });
        if (same == placed.end())
            placed.push_back(found);
        else
            *same = found;
    }
    std::sort(placed.begin(), placed.end(),
              [](const PlacedAnchor& a, const PlacedAnchor& b) { return a.title < b.title; });
    return placed;
}

std::vector<Stretch> ThroughAnchors(const std::vector<Stretch>& stretches,
                                    std::span<const SpokenTitle> titles,
                                    std::span<const PlacedAnchor> anchors) {
    std::vector<Stretch> bent;
    for (const Stretch& stretch : stretches) {
        const auto begin = std::find_if(anchors.begin(), anchors.end(), [&](const PlacedAnchor& a) {
            return a.title >= stretch.first;
        });
        const auto end = std::find_if(
            begin, anchors.end(), [&](const PlacedAnchor& a) { return a.title >= stretch.last; });
        if (begin == end)
            bent.push_back(stretch);
        else
            Bend(bent, stretch, titles, {begin, end});
    }
    return bent;
}

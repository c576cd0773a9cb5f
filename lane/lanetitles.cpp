#include "lane/lanetitles.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

namespace {

/// Times are shown by the millisecond: what overlaps by less does not overlap.
constexpr double Grain = 0.001;

} // namespace

void LaneTitles::Assign(std::vector<double> starts, std::vector<double> ends) {
    m_starts = std::move(starts);
    m_ends = std::move(ends);
    m_ends.resize(m_starts.size());
    Arrange();
}

void LaneTitles::Change(std::span<const LaneTimes> titles) {
    for (const LaneTimes& one : titles) {
        if (one.title < 1 || one.title > Count())
            continue;
        m_starts[Index(one.title)] = one.start;
        m_ends[Index(one.title)] = one.end;
    }
    Arrange();
}

void LaneTitles::Arrange() {
    const std::size_t count = m_starts.size();
    m_order.clear();
    if (!std::is_sorted(m_starts.begin(), m_starts.end())) {
        m_order.resize(count);
        std::iota(m_order.begin(), m_order.end(), 1);
        std::stable_sort(m_order.begin(), m_order.end(),
                         [this](auto a, auto b) { return Start(a) < Start(b); });
    }
    m_track.assign(count, 0);
    m_latestEnd.resize(count);
    m_tracks = 1;
    constexpr double Never = -std::numeric_limits<double>::infinity();
    std::array<double, MostTracks> taken{};
    taken.fill(Never);
    double latest = Never;
    for (std::size_t place = 0; place < count; ++place) {
        const std::int32_t title = TitleAt(place);
        const double start = Start(title);
        const double end = std::max(start, End(title));
        std::size_t track = 0;
        while (track + 1 < taken.size() && taken[track] > start + Grain)
            ++track;
        taken[track] = std::max(taken[track], end);
        latest = std::max(latest, end);
        m_track[Index(title)] = static_cast<std::uint8_t>(track);
        m_latestEnd[place] = latest;
        m_tracks = std::max(m_tracks, static_cast<int>(track) + 1);
    }
}

std::size_t LaneTitles::FirstPlace(double from) const {
    return static_cast<std::size_t>(std::lower_bound(m_latestEnd.begin(), m_latestEnd.end(), from) -
                                    m_latestEnd.begin());
}

std::optional<double> LaneTitles::NearestEdge(double time, double reach,
                                              std::span<const std::int32_t> without) const {
    std::optional<double> nearest;
    const auto consider = [&](double edge) {
        if (std::abs(edge - time) <= reach &&
            (!nearest || std::abs(edge - time) < std::abs(*nearest - time)))
            nearest = edge;
    };
    Within(time - reach, time + reach, [&](std::int32_t title) {
        if (std::binary_search(without.begin(), without.end(), title))
            return;
        consider(Start(title));
        consider(End(title));
    });
    return nearest;
}

#include "fit/refine.h"

#include <algorithm>
#include <cmath>

namespace {

/// The sum over all titles of how well they fit at each tick around the offset.
using Profile = std::vector<double>;

/// The middle of the highest stretch of the profile, weighed by how far it stands out.
double Peak(const Profile& profile) {
    const auto top = std::max_element(profile.begin(), profile.end());
    const auto lowest = *std::min_element(profile.begin(), profile.end());
    const double level = *top - (*top - lowest) * 0.25;
    double weight = 0;
    double moment = 0;
    auto first = top;
    while (first != profile.begin() && *(first - 1) > level)
        --first;
    for (auto at = first; at != profile.end() && *at > level; ++at) {
        weight += *at - level;
        moment += (*at - level) * static_cast<double>(at - profile.begin());
    }
    return weight > 0 ? moment / weight : static_cast<double>(top - profile.begin());
}

double Refined(const Profile& profile, double reach) {
    const auto [lowest, highest] = std::minmax_element(profile.begin(), profile.end());
    if (!(*highest > *lowest))
        return 0;
    return Peak(profile) / TicksPerSecond - reach;
}

bool Within(const SpeechTrack& track, Ticks moment) {
    return moment >= track.Begin() && moment <= track.End();
}

double Rise(const SpeechTrack& track, Ticks moment, Ticks width) {
    return static_cast<double>(track.Sum(moment, moment + width) -
                               track.Sum(moment - width, moment));
}

} // namespace

double RefinedOffset(const SpeechTrack& track, std::span<const SpokenTitle> titles,
                     const Stretch& stretch, double reach) {
    constexpr Ticks Width = 30;
    const Ticks around = TicksOf(reach);
    Profile profile(static_cast<std::size_t>(2 * around + 1), 0.0);
    for (std::size_t i = stretch.first; i < stretch.last; ++i) {
        if (!titles[i].spoken)
            continue;
        const Ticks start = TicksOf(titles[i].start * stretch.rate + stretch.offset);
        if (!Within(track, start))
            continue;
        for (Ticks t = -around; t <= around; ++t)
            profile[static_cast<std::size_t>(t + around)] += Rise(track, start + t, Width);
    }
    return stretch.offset + Refined(profile, reach);
}

double RefinedOffset(std::span<const SpokenTitle> right, std::span<const SpokenTitle> titles,
                     const Stretch& stretch, double reach) {
    constexpr Ticks Width = 12;
    const Ticks around = TicksOf(reach);
    Profile profile(static_cast<std::size_t>(2 * around + 1), 0.0);
    std::size_t from = 0;
    for (std::size_t i = stretch.first; i < stretch.last; ++i) {
        const Ticks start = TicksOf(titles[i].start * stretch.rate + stretch.offset);
        while (from < right.size() && TicksOf(right[from].start) < start - around - Width)
            ++from;
        for (std::size_t j = from; j < right.size(); ++j) {
            const Ticks difference = TicksOf(right[j].start) - start;
            if (difference > around + Width)
                break;
            for (Ticks t = -Width; t <= Width; ++t) {
                const Ticks place = difference + t + around;
                if (place >= 0 && place <= 2 * around)
                    profile[static_cast<std::size_t>(place)] += Width - std::abs(t);
            }
        }
    }
    return stretch.offset + Refined(profile, reach);
}

double Residual(const SpeechTrack& track, double moment) {
    constexpr Ticks Width = 20;
    constexpr Ticks Reach = 100;
    const Ticks middle = TicksOf(moment);
    if (!Within(track, middle))
        return 0;
    // At least half of what a start out of silence gives, less the further away.
    double best = 0.5 * Width * SpeechTrack::Unit;
    Ticks found = 0;
    for (Ticks t = -Reach; t <= Reach; ++t) {
        const double rise =
            Rise(track, middle + t, Width) * (1 - 0.5 * static_cast<double>(std::abs(t)) / Reach);
        if (rise > best) {
            best = rise;
            found = t;
        }
    }
    return SecondsOf(found);
}

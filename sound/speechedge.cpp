#include "sound/speechedge.h"

#include <cmath>
#include <cstdint>

namespace {

constexpr double SnapReach = 0.25;
constexpr int Beside = SoundMap::SpeechRate / 5;
constexpr double Little = 0.25;

/// The mean probability of speech of so many values; nothing where one is not known.
std::optional<double> MeanSpeech(const SoundMap& map, std::int64_t first, int count) {
    double sum = 0;
    for (int i = 0; i < count; ++i) {
        const double middle = (static_cast<double>(first + i) + 0.5) / SoundMap::SpeechRate;
        const auto speech = map.Speech(middle);
        if (!speech)
            return std::nullopt;
        sum += static_cast<double>(*speech);
    }
    return sum / count;
}

/// Someone begins to speak with this value (or stops before it), clearly.
bool IsSureEdge(const SoundMap& map, std::int64_t value, SpeechEdge edge) {
    const auto before = MeanSpeech(map, value - Beside, Beside);
    const auto after = MeanSpeech(map, value, Beside);
    const auto last = MeanSpeech(map, value - 1, 1);
    const auto next = MeanSpeech(map, value, 1);
    if (!before || !after || !last || !next)
        return false;
    constexpr auto Threshold = static_cast<double>(SoundMap::SpeechThreshold);
    if (edge == SpeechEdge::Start)
        return *last < Threshold && *next >= Threshold && *before <= Little && *after >= 1 - Little;
    return *last >= Threshold && *next < Threshold && *before >= 1 - Little && *after <= Little;
}

} // namespace

std::optional<double> SureSpeechEdge(const SoundMap& map, double time, SpeechEdge edge,
                                     double reach) {
    if (!(std::abs(time) <= SoundMap::LongestLength))
        return std::nullopt;
    constexpr double Rate = SoundMap::SpeechRate;
    std::optional<double> nearest;
    const auto last = static_cast<std::int64_t>(std::floor((time + reach) * Rate));
    for (auto value = static_cast<std::int64_t>(std::ceil((time - reach) * Rate)); value <= last;
         ++value) {
        const double at = static_cast<double>(value) / Rate;
        if (IsSureEdge(map, value, edge) &&
            (!nearest || std::abs(at - time) < std::abs(*nearest - time)))
            nearest = at;
    }
    return nearest;
}

SpeechSpan SnappedToSpeech(const SoundMap& map, const SpeechSpan& recorded) {
    const SpeechSpan snapped{
        SureSpeechEdge(map, recorded.start, SpeechEdge::Start, SnapReach).value_or(recorded.start),
        SureSpeechEdge(map, recorded.end, SpeechEdge::End, SnapReach).value_or(recorded.end)};
    return snapped.start < snapped.end ? snapped : recorded;
}

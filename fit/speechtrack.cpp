#include "fit/speechtrack.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr std::int32_t FullSpeech = 1000;
constexpr Ticks HalfMeanWindow = 300;
/// In units of spread; a shout says no more than speech.
constexpr std::int32_t Ceiling = 4;
/// Titles that follow each other without a gap still have starts to be found.
constexpr Ticks GapBeforeTitle = 15;

bool IsClear(const std::vector<std::int32_t>& levels) {
    constexpr std::int32_t Doubt = FullSpeech / 4;
    const auto all = static_cast<double>(levels.size());
    const auto speech = std::count_if(levels.begin(), levels.end(), [](std::int32_t level) {
        return level >= FullSpeech - Doubt;
    });
    const auto none = std::count_if(levels.begin(), levels.end(),
                                    [](std::int32_t level) { return level <= Doubt; });
    constexpr double Enough = 0.08;
    constexpr double Most = 0.55;
    return static_cast<double>(speech + none) > all * Most &&
           static_cast<double>(speech) > all * Enough && static_cast<double>(none) > all * Enough;
}

/// Sums of a long film stay far within 32 bits; so long a film nobody shows.
constexpr Ticks LongestFilm = 48 * 3600 * TicksPerSecond;

} // namespace

SpeechTrack::SpeechTrack(const SpeechCurve& curve)
    : m_begin(TicksOf(curve.start)) {
    const std::size_t length = std::min(curve.values.size(), static_cast<std::size_t>(LongestFilm));
    std::vector<std::int32_t> levels(length);
    std::transform(curve.values.begin(), curve.values.begin() + static_cast<std::ptrdiff_t>(length),
                   levels.begin(), [](float value) {
                       if (!(value > 0))
                           return 0;
                       const double level = static_cast<double>(std::min(value, 1.0F));
                       return static_cast<std::int32_t>(level * FullSpeech + 0.5);
                   });
    Build(levels);
}

SpeechTrack::SpeechTrack(std::span<const SpokenTitle> titles) {
    if (titles.empty())
        return;
    constexpr double Lead = 10;
    m_begin = TicksOf(std::min(0.0, titles.front().start - Lead));
    double last = 0;
    for (const SpokenTitle& title : titles)
        last = std::max(last, title.end);
    const Ticks length = std::clamp(TicksOf(last + Lead) - m_begin, 0, LongestFilm);
    std::vector<std::int32_t> levels(static_cast<std::size_t>(length), 0);
    const auto fill = [&](Ticks from, Ticks to, std::int32_t level) {
        from = std::clamp(from - m_begin, 0, length);
        to = std::clamp(to - m_begin, from, length);
        std::fill(levels.begin() + from, levels.begin() + to, level);
    };
    for (const SpokenTitle& title : titles)
        fill(TicksOf(title.start), TicksOf(title.end), FullSpeech);
    for (const SpokenTitle& title : titles)
        fill(TicksOf(title.start) - GapBeforeTitle, TicksOf(title.start), 0);
    Build(levels);
}

void SpeechTrack::Build(const std::vector<std::int32_t>& levels) {
    m_length = static_cast<Ticks>(levels.size());
    m_clear = IsClear(levels);
    const auto size = static_cast<std::size_t>(m_length);
    std::vector<std::int32_t> raised(size);
    // The window is cut at the film's ends, so each value is weighed by its width.
    std::int64_t windowSum = 0;
    double squares = 0;
    Ticks from = 0;
    Ticks to = 0;
    for (Ticks t = 0; t < m_length; ++t) {
        for (; to < std::min(t + HalfMeanWindow, m_length); ++to)
            windowSum += levels[static_cast<std::size_t>(to)];
        for (; from < t - HalfMeanWindow; ++from)
            windowSum -= levels[static_cast<std::size_t>(from)];
        const std::int64_t mean = windowSum * 16 / (to - from);
        const auto value =
            static_cast<std::int32_t>(levels[static_cast<std::size_t>(t)] * 16 - mean);
        raised[static_cast<std::size_t>(t)] = value;
        squares += static_cast<double>(value) * value;
    }
    const double spread = m_length > 0 ? std::sqrt(squares / m_length) : 0;
    m_flat = spread < 16;
    const double scale = m_flat ? 0 : Unit / spread;

    constexpr auto Step = static_cast<std::size_t>(OffsetGrid::Step);
    const std::size_t sums = size + 2 * static_cast<std::size_t>(Margin) + 1;
    for (std::vector<std::int32_t>& phase : m_sums)
        phase.reserve(sums / Step + 2);
    std::int32_t sum = 0;
    for (std::size_t place = 0; place < sums; ++place) {
        m_sums[place % Step].push_back(sum);
        const std::size_t t = place - static_cast<std::size_t>(Margin);
        if (place >= static_cast<std::size_t>(Margin) && t < size) {
            const double value = std::floor(raised[t] * scale + 0.5);
            sum += std::clamp(static_cast<std::int32_t>(value), -Ceiling * Unit, Ceiling * Unit);
        }
    }
}

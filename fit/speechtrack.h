#pragma once

#include "fit/ticks.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

/// A speech curve made comparable from place to place: less its running mean over six
/// seconds, in units of its spread, summed up from the start, so that the speech
/// within any stretch is the difference of two sums. Outside of the film it is 0.
///
/// The values are whole numbers, so that their sums are exact.
class SpeechTrack {
  public:
    /// One unit of spread.
    static constexpr std::int32_t Unit = 64;
    /// How far sums may be asked for before the film's start and behind its end.
    static constexpr Ticks Margin = 2000;

    explicit SpeechTrack(const SpeechCurve& curve);
    /// As if a detector had heard speech during each title and nothing between.
    explicit SpeechTrack(std::span<const SpokenTitle> titles);

    /// The film, in ticks.
    Ticks Begin() const { return m_begin; }
    Ticks End() const { return m_begin + m_length; }
    /// There is nothing to be found: silence, or one unbroken noise.
    bool Flat() const { return m_flat; }

    /// Most of the film is clearly speech or clearly none, and there is enough of either.
    bool Clear() const { return m_clear; }

    /// The sums up to the tick and to every `OffsetGrid::Step`th tick after it.
    /// Begin() - Margin <= tick <= End() + Margin.
    const std::int32_t* SumsFrom(Ticks tick) const {
        const Ticks inside = tick - m_begin + Margin;
        const auto place = static_cast<std::size_t>(inside);
        constexpr auto Step = static_cast<std::size_t>(OffsetGrid::Step);
        return m_sums[place % Step].data() + place / Step;
    }
    std::int32_t Sum(Ticks from, Ticks to) const { return *SumsFrom(to) - *SumsFrom(from); }

  private:
    void Build(const std::vector<std::int32_t>& levels);

    Ticks m_begin = 0;
    Ticks m_length = 0;
    bool m_flat = true;
    bool m_clear = false;
    /// Every tenth sum from ten beginnings on.
    std::array<std::vector<std::int32_t>, static_cast<std::size_t>(OffsetGrid::Step)> m_sums;
};

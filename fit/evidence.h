#pragma once

#include "fit/speechtrack.h"

#include <span>
#include <vector>

/// How much more the speech sounds like the title at a place than like anything else.
///
/// The raw score of a title at an offset is the speech within it, less its share of the
/// speech within it and half of the gaps around it, plus the rise of speech at its
/// start; in units of what comes out at places that are wrong. From that follows the
/// logarithm of a likelihood ratio: below 0 where the title does not belong.
class Evidence {
  public:
    /// What a title that lies outside of the film costs.
    static constexpr float Outside = -0.45F;

    /// Of the titles whose indexes are in `searched` (ascending), among all. The offsets
    /// are those of `grid`, the titles' times are multiplied by the rate first. The
    /// track must outlive this.
    Evidence(const SpeechTrack& track, std::span<const SpokenTitle> titles,
             std::span<const std::size_t> searched, double rate, const OffsetGrid& grid);

    std::size_t Count() const { return m_titles.size(); }
    const OffsetGrid& Grid() const { return m_grid; }
    const SpeechTrack& Track() const { return m_track; }
    Ticks Start(std::size_t title) const { return m_titles[title].start; }
    Ticks End(std::size_t title) const { return m_titles[title].start + m_titles[title].length; }

    /// How far right places stand out, 0.3 to 2; measured from a first answer.
    void Contrast(float contrast) { m_contrast = contrast; }
    /// Titles that are in few places only: an offset for each, in ticks, or `Free`.
    static constexpr Ticks Free = INT32_MIN;
    void Fix(std::vector<Ticks> offsets) { m_fixed = std::move(offsets); }

    /// The evidence for a title at each offset of the grid.
    void Row(std::size_t title, float* row) const;
    /// The raw score at each offset, in units of its spread at wrong places.
    void RawRow(std::size_t title, float* row) const;
    /// How much the title says, about 1: a short one without gaps around it says little.
    float Weight(std::size_t title) const { return m_titles[title].weight; }

  private:
    struct Title {
        Ticks start = 0;
        Ticks length = 0;
        Ticks before = 0;
        Ticks after = 0;
        float share = 0;
        float scale = 0;
        float weight = 0;
    };

    std::pair<std::int32_t, std::int32_t> InsideFilm(const Title& title) const;
    void MeasureSpread();

    const SpeechTrack& m_track;
    OffsetGrid m_grid;
    std::vector<Title> m_titles;
    std::vector<Ticks> m_fixed;
    float m_spread = 1;
    float m_contrast = 0.9F;
};

#pragma once

#include "fit/anchors.h"
#include "fit/search.h"

#include <array>
#include <optional>

/// 23.976, 24, 25, 29.97 and 30 pictures a second, each played as each other, and as itself.
std::span<const double> KnownRates();

/// What a search came to.
struct Found {
    double rate = 1;
    OffsetGrid grid;
    Path path;
    /// The place that each title searched asks for by itself.
    std::vector<std::int32_t> own;
    /// The best score, that of rate 1, and the best one of titles mirrored in time, which
    /// fit nothing.
    float score = 0;
    float scoreAsMade = 0;
    float decoy = 0;
    float contrast = 0;
};

/// Searches rate, offset and cuts.
class Solver {
  public:
    /// All must outlive this. `window` as in `FitOptions`.
    Solver(const SpeechTrack& track, std::span<const SpokenTitle> titles,
           std::span<const PlacedAnchor> anchors, double window);

    /// The titles that are looked for, ascending: those that are spoken, of very many
    /// only some, and those with an anchor. The path has one place for each.
    const std::vector<std::size_t>& Searched() const { return m_searched; }

    /// What it answers when stopped means nothing.
    Found Search(Workers& workers) const;

  private:
    Evidence EvidenceAt(double rate, std::span<const SpokenTitle> titles, bool anchored) const;
    OffsetGrid GridAt(double rate) const;
    /// The scores at the rates, less what a rate other than 1 costs.
    std::vector<float> Scores(std::span<const double> rates, std::span<const SpokenTitle> titles,
                              bool anchored, float contrast, Workers& workers, double share) const;

    const SpeechTrack& m_track;
    std::span<const SpokenTitle> m_titles;
    std::span<const PlacedAnchor> m_anchors;
    double m_window;
    std::vector<std::size_t> m_searched;
    std::vector<SpokenTitle> m_mirrored;
    std::vector<std::size_t> m_searchedMirrored;
    PathCosts m_costs;
};

#pragma once

#include "fit/solver.h"

/// Turns what a search found into what is told: pieces, places, and how sure they are.
class Answer {
  public:
    /// `right` is empty when the track is of speech. All must outlive this.
    Answer(std::span<const SpokenTitle> titles, std::span<const SpokenTitle> right,
           const SpeechTrack& track, std::span<const PlacedAnchor> anchors)
        : m_titles(titles)
        , m_right(right)
        , m_track(track)
        , m_anchors(anchors)
        , m_noPlace(titles.size(), false)
        , m_confidence(titles.size(), 0)
        , m_ownOffset(titles.size(), 0) {}

    void Take(const Found& found, const std::vector<std::size_t>& searched);
    /// Where there is nothing to search in: what the anchors say by themselves.
    void TakeAnchors();

    /// `titles` are those that were given.
    Fit Result(std::span<const FitTitle> titles) const;

  private:
    void Divide(const Found& found, const std::vector<std::size_t>& searched);
    void TakeMargins(const Found& found, const std::vector<std::size_t>& searched);
    void TakeOwnOffsets(const Found& found, const std::vector<std::size_t>& searched);
    void Refine();
    void DropOutside();
    /// The speech has the titles with anchors where the anchors have them.
    bool AnchorsAgree() const;
    void Judge(const Found& found, bool anchorsAgree);
    bool Strangers(const Found& found) const;

    std::span<const SpokenTitle> m_titles;
    std::span<const SpokenTitle> m_right;
    const SpeechTrack& m_track;
    std::span<const PlacedAnchor> m_anchors;

    std::vector<Stretch> m_stretches;
    /// For each title, in the order of starts.
    std::vector<bool> m_noPlace;
    std::vector<double> m_confidence;
    std::vector<double> m_ownOffset;
    FitVerdict m_verdict = FitVerdict::Unsure;
    double m_sure = 0;
    bool m_elsewhere = false;
};

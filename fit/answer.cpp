#include "fit/answer.h"

#include <algorithm>
#include <cmath>

namespace {

/// A move that nobody sees.
constexpr double Unseen = 0.15;

} // namespace

void Answer::Take(const Found& found, const std::vector<std::size_t>& searched) {
    Divide(found, searched);
    TakeMargins(found, searched);
    TakeOwnOffsets(found, searched);
    Refine();
    if (m_right.empty())
        DropOutside();
    const bool agrees = AnchorsAgree();
    if (m_stretches.empty())
        m_stretches = {Stretch{0, m_titles.size(), 0, 1, 0}};
    m_stretches = ThroughAnchors(m_stretches, m_titles, m_anchors);
    for (const PlacedAnchor& anchor : m_anchors)
        m_noPlace[anchor.title] = false;
    Judge(found, agrees);
}

bool Answer::AnchorsAgree() const {
    constexpr double Reach = 1;
    return std::all_of(m_anchors.begin(), m_anchors.end(), [this](const PlacedAnchor& anchor) {
        const auto stretch = std::find_if(m_stretches.begin(), m_stretches.end(),
                                          [&](const Stretch& s) { return anchor.title < s.last; });
        if (stretch == m_stretches.end())
            return false;
        const double start = m_titles[anchor.title].start * stretch->rate + stretch->offset;
        return std::abs(start - anchor.start) < Reach;
    });
}

void Answer::TakeAnchors() {
    if (m_anchors.empty())
        return;
    m_stretches = ThroughAnchors({Stretch{0, m_titles.size(), 0, 1, 0}}, m_titles, m_anchors);
}

void Answer::Divide(const Found& found, const std::vector<std::size_t>& searched) {
    // A title that was not looked for goes with its nearer neighbour.
    const auto nearest = [&](std::size_t title, std::size_t next) {
        if (next == 0)
            return next;
        if (next == searched.size())
            return next - 1;
        const double before = m_titles[title].start - m_titles[searched[next - 1]].start;
        const double behind = m_titles[searched[next]].start - m_titles[title].start;
        return searched[next] != title && before <= behind ? next - 1 : next;
    };
    std::size_t next = 0;
    std::int32_t last = NoPlace;
    for (std::size_t title = 0; title < m_titles.size() && !searched.empty(); ++title) {
        while (next < searched.size() && searched[next] < title)
            ++next;
        const std::int32_t place = found.path.places[nearest(title, next)];
        m_noPlace[title] = place == NoPlace;
        if (place != NoPlace && place != last) {
            const double offset = SecondsOf(found.grid.At(place));
            // What has no place at the head goes with the first piece.
            const std::size_t first = m_stretches.empty() ? 0 : title;
            m_stretches.push_back({first, title + 1, offset, found.rate, 0});
            last = place;
        }
        if (!m_stretches.empty())
            m_stretches.back().last = title + 1;
    }
}

void Answer::TakeMargins(const Found& found, const std::vector<std::size_t>& searched) {
    // The unit is the natural logarithm of a likelihood ratio, which is too sure of
    // itself as neighbours are not independent.
    constexpr double Even = 2;
    std::vector<bool> known(m_titles.size(), false);
    for (std::size_t i = 0; i < searched.size(); ++i) {
        const auto margin = static_cast<double>(found.path.margins[i]);
        m_confidence[searched[i]] = 1 - 0.5 / (1 + margin * margin / (Even * Even));
        known[searched[i]] = true;
    }
    double last = 0;
    for (std::size_t title = 0; title < m_titles.size(); ++title) {
        if (known[title])
            last = m_confidence[title];
        else
            m_confidence[title] = last;
    }
}

void Answer::TakeOwnOffsets(const Found& found, const std::vector<std::size_t>& searched) {
    double last = m_stretches.empty() ? 0 : m_stretches.front().offset;
    std::size_t next = 0;
    for (std::size_t title = 0; title < m_titles.size(); ++title) {
        if (next < searched.size() && searched[next] == title)
            last = SecondsOf(found.grid.At(found.own[next++]));
        m_ownOffset[title] = last;
    }
}

void Answer::Refine() {
    constexpr double Reach = 0.5;
    for (Stretch& stretch : m_stretches)
        stretch.offset = m_right.empty() ? RefinedOffset(m_track, m_titles, stretch, Reach)
                                         : RefinedOffset(m_right, m_titles, stretch, Reach);
    std::vector<Stretch> joined;
    constexpr double Same = 0.1;
    for (const Stretch& stretch : m_stretches) {
        if (!joined.empty() && std::abs(joined.back().offset - stretch.offset) < Same)
            joined.back().last = stretch.last;
        else
            joined.push_back(stretch);
    }
    m_stretches = std::move(joined);
}

void Answer::DropOutside() {
    for (const Stretch& stretch : m_stretches) {
        for (std::size_t i = stretch.first; i < stretch.last; ++i) {
            const double middle =
                (m_titles[i].start + m_titles[i].end) / 2 * stretch.rate + stretch.offset;
            if (middle < SecondsOf(m_track.Begin()) || middle > SecondsOf(m_track.End()))
                m_noPlace[i] = true;
        }
    }
}

void Answer::Judge(const Found& found, bool anchorsAgree) {
    double sure = 0;
    double placed = 0;
    for (Stretch& stretch : m_stretches) {
        std::vector<double> confidences;
        for (std::size_t i = stretch.first; i < stretch.last; ++i) {
            if (m_noPlace[i] || !m_titles[i].spoken)
                continue;
            sure += m_confidence[i];
            ++placed;
            confidences.push_back(m_confidence[i]);
        }
        std::sort(confidences.begin(), confidences.end());
        if (!confidences.empty())
            stretch.confidence = confidences[confidences.size() * 3 / 4];
    }
    sure = placed > 0 ? sure / placed : 0;
    constexpr float LeastOverDecoy = 1.7F;
    const bool better = found.score > LeastOverDecoy * std::max(found.decoy, 5.0F);
    m_sure = better ? sure : std::min(sure, 0.5);
    if (!better || sure < 0.94 || !anchorsAgree) {
        m_elsewhere = Strangers(found);
        return;
    }
    const bool stays = std::all_of(m_stretches.begin(), m_stretches.end(), [](const Stretch& s) {
        return s.rate == 1 && std::abs(s.offset) < Unseen;
    });
    m_verdict = stays ? FitVerdict::Right : FitVerdict::Fitted;
}

/// Titles that belong to the film come to 0.3 and more each, those of another one to 0.02.
bool Answer::Strangers(const Found& found) const {
    constexpr std::size_t Many = 100;
    constexpr float AtHome = 0.05F;
    const std::size_t searched = found.path.places.size();
    return m_anchors.empty() && m_track.Clear() && searched >= Many &&
           found.score < AtHome * static_cast<float>(searched);
}

Fit Answer::Result(std::span<const FitTitle> titles) const {
    Fit fit;
    fit.verdict = m_verdict;
    fit.confidence = m_sure;
    fit.elsewhere = m_elsewhere;
    fit.titles.resize(titles.size());
    for (const Stretch& stretch : m_stretches) {
        FitPiece piece{0, 0, stretch.offset, stretch.rate, stretch.confidence};
        const auto number = static_cast<std::int32_t>(fit.pieces.size());
        for (std::size_t i = stretch.first; i < stretch.last; ++i) {
            const std::size_t source = m_titles[i].source;
            const auto title = static_cast<std::int32_t>(source) + 1;
            piece.first = piece.first == 0 ? title : std::min(piece.first, title);
            piece.last = std::max(piece.last, title);
            FittedTitle& fitted = fit.titles[source];
            fitted.ownOffset = m_ownOffset[i];
            fitted.confidence = m_confidence[i];
            if (m_noPlace[i]) {
                fit.withoutPlace.push_back(title);
                continue;
            }
            fitted.piece = number;
            const double start = m_titles[i].start * stretch.rate + stretch.offset;
            fitted.residual = Residual(m_track, start);
            if (start < 0 && m_titles[i].start >= 0)
                fit.beforeZero.push_back(title);
        }
        fit.pieces.push_back(piece);
    }
    for (const PlacedAnchor& anchor : m_anchors)
        fit.titles[m_titles[anchor.title].source].anchored = true;
    std::sort(fit.withoutPlace.begin(), fit.withoutPlace.end());
    std::sort(fit.beforeZero.begin(), fit.beforeZero.end());
    return fit;
}

#include "fit/solver.h"

#include "fit/ownplaces.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

/// Of so many titles each one is looked for; of more every second, third, ...
constexpr std::size_t MostSearched = 3000;
/// Places of all titles together that are kept in memory: 80 MB.
constexpr double MostPlaces = 20e6;
/// How much further than the window titles may be moved because the film is longer or shorter.
constexpr double FurthestByLength = 1500;
constexpr float OtherRateCost = 4;
constexpr float UsualContrast = 0.9F;

std::vector<double> QuotientsOfRates() {
    constexpr std::array<double, 5> Film{24000.0 / 1001, 24, 25, 30000.0 / 1001, 30};
    std::vector<double> rates{1};
    for (const double made : Film) {
        for (const double played : Film) {
            const double rate = made / played;
            const bool known = std::any_of(rates.begin(), rates.end(), [&](double other) {
                return std::abs(rate - other) < 1e-6;
            });
            if (!known)
                rates.push_back(rate);
        }
    }
    return rates;
}

std::vector<SpokenTitle> Mirrored(std::span<const SpokenTitle> titles) {
    std::vector<SpokenTitle> mirrored(titles.rbegin(), titles.rend());
    if (titles.empty())
        return mirrored;
    const double ends = titles.front().start + titles.back().end;
    for (SpokenTitle& title : mirrored) {
        const double start = ends - title.end;
        title.end = ends - title.start;
        title.start = start;
    }
    std::stable_sort(mirrored.begin(), mirrored.end(),
                     [](const SpokenTitle& a, const SpokenTitle& b) { return a.start < b.start; });
    return mirrored;
}

/// By how much the right places stand out, from places that were found.
float MeasuredContrast(const Evidence& evidence, const Path& path) {
    std::vector<float> row(static_cast<std::size_t>(evidence.Grid().count));
    double scores = 0;
    double weights = 0;
    for (std::size_t i = 0; i < evidence.Count(); ++i) {
        if (path.places[i] == NoPlace)
            continue;
        evidence.RawRow(i, row.data());
        const auto weight = static_cast<double>(evidence.Weight(i));
        scores += static_cast<double>(row[static_cast<std::size_t>(path.places[i])]) * weight;
        weights += weight * weight;
    }
    constexpr double Least = 0.4;
    constexpr double Most = 1.6;
    return static_cast<float>(std::clamp(weights > 0 ? scores / weights : 0.0, Least, Most));
}

} // namespace

std::span<const double> KnownRates() {
    static const std::vector<double> Rates = QuotientsOfRates();
    return Rates;
}

Solver::Solver(const SpeechTrack& track, std::span<const SpokenTitle> titles,
               std::span<const PlacedAnchor> anchors, double window)
    : m_track(track)
    , m_titles(titles)
    , m_anchors(anchors)
    , m_window(std::clamp(window, 1.0, 1800.0))
    , m_mirrored(Mirrored(titles)) {
    const auto spoken = std::count_if(titles.begin(), titles.end(),
                                      [](const SpokenTitle& title) { return title.spoken; });
    const std::size_t stride = static_cast<std::size_t>(spoken) / MostSearched + 1;
    auto anchor = anchors.begin();
    std::size_t seen = 0;
    for (std::size_t i = 0; i < titles.size(); ++i) {
        bool wanted = titles[i].spoken && seen++ % stride == 0;
        if (anchor != anchors.end() && anchor->title == i) {
            wanted = true;
            ++anchor;
        }
        if (wanted)
            m_searched.push_back(i);
    }
    seen = 0;
    for (std::size_t i = 0; i < m_mirrored.size(); ++i) {
        if (m_mirrored[i].spoken && seen++ % stride == 0)
            m_searchedMirrored.push_back(i);
    }
}

OffsetGrid Solver::GridAt(double rate) const {
    double lowest = 0;
    double highest = 0;
    if (!m_titles.empty()) {
        const double longer = SecondsOf(m_track.End()) - m_titles.back().end * rate;
        lowest = std::min(0.0, longer);
        highest = std::max(0.0, longer);
    }
    if (!m_anchors.empty()) {
        lowest = FarAway;
        highest = -FarAway;
    }
    for (const PlacedAnchor& anchor : m_anchors) {
        const double offset = anchor.start - m_titles[anchor.title].start * rate;
        lowest = std::min(lowest, offset);
        highest = std::max(highest, offset);
    }
    const double middle = m_anchors.empty() ? 0 : (lowest + highest) / 2;
    const auto count = static_cast<double>(std::max<std::size_t>(m_searched.size(), 1));
    const double widest = MostPlaces / count / 20;
    const double room = std::max(widest - m_window, 0.0);
    lowest = std::max(lowest, middle - std::min(FurthestByLength, room)) - m_window;
    highest = std::min(highest, middle + std::min(FurthestByLength, room)) + m_window;
    OffsetGrid grid;
    // 0 is in the grid, so that titles that are right are found to be so.
    constexpr Ticks Step = OffsetGrid::Step;
    grid.low = TicksOf(lowest) / Step * Step;
    grid.count = std::max((TicksOf(highest) - grid.low) / Step + 1, 1);
    return grid;
}

Evidence Solver::EvidenceAt(double rate, std::span<const SpokenTitle> titles, bool anchored) const {
    Evidence evidence(m_track, titles, anchored ? m_searched : m_searchedMirrored, rate,
                      GridAt(rate));
    if (anchored && !m_anchors.empty()) {
        std::vector<Ticks> fixed(m_searched.size(), Evidence::Free);
        auto anchor = m_anchors.begin();
        for (std::size_t i = 0; i < m_searched.size() && anchor != m_anchors.end(); ++i) {
            if (m_searched[i] != anchor->title)
                continue;
            fixed[i] = TicksOf(anchor->start - titles[anchor->title].start * rate);
            ++anchor;
        }
        evidence.Fix(std::move(fixed));
    }
    return evidence;
}

std::vector<float> Solver::Scores(std::span<const double> rates,
                                  std::span<const SpokenTitle> titles, bool anchored,
                                  float contrast, Workers& workers, double share) const {
    std::vector<float> scores(rates.size(), 0);
    workers.Run(rates.size(), share, [&](std::size_t i) {
        Evidence evidence = EvidenceAt(rates[i], titles, anchored);
        evidence.Contrast(contrast);
        scores[i] =
            BestScore(evidence, m_costs, workers.Stopped()) - (rates[i] == 1 ? 0 : OtherRateCost);
    });
    return scores;
}

Found Solver::Search(Workers& workers) const {
    constexpr std::size_t Candidates = 4;
    const std::span<const double> rates = KnownRates();
    Found found;
    found.contrast = UsualContrast;
    const std::vector<float> first = Scores(rates, m_titles, true, found.contrast, workers, 0.35);
    std::vector<std::size_t> order(rates.size());
    std::iota(order.begin(), order.end(), 0U);
    std::stable_sort(order.begin(), order.end(),
                     [&](std::size_t a, std::size_t b) { return first[a] > first[b]; });
    // The first rate is 1, which always has its second chance.
    std::vector<double> candidates{rates[0]};
    for (const std::size_t i : std::span(order).first(Candidates)) {
        if (i != 0)
            candidates.push_back(rates[i]);
    }

    workers.Run(1, 0.06, [&](std::size_t) {
        Evidence evidence = EvidenceAt(rates[order[0]], m_titles, true);
        evidence.Contrast(found.contrast);
        const Path path = BestPath(evidence, m_costs, false, workers.Stopped());
        found.contrast = MeasuredContrast(evidence, path);
    });
    const std::vector<float> again =
        Scores(candidates, m_titles, true, found.contrast, workers, 0.1);
    const std::vector<float> decoys =
        Scores(rates, m_mirrored, false, found.contrast, workers, 0.35);
    const auto best = std::max_element(again.begin(), again.end());
    found.rate = candidates[static_cast<std::size_t>(best - again.begin())];
    found.score = *best;
    found.scoreAsMade = again[0];
    found.decoy = *std::max_element(decoys.begin(), decoys.end());
    found.grid = GridAt(found.rate);
    workers.Run(1, 0.1, [&](std::size_t) {
        Evidence evidence = EvidenceAt(found.rate, m_titles, true);
        evidence.Contrast(found.contrast);
        found.path = BestPath(evidence, m_costs, true, workers.Stopped());
        found.own = OwnPlaces(evidence, workers.Stopped());
    });
    return found;
}

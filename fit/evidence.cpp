#include "fit/evidence.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr Ticks WidestGap = 200;
constexpr Ticks NarrowestGap = 15;
/// Speech before and after a start is looked at for so long.
constexpr Ticks Onset = 35;
constexpr float OnsetShare = 0.9F;
/// A title of usual length and gaps, for which the weight is 1.
constexpr float UsualLength = 80;
/// A title that no speech belongs to is no proof against its place.
constexpr float LowestEvidence = -1.8F;
constexpr float HighestEvidence = 4;
constexpr float Never = -1e9F;

} // namespace

Evidence::Evidence(const SpeechTrack& track, std::span<const SpokenTitle> titles,
                   std::span<const std::size_t> searched, double rate, const OffsetGrid& grid)
    : m_track(track)
    , m_grid(grid) {
    m_titles.reserve(titles.size());
    for (const SpokenTitle& title : titles) {
        Title& added = m_titles.emplace_back();
        added.start = TicksOf(title.start * rate);
        added.length = std::max(TicksOf(title.end * rate) - added.start, 20);
    }
    Ticks lastEnd = titles.empty() ? 0 : TicksOf(titles.front().start * rate) - 2 * WidestGap;
    for (std::size_t i = 0; i < titles.size(); ++i) {
        Title& title = m_titles[i];
        // The titles around are those that are spoken.
        title.before = std::clamp((title.start - lastEnd) / 2, NarrowestGap, WidestGap);
        const Ticks end = title.start + title.length;
        std::size_t next = i + 1;
        while (next < titles.size() && !titles[next].spoken)
            ++next;
        title.after = next < titles.size()
                          ? std::clamp((m_titles[next].start - end) / 2, NarrowestGap, WidestGap)
                          : WidestGap;
        if (!titles[i].spoken)
            continue;
        lastEnd = std::max(lastEnd, end);
        const auto length = static_cast<float>(title.length);
        title.share = length / static_cast<float>(title.before + title.length + title.after);
        const float free = length * (1 - title.share);
        title.scale = 1 / std::sqrt(free + 10);
        title.weight = std::clamp(std::sqrt((free + 15) / UsualLength), 0.5F, 1.5F);
    }
    for (std::size_t i = 0; i < searched.size(); ++i)
        m_titles[i] = m_titles[searched[i]];
    m_titles.resize(searched.size());
    MeasureSpread();
}

std::pair<std::int32_t, std::int32_t> Evidence::InsideFilm(const Title& title) const {
    // The title's middle lies within the film.
    const Ticks middle = title.start + title.length / 2 + m_grid.low;
    const auto place = [&](Ticks moment) {
        const Ticks offset = moment - middle;
        const Ticks up = offset > 0 ? (offset + OffsetGrid::Step - 1) / OffsetGrid::Step : 0;
        return std::min(up, m_grid.count);
    };
    const std::int32_t first = place(m_track.Begin());
    return {first, std::max(first, place(m_track.End()))};
}

void Evidence::RawRow(std::size_t number, float* row) const {
    const Title& title = m_titles[number];
    std::fill(row, row + m_grid.count, 0.0F);
    if (title.weight == 0)
        return;
    const auto [first, last] = InsideFilm(title);
    if (first == last)
        return;
    const Ticks start = title.start + m_grid.At(first);
    const std::int32_t* const begin = m_track.SumsFrom(start);
    const std::int32_t* const end = m_track.SumsFrom(start + title.length);
    const std::int32_t* const before = m_track.SumsFrom(start - title.before);
    const std::int32_t* const after = m_track.SumsFrom(start + title.length + title.after);
    const std::int32_t* const rising = m_track.SumsFrom(start - Onset);
    const std::int32_t* const risen = m_track.SumsFrom(start + Onset);
    constexpr auto Unit = static_cast<float>(SpeechTrack::Unit);
    const float inside = title.scale / (Unit * m_spread);
    const float around = inside * title.share;
    const float onset = OnsetShare / (Unit * m_spread * 8.4F);
    const std::int32_t count = last - first;
    float* const out = row + first;
    for (std::int32_t k = 0; k < count; ++k) {
        out[k] = static_cast<float>(end[k] - begin[k]) * inside -
                 static_cast<float>(after[k] - before[k]) * around +
                 static_cast<float>((risen[k] - begin[k]) - (begin[k] - rising[k])) * onset;
    }
}

void Evidence::Row(std::size_t number, float* row) const {
    const Title& title = m_titles[number];
    RawRow(number, row);
    const auto [first, last] = InsideFilm(title);
    const float factor = m_contrast * title.weight;
    const float constant = factor * factor / 2;
    std::fill(row, row + first, Outside);
    for (std::int32_t k = first; k < last; ++k) {
        const float evidence = row[k] * factor - constant;
        const float atLeast = evidence > LowestEvidence ? evidence : LowestEvidence;
        row[k] = atLeast < HighestEvidence ? atLeast : HighestEvidence;
    }
    std::fill(row + last, row + m_grid.count, Outside);
    if (m_fixed.empty() || m_fixed[number] == Free)
        return;
    const std::int32_t place = m_grid.Nearest(m_fixed[number]);
    for (std::int32_t k = 0; k < m_grid.count; ++k)
        row[k] = std::abs(k - place) <= 1 ? std::max(row[k], 0.0F) : Never;
}

void Evidence::MeasureSpread() {
    // Nearly all places are wrong ones, so all may be looked at; some titles will do.
    constexpr std::size_t Looked = 96;
    const std::size_t stride = m_titles.size() / Looked + 1;
    std::vector<float> row(static_cast<std::size_t>(m_grid.count));
    double squares = 0;
    double places = 0;
    for (std::size_t i = 0; i < m_titles.size(); i += stride) {
        if (m_titles[i].weight == 0)
            continue;
        RawRow(i, row.data());
        const auto [first, last] = InsideFilm(m_titles[i]);
        for (std::int32_t k = first; k < last; ++k) {
            const auto value = static_cast<double>(row[static_cast<std::size_t>(k)]);
            squares += value * value;
        }
        places += last - first;
    }
    if (places > 0 && squares > 0)
        m_spread = static_cast<float>(std::sqrt(squares / places));
}

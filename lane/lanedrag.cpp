#include "lane/lanedrag.h"

#include "model/times.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double Milliseconds = 1000;

/// The whole millisecond nearest to the time that lies within the bounds; where there is
/// none, the nearest bound.
double RoundWithin(double time, double least, double most) {
    const double inside = std::max(least, std::min(time, most));
    const double rounded = RoundTime(inside);
    if (rounded < least)
        return std::min(most, RoundTime(std::ceil(least * Milliseconds) / Milliseconds));
    if (rounded > most)
        return std::max(least, RoundTime(std::floor(most * Milliseconds) / Milliseconds));
    return rounded;
}

} // namespace

LaneDrag::LaneDrag(const LaneTitles& titles, std::int32_t title, Grip grip,
                   std::span<const std::int32_t> rows, double time, double length)
    : m_title(title)
    , m_grip(grip) {
    const bool together =
        grip == Grip::Middle && std::binary_search(rows.begin(), rows.end(), title);
    if (together)
        m_rows.assign(rows.begin(), rows.end());
    else
        m_rows.push_back(title);
    m_before.reserve(m_rows.size());
    for (const std::int32_t row : m_rows)
        m_before.push_back(titles.Times(row));
    m_now = m_before;
    m_held = static_cast<std::size_t>(std::lower_bound(m_rows.begin(), m_rows.end(), title) -
                                      m_rows.begin());
    const LaneTimes& held = Held(m_before);
    m_grab = (grip == Grip::End ? held.end : held.start) - time;
    if (grip == Grip::Middle)
        BoundMiddle(titles, length);
    else
        BoundEdge(titles, length);
}

void LaneDrag::BoundEdge(const LaneTitles& titles, double length) {
    const LaneTimes& held = Held(m_before);
    const double shortest = std::clamp(held.end - held.start, 0.0, ShortestTitle);
    if (m_grip == Grip::End) {
        m_bounds = {held.start + shortest, length > 0 ? std::max(length, held.end) : Infinity};
        return;
    }
    const double before = m_title > 1 ? titles.Start(m_title - 1) : 0;
    const double after = m_title < titles.Count() ? titles.Start(m_title + 1) : Infinity;
    m_bounds = {std::min(held.start, std::max(0.0, before)),
                std::max(held.start, std::min(after, held.end - shortest))};
}

/// Each row is held by the nearest rows that stay.
void LaneDrag::BoundMiddle(const LaneTitles& titles, double length) {
    const double held = Held(m_before).start;
    m_bounds = {-Infinity, Infinity};
    for (std::size_t i = 0; i < m_rows.size(); ++i) {
        const std::int32_t row = m_rows[i];
        const double start = m_before[i].start;
        const bool firstOfRun = i == 0 || m_rows[i - 1] != row - 1;
        const bool lastOfRun = i + 1 == m_rows.size() || m_rows[i + 1] != row + 1;
        const double before = firstOfRun && row > 1 ? titles.Start(row - 1) : 0;
        double after = lastOfRun && row < titles.Count() ? titles.Start(row + 1) : Infinity;
        if (length > 0)
            after = std::min(after, length);
        // A list out of order is not forced into one.
        m_bounds.least =
            std::max(m_bounds.least, held + std::min(0.0, std::max(0.0, before) - start));
        m_bounds.most = std::min(m_bounds.most, held + std::max(0.0, after - start));
    }
}

double LaneDrag::Snapped(double time, const Snap& snap) const {
    if (!snap)
        return time;
    if (m_grip != Grip::Middle)
        return snap(time).value_or(time);
    // Whichever end of the block is nearer to something.
    const double duration = Held(m_before).end - Held(m_before).start;
    const auto start = snap(time);
    const auto end = snap(time + duration);
    const double toStart = start ? std::abs(*start - time) : Infinity;
    const double toEnd = end ? std::abs(*end - time - duration) : Infinity;
    if (toStart == Infinity && toEnd == Infinity)
        return time;
    return toStart <= toEnd ? *start : *end - duration;
}

void LaneDrag::Move(double time, const Snap& snap) {
    const LaneTimes& before = Held(m_before);
    const double edge = RoundWithin(Snapped(time + m_grab, snap), m_bounds.least, m_bounds.most);
    if (m_grip == Grip::Start) {
        Held(m_now).start = edge;
        return;
    }
    if (m_grip == Grip::End) {
        Held(m_now).end = edge;
        return;
    }
    const double by = edge - before.start;
    if (std::abs(by) * Milliseconds < 0.5) {
        m_now = m_before;
        return;
    }
    for (std::size_t i = 0; i < m_now.size(); ++i) {
        m_now[i].start = RoundTime(m_before[i].start + by);
        m_now[i].end = RoundTime(m_before[i].end + by);
    }
}

double LaneDrag::Shown() const {
    return m_grip == Grip::End ? Held(m_now).end : Held(m_now).start;
}

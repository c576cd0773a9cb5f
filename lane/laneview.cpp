#include "lane/laneview.h"

#include <algorithm>
#include <cmath>

namespace {

/// A page begins with the position this share of the width from its left edge, and is left
/// this share before its right edge.
constexpr double PageMargin = 0.04;
constexpr double RevealMargin = 0.1;

} // namespace

double LaneView::LongestStep() const {
    return std::max(m_length, ShortestSpan) / m_width;
}

void LaneView::Step(double seconds) {
    m_step = std::clamp(seconds, ShortestSpan / m_width, LongestStep());
}

void LaneView::MoveTo(double offset) {
    const double last = std::max(0.0, std::ceil(m_length / m_step - 1e-6) - m_width);
    m_offset = std::llround(std::clamp(offset, 0.0, last));
    m_rest = 0;
}

void LaneView::Length(double seconds) {
    const double start = Start();
    const double wanted = m_length > 0 ? m_step : FirstSpan / m_width;
    m_length = std::max(0.0, seconds);
    Step(wanted);
    MoveTo(start / m_step);
}

void LaneView::Width(int pixels) {
    const double start = Start();
    // Before a film is shown in any width the span counts, not the zoom.
    const bool first = m_length <= 0 || m_width == 1;
    const double wanted = first ? FirstSpan / std::max(1, pixels) : m_step;
    m_width = std::max(1, pixels);
    Step(wanted);
    MoveTo(start / m_step);
}

void LaneView::Zoom(double x, double factor) {
    const double time = Time(x);
    Step(m_step * factor);
    MoveTo(time / m_step - x);
}

void LaneView::Show(double middle, double span) {
    Step(span / m_width);
    MoveTo(middle / m_step - m_width / 2.0);
}

void LaneView::ShowAll() {
    Step(LongestStep());
    MoveTo(0);
}

void LaneView::Scroll(double pixels) {
    const double whole = std::trunc(m_rest + pixels);
    const double rest = m_rest + pixels - whole;
    MoveTo(static_cast<double>(m_offset) + whole);
    m_rest = rest;
}

void LaneView::Reveal(double from, double to) {
    if (X(from) >= 0 && X(to) <= m_width)
        return;
    const double margin = RevealMargin * m_width;
    const double width = (to - from) / m_step;
    if (X(from) < 0 || width + 2 * margin > m_width)
        MoveTo(from / m_step - margin);
    else
        MoveTo(to / m_step + margin - m_width);
}

bool LaneView::Pursue(double position, Follow how) {
    const std::int64_t before = m_offset;
    const double x = X(position);
    if (how == Follow::Smooth) {
        if (x < 0 || x > m_width / 2.0)
            MoveTo(position / m_step - m_width / 2.0);
    } else if (x < 0 || x > m_width * (1 - PageMargin)) {
        MoveTo(position / m_step - m_width * PageMargin);
    }
    return m_offset != before;
}

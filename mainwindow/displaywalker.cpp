#include "mainwindow/displaywalker.h"

#include "base/runtimeerror.h"

#include <algorithm>
#include <limits>
#include <utility>

DisplayTexts DisplayWalker::LocateCurrentTitle(double position, DisplayMode mode) {
    m_currentTitle = std::max(1, m_titles->Locate(position));
    if (mode == DisplayMode::Position)
        return CurrentAndNext();
    // The title found is the coming one. A title that is on at the position goes first.
    const std::int32_t before = m_currentTitle - 1;
    if (before >= 1 && m_titles->StartTime(before) <= position &&
        position < m_titles->EndTime(before))
        m_currentTitle = before;
    CacheTimes();
    m_titleShown = false;
    return {};
}

bool DisplayWalker::IsOn(double position) const {
    return m_currentStart >= 0 && m_currentStart <= position && position < m_currentEnd;
}

bool DisplayWalker::TakeDown() {
    return std::exchange(m_titleShown, false);
}

DisplayWalker::Step DisplayWalker::Tick(double position) {
    if (m_titleShown && m_currentEnd <= position) {
        m_titleShown = false;
        ++m_currentTitle;
        CacheTimes();
        return Step::Ended;
    }
    if (!m_titleShown && m_currentStart >= 0 && m_currentStart <= position) {
        m_titleShown = true;
        return Step::Appeared;
    }
    return Step::None;
}

DisplayTexts DisplayWalker::Advance() {
    if (m_currentTitle == std::numeric_limits<std::int32_t>::max())
        throw RuntimeError(RuntimeError::Number::Overflow);
    ++m_currentTitle;
    return CurrentAndNext();
}

DisplayTexts DisplayWalker::Choose(std::int32_t title) {
    m_currentTitle = std::clamp(title, 1, std::max(1, m_titles->Count()));
    return CurrentAndNext();
}

DisplayTexts DisplayWalker::CurrentAndNext() const {
    return {m_titles->Text(m_currentTitle), m_titles->Text(m_currentTitle + 1)};
}

void DisplayWalker::CacheTimes() {
    m_currentStart = m_titles->StartTime(m_currentTitle);
    m_currentEnd = m_titles->EndTime(m_currentTitle);
}

std::int32_t TicksDue(std::int64_t elapsedMilliseconds, std::int32_t interval) {
    constexpr std::int64_t most = 1000;
    return static_cast<std::int32_t>(
        std::clamp<std::int64_t>((elapsedMilliseconds + interval / 2) / interval, 1, most));
}

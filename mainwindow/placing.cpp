#include "mainwindow/placing.h"

#include "model/times.h"

#include <algorithm>

bool Placing::Press(double position) {
    if (m_keyIsDown)
        return false;
    m_keyDownTime = position;
    m_keyIsDown = true;
    return true;
}

void Placing::Release(double position) {
    m_keyIsDown = false;
    m_keyUpTime = position;
}

PlacedTitles::Times PlacedTitles::TimesOf(const SUBTITLES& titles, std::int32_t title) {
    return {titles.StartTime(title), titles.EndTime(title)};
}

bool PlacedTitles::Place(SUBTITLES& titles, std::int32_t title, double start, double end) {
    if (title < 1 || title > titles.Count())
        return false;
    const Times before = TimesOf(titles, title);
    titles.SetTimes(title, start, end);
    m_placed.push_back({title, before, TimesOf(titles, title)});
    return true;
}

bool PlacedTitles::TakenBack(const SUBTITLES& titles, std::int32_t title) {
    while (!m_placed.empty()) {
        const Placed last = m_placed.back();
        const Times now = TimesOf(titles, last.title);
        if (now == last.after)
            return false;
        m_placed.pop_back();
        if (last.title == title && now == last.before)
            return true;
    }
    return false;
}

std::string PlacedText(std::int32_t title, double start, double end) {
    return std::to_string(title) + ": " + FormatTime(start) + " - " + FormatTime(end);
}

double WithoutLag(double position, std::int32_t lagMilliseconds) {
    return lagMilliseconds == 0 ? position : std::max(0.0, position - lagMilliseconds / 1000.0);
}

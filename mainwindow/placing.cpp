#include "mainwindow/placing.h"

#include "model/times.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

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

void PlacedTitles::Correct(SUBTITLES& titles, double start, double end) {
    Placed& last = m_placed.back();
    titles.SetTimes(last.title, start, end);
    last.after = TimesOf(titles, last.title);
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

std::string SnappedText(double startMoved, double endMoved) {
    std::string text;
    const auto add = [&text](const char* what, double moved) {
        if (std::abs(moved) < 0.005)
            return;
        char part[40];
        std::snprintf(part, sizeof part, "%s%s %.2f s %s", text.empty() ? "" : ", ", what,
                      std::abs(moved), moved < 0 ? "earlier" : "later");
        text += part;
    };
    add("start", startMoved);
    add("end", endMoved);
    return text;
}

double WithoutLag(double position, std::int32_t lagMilliseconds) {
    return lagMilliseconds == 0 ? position : std::max(0.0, position - lagMilliseconds / 1000.0);
}

#include "player/mediaclock.h"

#include <algorithm>
#include <vector>

namespace {

using std::chrono::milliseconds;

constexpr auto Memory = milliseconds(2000);
/// Sound that has not moved for this long has stalled.
constexpr auto Stall = milliseconds(60);
/// The line is trusted this long after the last sound report (in seconds); a busy
/// player may be that late with the next one.
constexpr double SoundTrust = 0.25;
/// How many pictures ahead of the last one the line is trusted.
constexpr double PictureTrust = 1.5;
constexpr double UsualPicture = 0.02;
constexpr double LongestPicture = 0.5;
/// A report that lies this far off the line tells of a real interruption (seconds).
constexpr double Interruption = 0.06;
constexpr std::size_t SoundReports = 7;
constexpr std::size_t PictureReports = 9;

double Seconds(std::chrono::steady_clock::duration span) {
    return std::chrono::duration<double>(span).count();
}

} // namespace

void MediaClock::Jump(double position, Moment now) {
    Stand(position, now);
}

void MediaClock::Hold(Moment now) {
    Stand(Position(now), now);
}

void MediaClock::Rate(double rate, Moment now) {
    const bool running = Running();
    const double position = Position(now);
    m_rate = rate;
    m_reports.clear();
    if (running)
        Push({now, position, rate, position, position + rate * SoundTrust});
}

void MediaClock::Sound(double position, Moment at) {
    const bool progress = !m_reports.empty() && position > m_reports.back().position;
    if (progress || m_reports.empty())
        m_progress = at;
    Remember(position, at, SoundReports);
    if (!progress) {
        if (Running() && at - m_progress >= Stall)
            Stand(std::max(Position(at), position), at);
        return;
    }
    // Reports are exact but for single ones that came late or early: the middle one holds.
    std::vector<double> offsets;
    offsets.reserve(m_reports.size());
    for (const Report& report : m_reports)
        offsets.push_back(report.offset);
    const auto middle = offsets.begin() + static_cast<std::ptrdiff_t>(offsets.size() / 2);
    std::nth_element(offsets.begin(), middle, offsets.end());
    RunThrough(*middle, at, m_rate * SoundTrust);
}

void MediaClock::Picture(double position, Moment at) {
    if (!m_reports.empty() && position <= m_reports.back().position)
        return;
    Remember(position, at, PictureReports);
    // Pictures are reported late, never early: the earliest one holds.
    double offset = m_reports.front().offset;
    double longest = UsualPicture;
    for (std::size_t i = 1; i < m_reports.size(); ++i) {
        offset = std::max(offset, m_reports[i].offset);
        longest = std::max(longest, m_reports[i].position - m_reports[i - 1].position);
    }
    RunThrough(offset, at, PictureTrust * std::min(longest, LongestPicture));
}

double MediaClock::Position(Moment at) const {
    const auto current = std::find_if(m_segments.rbegin(), m_segments.rend(),
                                      [at](const Segment& segment) { return segment.from <= at; });
    return current != m_segments.rend() ? At(*current, at) : m_segments.front().floor;
}

void MediaClock::Stand(double position, Moment now) {
    m_reports.clear();
    Push({now, position, 0, position, position});
}

void MediaClock::Push(const Segment& segment) {
    m_segments.push_back(segment);
    while (m_segments.size() > 1 && segment.from - m_segments[1].from >= Memory)
        m_segments.pop_front();
}

void MediaClock::Remember(double position, Moment at, std::size_t count) {
    const double offset = Offset(position, at);
    if (!m_reports.empty() && (offset < m_reports.back().offset - Interruption ||
                               offset > m_reports.back().offset + Interruption)) {
        const Report last = m_reports.back();
        m_reports.clear();
        // Kept to tell progress from a standstill.
        m_reports.push_back({last.at, last.position, offset});
    }
    m_reports.push_back({at, position, offset});
    if (m_reports.size() > count)
        m_reports.pop_front();
}

void MediaClock::RunThrough(double offset, Moment at, double ahead) {
    const double now = Position(at);
    const double line = offset + m_rate * Seconds(at.time_since_epoch());
    const double ceiling = std::max(now, m_reports.back().position + ahead);
    Push({at, line, m_rate, now, ceiling});
}

double MediaClock::Offset(double position, Moment at) const {
    return position - m_rate * Seconds(at.time_since_epoch());
}

double MediaClock::At(const Segment& segment, Moment at) {
    return std::clamp(segment.position + segment.speed * Seconds(at - segment.from), segment.floor,
                      segment.ceiling);
}

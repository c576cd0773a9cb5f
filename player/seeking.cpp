#include "player/seeking.h"

#include <algorithm>

namespace {

constexpr auto Patience = std::chrono::seconds(3);
/// libmpv shows the first picture that is not earlier than the target less this (in seconds).
constexpr double Tolerance = 0.005;
/// A picture that starts later than the position by more than this does not cover it (in seconds).
constexpr double PictureSlack = 0.001;
/// Where pictures last longer than was taken, further and further back is tried.
constexpr int MostRetries = 12;
constexpr int CarefulRetries = 6;
constexpr double CarefulStep = 1.3;
constexpr double BoldStep = 2.5;

} // namespace

void Seeking::Forget() {
    m_pace = {};
    m_wanted.reset();
    m_underWay = false;
}

std::optional<double> Seeking::Next(Moment now) {
    if (m_underWay || !m_wanted)
        return {};
    m_target = *m_wanted;
    m_wanted.reset();
    m_retries = 0;
    m_reach = m_pace.shortest;
    return Send(now);
}

/// The picture that covers the target is the one that begins less than its own
/// duration before it.
double Seeking::Send(Moment now) {
    m_underWay = true;
    m_deadline = now + Patience;
    const double lead = m_reach > 0 ? m_reach - Tolerance - m_pace.margin : 0;
    return std::max(0.0, m_target - lead);
}

std::optional<double> Seeking::Restarted(double shown, Moment now) {
    if (!m_underWay)
        return {};
    // Where pictures last longer than the film says, the one that covers the
    // position lies further back.
    const bool late = m_reach > 0 && shown > m_target + PictureSlack && m_target > m_reach;
    if (late && !m_wanted && m_retries < MostRetries) {
        m_reach *= m_retries < CarefulRetries ? CarefulStep : BoldStep;
        ++m_retries;
        return Send(now);
    }
    m_underWay = false;
    return {};
}

bool Seeking::Expire(Moment now) {
    if (!m_underWay || now < m_deadline)
        return false;
    m_underWay = false;
    return true;
}

#include "mainwindow/timespinner.h"

#include <limits>
#include <utility>

namespace {

constexpr double ClickSeconds = 20;
constexpr double FirstStep = 0.1;

struct Faster {
    std::int16_t ticks;
    double step;
};
/// After the tick of that number (from 0) the step grows.
constexpr Faster FasterSteps[] = {{4, 0.5}, {13, 1}, {24, 2}, {31, 5}};

} // namespace

void TimeSpinner::MouseDown(double y, double height) {
    const double aboveMiddle = height / 2 - y;
    m_spinDirection = static_cast<std::int16_t>((aboveMiddle > 0) - (aboveMiddle < 0));
    m_spinStep = FirstStep;
    m_spinTicks = 0;
}

std::optional<double> TimeSpinner::Tick(const Place& place) {
    m_spinRepeated = true;
    const double target = place.position + m_spinDirection * m_spinStep;
    for (const Faster& faster : FasterSteps)
        if (m_spinTicks == faster.ticks)
            m_spinStep = faster.step;
    if (m_spinTicks < std::numeric_limits<std::int16_t>::max())
        ++m_spinTicks;
    if (place.selectionStart <= target && target <= place.selectionEnd)
        return target;
    return {};
}

std::optional<double> TimeSpinner::DownClick(const Place& place, bool playing) {
    if (playing || std::exchange(m_spinRepeated, false))
        return {};
    const double target = place.position - ClickSeconds;
    return place.selectionStart < target ? std::optional(target) : std::nullopt;
}

std::optional<double> TimeSpinner::UpClick(const Place& place) {
    if (std::exchange(m_spinRepeated, false))
        return {};
    const double target = place.position + ClickSeconds;
    return target < place.selectionEnd ? std::optional(target) : std::nullopt;
}

#include "editing/spinrepeat.h"

#include <limits>
#include <utility>

namespace {

constexpr std::int16_t TicksUntilFaster = 10;
constexpr std::int16_t TicksUntilFastest = 30;
constexpr int FasterInterval = 100;
constexpr int FastestInterval = 50;

} // namespace

void SpinRepeat::MouseDown(int spinner, int y, int height) {
    m_direction = 2 * y > height ? -1 : 1;
    m_spinner = static_cast<std::int16_t>(spinner);
}

std::optional<SpinRepeat::Held> SpinRepeat::TimerStarts() {
    m_fired = false;
    if (m_direction == 0)
        return std::nullopt;
    return Held{m_spinner, m_direction > 0 ? Spin::Up : Spin::Down};
}

void SpinRepeat::TimerDone() {
    m_fired = true;
    if (m_ticks < std::numeric_limits<std::int16_t>::max())
        ++m_ticks;
    if (m_ticks == TicksUntilFaster)
        m_interval = FasterInterval;
    else if (m_ticks == TicksUntilFastest)
        m_interval = FastestInterval;
}

void SpinRepeat::MouseUp() {
    m_spinner = 0;
    m_direction = 0;
    m_ticks = 0;
    m_interval = FirstInterval;
}

bool SpinRepeat::TakeClick() {
    return !std::exchange(m_fired, false);
}

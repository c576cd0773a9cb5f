#include "platform/keyrepeat.h"

#include <utility>

KeyRepeat::Press KeyRepeat::Pressed(std::uint64_t stamp, bool marked) {
    if (const auto waiter = std::exchange(m_waiting, std::nullopt))
        return marked || waiter->stamp == stamp ? Press::Repeat : Press::AfterRelease;
    if (marked || std::exchange(m_down, true))
        return Press::Repeat;
    return Press::Real;
}

KeyRepeat::Release KeyRepeat::Released(std::uint64_t stamp, bool marked, Moment now) {
    if (marked || !m_down)
        return Release::None;
    if (stamp == 0) {
        Reset();
        return Release::Real;
    }
    m_waiting = Waiter{stamp, now};
    return Release::Waits;
}

bool KeyRepeat::Expire(Moment now) {
    if (!m_waiting || now - m_waiting->since < Wait)
        return false;
    Reset();
    return true;
}

void KeyRepeat::Reset() {
    m_down = false;
    m_waiting.reset();
}

#include "mainwindow/placing.h"

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

double WithoutLag(double position, std::int32_t lagMilliseconds) {
    return lagMilliseconds == 0 ? position : std::max(0.0, position - lagMilliseconds / 1000.0);
}

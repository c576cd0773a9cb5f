#pragma once

#include <cstdint>

/// The positioning key: pressed at a title's start, released at its end.
class Placing {
  public:
    double KeyDownTime() const { return m_keyDownTime; }
    double KeyUpTime() const { return m_keyUpTime; }
    bool KeyIsDown() const { return m_keyIsDown; }

    /// false: the key is held already; repeats and lost releases change nothing.
    bool Press(double position);
    /// A release counts without its press too, with the time of the last one.
    void Release(double position);

  private:
    double m_keyDownTime = 0;
    double m_keyUpTime = 0;
    bool m_keyIsDown = false;
};

/// The position that a key stands for: the person who pressed it answers with a
/// lag, which is taken off; never before the media's begin.
double WithoutLag(double position, std::int32_t lagMilliseconds);

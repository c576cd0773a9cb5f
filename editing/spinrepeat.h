#pragma once

#include "editing/minutesecond.h"

#include <cstdint>
#include <optional>

/// The repeat of a held spinner: which one is held, in which direction, and how
/// fast it steps by now. Spinners have codes from 1.
class SpinRepeat {
  public:
    static constexpr int FirstInterval = 200;

    struct Held {
        int spinner;
        Spin step;
    };

    void MouseDown(int spinner, int y, int height);
    /// The step that the timer is to perform, if a button is held.
    std::optional<Held> TimerStarts();
    /// After that step.
    void TimerDone();
    void MouseUp();

    /// A click of a spinner is taken once, unless the timer has just stepped for it.
    bool TakeClick();

    /// Milliseconds until the next step.
    int Interval() const { return m_interval; }

  private:
    std::int16_t m_direction = 0;
    std::int16_t m_spinner = 0;
    std::int16_t m_ticks = 0;
    bool m_fired = false;
    int m_interval = FirstInterval;
};

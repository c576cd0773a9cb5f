#pragma once

#include <chrono>

/// The short bursts of sound by which a place in a film is found by ear: each seek is
/// followed by a moment of playing, and only then by the next one. It has no thread and
/// no time of its own.
class SoundBurst {
  public:
    using Moment = std::chrono::steady_clock::time_point;
    static constexpr auto Length = std::chrono::milliseconds(100);

    /// The next restart of playback is followed by a burst.
    void Ask(double position);
    void Cancel();
    /// Playback has restarted. `more`: a later seek waits, after which a burst is due too.
    void Restarted(Moment now, bool more);
    /// Seeks wait, and libmpv plays.
    bool Sounding() const { return m_sounding; }
    Moment End() const { return m_end; }
    /// true, once: the burst under way is over.
    bool Expire(Moment now);
    /// The place that was asked for last, where the player stands again after the bursts.
    double Position() const { return m_position; }

  private:
    bool m_due = false;
    bool m_sounding = false;
    double m_position = 0;
    Moment m_end;
};

#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

/// Tells the repeats of a held key from a key that is let go. Under X11 a repeat
/// arrives as a release and a press with the same time stamp, and neither need say
/// that it is one. So a stamped release waits a moment before it counts, and a
/// press of the same stamp takes it back.
///
/// The owner hands in its events with their stamps, and calls `Expire` from a
/// timer that it starts for `Wait` when a release waits. A stamp of 0 means that
/// there is none, or that the window system marks its repeats itself (any but
/// X11 does): then only the mark counts and nothing waits.
class KeyRepeat {
  public:
    using Moment = std::chrono::steady_clock::time_point;
    static constexpr std::chrono::milliseconds Wait{5};

    enum class Press {
        /// The key went down.
        Real,
        /// It is only being held; a release that waited is forgotten.
        Repeat,
        /// The release that waited counts now, and then the key went down anew.
        AfterRelease,
    };
    enum class Release {
        Real,
        /// A repeat's, or of a key that was not pressed here.
        None,
        Waits,
    };

    Press Pressed(std::uint64_t stamp, bool marked);
    Release Released(std::uint64_t stamp, bool marked, Moment now);
    /// true: the release that waited counts now.
    bool Expire(Moment now);
    bool Waiting() const { return m_waiting.has_value(); }
    /// Forgets the key: it will not be heard of again (the keyboard went elsewhere).
    void Reset();

  private:
    struct Waiter {
        std::uint64_t stamp;
        Moment since;
    };

    bool m_down = false;
    std::optional<Waiter> m_waiting;
};

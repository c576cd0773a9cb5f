#pragma once

#include <chrono>
#include <optional>

/// What seeks need to know of a film's pictures.
struct PicturePace {
    /// The shortest time that a picture may be taken to last, in seconds; 0 without pictures.
    double shortest = 0;
    /// By how much the times of the pictures may be rounded, in seconds.
    double margin = 0;
};

/// The seeks of one film: one at a time is under way, and of those that are asked for
/// meanwhile the last one follows it. Each is aimed so that the picture shown is the
/// one that covers the position, and aimed again where that failed. Positions are
/// seconds on the media's clock. It has no thread and no time of its own.
class Seeking {
  public:
    using Moment = std::chrono::steady_clock::time_point;

    /// Another film: what was wanted is void, and nothing is known of its pictures.
    void Forget();
    void Pace(PicturePace pace) { m_pace = pace; }

    void Want(double position) { m_wanted = position; }
    bool Wanted() const { return m_wanted.has_value(); }
    /// A seek was sent and playback has not restarted yet, at the latest at the deadline.
    bool UnderWay() const { return m_underWay; }
    Moment Deadline() const { return m_deadline; }

    /// The place to send libmpv to now; nothing: none is wanted, or one is under way.
    std::optional<double> Next(Moment now);
    /// Playback has restarted and shows a picture of this time (0 when there is none to
    /// tell). Where it is not the one that covers the position: the place to try next.
    std::optional<double> Restarted(double shown, Moment now);
    /// true: the seek under way was given up, because no restart came.
    bool Expire(Moment now);

  private:
    double Send(Moment now);

    PicturePace m_pace;
    std::optional<double> m_wanted;
    bool m_underWay = false;
    Moment m_deadline;
    double m_target = 0;
    /// How long the picture that covers the target is taken to last; 0 without one.
    double m_reach = 0;
    int m_retries = 0;
};

#pragma once

#include <chrono>
#include <cstddef>
#include <deque>

/// The media's time as a continuous clock. It is told where the sound or the
/// picture was at certain moments and answers for every moment between and soon
/// after them. It never runs backward but by `Jump`, and it remembers the last
/// two seconds, so that it can tell the position at the moment of a key that is
/// handled late, whatever happened since.
///
/// It has no thread and no time of its own: every moment is handed in, none
/// earlier than the one before.
class MediaClock {
  public:
    using Moment = std::chrono::steady_clock::time_point;

    /// A seek: stands exactly there until it hears that playback runs.
    void Jump(double position, Moment now);
    /// A pause: stands where it is until it hears that playback runs.
    void Hold(Moment now);
    void Rate(double rate, Moment now);

    /// The sound that was heard at this moment. The clock runs from the second
    /// answer on that shows progress, and stands when the sound does.
    void Sound(double position, Moment at);
    /// The picture of this time appeared at this moment, or a little before.
    void Picture(double position, Moment at);

    /// The position at a moment, up to two seconds back.
    double Position(Moment at) const;
    /// Whether it moves by itself.
    bool Running() const { return m_segments.back().speed > 0; }

  private:
    /// From a moment on: a line that stays within two bounds.
    struct Segment {
        Moment from;
        double position;
        double speed;
        double floor;
        double ceiling;
    };
    struct Report {
        Moment at;
        double position;
        /// Where the line through this report crosses the origin of time.
        double offset;
    };

    void Stand(double position, Moment now);
    void Push(const Segment& segment);
    void Remember(double position, Moment at, std::size_t count);
    void RunThrough(double offset, Moment at, double ceiling);
    double Offset(double position, Moment at) const;
    static double At(const Segment& segment, Moment at);

    double m_rate = 1;
    std::deque<Segment> m_segments{{Moment(), 0, 0, 0, 0}};
    /// Since the last jump, hold or change of rate.
    std::deque<Report> m_reports;
    Moment m_progress;
};

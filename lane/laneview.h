#pragma once

#include <cstdint>

/// Which part of the film the lane shows, and how time and pixels go together. Times are
/// seconds on the player's clock, pixels are counted from the lane's left edge. The left
/// edge always lies on a whole pixel of the film's drawing, so that what is drawn once
/// can be moved along.
class LaneView {
  public:
    /// The shortest part of a film that fills the lane, in seconds.
    static constexpr double ShortestSpan = 2;
    /// What a film is shown at first.
    static constexpr double FirstSpan = 20;
    enum class Follow { Smooth, ByPage };

    /// Another film, or its length has become known: seconds, 0 when unknown.
    void Length(double seconds);
    double Length() const { return m_length; }
    /// The zoom stays. At least a pixel.
    void Width(int pixels);
    int Width() const { return m_width; }

    double Time(double x) const { return (static_cast<double>(m_offset) + x) * m_step; }
    double X(double time) const { return time / m_step - static_cast<double>(m_offset); }
    double Start() const { return Time(0); }
    double End() const { return Time(m_width); }
    double Span() const { return m_width * m_step; }
    /// Seconds in a pixel.
    double Step() const { return m_step; }
    /// The left edge, in pixels from the film's beginning.
    std::int64_t Offset() const { return m_offset; }

    /// The time at this pixel stays there as far as the film's ends allow; a factor above 1
    /// shows more of the film.
    void Zoom(double x, double factor);
    /// So many seconds fill the lane, around a time in its middle.
    void Show(double middle, double span);
    void ShowAll();
    void Scroll(double pixels);
    /// Brings a span into sight, with a little room around it where there is any. A span
    /// that is in sight moves nothing.
    void Reveal(double from, double to);
    /// Goes along with a position that moves; true when the part that is shown changed.
    bool Pursue(double position, Follow how);
    bool Holds(double time) const { return X(time) >= 0 && X(time) < m_width; }

  private:
    double LongestStep() const;
    void Step(double seconds);
    void MoveTo(double offset);

    double m_length = 0;
    int m_width = 1;
    double m_step = FirstSpan;
    std::int64_t m_offset = 0;
    /// Scrolled by less than a pixel so far (a touchpad does).
    double m_rest = 0;
};

#pragma once

#include "lane/lanetitles.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

/// A block that is dragged along the lane: what its title's times, and those of the titles that
/// move with it, become. Nothing but this object changes until the drag is over.
///
/// The times are whole milliseconds, so what is shown is exactly what is set. The starts
/// stay in the list's order, a title keeps at least `ShortestTitle` seconds (less only when it
/// had less before), and none starts before 0 or behind the film's end.
class LaneDrag {
  public:
    static constexpr double ShortestTitle = 0.25;
    enum class Grip : std::uint8_t { Start, Middle, End };
    /// The place near this time that an edge is drawn to; nothing when there is none.
    using Snap = std::function<std::optional<double>(double time)>;

    /// `title` is taken hold of at this time. `rows` (in order, without duplicates) move along
    /// when it is held in its middle; they need not contain it. A length of 0 is unknown.
    LaneDrag(const LaneTitles& titles, std::int32_t title, Grip grip,
             std::span<const std::int32_t> rows, double time, double length);

    /// The pointer is at this time now.
    void Move(double time, const Snap& snap = {});

    /// The new times of the dragged titles, in order.
    std::span<const LaneTimes> Titles() const { return m_now; }
    /// The dragged titles' numbers, in order.
    std::span<const std::int32_t> Rows() const { return m_rows; }
    std::int32_t Title() const { return m_title; }
    /// The time that a bubble shows: of the edge that is held, or of the start.
    double Shown() const;
    /// Some title has other times than before.
    bool Changed() const { return m_now != m_before; }

  private:
    struct Bounds {
        double least;
        double most;
    };

    void BoundEdge(const LaneTitles& titles, double length);
    void BoundMiddle(const LaneTitles& titles, double length);
    LaneTimes& Held(std::vector<LaneTimes>& times) const { return times[m_held]; }
    const LaneTimes& Held(const std::vector<LaneTimes>& times) const { return times[m_held]; }
    double Snapped(double time, const Snap& snap) const;

    std::int32_t m_title;
    Grip m_grip;
    std::vector<std::int32_t> m_rows;
    std::size_t m_held = 0;
    std::vector<LaneTimes> m_before;
    std::vector<LaneTimes> m_now;
    /// From the pointer to the edge that is held (the start, when it is the middle).
    double m_grab = 0;
    /// Where that edge may be.
    Bounds m_bounds{};
};

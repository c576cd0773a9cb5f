#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// A title's number, counted from 1, and its times in seconds.
struct LaneTimes {
    std::int32_t title = 0;
    double start = 0;
    double end = 0;
    friend bool operator==(const LaneTimes&, const LaneTimes&) = default;
};

/// The titles as blocks of the lane: their times, and the track that each lies on, so that
/// titles which overlap lie one below the other. A title that ends before it
/// starts counts as one without a duration.
class LaneTitles {
  public:
    /// So many tracks at most; what overlaps more than that shares the last one.
    static constexpr int MostTracks = 4;

    /// Other titles, in the list's order.
    void Assign(std::vector<double> starts, std::vector<double> ends);
    /// Other times for single titles; numbers that there are no titles of are left out.
    void Change(std::span<const LaneTimes> titles);

    std::int32_t Count() const { return static_cast<std::int32_t>(m_starts.size()); }
    /// At least one.
    int Tracks() const { return m_tracks; }
    double Start(std::int32_t title) const { return m_starts[Index(title)]; }
    double End(std::int32_t title) const { return m_ends[Index(title)]; }
    int Track(std::int32_t title) const { return m_track[Index(title)]; }
    LaneTimes Times(std::int32_t title) const { return {title, Start(title), End(title)}; }

    /// Calls `visit(title)` for each title that touches the span, in the order of their starts.
    template <typename Visit>
    void Within(double from, double to, const Visit& visit) const {
        for (std::size_t place = FirstPlace(from); place < m_starts.size(); ++place) {
            const std::int32_t title = TitleAt(place);
            if (Start(title) > to)
                return;
            if (End(title) >= from || Start(title) >= from)
                visit(title);
        }
    }
    /// The start or end that lies nearest to the time, no further away than `reach`; those of
    /// the titles in `without` (in order) do not count.
    std::optional<double> NearestEdge(double time, double reach,
                                      std::span<const std::int32_t> without) const;

  private:
    static std::size_t Index(std::int32_t title) { return static_cast<std::size_t>(title) - 1; }
    std::int32_t TitleAt(std::size_t place) const {
        return m_order.empty() ? static_cast<std::int32_t>(place) + 1 : m_order[place];
    }
    std::size_t FirstPlace(double from) const;
    void Arrange();

    std::vector<double> m_starts;
    std::vector<double> m_ends;
    std::vector<std::uint8_t> m_track;
    /// By their starts; empty while the list is in order itself.
    std::vector<std::int32_t> m_order;
    /// At each place of that order the latest end up to there.
    std::vector<double> m_latestEnd;
    int m_tracks = 1;
};

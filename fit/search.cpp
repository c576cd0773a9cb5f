#include "fit/search.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float Impossible = -1e8F;
constexpr Ticks Step = OffsetGrid::Step;
/// A new piece may begin so long before the last title of the one before it has ended.
constexpr Ticks Overlap = 30;
/// A gap in which a cut is likely.
constexpr float WideGap = 500;
/// Places nearer than this are the same place.
constexpr std::int32_t SamePlace = 4;

Ticks FloorStep(Ticks ticks) {
    return ticks >= 0 ? ticks / Step : -((-ticks + Step - 1) / Step);
}

float Larger(float a, float b) {
    return a > b ? a : b;
}

/// The titles and the film, forwards or with the time running backwards.
class Course {
  public:
    Course(const Evidence& evidence, bool backwards)
        : m_evidence(evidence)
        , m_backwards(backwards) {}

    std::size_t Count() const { return m_evidence.Count(); }
    std::int32_t Places() const { return m_evidence.Grid().count; }
    Ticks Low() const {
        const OffsetGrid& grid = m_evidence.Grid();
        return m_backwards ? -grid.At(grid.count - 1) : grid.low;
    }
    Ticks Start(std::size_t i) const {
        return m_backwards ? -m_evidence.End(Count() - 1 - i) : m_evidence.Start(i);
    }
    Ticks End(std::size_t i) const {
        return m_backwards ? -m_evidence.Start(Count() - 1 - i) : m_evidence.End(i);
    }
    Ticks FilmBegin() const {
        return m_backwards ? -m_evidence.Track().End() : m_evidence.Track().Begin();
    }
    Ticks FilmEnd() const {
        return m_backwards ? -m_evidence.Track().Begin() : m_evidence.Track().End();
    }
    void Row(std::size_t i, float* row) const {
        m_evidence.Row(m_backwards ? Count() - 1 - i : i, row);
        if (m_backwards)
            std::reverse(row, row + Places());
    }
    float CutCost(std::size_t i, const PathCosts& costs) const {
        const auto gap = static_cast<float>(std::max(Start(i) - End(i - 1), 0));
        return costs.cut + costs.cutWithoutGap * (1 - std::min(gap, WideGap) / WideGap);
    }
    /// How many places further the title before may be when this one begins a piece.
    std::int32_t Room(std::size_t i) const { return FloorStep(Start(i) - End(i - 1) + Overlap); }
    bool Backwards() const { return m_backwards; }

  private:
    const Evidence& m_evidence;
    bool m_backwards;
};

/// For each moment of the film: the best path whose last title with a place has ended by
/// then, the titles after it being without one. What those cost is added when it
/// is read.
class Runs {
  public:
    Runs(const Course& course, const PathCosts& costs)
        : m_costs(costs)
        , m_begin(course.FilmBegin())
        , m_empty(costs.emptySecond * static_cast<float>(Step) / TicksPerSecond)
        , m_best(static_cast<std::size_t>(FloorStep(course.FilmEnd() - m_begin) + 1), Impossible) {
        m_best[0] = -costs.run;
    }

    /// `row` are the best paths that end with title `i`, which ends at `end` at the first place.
    void Enter(std::size_t i, Ticks end, const float* row, std::int32_t places) {
        const float cost = m_costs.withoutPlace * static_cast<float>(i + 1) - m_costs.run;
        const std::int32_t base = FloorStep(end - m_begin);
        const auto size = static_cast<std::int32_t>(m_best.size());
        std::int32_t k = 0;
        for (; k < places && base + k < 0; ++k)
            m_best[0] = Larger(m_best[0], row[k] + cost);
        const std::int32_t first = std::clamp(base, 0, size);
        const std::int32_t last = std::clamp(base + places, first, size);
        for (std::int32_t x = std::min(first, m_closed); x < std::max(last, m_closed); ++x) {
            const auto at = static_cast<std::size_t>(x);
            if (x > 0)
                m_best[at] = Larger(m_best[at], m_best[at - 1] - m_empty);
            if (x >= first && x < last)
                m_best[at] = Larger(m_best[at], row[x - base] + cost);
        }
        m_closed = std::max(last, m_closed);
    }

    /// The best path after which title `i` may start at each moment from `start` on.
    void Leave(std::size_t i, Ticks start, float* row, std::int32_t places) const {
        const float cost = m_costs.withoutPlace * static_cast<float>(i);
        const std::int32_t base = FloorStep(start + Overlap - m_begin);
        const auto size = static_cast<std::int32_t>(m_best.size());
        for (std::int32_t k = 0; k < places; ++k) {
            const std::int32_t x = base + k;
            if (x < 0)
                row[k] = Impossible;
            else if (x < m_closed)
                row[k] = m_best[static_cast<std::size_t>(x)] - cost;
            else
                row[k] = m_best[static_cast<std::size_t>(m_closed - 1)] - cost -
                         m_empty * static_cast<float>(std::min(x, size) - m_closed + 1);
        }
    }

    /// The best path of which no further title has a place.
    float AtEnd(std::size_t count) const {
        const auto rest = static_cast<std::int32_t>(m_best.size()) - m_closed;
        return m_best[static_cast<std::size_t>(m_closed - 1)] - m_empty * static_cast<float>(rest) -
               m_costs.withoutPlace * static_cast<float>(count);
    }

  private:
    const PathCosts& m_costs;
    Ticks m_begin;
    float m_empty;
    std::vector<float> m_best;
    /// Before it, each moment is at least as good as the one before it less an empty step.
    std::int32_t m_closed = 1;
};

/// Goes through the titles and keeps, for each place of the latest, the best path to it.
class Walk {
  public:
    Walk(const Course& course, const PathCosts& costs)
        : m_course(course)
        , m_costs(costs)
        , m_runs(course, costs)
        , m_places(static_cast<std::size_t>(course.Places()))
        , m_best(m_places)
        , m_row(m_places)
        , m_left(m_places)
        , m_reached(m_places) {}

    /// The best paths to the places of title `i`; all titles before were asked for.
    const std::vector<float>& Next(std::size_t i) {
        const std::int32_t places = m_course.Places();
        m_course.Row(i, m_row.data());
        m_runs.Leave(i, m_course.Start(i) + m_course.Low(), m_left.data(), places);
        if (i == 0)
            Begin();
        else
            Reach(i);
        for (std::size_t k = 0; k < m_places; ++k)
            m_best[k] = m_row[k] + Larger(m_best[k], m_left[k]);
        m_runs.Enter(i, m_course.End(i) + m_course.Low(), m_best.data(), places);
        return m_best;
    }
    const std::vector<float>& Row() const { return m_row; }
    float Total() const {
        return Larger(*std::max_element(m_best.begin(), m_best.end()),
                      m_runs.AtEnd(m_course.Count()));
    }

  private:
    void Begin() {
        for (std::size_t k = 0; k < m_places; ++k) {
            const Ticks offset = m_course.Low() + Step * static_cast<Ticks>(k);
            const float away = static_cast<float>(std::abs(offset)) / (100.0F * TicksPerSecond);
            m_best[k] = m_course.Backwards() ? 0 : -m_costs.away * away;
        }
    }
    /// By staying in the piece or by beginning a new one.
    void Reach(std::size_t i) {
        float best = Impossible;
        for (std::size_t k = 0; k < m_places; ++k) {
            best = Larger(best, m_best[k]);
            m_reached[k] = best;
        }
        const float cut = m_course.CutCost(i, m_costs);
        const std::int32_t room = m_course.Room(i);
        const std::int32_t places = m_course.Places();
        for (std::int32_t k = std::max(0, -room); k < places; ++k) {
            const auto from = static_cast<std::size_t>(std::min(k + room, places - 1));
            const auto at = static_cast<std::size_t>(k);
            m_best[at] = Larger(m_best[at], m_reached[from] - cut);
        }
    }

    const Course& m_course;
    const PathCosts& m_costs;
    Runs m_runs;
    std::size_t m_places;
    std::vector<float> m_best;
    std::vector<float> m_row;
    std::vector<float> m_left;
    std::vector<float> m_reached;
};

/// All best paths to all places of all titles.
using Paths = std::vector<std::vector<float>>;

/// Goes back from the end of the best path.
class Way {
  public:
    Way(const Course& course, const PathCosts& costs, const Paths& paths)
        : m_course(course)
        , m_costs(costs)
        , m_paths(paths)
        , m_row(static_cast<std::size_t>(course.Places())) {}

    std::vector<std::int32_t> Back(float total) {
        const std::size_t count = m_course.Count();
        std::vector<std::int32_t> places(count, NoPlace);
        const std::vector<float>& last = m_paths[count - 1];
        const auto best = std::max_element(last.begin(), last.end());
        Last from{count - 1, static_cast<std::int32_t>(best - last.begin())};
        if (*best < total)
            from = BeforeRun(count, m_course.FilmEnd());
        while (from.place != NoPlace) {
            places[from.title] = from.place;
            from = Before(from);
        }
        return places;
    }

  private:
    struct Last {
        std::size_t title = 0;
        std::int32_t place = NoPlace;
    };

    Last Before(Last at) {
        const auto place = static_cast<std::size_t>(at.place);
        const float value = m_paths[at.title][place];
        m_course.Row(at.title, m_row.data());
        const float own = m_row[place];
        if (at.title == 0)
            return {};
        const std::vector<float>& before = m_paths[at.title - 1];
        if (own + before[place] >= value)
            return {at.title - 1, at.place};
        const std::int32_t room = m_course.Room(at.title);
        const std::int32_t end = std::min(at.place + room + 1, m_course.Places());
        if (end > 0) {
            const auto best = std::max_element(before.begin(), before.begin() + end);
            if (own + (*best - m_course.CutCost(at.title, m_costs)) >= value)
                return {at.title - 1, static_cast<std::int32_t>(best - before.begin())};
        }
        return BeforeRun(at.title,
                         m_course.Start(at.title) + m_course.Low() + at.place * Step + Overlap);
    }

    /// The last title with a place before a run of titles without one up to title `next`,
    /// of which nothing is shown after `until`.
    Last BeforeRun(std::size_t next, Ticks until) const {
        const float empty = m_costs.emptySecond / TicksPerSecond;
        float best = -empty * static_cast<float>(until - m_course.FilmBegin()) -
                     m_costs.withoutPlace * static_cast<float>(next);
        Last last;
        for (std::size_t i = 0; i < next; ++i) {
            const float cost = m_costs.withoutPlace * static_cast<float>(next - 1 - i);
            const Ticks room = until - (m_course.End(i) + m_course.Low());
            const std::int32_t end = std::min(FloorStep(room) + 1, m_course.Places());
            for (std::int32_t k = 0; k < end; ++k) {
                const float value = m_paths[i][static_cast<std::size_t>(k)] - cost -
                                    empty * static_cast<float>(room - k * Step);
                if (value > best) {
                    best = value;
                    last = {i, k};
                }
            }
        }
        return last;
    }

    const Course& m_course;
    const PathCosts& m_costs;
    const Paths& m_paths;
    std::vector<float> m_row;
};

std::vector<float> Margins(const Evidence& evidence, const PathCosts& costs, const Paths& paths,
                           const Path& path, const Stop& stop) {
    const Course course(evidence, true);
    Walk walk(course, costs);
    const std::size_t count = paths.size();
    const std::int32_t places = course.Places();
    std::vector<float> margins(count, 0);
    for (std::size_t i = 0; i < count && !stop; ++i) {
        const std::vector<float>& behind = walk.Next(i);
        const std::size_t title = count - 1 - i;
        const std::int32_t own = path.places[title];
        float other = Impossible;
        for (std::int32_t k = 0; k < places; ++k) {
            if (own != NoPlace && std::abs(k - own) <= SamePlace)
                continue;
            const auto back = static_cast<std::size_t>(places - 1 - k);
            other = Larger(other, paths[title][static_cast<std::size_t>(k)] + behind[back] -
                                      walk.Row()[back]);
        }
        margins[title] = std::max(path.score - other, 0.0F);
    }
    return margins;
}

} // namespace

float BestScore(const Evidence& evidence, const PathCosts& costs, const Stop& stop) {
    const Course course(evidence, false);
    if (course.Count() == 0)
        return 0;
    Walk walk(course, costs);
    for (std::size_t i = 0; i < course.Count() && !stop; ++i)
        walk.Next(i);
    return walk.Total();
}

Path BestPath(const Evidence& evidence, const PathCosts& costs, bool margins, const Stop& stop) {
    const Course course(evidence, false);
    Path path;
    path.places.assign(course.Count(), NoPlace);
    path.margins.assign(course.Count(), 0);
    if (course.Count() == 0)
        return path;
    Walk walk(course, costs);
    Paths paths;
    paths.reserve(course.Count());
    for (std::size_t i = 0; i < course.Count() && !stop; ++i)
        paths.push_back(walk.Next(i));
    if (stop)
        return path;
    path.score = walk.Total();
    path.places = Way(course, costs, paths).Back(path.score);
    if (margins)
        path.margins = Margins(evidence, costs, paths, path, stop);
    return path;
}

#pragma once

#include <cstddef>
#include <optional>
#include <vector>

/// Which page is made next: those around the place that is being looked at first, in
/// stretches, because going elsewhere in a film costs more than going on.
class PagePlan {
  public:
    /// The longest stretch: one minute.
    static constexpr std::size_t Stretch = 12;

    explicit PagePlan(std::size_t pages)
        : m_taken(pages) {}

    void LookAt(std::size_t page) { m_looked = page; }
    /// The first page of a stretch and its length; nothing when all are taken. `behind` is
    /// the page after the last one that the asker made.
    struct Pages {
        std::size_t first;
        std::size_t count;
    };
    std::optional<Pages> Take(std::optional<std::size_t> behind);

  private:
    bool Free(std::size_t page) const { return page < m_taken.size() && !m_taken[page]; }
    std::optional<std::size_t> Nearest() const;
    std::size_t Distance(std::size_t page) const {
        return page < m_looked ? m_looked - page : page - m_looked;
    }

    std::vector<bool> m_taken;
    std::size_t m_looked = 0;
};

#include "sound/pageplan.h"

#include <algorithm>

std::optional<PagePlan::Pages> PagePlan::Take(std::optional<std::size_t> behind) {
    const std::optional<std::size_t> nearest = Nearest();
    if (!nearest)
        return {};
    Pages pages{*nearest, 1};
    if (behind && Free(*behind) && Distance(*behind) <= Distance(*nearest) + 2 * Stretch)
        pages.first = *behind;
    else if (pages.first < m_looked)
        while (pages.first > 0 && *nearest - pages.first + 1 < Stretch && Free(pages.first - 1))
            --pages.first;
    while (pages.count < Stretch && Free(pages.first + pages.count))
        ++pages.count;
    std::fill_n(m_taken.begin() + static_cast<std::ptrdiff_t>(pages.first), pages.count, true);
    return pages;
}

std::optional<std::size_t> PagePlan::Nearest() const {
    for (std::size_t distance = 0; distance <= std::max(m_looked, m_taken.size()); ++distance) {
        if (Free(m_looked + distance))
            return m_looked + distance;
        if (distance <= m_looked && Free(m_looked - distance))
            return m_looked - distance;
    }
    return {};
}

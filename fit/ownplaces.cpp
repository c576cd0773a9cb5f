#include "fit/ownplaces.h"

#include <algorithm>

std::vector<std::int32_t> OwnPlaces(const Evidence& evidence, const Stop& stop) {
    constexpr std::size_t Side = 4;
    constexpr std::size_t Around = 2 * Side + 1;
    const std::size_t count = evidence.Count();
    const auto places = static_cast<std::size_t>(evidence.Grid().count);
    std::vector<std::vector<float>> rows(Around, std::vector<float>(places));
    std::vector<float> sum(places);
    std::vector<std::int32_t> own(count, 0);
    std::size_t next = 0;
    for (std::size_t i = 0; i < count && !stop; ++i) {
        for (; next < std::min(i + Side + 1, count); ++next)
            evidence.Row(next, rows[next % Around].data());
        std::fill(sum.begin(), sum.end(), 0.0F);
        for (std::size_t n = i > Side ? i - Side : 0; n < next; ++n) {
            const float* const row = rows[n % Around].data();
            for (std::size_t k = 0; k < places; ++k)
                sum[k] += row[k];
        }
        own[i] = static_cast<std::int32_t>(std::max_element(sum.begin(), sum.end()) - sum.begin());
    }
    return own;
}

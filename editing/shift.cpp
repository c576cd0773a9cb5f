#include "editing/shift.h"

#include "editing/typed.h"
#include "model/numbers.h"

#include <cmath>

void ShiftTitles(SUBTITLES& titles, std::span<const std::int32_t> numbers, double amount) {
    for (const std::int32_t i : numbers) {
        titles.StartTime(i, titles.StartTime(i) + amount);
        titles.EndTime(i, titles.EndTime(i) + amount);
    }
}

std::optional<MinutesSeconds> LimitToStart(std::string_view minutes, std::string_view seconds,
                                           double start) {
    const std::optional<double> rest = TypedNumber(seconds);
    if (!rest || !(Val(minutes) * 60 + *rest > start))
        return std::nullopt;
    const double whole = std::floor(start / 60);
    return MinutesSeconds{NumberText(whole), ThousandthsText(start - whole * 60)};
}

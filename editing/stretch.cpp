#include "editing/stretch.h"

#include "base/runtimeerror.h"
#include "model/times.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {

double Divide(double dividend, double divisor) {
    if (divisor == 0)
        throw RuntimeError(RuntimeError::Number::DivisionByZero);
    return dividend / divisor;
}

} // namespace

TimeMap MapByTitles(double oldFirst, double oldLast, double newFirst, double newLast) {
    const double factor = Divide(newLast - newFirst, oldLast - oldFirst);
    return {factor, newFirst - oldFirst * factor};
}

TimeMap MapByAmount(double lastStart, double amount) {
    if (!(lastStart > 0))
        return {};
    return {1 + amount / lastStart, 0};
}

TimeMap MapByRates(double currentRate, double desiredRate) {
    return {Divide(currentRate, desiredRate), 0};
}

bool CanBeShown(const SUBTITLES& titles, std::span<const std::int32_t> numbers,
                const TimeMap& map) {
    constexpr double TooLate = 32768 * 3600.0;
    return std::all_of(numbers.begin(), numbers.end(), [&](std::int32_t i) {
        return std::abs(map(titles.StartTime(i))) < TooLate &&
               std::abs(map(titles.EndTime(i))) < TooLate;
    });
}

std::string OddAbout(const SUBTITLES& titles, std::span<const std::int32_t> numbers,
                     const TimeMap& map) {
    if (map.factor == 0)
        return "All these titles would start and end at the same moment.";
    if (map.factor < 0)
        return "The titles would come in reverse order.";
    const auto early = std::count_if(numbers.begin(), numbers.end(), [&](std::int32_t i) {
        return titles.StartTime(i) >= 0 && RoundTime(map(titles.StartTime(i))) < 0;
    });
    if (early == 0)
        return {};
    return (early == 1 ? "1 title would start" : std::to_string(early) + " titles would start") +
           " before the film does.";
}

std::vector<std::int32_t> AllTitles(const SUBTITLES& titles) {
    std::vector<std::int32_t> numbers(static_cast<std::size_t>(titles.Count()));
    std::iota(numbers.begin(), numbers.end(), 1);
    return numbers;
}

void MapTitles(SUBTITLES& titles, std::span<const std::int32_t> numbers, const TimeMap& map) {
    for (const std::int32_t i : numbers) {
        titles.StartTime(i, map(titles.StartTime(i)));
        titles.EndTime(i, map(titles.EndTime(i)));
    }
}

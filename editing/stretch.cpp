#include "editing/stretch.h"

#include "base/runtimeerror.h"

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

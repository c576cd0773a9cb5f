#include "mainwindow/titlestarts.h"

#include <algorithm>

namespace {

/// How long (in seconds) after its start a title has just begun.
constexpr double JustBegun = 0.5;
/// The player lands on pictures: that close is there.
constexpr double There = 0.05;

} // namespace

// Titles need not stand in the order of their times.
std::optional<double> StartBefore(const SUBTITLES& titles, double position) {
    std::optional<double> best;
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        const double start = titles.StartTime(i);
        if (start < position - JustBegun && start >= best.value_or(0))
            best = start;
    }
    return best;
}

std::optional<double> StartAfter(const SUBTITLES& titles, double position) {
    std::optional<double> best;
    for (std::int32_t i = 1; i <= titles.Count(); ++i) {
        const double start = titles.StartTime(i);
        if (start > position + There && start <= best.value_or(start))
            best = start;
    }
    return best;
}

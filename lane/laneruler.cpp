#include "lane/laneruler.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>

namespace {

constexpr RulerSteps Steps[] = {{0.05, 0.01}, {0.1, 0.02}, {0.2, 0.05},  {0.5, 0.1},   {1, 0.2},
                                {2, 0.5},     {5, 1},      {10, 2},      {15, 5},      {30, 5},
                                {60, 10},     {120, 30},   {300, 60},    {600, 120},   {900, 300},
                                {1800, 300},  {3600, 600}, {7200, 1800}, {18000, 3600}};

} // namespace

RulerSteps RulerStepsFor(double secondsPerPixel, double room) {
    const auto* const step =
        std::find_if(std::begin(Steps), std::prev(std::end(Steps)),
                     [&](const RulerSteps& one) { return one.labelled >= secondsPerPixel * room; });
    return *step;
}

std::string RulerLabel(double seconds, double labelled) {
    const int digits = labelled >= 1 ? 0 : labelled >= 0.1 ? 1 : 2;
    const double unit = std::pow(10, digits);
    const auto units = std::llround(std::max(0.0, seconds) * unit);
    const auto perSecond = static_cast<long long>(unit);
    const long long whole = units / perSecond;
    char text[64];
    int size = whole < 3600
                   ? std::snprintf(text, sizeof text, "%lld:%02lld", whole / 60, whole % 60)
                   : std::snprintf(text, sizeof text, "%lld:%02lld:%02lld", whole / 3600,
                                   whole / 60 % 60, whole % 60);
    if (digits > 0)
        size += std::snprintf(text + size, sizeof text - static_cast<std::size_t>(size), ".%0*lld",
                              digits, units % perSecond);
    return {text, static_cast<std::size_t>(size)};
}

#pragma once

#include "model/subtitles.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

/// A linear map of time, t' = t * factor + offset.
struct TimeMap {
    double factor = 0;
    double offset = 0;

    double operator()(double time) const { return time * factor + offset; }
};

/// Two titles get the starts that are given for them, all others move in
/// proportion. Titles that start together: run-time error "Division by zero".
TimeMap MapByTitles(double oldFirst, double oldLast, double newFirst, double newLast);
/// Time 0 stays, the last title's start moves by the amount (below 0: shrinks).
/// A last start that is not above 0 maps everything to 0.
TimeMap MapByAmount(double lastStart, double amount);
/// Timed at one frame rate, shown at another. A desired rate of 0: run-time
/// error "Division by zero".
TimeMap MapByRates(double currentRate, double desiredRate);

/// Whether all times stay within what a time text can tell, below 32768 hours.
bool CanBeShown(const SUBTITLES& titles, std::span<const std::int32_t> numbers, const TimeMap& map);
/// What would be odd about the titles after it, in a sentence for people; empty when
/// nothing would be.
std::string OddAbout(const SUBTITLES& titles, std::span<const std::int32_t> numbers,
                     const TimeMap& map);

/// The numbers of all titles, in order.
std::vector<std::int32_t> AllTitles(const SUBTITLES& titles);
/// Maps start and end of the titles with these numbers. Nothing is rounded.
void MapTitles(SUBTITLES& titles, std::span<const std::int32_t> numbers, const TimeMap& map);

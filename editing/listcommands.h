#pragma once

#include "model/subtitles.h"

#include <cstdint>
#include <vector>

/// The commands of the list editor on single titles. Each is one undo step per
/// title, and leaves undo recording switched on.

/// A tenth of a second earlier, unless that is before 0 in whole seconds. false:
/// the title was left alone.
bool ShowSooner(SUBTITLES& titles, std::int32_t index);
/// A tenth of a second later; always true.
bool ShowLater(SUBTITLES& titles, std::int32_t index);

/// The end 0.05 s earlier, the duration at least 0.25 s. true: that limit was met.
bool ShowShorter(SUBTITLES& titles, std::int32_t index);
/// The end 0.05 s later, at most up to 0.25 s before the next title. true: that
/// limit was met.
bool ShowLonger(SUBTITLES& titles, std::int32_t index);

struct InsertedTitle {
    double start;
    double duration;
};

/// A new title, half way between the starts of the title before and this one.
InsertedTitle InsertBefore(SUBTITLES& titles, std::int32_t index);

/// A new title that starts at this time (seconds, at least 0), behind all that start
/// before it: for two seconds, or up to the next title's start, at least 0.25 s. Its number.
std::int32_t InsertAt(SUBTITLES& titles, double time);

/// Deletes the titles, in ascending order, but never the last one that is left.
/// Answers the numbers of those that were deleted.
std::vector<std::int32_t> DeleteTitles(SUBTITLES& titles, std::vector<std::int32_t> selected);

#include "editing/listcommands.h"

#include "model/numbers.h"

#include <algorithm>

namespace {

constexpr double MoveStep = 0.1;
constexpr double DurationStep = 0.05;
constexpr double SmallestDuration = 0.25;
constexpr double LargestInserted = 2.0;

/// The second write to a title within one command is part of the first one's undo step.
void SetEndUnrecorded(SUBTITLES& titles, std::int32_t index, double end) {
    titles.UndoEnabled(false);
    titles.EndTime(index, end);
    titles.UndoEnabled(true);
}

void Move(SUBTITLES& titles, std::int32_t index, double step) {
    titles.StartTime(index, titles.StartTime(index) + step);
    SetEndUnrecorded(titles, index, titles.EndTime(index) + step);
}

} // namespace

bool ShowSooner(SUBTITLES& titles, std::int32_t index) {
    if (RoundToLong(titles.StartTime(index) - MoveStep) < 0)
        return false;
    Move(titles, index, -MoveStep);
    return true;
}

bool ShowLater(SUBTITLES& titles, std::int32_t index) {
    Move(titles, index, MoveStep);
    return true;
}

bool ShowShorter(SUBTITLES& titles, std::int32_t index) {
    const double minEnd = titles.StartTime(index) + SmallestDuration;
    titles.EndTime(index, titles.EndTime(index) - DurationStep);
    if (!(titles.EndTime(index) < minEnd))
        return false;
    SetEndUnrecorded(titles, index, minEnd);
    return true;
}

bool ShowLonger(SUBTITLES& titles, std::int32_t index) {
    const double limit = titles.StartTime(index + 1) - SmallestDuration;
    titles.EndTime(index, titles.EndTime(index) + DurationStep);
    if (!(limit > 0 && titles.EndTime(index) > limit))
        return false;
    SetEndUnrecorded(titles, index, limit);
    return true;
}

InsertedTitle InsertBefore(SUBTITLES& titles, std::int32_t index) {
    const double current = titles.StartTime(index);
    const double start = (titles.StartTime(index - 1) + current) / 2;
    const double duration = std::clamp(current - start, SmallestDuration, LargestInserted);
    titles.Insert(index, start, start + duration, "New title");
    return {start, duration};
}

std::vector<std::int32_t> DeleteTitles(SUBTITLES& titles, std::vector<std::int32_t> selected) {
    if (!selected.empty() && selected.size() == static_cast<std::size_t>(titles.Count()))
        selected.pop_back();
    titles.DeleteAll(selected);
    return selected;
}

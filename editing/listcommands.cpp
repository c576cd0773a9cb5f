#include "editing/listcommands.h"

#include "model/numbers.h"
#include "model/step.h"
#include "model/times.h"

#include <algorithm>

namespace {

constexpr double MoveStep = 0.1;
constexpr double DurationStep = 0.05;
constexpr double SmallestDuration = 0.25;
constexpr double LargestInserted = 2.0;
constexpr const char* NewTitle = "New title";

void Move(SUBTITLES& titles, std::int32_t index, double seconds) {
    const Step step(titles, Step::Undo::Once);
    titles.StartTime(index, titles.StartTime(index) + seconds);
    titles.EndTime(index, titles.EndTime(index) + seconds);
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
    const Step step(titles, Step::Undo::Once);
    const double minEnd = titles.StartTime(index) + SmallestDuration;
    titles.EndTime(index, titles.EndTime(index) - DurationStep);
    if (!(titles.EndTime(index) < minEnd))
        return false;
    titles.EndTime(index, minEnd);
    return true;
}

bool ShowLonger(SUBTITLES& titles, std::int32_t index) {
    const Step step(titles, Step::Undo::Once);
    const double limit = titles.StartTime(index + 1) - SmallestDuration;
    titles.EndTime(index, titles.EndTime(index) + DurationStep);
    if (!(limit > 0 && titles.EndTime(index) > limit))
        return false;
    titles.EndTime(index, limit);
    return true;
}

InsertedTitle InsertBefore(SUBTITLES& titles, std::int32_t index) {
    const double current = titles.StartTime(index);
    const double start = (titles.StartTime(index - 1) + current) / 2;
    const double duration = std::clamp(current - start, SmallestDuration, LargestInserted);
    titles.Insert(index, start, start + duration, NewTitle);
    return {start, duration};
}

std::int32_t InsertAt(SUBTITLES& titles, double time) {
    const double start = std::max(0.0, RoundTime(time));
    std::int32_t index = titles.Count() + 1;
    while (index > 1 && titles.StartTime(index - 1) > start)
        --index;
    const double room = index <= titles.Count() ? titles.StartTime(index) - start : LargestInserted;
    const double duration = std::clamp(room, SmallestDuration, LargestInserted);
    titles.Insert(index, start, RoundTime(start + duration), NewTitle);
    return index;
}

std::vector<std::int32_t> DeleteTitles(SUBTITLES& titles, std::vector<std::int32_t> selected) {
    if (!selected.empty() && selected.size() == static_cast<std::size_t>(titles.Count()))
        selected.pop_back();
    const Step step(titles, selected.size() > 1 ? "Delete" : "");
    titles.DeleteAll(selected);
    return selected;
}

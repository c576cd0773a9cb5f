#pragma once

#include "model/subtitles.h"

#include <optional>

/// The start of the title before the position, in seconds. A title that has just begun
/// counts as reached, so that two steps back lead to two titles.
std::optional<double> StartBefore(const SUBTITLES& titles, double position);
/// The start of the title after the position.
std::optional<double> StartAfter(const SUBTITLES& titles, double position);

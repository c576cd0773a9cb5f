#pragma once

#include "editing/minutesecond.h"
#include "model/subtitles.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

/// Adds the amount to start and end of the titles with these numbers. Nothing is
/// rounded and nothing stops titles at 0.
void ShiftTitles(SUBTITLES& titles, std::span<const std::int32_t> numbers, double amount);

/// The amount that takes a title from this start to 0, when the boxes read more
/// than that.
std::optional<MinutesSeconds> LimitToStart(std::string_view minutes, std::string_view seconds,
                                           double start);

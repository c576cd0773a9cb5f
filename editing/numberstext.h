#pragma once

#include <cstdint>
#include <span>
#include <string>

/// Which titles, for people: "3 of 14 titles, 4 to 6". The numbers ascend. Of many pieces
/// the first ones are named.
std::string NumbersText(std::span<const std::int32_t> numbers, std::int32_t count);

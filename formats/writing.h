#pragma once

#include "base/largeblocks.h"
#include "model/subtitles.h"

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

/// What the writers share.

inline constexpr std::string_view LineEnd = "\r\n";

inline void AppendNumber(std::string& out, std::int32_t value) {
    char digits[12];
    const auto result = std::to_chars(std::begin(digits), std::end(digits), value);
    out.append(digits, result.ptr);
}

/// Makes room for the whole file: all texts, and for each as many bytes more as given.
inline void ReserveFor(const SUBTITLES& titles, std::size_t besideEach, std::string& out) {
    std::size_t size = out.size() + besideEach;
    for (std::int32_t i = 1; i <= titles.Count(); ++i)
        size += titles.Text(i).size() + besideEach;
    out.reserve(size);
    AdviseLargePages(out.data(), out.capacity());
}

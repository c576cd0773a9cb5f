#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// As much of a text as is shown.
struct ShownText {
    std::size_t lines = 200;
    /// Of each line.
    std::size_t characters = 2000;
};

/// As much of a text as can be looked at, with "..." for what is left out. Whatever a film or
/// a file comes to, it is drawn at once.
std::string ShortText(std::string_view text, ShownText most = {});

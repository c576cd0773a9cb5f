#pragma once

#include <cstdint>
#include <string>

/// What somebody has typed for a title and not confirmed yet (UTF-8).
struct Draft {
    std::int32_t title = 0;
    /// The title's text as it was when the typing began.
    std::string original;
    std::string text;
    /// As they stand in the boxes; empty where only the text is typed.
    std::string start;
    std::string duration;

    bool operator==(const Draft&) const = default;
};

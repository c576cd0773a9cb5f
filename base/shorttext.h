#pragma once

#include <string>
#include <string_view>

/// As much of a text as can be looked at: 200 lines of 2,000 characters, with "..." for
/// what is left out. Whatever a film or a file comes to, it is drawn at once.
std::string ShortText(std::string_view text);

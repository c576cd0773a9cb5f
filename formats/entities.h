#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

/// The character that the entity at the offset stands for ("&eacute;", "&#233;", "&#xE9;"),
/// whose offset then moves past it; a missing ";" is forgiven. Nothing where there is none.
std::optional<char32_t> ReadEntity(std::string_view text, std::size_t& at);

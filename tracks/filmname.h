#pragma once

#include <string_view>

/// Does the name (UTF-8) end like that of a film or a sound file? Only the name is looked at.
bool IsFilmName(std::string_view name);

#pragma once

#include <string>
#include <string_view>

/// The name that a file dialog opens on: the last one cut before its first ".",
/// wherever in the path that is, ready for another extension.
std::string StartingName(std::string_view lastName);

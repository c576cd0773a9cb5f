#pragma once

#include <string>
#include <string_view>

/// True when a directory search for the text finds at least one file. "*" and "?"
/// in the last part of the path are wildcards; folders and devices are no files.
bool FileExists(const std::string& path);

/// "*" stands for any characters, "?" for one (of a UTF-8 text); "*.*" fits every name.
bool WildcardMatch(std::string_view pattern, std::string_view name, bool ignoreCase);

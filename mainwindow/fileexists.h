#pragma once

#include <QString>

/// True when a directory search for the text finds at least one file. "*" and "?"
/// in the last part of the path are wildcards; folders and devices are no files.
bool FileExists(const QString& path);

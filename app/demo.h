#pragma once

#include <QString>

/// Plays the sample film, places three titles by key and saves, all through the
/// window's own controls; leaves the saved file and pictures of the window in the
/// folder, and tells on standard output what it does. Answers the exit code.
int RunDemo(const QString& folder);

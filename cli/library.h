#pragma once

#include "cli/reference.h"

#include <ostream>

struct LibraryWish {
    std::filesystem::path folder;
    /// How each is fitted; its `file` is set for each film.
    Reference::Wish fit;
    /// So many films at a time.
    unsigned jobs = 1;
    /// Write nothing.
    bool dryRun = false;
};

/// Fits the subtitle files of a folder to the films that they are named after. Each that
/// does not fit yet gets a fitted copy beside it; what has one is passed over, so that a
/// run goes on where one was stopped. No file is ever overwritten or left half written. Prints
/// a table on `out` and a bar on `err`. false when a file could not be read or
/// written; the others are done all the same.
bool FitLibrary(const LibraryWish& wish, std::ostream& out, std::ostream& err);

#pragma once

#include "formats/format.h"

#include <filesystem>
#include <functional>
#include <string>

/// What saving asks of whoever shows it. Each may be empty.
struct SaveHooks {
    /// Called before a frame-counting file is written; answers the rate, greater than 0.
    std::function<double()> askFrameRate;
    /// Called when everything is composed, right before an existing file is emptied.
    std::function<void()> beforeWriting;
    /// Return only when the file is on the disk, so that a power cut cannot take it.
    bool flushToDisk = true;
};

struct SaveResult {
    /// No error occurred (a name without a known extension gives an empty file and is no error).
    bool written = false;
    /// The format written; null when the extension names none.
    const Format* format = nullptr;
    /// What to tell the user; empty when there is nothing to tell.
    std::string message;
};

/// Empty when the list may be saved, else what to tell the user: the first title
/// may not start before 0.
std::string SaveRefusal(const SUBTITLES& titles);

/// Composes everything in memory, then writes the file in one go.
SaveResult SaveTitles(const std::filesystem::path& file, const std::string& codePage,
                      const SUBTITLES& titles, const FileStyle& style, const SaveHooks& hooks);

#pragma once

#include "formats/format.h"

#include <filesystem>
#include <functional>
#include <string>

/// What saving asks of whoever shows it. Each may be empty.
struct SaveHooks {
    /// Called before a frame-counting file is written; answers the rate, greater than 0.
    std::function<double()> askFrameRate;
    /// Called when everything is composed, right before the file gets its new bytes.
    std::function<void()> beforeWriting;
    /// Where the old bytes and the new ones are kept while a file must be overwritten in
    /// place (see base/replacefile.h). Empty: no file is overwritten so.
    std::filesystem::path journalFolder;
    /// Runs what touches the disk, which may not answer for long; false when it was given
    /// up. It owns all that it uses, and may go on alone after that.
    std::function<bool(std::function<void()>)> beside;
    /// Return only when the file is on the disk, so that a power cut cannot take it.
    bool flushToDisk = true;
};

struct SaveResult {
    /// The file holds the titles, as far as its format can.
    bool written = false;
    /// Read again, it gave them back.
    bool proven = false;
    /// The format written; null when the extension names none.
    const Format* format = nullptr;
    /// What to tell the user; empty when there is nothing to tell.
    std::string message;
    /// What became of the file, for the line below the message. May be empty.
    std::string details;
};

/// Empty when the list may be saved, else what to tell the user: the first title
/// may not start before 0.
std::string SaveRefusal(const SUBTITLES& titles);

/// Composes everything in memory, gives the file its new bytes in one go: at every
/// moment it holds the old ones or the new ones, whole. Then the file is read again and
/// compared with the titles. A name that tells no format is refused.
SaveResult SaveTitles(const std::filesystem::path& file, const std::string& codePage,
                      const SUBTITLES& titles, const FileStyle& style, const SaveHooks& hooks);

#pragma once

#include "formats/format.h"
#include "formats/tolerance.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

/// What loading asks of whoever shows it. Each may be empty.
struct LoadHooks {
    /// Called before a frame-counting file is read, with the rate that the file itself names;
    /// answers the rate, greater than 0.
    std::function<double(std::optional<double> named)> askFrameRate;
    /// Called once right before the titles are read.
    std::function<void()> loading;
    Progress progress;
};

enum class LoadOutcome {
    Complete,
    /// The file cannot be opened; nothing else happened but that the list is empty.
    NotOpened,
    /// Neither its name nor its first line tells a format.
    UnknownFormat,
    /// It breaks the rules of its format; the titles before the fault are in the list.
    Corrupt,
    /// Cancelled by the progress hook; the titles read so far are in the list.
    Cancelled,
};

struct LoadResult {
    LoadOutcome outcome = LoadOutcome::Complete;
    /// The format read; null before one was known.
    const Format* format = nullptr;
    /// What to tell the user; empty when there is nothing to tell.
    std::string message;
    /// What to ask the user after that: a tolerant reading would find more.
    std::optional<MendOffer> offer;
};

/// Empties the list and the style, switches undo recording off and reads the file.
/// On every outcome but `NotOpened` the closing steps are taken: the undo history
/// is cleared and recording is on. An unrecognised name with only empty lines in
/// the file is the run-time error "Input past end of file".
LoadResult LoadTitles(const std::filesystem::path& file, const std::string& codePage,
                      SUBTITLES& titles, FileStyle& style, const LoadHooks& hooks);

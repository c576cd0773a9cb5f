#pragma once

#include "base/wholefile.h"
#include "formats/format.h"
#include "formats/tolerance.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>

/// What loading asks of whoever shows it. Each may be empty.
struct LoadHooks {
    /// Reads the file instead of `ReadWholeFile`.
    std::function<std::optional<FileBytes>(const std::filesystem::path&)> readFile;
    /// Called before a frame-counting file is read, with the rate that the file itself names;
    /// answers the rate, greater than 0.
    std::function<double(std::optional<double> named)> askFrameRate;
    /// Called once right before the titles are read.
    std::function<void()> loading;
    Progress progress;
    /// Called once right before the titles that were read take the place of the others.
    std::function<void()> replacing;
};

enum class LoadOutcome {
    Complete,
    /// The file cannot be opened: nothing happened.
    NotOpened,
    /// Neither its name nor its beginning tells a format, or it holds pictures of titles;
    /// the titles are still the old ones.
    UnknownFormat,
    /// A time is beyond what can be shown; the titles are still the old ones.
    Unusable,
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

/// Reads the file and puts its titles and style in place of the old ones, with an empty
/// undo history. On every outcome but `NotOpened` undo recording is on afterwards.
LoadResult LoadTitles(const std::filesystem::path& file, const std::string& codePage,
                      SUBTITLES& titles, FileStyle& style, const LoadHooks& hooks);

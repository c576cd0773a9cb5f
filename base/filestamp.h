#pragma once

#include <cstdint>
#include <filesystem>

/// What tells whether a file is still the one that it was, without reading it.
struct FileStamp {
    bool there = false;
    std::uintmax_t size = 0;
    /// Of the last change, in the file system's own units.
    std::int64_t time = 0;
    /// The file's number and its disk's; 0 where the system has none.
    std::uint64_t number = 0;
    std::uint64_t device = 0;

    bool operator==(const FileStamp&) const = default;
};

FileStamp StampOf(const std::filesystem::path& file);

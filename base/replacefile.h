#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <string_view>
#include <system_error>

/// How a file gets new bytes so that at every moment, a crash or a power cut included,
/// it holds its old bytes or the new ones, whole: a temporary file beside it is written,
/// flushed and renamed over it. Mode, owner, extended attributes and access lists stay;
/// of a symbolic link, what it leads to is replaced.
///
/// A file that has several names, lies in a folder where the user may not create files,
/// or on a disk without room for both, can only be overwritten. Its old bytes must be
/// safe elsewhere before that begins.

enum class ReplaceResult : std::uint8_t {
    /// The new bytes are in the file (and on the disk, where that was asked for).
    Written,
    /// A folder, a pipe, a device or a socket. Nothing was touched.
    NotAFile,
    /// An error of the system, a missing right, a full disk. The file is whole: it holds
    /// its old bytes; in the rare case that only the last flush failed, the new ones.
    Failed,
    /// It could only be overwritten, and its old bytes could not be kept. Not touched.
    NotKept,
    /// Overwriting failed half-way, and so did putting the old bytes back.
    Torn,
};

struct ReplaceHooks {
    /// Called before a file is overwritten, with its bytes: are they, and the work that is
    /// being saved, on the disk somewhere else? Without it no file is ever overwritten.
    std::function<bool(std::string_view oldBytes)> keep;
    /// Return only when the bytes and the name are on the disk.
    bool flush = true;
    /// A new file is for the user alone.
    bool forOwner = false;
    /// Gets the system's reason of a failure, where there is one. May be null.
    std::error_code* reason = nullptr;
};

ReplaceResult ReplaceBytes(const std::filesystem::path& file, std::string_view bytes,
                           const ReplaceHooks& hooks);

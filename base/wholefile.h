#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string_view>

/// The bytes of a file in one allocation.
struct FileBytes {
    std::unique_ptr<char[]> data;
    std::size_t size = 0;

    std::string_view View() const { return {data.get(), size}; }
};

/// Nothing when it cannot be read, is too large for the memory or is no ordinary
/// file: a device or a pipe could keep the reader for ever.
std::optional<FileBytes> ReadWholeFile(const std::filesystem::path& file);

/// For files that hold nothing yet (see base/replacefile.h for those that do): creates or
/// empties the file and writes the bytes; with `flush`, waits until they
/// and the name are on the disk. False on any error, a full disk that shows at the end
/// included.
bool WriteWholeFile(const std::filesystem::path& file, std::string_view bytes, bool flush);

/// A new or changed name counts only once the folder itself is on the disk: waits for
/// that, where the system has a way to. False when the system reports an error.
bool FlushFolder(const std::filesystem::path& folder);

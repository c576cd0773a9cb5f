#include "base/wholefile.h"

#include "base/filehandle.h"
#include "base/largeblocks.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <system_error>

#include <fcntl.h>
#ifdef _WIN32
#include <sys/stat.h>
#endif

namespace {

#ifdef _WIN32
constexpr int ReadFlags = _O_RDONLY | _O_BINARY | _O_SEQUENTIAL | _O_NOINHERIT;
constexpr int WriteFlags = _O_WRONLY | _O_CREAT | _O_TRUNC | _O_BINARY | _O_NOINHERIT;
constexpr unsigned NewFileMode = _S_IREAD | _S_IWRITE;
#else
/// A pipe that took the file's place is not waited for.
constexpr int ReadFlags = O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY;
constexpr int WriteFlags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY;
constexpr int FolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
constexpr unsigned NewFileMode = 0666;
#endif

/// The size that the file names is only a hint: it may grow meanwhile, and some
/// systems name none.
std::optional<FileBytes> ReadToEnd(int handle, std::size_t hint) {
    FileBytes bytes;
    std::size_t room = hint + 1;
    bytes.data = std::make_unique_for_overwrite<char[]>(room);
    AdviseLargePages(bytes.data.get(), room);
    while (true) {
        const auto got = ReadFully(handle, bytes.data.get() + bytes.size, room - bytes.size);
        if (!got)
            return std::nullopt;
        bytes.size += *got;
        if (bytes.size < room)
            return bytes;
        room = std::max<std::size_t>(room * 2, 4096);
        auto larger = std::make_unique_for_overwrite<char[]>(room);
        std::memcpy(larger.get(), bytes.data.get(), bytes.size);
        bytes.data = std::move(larger);
    }
}

} // namespace

std::optional<FileBytes> ReadWholeFile(const std::filesystem::path& file) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error))
        return std::nullopt;
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    const FileHandle handle = OpenFile(file, ReadFlags, 0);
    if (!handle.Valid())
        return std::nullopt;
    try {
        return ReadToEnd(handle.Get(), error ? 0 : static_cast<std::size_t>(size));
    } catch (const std::bad_alloc&) {
        return std::nullopt;
    }
}

bool WriteWholeFile(const std::filesystem::path& file, std::string_view bytes, bool flush) {
    FileHandle handle = OpenFile(file, WriteFlags, NewFileMode);
    if (!handle.Valid())
        return false;
    const bool written = WriteFully(handle.Get(), bytes) && (!flush || FlushHandle(handle.Get()));
    if (!handle.Close() || !written)
        return false;
    return !flush || FlushFolder(file.parent_path());
}

#ifdef _WIN32

bool FlushFolder(const std::filesystem::path& /*folder*/) {
    return true;
}

#else

bool FlushFolder(const std::filesystem::path& folder) {
    const FileHandle handle = OpenFile(folder.empty() ? "." : folder, FolderFlags, 0);
    // A folder that may be written but not read cannot be waited for.
    if (!handle.Valid())
        return errno == EACCES;
    return FlushHandle(handle.Get());
}

#endif

#include "base/wholefile.h"

#include "base/largeblocks.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <system_error>

#include <fcntl.h>
#ifdef _WIN32
#include <io.h>
#include <sys/stat.h>
#else
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

#ifdef _WIN32

constexpr int ReadFlags = _O_RDONLY | _O_BINARY | _O_SEQUENTIAL | _O_NOINHERIT;
constexpr int WriteFlags = _O_WRONLY | _O_CREAT | _O_TRUNC | _O_BINARY | _O_NOINHERIT;

int Open(const std::filesystem::path& file, int flags) {
    return _wopen(file.c_str(), flags, _S_IREAD | _S_IWRITE);
}
int ReadSome(int handle, char* to, unsigned size) {
    return _read(handle, to, size);
}
int WriteSome(int handle, const char* from, unsigned size) {
    return _write(handle, from, size);
}
bool Flush(int handle) {
    return _commit(handle) == 0;
}
bool Close(int handle) {
    return _close(handle) == 0;
}

#else

constexpr int ReadFlags = O_RDONLY | O_CLOEXEC | O_NOCTTY;
constexpr int WriteFlags = O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOCTTY;
constexpr int FolderFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC;
constexpr mode_t NewFileMode = 0666;

int Open(const std::filesystem::path& file, int flags) {
    return open(file.c_str(), flags, NewFileMode);
}
ssize_t ReadSome(int handle, char* to, unsigned size) {
    return read(handle, to, size);
}
ssize_t WriteSome(int handle, const char* from, unsigned size) {
    return write(handle, from, size);
}
/// What cannot be flushed, a device for example, counts as flushed.
bool Flush(int handle) {
    return fsync(handle) == 0 || errno == EINVAL || errno == ENOTSUP || errno == EROFS;
}
bool Close(int handle) {
    return close(handle) == 0;
}

#endif

/// The most that every platform takes in one call.
constexpr std::size_t LargestStep = std::size_t{1} << 30;

unsigned Step(std::size_t size) {
    return static_cast<unsigned>(std::min(size, LargestStep));
}

/// Reads up to `size` bytes; less only at the end of the file. Nothing on an error.
std::optional<std::size_t> ReadFully(int handle, char* to, std::size_t size) {
    std::size_t done = 0;
    while (done < size) {
        const auto got = ReadSome(handle, to + done, Step(size - done));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            return std::nullopt;
        if (got == 0)
            break;
        done += static_cast<std::size_t>(got);
    }
    return done;
}

bool WriteFully(int handle, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto put = WriteSome(handle, bytes.data(), Step(bytes.size()));
        if (put < 0 && errno == EINTR)
            continue;
        if (put <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(put));
    }
    return true;
}

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
    const int handle = Open(file, ReadFlags);
    if (handle < 0)
        return std::nullopt;
    std::optional<FileBytes> bytes;
    try {
        bytes = ReadToEnd(handle, error ? 0 : static_cast<std::size_t>(size));
    } catch (const std::bad_alloc&) {
        bytes.reset();
    }
    Close(handle);
    return bytes;
}

bool WriteWholeFile(const std::filesystem::path& file, std::string_view bytes, bool flush) {
    const int handle = Open(file, WriteFlags);
    if (handle < 0)
        return false;
    const bool written = WriteFully(handle, bytes) && (!flush || Flush(handle));
    if (!Close(handle) || !written)
        return false;
    if (flush)
        FlushFolder(file.parent_path());
    return true;
}

void FlushFolder([[maybe_unused]] const std::filesystem::path& folder) {
#ifndef _WIN32
    const int handle = open(folder.empty() ? "." : folder.c_str(), FolderFlags);
    if (handle < 0)
        return;
    Flush(handle);
    Close(handle);
#endif
}

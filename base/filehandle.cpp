#include "base/filehandle.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#ifdef _WIN32
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

#ifdef _WIN32

int Open(const std::filesystem::path& file, int flags, unsigned mode) {
    return _wopen(file.c_str(), flags, mode);
}
int ReadSome(int handle, char* to, unsigned size) {
    return _read(handle, to, size);
}
int WriteSome(int handle, const char* from, unsigned size) {
    return _write(handle, from, size);
}
int Flush(int handle) {
    return _commit(handle);
}
int CloseOnce(int handle) {
    return _close(handle);
}
bool CannotBeFlushed(int error) {
    return error == EINVAL;
}

#else

int Open(const std::filesystem::path& file, int flags, unsigned mode) {
    return open(file.c_str(), flags, mode);
}
ssize_t ReadSome(int handle, char* to, unsigned size) {
    return read(handle, to, size);
}
ssize_t WriteSome(int handle, const char* from, unsigned size) {
    return write(handle, from, size);
}
int Flush(int handle) {
    return fsync(handle);
}
int CloseOnce(int handle) {
    return close(handle);
}
bool CannotBeFlushed(int error) {
    return error == EINVAL || error == ENOTSUP || error == EROFS;
}

#endif

/// The most that every platform takes in one call.
constexpr std::size_t LargestStep = std::size_t{1} << 30;

unsigned Step(std::size_t size) {
    return static_cast<unsigned>(std::min(size, LargestStep));
}

} // namespace

bool FileHandle::Close() {
    // After an interruption the handle is gone too.
    return !Valid() || CloseOnce(std::exchange(m_handle, -1)) == 0 || errno == EINTR;
}

FileHandle OpenFile(const std::filesystem::path& file, int flags, unsigned mode) {
    int handle = -1;
    do
        handle = Open(file, flags, mode);
    while (handle < 0 && errno == EINTR);
    return FileHandle(handle);
}

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
        if (put == 0)
            errno = EIO;
        if (put <= 0)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(put));
    }
    return true;
}

bool FlushHandle(int handle) {
    int result = 0;
    do
        result = Flush(handle);
    while (result != 0 && errno == EINTR);
    return result == 0 || CannotBeFlushed(errno);
}

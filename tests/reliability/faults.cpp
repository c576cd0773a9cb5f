// Loaded before the C library (LD_PRELOAD): lets one call on a file fail as a disk, a
// signal or a kill would make it fail.
//
//   QUELMAR_FAULT_FOLDER  only calls on files below this folder count, and on those that
//                         were opened there
//   QUELMAR_FAULT         EIO, ENOSPC, EINTR, SHORT (half of what was to be read or
//                         written), KILL, FULL (the disk takes AT more bytes), or HANG
//                         (from that call on nothing comes back, as from a dead share)
//   QUELMAR_FAULT_AT      which call, from 1; 0 counts only
//   QUELMAR_FAULT_REPORT  a file that gets the number of calls that could have failed so
//   QUELMAR_FAULT_WAIT    when set, counting begins with access("/quelmar/faults", 0)
//
// Nothing here allocates, so that it can be called from anywhere.

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <dlfcn.h>
#include <fcntl.h>
#include <limits.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace {

constexpr const char* Begin = "/quelmar/faults";
constexpr int MostFiles = 4096;

enum Kind { None, Eio, Enospc, Eintr, Short, Kill, Full, Hang };
/// What may go wrong with a call beside EIO and a kill.
enum Weakness : unsigned { NeedsRoom = 1, Interruptible = 2, Partial = 4, Makes = 8 };

struct State {
    const char* folder = nullptr;
    std::size_t folderLength = 0;
    Kind kind = None;
    long at = 0;
    const char* report = nullptr;
    std::atomic<bool> counting{false};
    std::atomic<long> calls{0};
    std::atomic<long> room{0};
    std::atomic<bool> ours[MostFiles] = {};
};

Kind KindOf(const char* name) {
    constexpr const char* Names[] = {"", "EIO", "ENOSPC", "EINTR", "SHORT", "KILL", "FULL", "HANG"};
    for (int i = Eio; name != nullptr && i <= Hang; ++i)
        if (std::strcmp(name, Names[i]) == 0)
            return static_cast<Kind>(i);
    return None;
}

State& The() {
    static State state;
    static const bool ready = [] {
        state.folder = std::getenv("QUELMAR_FAULT_FOLDER");
        state.folderLength = state.folder == nullptr ? 0 : std::strlen(state.folder);
        state.kind = KindOf(std::getenv("QUELMAR_FAULT"));
        const char* const at = std::getenv("QUELMAR_FAULT_AT");
        state.at = at == nullptr ? 0 : std::atol(at);
        state.room = state.at;
        state.report = std::getenv("QUELMAR_FAULT_REPORT");
        state.counting = std::getenv("QUELMAR_FAULT_WAIT") == nullptr;
        return true;
    }();
    static_cast<void>(ready);
    return state;
}

void Report() {
    if (The().report == nullptr)
        return;
    char text[32];
    const int length = std::snprintf(text, sizeof text, "%ld\n", The().calls.load());
    const auto file = static_cast<int>(syscall(SYS_openat, AT_FDCWD, The().report,
                                               O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
    if (file < 0)
        return;
    static_cast<void>(!syscall(SYS_write, file, text, static_cast<std::size_t>(length)));
    syscall(SYS_close, file);
}

bool Fits(Kind kind, unsigned weakness) {
    switch (kind) {
    case Eio:
    case Kill:
    case Hang:
        return true;
    case Enospc:
        return (weakness & NeedsRoom) != 0;
    case Eintr:
        return (weakness & Interruptible) != 0;
    case Short:
        return (weakness & Partial) != 0;
    default:
        return false;
    }
}

/// Is this the call that fails? `errno` is set then (to 0 for a short one).
bool Fails(bool ours, unsigned weakness) {
    State& state = The();
    if (!ours || !state.counting)
        return false;
    if (state.kind == Full && (weakness & Makes) != 0 && state.room <= 0) {
        errno = ENOSPC;
        return true;
    }
    if (!Fits(state.kind, weakness))
        return false;
    const long call = ++state.calls;
    Report();
    if (state.kind == Hang && call >= state.at)
        while (true)
            syscall(SYS_ppoll, nullptr, 0, nullptr, nullptr, 0);
    if (call != state.at)
        return false;
    if (state.kind == Kill)
        syscall(SYS_kill, getpid(), SIGKILL);
    constexpr int Errors[] = {0, EIO, ENOSPC, EINTR, 0, 0, 0, 0};
    errno = Errors[state.kind];
    return true;
}

bool Ours(const char* path) {
    const State& state = The();
    return path != nullptr && state.folder != nullptr &&
           std::strncmp(path, state.folder, state.folderLength) == 0;
}
bool Ours(int file) {
    return file >= 0 && file < MostFiles && The().ours[file];
}
bool OursAt(int folder, const char* path) {
    return path != nullptr && path[0] != '/' && folder != AT_FDCWD ? Ours(folder) : Ours(path);
}
int Opened(int file, bool ours) {
    if (file >= 0 && file < MostFiles)
        The().ours[file] = ours;
    return file;
}

template <typename FUNCTION>
FUNCTION* Real(const char* name) {
    return reinterpret_cast<FUNCTION*>(dlsym(RTLD_NEXT, name));
}

unsigned OpenWeakness(int flags) {
    return Interruptible | ((flags & O_CREAT) != 0 ? NeedsRoom | Makes : 0U);
}

/// How much of `size` the disk takes; -1 when nothing at all.
ssize_t Room(bool ours, std::size_t size) {
    State& state = The();
    if (!ours || state.kind != Full || !state.counting)
        return static_cast<ssize_t>(size);
    const long left = state.room.fetch_sub(static_cast<long>(size));
    if (left <= 0) {
        errno = ENOSPC;
        return -1;
    }
    return left < static_cast<long>(size) ? left : static_cast<ssize_t>(size);
}

} // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the names are the C library's
extern "C" {

#define QUELMAR_MODE()                                                                             \
    mode_t mode = 0;                                                                               \
    if ((flags & (O_CREAT | O_TMPFILE)) != 0) {                                                    \
        va_list rest;                                                                              \
        va_start(rest, flags);                                                                     \
        mode = va_arg(rest, mode_t);                                                               \
        va_end(rest);                                                                              \
    }

#define QUELMAR_OPEN(NAME)                                                                         \
    int NAME(const char* path, int flags, ...) {                                                   \
        QUELMAR_MODE()                                                                             \
        if (Fails(Ours(path), OpenWeakness(flags)))                                                \
            return -1;                                                                             \
        return Opened(static_cast<int>(syscall(SYS_openat, AT_FDCWD, path, flags, mode)),          \
                      Ours(path));                                                                 \
    }
#define QUELMAR_OPENAT(NAME)                                                                       \
    int NAME(int folder, const char* path, int flags, ...) {                                       \
        QUELMAR_MODE()                                                                             \
        const bool ours = OursAt(folder, path);                                                    \
        if (Fails(ours, OpenWeakness(flags)))                                                      \
            return -1;                                                                             \
        return Opened(static_cast<int>(syscall(SYS_openat, folder, path, flags, mode)), ours);     \
    }
QUELMAR_OPEN(open)
QUELMAR_OPEN(open64)
QUELMAR_OPENAT(openat)
QUELMAR_OPENAT(openat64)

int close(int file) {
    const bool ours = Ours(file);
    Opened(file, false);
    const bool fails = Fails(ours, Interruptible);
    const int error = errno;
    const auto result = static_cast<int>(syscall(SYS_close, file));
    if (!fails)
        return result;
    errno = error;
    return -1;
}

ssize_t read(int file, void* to, size_t size) {
    if (Fails(Ours(file), Interruptible | (size > 1 ? Partial : 0U))) {
        if (errno != 0)
            return -1;
        size /= 2;
    }
    return syscall(SYS_read, file, to, size);
}

ssize_t write(int file, const void* from, size_t size) {
    const bool ours = Ours(file);
    if (Fails(ours, NeedsRoom | Interruptible | (size > 1 ? Partial : 0U))) {
        if (errno != 0)
            return -1;
        size /= 2;
    }
    const ssize_t room = Room(ours, size);
    return room < 0 ? -1 : syscall(SYS_write, file, from, room);
}

// The calls that answer 0 or -1: name, parameters, arguments, whose file, weakness.
#define QUELMAR_CALL(NAME, PARAMETERS, ARGUMENTS, OURS, WEAKNESS)                                  \
    int NAME PARAMETERS {                                                                          \
        if (Fails(OURS, WEAKNESS))                                                                 \
            return -1;                                                                             \
        return Real<int PARAMETERS>(#NAME) ARGUMENTS;                                              \
    }
QUELMAR_CALL(fsync, (int file), (file), Ours(file), NeedsRoom | Interruptible)
QUELMAR_CALL(fdatasync, (int file), (file), Ours(file), NeedsRoom | Interruptible)
QUELMAR_CALL(ftruncate, (int file, off_t size), (file, size), Ours(file), NeedsRoom | Interruptible)
QUELMAR_CALL(ftruncate64, (int file, off64_t size), (file, size), Ours(file),
             NeedsRoom | Interruptible)
QUELMAR_CALL(rename, (const char* from, const char* to), (from, to), Ours(to), NeedsRoom | Makes)
QUELMAR_CALL(renameat2,
             (int fromFolder, const char* from, int toFolder, const char* to, unsigned flags),
             (fromFolder, from, toFolder, to, flags), OursAt(toFolder, to), NeedsRoom | Makes)
QUELMAR_CALL(link, (const char* from, const char* to), (from, to), Ours(to), NeedsRoom | Makes)
QUELMAR_CALL(linkat, (int fromFolder, const char* from, int toFolder, const char* to, int flags),
             (fromFolder, from, toFolder, to, flags), OursAt(toFolder, to), NeedsRoom | Makes)
QUELMAR_CALL(unlink, (const char* path), (path), Ours(path), 0)
QUELMAR_CALL(remove, (const char* path), (path), Ours(path), 0)
QUELMAR_CALL(mkdir, (const char* path, mode_t mode), (path, mode), Ours(path), NeedsRoom | Makes)
QUELMAR_CALL(chmod, (const char* path, mode_t mode), (path, mode), Ours(path), 0)
QUELMAR_CALL(fchmod, (int file, mode_t mode), (file, mode), Ours(file), 0)
QUELMAR_CALL(fchmodat, (int folder, const char* path, mode_t mode, int flags),
             (folder, path, mode, flags), OursAt(folder, path), 0)
QUELMAR_CALL(fchown, (int file, uid_t user, gid_t group), (file, user, group), Ours(file), 0)
QUELMAR_CALL(flock, (int file, int operation), (file, operation), Ours(file), Interruptible)
QUELMAR_CALL(stat, (const char* path, struct stat* status), (path, status), Ours(path), 0)
QUELMAR_CALL(stat64, (const char* path, struct stat64* status), (path, status), Ours(path), 0)
QUELMAR_CALL(lstat, (const char* path, struct stat* status), (path, status), Ours(path), 0)
QUELMAR_CALL(lstat64, (const char* path, struct stat64* status), (path, status), Ours(path), 0)
QUELMAR_CALL(fstat, (int file, struct stat* status), (file, status), Ours(file), 0)
QUELMAR_CALL(fstat64, (int file, struct stat64* status), (file, status), Ours(file), 0)
QUELMAR_CALL(statx,
             (int folder, const char* __restrict path, int flags, unsigned mask,
              struct statx* __restrict status),
             (folder, path, flags, mask, status), OursAt(folder, path), 0)
QUELMAR_CALL(fsetxattr, (int file, const char* name, const void* value, size_t size, int flags),
             (file, name, value, size, flags), Ours(file), NeedsRoom)

ssize_t flistxattr(int file, char* list, size_t size) {
    return Fails(Ours(file), 0) ? -1 : syscall(SYS_flistxattr, file, list, size);
}
ssize_t fgetxattr(int file, const char* name, void* value, size_t size) {
    return Fails(Ours(file), 0) ? -1 : syscall(SYS_fgetxattr, file, name, value, size);
}
ssize_t readlink(const char* __restrict path, char* __restrict to, size_t size) {
    return Fails(Ours(path), 0) ? -1 : syscall(SYS_readlink, path, to, size);
}

#define QUELMAR_LSEEK(NAME)                                                                        \
    off_t NAME(int file, off_t position, int from) {                                               \
        return Fails(Ours(file), 0) ? -1 : syscall(SYS_lseek, file, position, from);               \
    }
QUELMAR_LSEEK(lseek)
QUELMAR_LSEEK(lseek64)

int access(const char* path, int mode) {
    if (std::strcmp(path, Begin) == 0)
        The().counting = true;
    return Fails(Ours(path), 0) ? -1 : static_cast<int>(syscall(SYS_access, path, mode));
}

} // extern "C"
// NOLINTEND(bugprone-reserved-identifier)

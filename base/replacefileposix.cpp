#include "base/replacefile.h"

#include "base/filehandle.h"
#include "base/wholefile.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <random>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/xattr.h>
#endif

namespace {

namespace fs = std::filesystem;

constexpr mode_t NewFileMode = 0666;
constexpr mode_t PrivateMode = 0600;
constexpr mode_t ModeBits = 07777;
constexpr int MostLinks = 40;
/// Together with what is added, no longer than any file system allows.
constexpr std::size_t LongestName = 200;

/// Where a chain of symbolic links ends, whether there is a file or not.
fs::path EndOfLinks(fs::path file) {
    std::error_code error;
    for (int i = 0; i < MostLinks && fs::is_symlink(fs::symlink_status(file, error)); ++i) {
        const fs::path link = fs::read_symlink(file, error);
        if (error)
            break;
        file = link.is_absolute() ? link : file.parent_path() / link;
    }
    return file;
}

/// What may be impossible beside a file that can be overwritten all the same.
bool OnlyRenamingFails(int error) {
    switch (error) {
    case EACCES:
    case EPERM:
    case ENOSPC:
    case EDQUOT:
    case EXDEV:
    case EBUSY:
    case ENOTSUP:
        return true;
    default:
        return false;
    }
}

#ifdef __linux__

constexpr const char* AccessList = "system.posix_acl_access";

std::optional<std::string> Attribute(int file, const char* name) {
    const ssize_t size = fgetxattr(file, name, nullptr, 0);
    if (size < 0)
        return std::nullopt;
    std::string value(static_cast<std::size_t>(size), '\0');
    const ssize_t got = fgetxattr(file, name, value.data(), value.size());
    if (got < 0)
        return std::nullopt;
    value.resize(static_cast<std::size_t>(got));
    return value;
}

/// Nothing when they cannot be told; none where the file system has none.
std::optional<std::vector<std::string>> AttributeNames(int file) {
    const ssize_t size = flistxattr(file, nullptr, 0);
    if (size < 0 && errno == ENOTSUP)
        return std::vector<std::string>();
    if (size < 0)
        return std::nullopt;
    std::string all(static_cast<std::size_t>(size), '\0');
    const ssize_t got = flistxattr(file, all.data(), all.size());
    if (got < 0)
        return std::nullopt;
    std::vector<std::string> names;
    for (std::size_t at = 0; at < static_cast<std::size_t>(got); at += names.back().size() + 1)
        names.emplace_back(all.c_str() + at);
    return names;
}

/// Those that the system computes from a file's bytes are not carried over.
bool IsOfTheBytes(const std::string& name) {
    return name == "security.ima" || name == "security.evm";
}

/// Sets `errno` to ENOTSUP where an attribute cannot be kept.
bool CopyAttributes(int from, int to) {
    const auto names = AttributeNames(from);
    if (!names)
        return errno = ENOTSUP, false;
    for (const std::string& name : *names) {
        if (IsOfTheBytes(name))
            continue;
        const auto value = Attribute(from, name.c_str());
        if (!value)
            return errno = ENOTSUP, false;
        if (Attribute(to, name.c_str()) != value &&
            fsetxattr(to, name.c_str(), value->data(), value->size(), 0) != 0)
            return errno = ENOTSUP, false;
    }
    return true;
}

/// One that the folder gave to the new file.
void DropAccessList(int file) {
    fremovexattr(file, AccessList);
}

#else

bool CopyAttributes(int /*from*/, int /*to*/) {
    return true;
}
void DropAccessList(int /*file*/) {}

#endif

bool CopyRights(int from, int to) {
    struct stat wanted {};
    struct stat made {};
    if (fstat(from, &wanted) != 0 || fstat(to, &made) != 0)
        return false;
    DropAccessList(to);
    if ((wanted.st_uid != made.st_uid || wanted.st_gid != made.st_gid) &&
        fchown(to, wanted.st_uid, wanted.st_gid) != 0)
        return false;
    return fchmod(to, wanted.st_mode & ModeBits) == 0 && CopyAttributes(from, to);
}

/// The file beside the target; it goes away unless it took the target's name.
class Temporary {
  public:
    explicit Temporary(const fs::path& target)
        : m_target(target)
        , m_folder(target.has_parent_path() ? target.parent_path() : fs::path(".")) {}
    ~Temporary() {
        if (m_handle.Valid())
            unlink(m_name.c_str());
    }
    Temporary(const Temporary&) = delete;
    Temporary& operator=(const Temporary&) = delete;

    /// The usual name is tried first, so that what a save that was cut short left behind
    /// goes with the next one.
    bool Create(mode_t mode) {
        const fs::path usual = m_folder / Name();
        if (TryCreate(usual, mode) ||
            (errno == EEXIST && RemoveStale(usual) && TryCreate(usual, mode)))
            return true;
        for (int tries = 0; errno == EEXIST && tries < 100; ++tries)
            if (TryCreate(m_folder / (Name() + std::to_string(std::random_device()())), mode))
                return true;
        return false;
    }
    int Handle() const { return m_handle.Get(); }

    bool TakeName() {
        if (rename(m_name.c_str(), m_target.c_str()) != 0)
            return false;
        m_handle.Close();
        return true;
    }

  private:
    std::string Name() const {
        std::string name = m_target.filename().string();
        if (name.size() > LongestName) {
            std::size_t end = LongestName;
            while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xC0U) == 0x80)
                --end;
            name.resize(end);
        }
        return '.' + name + ".quelmar~";
    }

    bool TryCreate(const fs::path& name, mode_t mode) {
        FileHandle made = OpenFile(name, O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, mode);
        if (!made.Valid())
            return false;
        // Held while it is in use. (Where files cannot be held, nobody can take it either.)
        if (flock(made.Get(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK) {
            errno = EEXIST;
            return false;
        }
        m_handle = std::move(made);
        m_name = name;
        return true;
    }

    /// One that no running program holds. true: there is none any more.
    static bool RemoveStale(const fs::path& name) {
        const FileHandle left(OpenFile(name, O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW, 0));
        if (!left.Valid() || flock(left.Get(), LOCK_EX | LOCK_NB) != 0) {
            errno = EEXIST;
            return false;
        }
        const bool removed = unlink(name.c_str()) == 0;
        errno = EEXIST;
        return removed;
    }

    const fs::path m_target;
    const fs::path m_folder;
    fs::path m_name;
    FileHandle m_handle;
};

bool Fill(const Temporary& temporary, int old, std::string_view bytes, bool flush) {
    return WriteFully(temporary.Handle(), bytes) &&
           (old < 0 || CopyRights(old, temporary.Handle())) &&
           (!flush || FlushHandle(temporary.Handle()));
}

/// `old`: of the file that is there, or -1. Answers the system's reason, 0 when it is done.
int ReplaceByRenaming(const fs::path& target, int old, std::string_view bytes,
                      const ReplaceHooks& hooks) {
    Temporary temporary(target);
    if (!temporary.Create(old < 0 && !hooks.forOwner ? NewFileMode : PrivateMode) ||
        !Fill(temporary, old, bytes, hooks.flush) || !temporary.TakeName())
        return errno;
    return hooks.flush && !FlushFolder(target.parent_path()) ? EIO : 0;
}

void Tell(const ReplaceHooks& hooks, int error) {
    if (hooks.reason != nullptr)
        *hooks.reason = std::error_code(error, std::generic_category());
}

bool WriteAt(int file, std::size_t position, std::string_view bytes) {
    return lseek(file, static_cast<off_t>(position), SEEK_SET) >= 0 && WriteFully(file, bytes);
}

bool CutTo(int file, std::size_t size) {
    int result = 0;
    do
        result = ftruncate(file, static_cast<off_t>(size));
    while (result != 0 && errno == EINTR);
    return result == 0;
}

/// What is longer comes first: a full disk shows before anything old is lost.
ReplaceResult Overwrite(int file, std::string_view old, std::string_view bytes, bool flush) {
    const std::size_t common = std::min(old.size(), bytes.size());
    if (bytes.size() > old.size() &&
        (!WriteAt(file, old.size(), bytes.substr(old.size())) || !FlushHandle(file))) {
        return CutTo(file, old.size()) && (!flush || FlushHandle(file)) ? ReplaceResult::Failed
                                                                        : ReplaceResult::Torn;
    }
    if (WriteAt(file, 0, bytes.substr(0, common)) && CutTo(file, bytes.size()) &&
        (!flush || FlushHandle(file)))
        return ReplaceResult::Written;
    const bool restored = WriteAt(file, 0, old) && CutTo(file, old.size()) && FlushHandle(file);
    return restored ? ReplaceResult::Failed : ReplaceResult::Torn;
}

ReplaceResult OverwriteKept(const fs::path& target, int file, std::string_view bytes,
                            const ReplaceHooks& hooks) {
    const auto old = ReadWholeFile(target);
    if (!old || !hooks.keep || !hooks.keep(old->View()))
        return ReplaceResult::NotKept;
    return Overwrite(file, old->View(), bytes, hooks.flush);
}

} // namespace

ReplaceResult ReplaceBytes(const fs::path& file, std::string_view bytes,
                           const ReplaceHooks& hooks) {
    struct stat status {};
    const bool there = stat(file.c_str(), &status) == 0;
    if (there && !S_ISREG(status.st_mode))
        return ReplaceResult::NotAFile;
    if (!there && errno != ENOENT) {
        Tell(hooks, errno);
        return ReplaceResult::Failed;
    }
    const fs::path target = EndOfLinks(file);
    if (!there) {
        const int error = ReplaceByRenaming(target, -1, bytes, hooks);
        Tell(hooks, error);
        return error == 0 ? ReplaceResult::Written : ReplaceResult::Failed;
    }

    // A file that may not be written is not replaced either.
    const FileHandle old(OpenFile(target, O_WRONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY, 0));
    if (!old.Valid() || fstat(old.Get(), &status) != 0) {
        Tell(hooks, errno);
        return ReplaceResult::Failed;
    }
    if (!S_ISREG(status.st_mode))
        return ReplaceResult::NotAFile;
    if (status.st_nlink == 1) {
        const int error = ReplaceByRenaming(target, old.Get(), bytes, hooks);
        Tell(hooks, error);
        if (error == 0)
            return ReplaceResult::Written;
        if (!OnlyRenamingFails(error))
            return ReplaceResult::Failed;
    }
    return OverwriteKept(target, old.Get(), bytes, hooks);
}

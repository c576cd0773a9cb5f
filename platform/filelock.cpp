#include "platform/filelock.h"

#include <QFile>

#include <utility>

#ifdef Q_OS_WIN
#include <qt_windows.h>
#else
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

FileLock::FileLock(FileLock&& other) noexcept
    : m_handle(std::exchange(other.m_handle, NoHandle))
    , m_name(std::move(other.m_name)) {}

FileLock& FileLock::operator=(FileLock&& other) noexcept {
    if (this != &other) {
        Release();
        m_handle = std::exchange(other.m_handle, NoHandle);
        m_name = std::move(other.m_name);
    }
    return *this;
}

#ifdef Q_OS_WIN

bool FileLock::Take(const QString& name) {
    Release();
    // No sharing: a second opening fails as long as this handle lives.
    HANDLE handle =
        CreateFileW(reinterpret_cast<const wchar_t*>(name.utf16()), GENERIC_READ | GENERIC_WRITE, 0,
                    nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return false;
    m_handle = reinterpret_cast<std::intptr_t>(handle);
    m_name = name;
    return true;
}

bool FileLock::HeldElsewhere(const QString& name) {
    HANDLE handle = CreateFileW(reinterpret_cast<const wchar_t*>(name.utf16()), GENERIC_READ, 0,
                                nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_SHARING_VIOLATION;
    CloseHandle(handle);
    return false;
}

void FileLock::Release() {
    if (!Held())
        return;
    CloseHandle(reinterpret_cast<HANDLE>(std::exchange(m_handle, NoHandle)));
    QFile::remove(m_name);
}

#else

namespace {

/// The lock is worth something only while the file still has its name: between
/// opening and locking, another program may have let go and removed it.
bool StillNamed(int file, const QByteArray& name) {
    struct stat held {};
    struct stat named {};
    return ::fstat(file, &held) == 0 && ::stat(name.constData(), &named) == 0 &&
           held.st_ino == named.st_ino && held.st_dev == named.st_dev;
}

} // namespace

bool FileLock::Take(const QString& name) {
    Release();
    const QByteArray path = QFile::encodeName(name);
    const int file = ::open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (file < 0)
        return false;
    if (::flock(file, LOCK_EX | LOCK_NB) != 0 || !StillNamed(file, path)) {
        ::close(file);
        return false;
    }
    m_handle = file;
    m_name = name;
    return true;
}

bool FileLock::HeldElsewhere(const QString& name) {
    const int file = ::open(QFile::encodeName(name).constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (file < 0)
        return false;
    const bool held = ::flock(file, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    ::close(file);
    return held;
}

void FileLock::Release() {
    if (!Held())
        return;
    // Removed while it is still held, so that nobody can be holding the name by then.
    QFile::remove(m_name);
    ::close(static_cast<int>(std::exchange(m_handle, NoHandle)));
}

#endif

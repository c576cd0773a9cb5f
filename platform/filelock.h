#pragma once

#include <QString>

#include <cstdint>

/// A file held by this process until it lets go or ends, however it ends. Who holds
/// one is never guessed from process numbers, which are used again.
class FileLock {
  public:
    FileLock() = default;
    ~FileLock() { Release(); }
    FileLock(FileLock&& other) noexcept;
    FileLock& operator=(FileLock&& other) noexcept;
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    /// Creates the file (for the user only) and holds it; false when it is held elsewhere.
    bool Take(const QString& name);
    /// There is such a file, and another one holds it.
    static bool HeldElsewhere(const QString& name);
    bool Held() const { return m_handle != NoHandle; }
    /// Lets go and removes the file.
    void Release();

  private:
    static constexpr std::intptr_t NoHandle = -1;

    std::intptr_t m_handle = NoHandle;
    QString m_name;
};

#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>

/// An open file of the system, closed with its owner. What follows goes on where the
/// system was interrupted, and leaves the reason of a failure in `errno`.
class FileHandle {
  public:
    FileHandle() = default;
    explicit FileHandle(int handle)
        : m_handle(handle) {}
    ~FileHandle() { Close(); }
    FileHandle(FileHandle&& other) noexcept
        : m_handle(std::exchange(other.m_handle, -1)) {}
    FileHandle& operator=(FileHandle&& other) noexcept {
        if (this != &other) {
            Close();
            m_handle = std::exchange(other.m_handle, -1);
        }
        return *this;
    }
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;

    bool Valid() const { return m_handle >= 0; }
    int Get() const { return m_handle; }
    /// False when the system reports that what was written is lost.
    bool Close();

  private:
    int m_handle = -1;
};

/// Flags and mode of the system's own `open`.
FileHandle OpenFile(const std::filesystem::path& file, int flags, unsigned mode);
/// Less than `size` bytes only at the end of the file. Nothing on an error.
std::optional<std::size_t> ReadFully(int handle, char* to, std::size_t size);
bool WriteFully(int handle, std::string_view bytes);
/// Waits until what was written is on the disk. What cannot be flushed, a device for
/// example, counts as flushed.
bool FlushHandle(int handle);

#pragma once

#include "base/filehandle.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Where the program keeps what must outlive it: Tevo/Quelmar in the user's folder for
/// programs' state. Empty when the user has none.
std::filesystem::path StateFolder();

/// What a file held and what it is to hold, on the disk, while the file is overwritten in
/// place. It is removed when the file is whole again; one whose program has ended tells
/// of a save that was cut short.
class SaveJournal {
  public:
    /// False when it cannot be written; then there is none.
    bool Write(const std::filesystem::path& folder, const std::filesystem::path& file,
               std::string_view oldBytes, std::string_view newBytes);
    /// Empty as long as there is none.
    const std::filesystem::path& Name() const { return m_name; }
    void Remove();

  private:
    std::filesystem::path m_name;
    FileHandle m_held;
};

/// A save that its program did not end.
struct InterruptedSave {
    std::filesystem::path journal;
    std::filesystem::path file;
    std::string oldBytes;
    std::string newBytes;
};

/// Those whose file holds neither its old bytes nor the new ones; the others need no more
/// attention, and their journals are removed. What cannot be read is left alone.
std::vector<InterruptedSave> FindInterruptedSaves(const std::filesystem::path& folder);

#pragma once

#include "formats/load.h"
#include "formats/save.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// A folder that goes away with all its files.
class TestFolder {
  public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    std::filesystem::path operator/(const std::filesystem::path& name) const {
        return m_path / name;
    }
    const std::filesystem::path& Path() const { return m_path; }

  private:
    std::filesystem::path m_path;
};

struct TestTitle {
    double start;
    double end;
    std::string text;

    bool operator==(const TestTitle&) const = default;
};
std::ostream& operator<<(std::ostream& out, const TestTitle& title);

std::vector<TestTitle> TitlesOf(const SUBTITLES& titles);
SUBTITLES ListOf(const std::vector<TestTitle>& titles);

std::string FileText(const std::filesystem::path& file);
void PutFile(const std::filesystem::path& file, std::string_view bytes);

/// A document as one load left it.
struct Loaded {
    SUBTITLES titles;
    FileStyle style;
    LoadResult result;

    std::vector<TestTitle> Titles() const { return TitlesOf(titles); }
};

/// Loads a file of that name and content.
Loaded LoadText(const std::string& name, std::string_view bytes, const LoadHooks& hooks = {},
                const std::string& codePage = "windows-1252");
/// The bytes of the file that the titles give.
std::string SavedText(const std::string& name, const std::vector<TestTitle>& titles,
                      const FileStyle& style = {}, const SaveHooks& hooks = {},
                      const std::string& codePage = "windows-1252");

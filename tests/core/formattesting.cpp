#include "formattesting.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>

TestFolder::TestFolder()
    : m_path(std::filesystem::temp_directory_path() /
             ("quelmar-test-" + std::to_string(std::random_device()()))) {
    std::filesystem::create_directory(m_path);
}

TestFolder::~TestFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(m_path, ignored);
}

std::ostream& operator<<(std::ostream& out, const TestTitle& title) {
    return out << title.start << " to " << title.end << ": " << testing::PrintToString(title.text);
}

std::vector<TestTitle> TitlesOf(const SUBTITLES& titles) {
    std::vector<TestTitle> result;
    for (std::int32_t i = 1; i <= titles.Count(); ++i)
        result.push_back({titles.StartTime(i), titles.EndTime(i), titles.Text(i)});
    return result;
}

SUBTITLES ListOf(const std::vector<TestTitle>& titles) {
    SUBTITLES list;
    for (const TestTitle& title : titles)
        list.Add(title.start, title.end, title.text);
    return list;
}

std::string FileText(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

void PutFile(const std::filesystem::path& file, std::string_view bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

Loaded LoadText(const std::string& name, std::string_view bytes, const LoadHooks& hooks,
                const std::string& codePage) {
    const TestFolder folder;
    PutFile(folder / name, bytes);
    Loaded loaded;
    loaded.result = LoadTitles(folder / name, codePage, loaded.titles, loaded.style, hooks);
    return loaded;
}

std::string SavedText(const std::string& name, const std::vector<TestTitle>& titles,
                      const FileStyle& style, const SaveHooks& hooks, const std::string& codePage) {
    const TestFolder folder;
    const SaveResult result = SaveTitles(folder / name, codePage, ListOf(titles), style, hooks);
    EXPECT_TRUE(result.written);
    EXPECT_EQ(result.message, "");
    return FileText(folder / name);
}

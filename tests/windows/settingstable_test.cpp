#include "platform/settings.h"

#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace {

struct Told {
    std::string standard;
    std::string writer;
    bool operator==(const Told&) const = default;
};

std::string Plain(std::string cell) {
    std::erase(cell, '`');
    cell.erase(0, cell.find_first_not_of(' '));
    cell.erase(cell.find_last_not_of(' ') + 1);
    return cell;
}

/// The rows of the table under "## Settings", by the names in their first cells.
std::map<std::string, Told> ReadmeTable(std::istream& readme) {
    std::map<std::string, Told> told;
    std::string line;
    while (std::getline(readme, line) && line != "## Settings") {
    }
    while (std::getline(readme, line) && !line.starts_with("## ")) {
        if (!line.starts_with("| `"))
            continue;
        std::istringstream cells(line);
        std::string names, standard, writer;
        std::getline(cells, names, '|');
        std::getline(cells, names, '|');
        std::getline(cells, standard, '|');
        std::getline(cells, writer, '|');
        std::istringstream each(names);
        for (std::string name; std::getline(each, name, ',');)
            told[Plain(name)] = {Plain(standard), Plain(writer)};
    }
    return told;
}

TEST(SettingsTable, TheReadmeTellsTheSame) {
    std::ifstream readme(QUELMAR_README);
    ASSERT_TRUE(readme) << QUELMAR_README;
    std::map<std::string, Told> told = ReadmeTable(readme);
    for (const SettingRow& row : SettingRows) {
        const std::string name(row.name);
        ASSERT_TRUE(told.contains(name)) << name << " is not in the README's table";
        const std::string standard(row.standard.empty() ? "nothing" : row.standard);
        EXPECT_EQ(told[name].standard, standard) << name;
        EXPECT_EQ(told[name].writer, row.writer) << name;
        told.erase(name);
    }
    for (const auto& [name, row] : told)
        ADD_FAILURE() << name << " is no setting";
}

TEST(SettingsTable, EachNameIsThereOnce) {
    std::set<std::string_view> names;
    for (const SettingRow& row : SettingRows)
        EXPECT_TRUE(names.insert(row.name).second) << row.name;
}

} // namespace

// What other texts say of the formats, and what holds for every row of their table.
#include "base/ascii.h"
#include "formattesting.h"

#include <gtest/gtest.h>

#include <map>
#include <regex>
#include <set>
#include <vector>

namespace {

std::string SourceText(const char* name) {
    std::string text = FileText(std::filesystem::path(SOURCE_FOLDER) / name);
    EXPECT_NE(text, "") << name;
    return text;
}

std::string LineOf(const std::string& text, const std::string& start) {
    const std::size_t at = text.find("\n" + start);
    if (at == std::string::npos)
        return {};
    const std::size_t from = at + 1 + start.size();
    return text.substr(from, text.find('\n', from) - from);
}

TEST(FormatTable, NamesEachFormatAndEachOfItsExtensionsOnce) {
    std::set<std::string> names;
    for (const Format& format : Formats()) {
        EXPECT_TRUE(names.insert(format.name).second) << format.name;
        ASSERT_FALSE(format.extensions.empty()) << format.name;
        std::set<std::string> extensions;
        for (const std::string& extension : format.extensions) {
            EXPECT_TRUE(extension.starts_with('.') && extension.size() > 1) << extension;
            EXPECT_EQ(extension, AsciiLower(extension));
            EXPECT_TRUE(extensions.insert(extension).second) << extension;
        }
        EXPECT_TRUE(std::string_view(format.description).ends_with("files")) << format.name;
        EXPECT_NE(std::string_view(format.corruptMessage), "") << format.name;
    }
}

/// Files are saved under every extension of the table, and are read as they were written.
TEST(FormatTable, ReadsWhatItWritesUnderEveryExtension) {
    for (const Format& format : Formats()) {
        for (const std::string& extension : format.extensions) {
            const std::string name = "x" + extension;
            const Format* saved = FormatByName(name);
            ASSERT_NE(saved, nullptr) << name;
            const Loaded loaded = LoadText(name, SavedText(name, {{1, 2, "A"}, {3, 4.5, "B"}}));
            EXPECT_EQ(loaded.result.format, saved) << name;
            EXPECT_EQ(loaded.result.outcome, LoadOutcome::Complete) << name;
            ASSERT_EQ(loaded.titles.Count(), 2) << name;
            EXPECT_NEAR(loaded.titles.StartTime(2), 3, 0.05) << name;
            EXPECT_NEAR(loaded.titles.EndTime(2), 4.5, 0.05) << name;
            EXPECT_EQ(loaded.titles.Text(2), "B") << name;
        }
    }
}

TEST(FormatTable, IsRecognisedByWhatItWrites) {
    for (const Format& format : Formats()) {
        std::string out;
        WriteFile(format, ListOf({{1, 2, "A"}, {3, 4, "B"}}), 25, {}, out);
        const Format* found = FormatOfFile("unknown", out);
        ASSERT_NE(found, nullptr) << format.name;
        EXPECT_TRUE(found == &format || (format.keeps != nullptr && found->keeps == format.keeps))
            << format.name << " " << found->name;
    }
}

#ifdef DESKTOP_ENTRY
TEST(FormatTable, IsWhatTheDesktopEntrySays) {
    const std::string entry = FileText(DESKTOP_ENTRY);
    EXPECT_EQ(entry.find('@'), std::string::npos);
    std::string types;
    for (const Format& format : Formats()) {
        const std::string type = std::string(format.mimeType) + ";";
        if (type != ";" && types.find(type) == std::string::npos)
            types += type;
    }
    const std::string entrysTypes = LineOf(entry, "MimeType=");
    EXPECT_TRUE(entrysTypes.starts_with(types)) << entrysTypes;
    const std::string words = LineOf(entry, "Keywords=");
    for (const Format& format : Formats())
        for (const std::string& extension : format.extensions)
            EXPECT_NE(words.find(";" + extension.substr(1) + ";"), std::string::npos) << extension;
}

/// The film dialog's extensions and the types that desktops give such files.
TEST(FilmTypes, AreWhatTheDesktopEntrySays) {
    const std::map<std::string, std::vector<std::string>> types{
        {"avi", {"video/x-msvideo", "video/vnd.avi"}},
        {"mpg", {"video/mpeg"}},
        {"mpeg", {"video/mpeg"}},
        {"asf", {"application/vnd.ms-asf", "video/x-ms-asf"}},
        {"wmv", {"video/x-ms-wmv"}},
        {"mov", {"video/quicktime"}},
        {"mp4", {"video/mp4"}},
        {"m4v", {"video/mp4", "video/x-m4v"}},
        {"mkv", {"video/x-matroska"}},
        {"webm", {"video/webm"}},
        {"ts", {"video/mp2t"}},
        {"m2ts", {"video/mp2t"}},
        {"mts", {"video/mp2t"}},
        {"vob", {"video/mpeg"}},
        {"ogm", {"video/x-ogm+ogg"}},
        {"ogv", {"video/ogg", "video/x-theora+ogg"}},
        {"flv", {"video/x-flv"}},
        {"3gp", {"video/3gpp"}},
        {"wav", {"audio/x-wav", "audio/vnd.wave"}},
        {"mp3", {"audio/mpeg"}},
        {"flac", {"audio/flac"}},
        {"m4a", {"audio/mp4"}},
        {"aac", {"audio/aac"}},
        {"opus", {"audio/x-opus+ogg"}},
        {"ogg", {"audio/ogg", "audio/x-vorbis+ogg", "audio/x-flac+ogg"}},
        {"oga", {"audio/ogg"}},
        {"wma", {"audio/x-ms-wma"}},
        {"mka", {"audio/x-matroska"}}};
    const std::string panel = SourceText("mainwindow/filepanel.cpp");
    const std::size_t from = panel.find("All films and sound|");
    ASSERT_NE(from, std::string::npos);
    const std::string offered = panel.substr(from, panel.find(");", from) - from);
    const std::regex pattern("\\*\\.(\\w+)");
    std::set<std::string> extensions;
    for (std::sregex_iterator at(offered.begin(), offered.end(), pattern), end; at != end; ++at)
        extensions.insert((*at)[1]);
    const std::string entrysTypes = ";" + LineOf(FileText(DESKTOP_ENTRY), "MimeType=");
    for (const auto& [extension, named] : types) {
        EXPECT_EQ(extensions.erase(extension), 1U) << extension;
        for (const std::string& type : named)
            EXPECT_NE(entrysTypes.find(";" + type + ";"), std::string::npos) << type;
    }
    for (const std::string& extension : extensions)
        ADD_FAILURE() << extension << " has no type";
}
#endif

TEST(FormatTable, IsWhatTheReadmeSays) {
    const std::string readme = SourceText("README.md");
    const std::string filled = std::regex_replace(readme, std::regex("\\s+"), " ");
    for (const Format& format : Formats()) {
        EXPECT_NE(filled.find(format.name), std::string::npos) << format.name;
        for (const std::string& extension : format.extensions)
            EXPECT_NE(readme.find("`" + extension + "`"), std::string::npos) << extension;
    }
}

} // namespace

#include "formats/substation.h"

#include "formattesting.h"

#include <gtest/gtest.h>

namespace {

using Titles = std::vector<TestTitle>;
constexpr const char* Corrupt = "File is corrupt or not in Advanced SubStation Alpha format.";

struct ReadRow {
    const char* what;
    std::string file;
    Titles titles;
    const char* message = "";
};
std::ostream& operator<<(std::ostream& out, const ReadRow& row) {
    return out << row.what;
}

/// A "Dialogue:" line with the usual fields.
std::string Line(const std::string& text) {
    return "Dialogue: 0,0:00:01.00,0:00:02.00,Default,,0,0,0,," + text + "\n";
}

class SubStationRead : public testing::TestWithParam<ReadRow> {};

TEST_P(SubStationRead, Gives) {
    const Loaded loaded = LoadText("x.ass", GetParam().file);
    EXPECT_EQ(loaded.Titles(), GetParam().titles);
    EXPECT_EQ(loaded.result.message, GetParam().message);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SubStationRead,
    testing::Values(
        ReadRow{"nothing", "", {}, Corrupt}, ReadRow{"no events", "[Script Info]\n", {}, Corrupt},
        ReadRow{"no title", "[Events]\n", {}},
        ReadRow{"lines outside the events",
                Line("A") + "[Events]\n" + Line("B") + "[Fonts]\n" + Line("C"),
                {{1, 2, "B"}}},
        ReadRow{"comments", "[EVENTS]\nComment: 0,0:00:01.00,0:00:02.00,,,,,,,A\n;x\n", {}},
        ReadRow{"line breaks and codes",
                "[Events]\n" +
                    Line("a, b\\Nc\\nd\\he{\\i1}f{\\i0}{\\b1}g{\\b0}{\\an8}{\\i1\\b1}{x}"),
                {{1, 2, "a, b\r\nc\\nd\\he<i>f</i><b>g</b>{\\an8}{\\i1\\b1}{x}"}}},
        ReadRow{"fields in another order",
                "[Events]\nFormat: Style, Start, Name, End, Text\n"
                "Dialogue: a,0:00:01.5,b, 1:00:00 ,c,d\n",
                {{1.5, 3600, "c,d"}}},
        ReadRow{"a text that is not the last",
                "[Events]\nFormat: Text, Start, End\nDialogue: a,b\n",
                {},
                Corrupt},
        ReadRow{"lines that are cut short",
                "[Events]\nDialogue: 0,0:00:01.00\nDialogue: 0,a,b,,,,,,,c\n" + Line("A"),
                {{1, 2, "A"}},
                Corrupt}));

TEST(SubStationRead, KeepsWhatItDidNotUnderstand) {
    const std::string file = "[Events]\n" + Line("A") + "Dialogue: 0,x\n" + Line("B");
    const Loaded loaded = LoadText("x.ass", file);
    EXPECT_EQ(loaded.result.outcome, LoadOutcome::Corrupt);
    std::string out;
    WriteFile(*loaded.result.format, loaded.titles, 25, loaded.style, out);
    EXPECT_EQ(out, file);
}

TEST(SubStationWrite, GivesANewTitleWhatMostHave) {
    Loaded loaded = LoadText("x.ass", "[Events]\n"
                                      "Dialogue: 9,0:00:01.00,0:00:02.00,Sign,,1,1,1,,A\n"
                                      "Dialogue: 0,0:00:03.00,0:00:04.00,Main,,0,0,0,,B\n"
                                      "Dialogue: 0,0:00:05.00,0:00:06.00,Main,,0,0,0,,C\n");
    loaded.titles.Insert(1, 0.5, 0.75, "new");
    std::string out;
    WriteFile(*loaded.result.format, loaded.titles, 25, loaded.style, out);
    EXPECT_EQ(out, "[Events]\n"
                   "Dialogue: 0,0:00:00.50,0:00:00.75,Main,,0,0,0,,new\n"
                   "Dialogue: 9,0:00:01.00,0:00:02.00,Sign,,1,1,1,,A\n"
                   "Dialogue: 0,0:00:03.00,0:00:04.00,Main,,0,0,0,,B\n"
                   "Dialogue: 0,0:00:05.00,0:00:06.00,Main,,0,0,0,,C\n");
    EXPECT_EQ(NotKept(*FormatByName("x.srt"), loaded.titles, loaded.style),
              "Positions and styles of 1 title are not kept in SubRip.");
}

TEST(SubStationWrite, GivesAFirstTitleTheFieldsThatTheFormatAsksFor) {
    Loaded loaded = LoadText("x.ssa", "[Events]\nFormat: Marked, Start, X, End, Style, Name, Text");
    loaded.titles.Insert(1, 1, 2, "a");
    std::string out;
    WriteFile(*loaded.result.format, loaded.titles, 25, loaded.style, out);
    EXPECT_EQ(out, "[Events]\nFormat: Marked, Start, X, End, Style, Name, Text\n"
                   "Dialogue: Marked=0,0:00:01.00,0,0:00:02.00,Default,,a\n");
}

TEST(SubStationWrite, BeginsANewFile) {
    for (const char* name : {"x.ass", "x.ssa"}) {
        const std::string file =
            SavedText(name, {{1, 2.345, "a\r\n<i>b</i>"}, {35999.5, 36000, ""}});
        EXPECT_TRUE(file.starts_with("[Script Info]\r\n")) << file;
        const std::string first = name == std::string("x.ass") ? "0" : "Marked=0";
        const std::string lines = "Dialogue: " + first +
                                  ",0:00:01.00,0:00:02.35,Default,,0,0,0,,a\\N{\\i1}b{\\i0}\r\n"
                                  "Dialogue: " +
                                  first + ",9:59:59.50,10:00:00.00,Default,,0,0,0,,\r\n";
        EXPECT_TRUE(file.ends_with("Effect, Text\r\n" + lines)) << file;
    }
}

struct TextRow {
    const char* text;
    const char* raw;
};

class ForeignText : public testing::TestWithParam<TextRow> {};

TEST_P(ForeignText, IsWrittenAndComesBack) {
    std::string raw;
    ForeignTextToSubStation(GetParam().text, raw);
    EXPECT_EQ(raw, GetParam().raw);
    const std::string text = SubStationToText(raw);
    if (std::string_view(GetParam().text).find("{\\") == std::string_view::npos) {
        EXPECT_EQ(SubStationPlainText(text), GetParam().text);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ForeignText,
    testing::Values(TextRow{"", ""}, TextRow{"a\r\nb\r\n", "a\\Nb\\N"},
                    TextRow{"<i>a</i><b>b</b><u>", "{\\i1}a{\\i0}{\\b1}b{\\b0}<u>"},
                    TextRow{"{a}", "\\{a\\}"}, TextRow{"{\\an8}a{", "{\\an8}a\\{"},
                    TextRow{"C:\\News\\x\\", "C:\\\xE2\x81\xA0News\\x\\"},
                    TextRow{"\\{", "\\\xE2\x81\xA0\\{"}));

TEST(PlainText, HasNoBlocksAndNoDrawings) {
    EXPECT_EQ(SubStationPlainText("{\\an8}a{x}{\\i1\\c&H0&}b{\\b1\\i0}{\\iclip}\\nc\\hd"),
              "a<i>b<b></i> c\xC2\xA0"
              "d");
    EXPECT_EQ(SubStationPlainText("a{\\p1}m 0 0 l \\N 1 1{\\p0}b{\\p2}m 0"), "ab");
    EXPECT_EQ(SubStationPlainText("a{b{c"), "a{b{c");
    EXPECT_EQ(SubStationPlainText("\\"), "\\");
}

} // namespace

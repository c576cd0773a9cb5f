// The formats that hold times and words and little else.
#include "formattesting.h"

#include <gtest/gtest.h>

namespace {

using Titles = std::vector<TestTitle>;

struct ReadRow {
    const char* name;
    const char* format;
    const char* what;
    std::string_view file;
    Titles titles;
    LoadOutcome outcome = LoadOutcome::Complete;
};
std::ostream& operator<<(std::ostream& out, const ReadRow& row) {
    return out << row.name << ": " << row.what;
}

class SimpleRead : public testing::TestWithParam<ReadRow> {};

TEST_P(SimpleRead, Gives) {
    const Loaded loaded = LoadText(GetParam().name, GetParam().file);
    ASSERT_NE(loaded.result.format, nullptr);
    EXPECT_STREQ(loaded.result.format->name, GetParam().format);
    EXPECT_EQ(loaded.Titles(), GetParam().titles);
    EXPECT_EQ(loaded.result.outcome, GetParam().outcome);
}

constexpr auto Corrupt = LoadOutcome::Corrupt;

INSTANTIATE_TEST_SUITE_P(
    Rows, SimpleRead,
    testing::Values(
        ReadRow{"x.sbv",
                "SBV",
                "two titles",
                "0:00:01.500,0:00:04.000\nA\nB\n\n1:00:05.000,1:00:06.000\nC",
                {{1.5, 4, "A\r\nB"}, {3605, 3606, "C"}}},
        ReadRow{"x.sbv",
                "SBV",
                "empty lines, an empty text",
                "\n\n0:00:01.000, 0:00:02.000\n\n \n\n0:00:03.000,0:00:04.000\nA\n",
                {{1, 2, ""}, {3, 4, "A"}}},
        ReadRow{"x.sbv", "SBV", "no times", "A\n", {}, Corrupt},
        ReadRow{"x.sbv",
                "SBV",
                "a fault",
                "0:00:01.000,0:00:02.000\nA\n\n0:00:03.000\nB\n",
                {{1, 2, "A"}},
                Corrupt},
        ReadRow{"x", "SBV", "by content", "0:00:01.500,0:00:04.000\nA", {{1.5, 4, "A"}}},
        ReadRow{"x.sub",
                "SubViewer",
                "a header, breaks",
                "[INFORMATION]\n[TITLE]a\n[END INFORMATION]\n[SUBTITLE]\n\n"
                "00:00:01.50,00:00:04.00\n[laughs][br]B\nC\n\n00:00:05.00,00:00:06.00\nD\n",
                {{1.5, 4, "[laughs]\r\nB\r\nC"}, {5, 6, "D"}}},
        ReadRow{"x.sub", "SubViewer", "no header", "00:00:01.50,00:00:04.00\nA", {{1.5, 4, "A"}}},
        ReadRow{"x.sub", "SubViewer", "no title", "[INFORMATION]\n", {}},
        ReadRow{"x.sub", "SubViewer", "words in front", "[INFORMATION]\nA\n", {}, Corrupt},
        ReadRow{"x", "SubViewer", "by content", "00:00:01.50,00:00:04.00\nA", {{1.5, 4, "A"}}},
        ReadRow{"x.sub", "MicroDVD", "frames have first call", "{25}{50}A", {{1, 2, "A"}}},
        ReadRow{"x.sub", "MicroDVD", "and are missed in all else", "0:00:01.50\nA", {}, Corrupt},
        ReadRow{"x.txt",
                "MPL2",
                "two titles",
                "[15][40]A|/B|C\r\n\r\n [50][][-6]D\r\n",
                {{1.5, 4, "A\r\n<i>B</i>\r\nC"}, {5, 0, "[-6]D"}}},
        ReadRow{"x", "MPL2", "by content", "[15][40]", {{1.5, 4, ""}}},
        ReadRow{"x.txt", "MPL2", "a fault", "[15][40]A\n[x][4]B\n", {{1.5, 4, "A"}}, Corrupt},
        ReadRow{"x.txt",
                "SubRip",
                "another format",
                "1\n00:00:01,000 --> 00:00:02,000\nA",
                {{1, 2, "A"}}},
        ReadRow{"x.lrc",
                "LRC",
                "a header, an end, the last line",
                "[ti:A]\n[00:01.50]A\n[00:02.00]\n[01:03.5] B\n\n[61:00]C",
                {{1.5, 2, "A"}, {63.5, 3660, " B"}, {3660, 3670, "C"}}},
        ReadRow{"x.lrc",
                "LRC",
                "a chorus",
                "[00:05.00][00:01.00]A\n[00:03.00]B\n[00:07.00]\n",
                {{1, 3, "A"}, {3, 5, "B"}, {5, 7, "A"}}},
        ReadRow{"x.lrc",
                "LRC",
                "an offset",
                "[offset: +500]\n[00:01.50]A\n[00:02.00]\n",
                {{1, 1.5, "A"}}},
        ReadRow{"x.lrc", "LRC", "brackets in the words", "[00:01.00][x]A\n", {{1, 11, "[x]A"}}},
        ReadRow{
            "x.lrc", "LRC", "words without a time", "[00:01.00]A\nB\n", {{1, 11, "A"}}, Corrupt},
        ReadRow{"x", "LRC", "by its header", "[ar:B]\n[00:01.00]A", {{1, 11, "A"}}},
        ReadRow{"x", "LRC", "by its times", "[00:01.00]A", {{1, 11, "A"}}}));

struct WriteRow {
    const char* name;
    const char* what;
    Titles titles;
    const char* file;
};
std::ostream& operator<<(std::ostream& out, const WriteRow& row) {
    return out << row.name << ": " << row.what;
}

class SimpleWrite : public testing::TestWithParam<WriteRow> {};

TEST_P(SimpleWrite, Gives) {
    std::string file = SavedText(GetParam().name, GetParam().titles);
    if (file.starts_with("[INFORMATION]"))
        file = file.substr(file.find("Arial\r\n") + 7);
    EXPECT_EQ(file, GetParam().file);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, SimpleWrite,
    testing::Values(
        WriteRow{"x.sbv",
                 "lines, tags, empty lines",
                 {{1.5, 2, "<i>A</i>\r\n\r\nB\r\n"}, {3600, 3601, ""}},
                 "0:00:01.500,0:00:02.000\r\nA\r\nB\r\n\r\n1:00:00.000,1:00:01.000\r\n\r\n\r\n"},
        WriteRow{"x.txt",
                 "italics",
                 {{1.54, 2, "<i>A\r\nB</i>\r\nC <i>D</i>\r\n/E"}, {3, 4, ""}},
                 "[15][20]/A|/B|C D| /E\r\n[30][40]\r\n"},
        WriteRow{"x.txt",
                 "slashes that are no italics",
                 {{1.5, 2, "/a|/b\r\n</i>/c <i>/d</i>"}},
                 "[15][20] /a| /b| /c /d\r\n"},
        WriteRow{"x.lrc",
                 "ends where nothing follows",
                 {{1, 2, "A\r\n<b>B</b>"}, {2, 3, ""}, {3661.234, 3662, "[00:01.00]"}},
                 "[00:01.00]A B\r\n[00:02.00] \r\n[00:03.00]\r\n[61:01.23] [00:01.00]\r\n"
                 "[61:02.00]\r\n"}));

/// A file that was loaded, moved by a second and saved.
std::string Moved(const char* name, std::string_view file) {
    Loaded loaded = LoadText(name, file);
    for (std::int32_t i = 1; i <= loaded.titles.Count(); ++i)
        loaded.titles.SetTimes(i, loaded.titles.StartTime(i) + 1, loaded.titles.EndTime(i) + 1);
    const TestFolder folder;
    EXPECT_TRUE(SaveTitles(folder / name, "", loaded.titles, loaded.style, {}).written);
    return FileText(folder / name);
}

TEST(SimpleWrite, KeepsHeadersAndTimesWithin) {
    EXPECT_EQ(Moved("x.sub", "[INFORMATION]\n[TITLE]a\n\n00:00:01.50,00:00:04.00\nA[br]B\n"),
              "[INFORMATION]\n[TITLE]a\n\n00:00:02.50,00:00:05.00\r\nA[br]B\r\n\r\n");
    EXPECT_EQ(Moved("x.lrc", "[ti:A]\n[offset:0]\n[00:01.00]A<00:01.50>B\n[00:02.00]\n"),
              "[ti:A]\r\n[00:02.00]A<00:02.50>B\r\n[00:03.00]\r\n");
}

TEST(SimpleWrite, WritesSubViewerOnlyWhereItCameFrom) {
    const Loaded loaded = LoadText("x.sub", "00:00:01.00,00:00:04.00\nA\n");
    EXPECT_STREQ(FormatByName("y.sub", loaded.style)->name, "SubViewer");
    EXPECT_STREQ(FormatByName("y.sub")->name, "MicroDVD");
}

} // namespace

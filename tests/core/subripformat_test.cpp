#include "formattesting.h"

#include <gtest/gtest.h>

namespace {

using Titles = std::vector<TestTitle>;
constexpr const char* Corrupt = "File is corrupt or not in SubRip format.";

struct ReadRow {
    const char* what;
    std::string_view file;
    Titles titles;
    const char* message = "";
};

class SubRipRead : public testing::TestWithParam<ReadRow> {};

TEST_P(SubRipRead, Gives) {
    const Loaded loaded = LoadText("x.srt", GetParam().file);
    EXPECT_EQ(loaded.Titles(), GetParam().titles) << GetParam().what;
    EXPECT_EQ(loaded.result.message, GetParam().message) << GetParam().what;
    EXPECT_EQ(loaded.result.outcome,
              *GetParam().message == 0 ? LoadOutcome::Complete : LoadOutcome::Corrupt);
    EXPECT_TRUE(loaded.titles.UndoEnabled());
}

#define TIMES "00:00:01,000 --> 00:00:04,000\r\n"
#define LATER "00:00:05,000 --> 00:00:06,000\r\n"

using namespace std::string_view_literals;

INSTANTIATE_TEST_SUITE_P(
    Rows, SubRipRead,
    testing::Values(
        ReadRow{"two titles",
                "1\r\n" TIMES "Hello\r\n\r\n2\r\n" LATER "You\r\n\r\n",
                {{1, 4, "Hello"}, {5, 6, "You"}}},
        ReadRow{"two empty lines between blocks",
                "1\r\n" TIMES "Hello\r\n\r\n\r\n2\r\n" LATER "You\r\n\r\n",
                {{1, 4, "Hello"}},
                Corrupt},
        ReadRow{"an empty text line takes the next block with it",
                "1\r\n" TIMES "\r\n2\r\n" LATER "You\r\n\r\n3\r\n" LATER "Me\r\n",
                {{1, 4, "\r\n2\r\n00:00:05,000 --> 00:00:06,000\r\nYou"}, {5, 6, "Me"}}},
        ReadRow{"no empty line at the end", "1\r\n" TIMES "Hello\r\nyou", {{1, 4, "Hello\r\nyou"}}},
        ReadRow{"an empty text line at the end", "1\r\n" TIMES "\r\n", {{1, 4, ""}}},
        ReadRow{"codes", "1\r\n" TIMES "{y:i}Hello{y}\r\n\r\n", {{1, 4, "<i>Hello</i>"}}},
        ReadRow{"codes over lines stay open to the end of the title",
                "1\r\n" TIMES "{y:i}Hello\r\n{y:b}you\r\n\r\n2\r\n" LATER "x{y}\r\n",
                {{1, 4, "<i>Hello\r\n<b>you</i></b>"}, {5, 6, "x"}}},
        ReadRow{"a code that two lines share is none",
                "1\r\n" TIMES "{y\r\n:i}\r\n",
                {{1, 4, "{y\r\n:i}"}}},
        ReadRow{"a number alone at the end", "1\r\n" TIMES "Hello\r\n\r\n2", {{1, 4, "Hello"}}},
        ReadRow{"a number and its line end at the end",
                "1\r\n" TIMES "Hello\r\n\r\n2\r\n",
                {{1, 4, "Hello"}}},
        ReadRow{
            "times on the last line", "1\r\n" TIMES "Hello\r\n\r\n2\r\n" LATER, {{1, 4, "Hello"}}},
        ReadRow{"number 0", "0\r\n" TIMES "Hello\r\n", {}, Corrupt},
        ReadRow{"text for a number",
                "1\r\n" TIMES "A\r\n\r\nB\r\n" LATER "C\r\n",
                {{1, 4, "A"}},
                Corrupt},
        ReadRow{"numbers that begin so, or lie below 0, or are no whole ones",
                "-7\r\n" TIMES "A\r\n\r\n 12abc\r\n" LATER "B\r\n\r\n0.5\r\n" LATER "C\r\n",
                {{1, 4, "A"}, {5, 6, "B"}, {5, 6, "C"}}},
        ReadRow{"numbers in any order",
                "9\r\n" TIMES "A\r\n\r\n3\r\n" LATER "B\r\n",
                {{1, 4, "A"}, {5, 6, "B"}}},
        ReadRow{"the separator is not looked at",
                "1\r\n00:00:01,000abcde00:00:04,000 X1:100\r\nA\r\n",
                {{1, 4, "A"}}},
        ReadRow{
            "the columns are fixed", "1\r\n0:00:01,000 --> 0:00:04,000\r\nA\r\n", {{1, 0, "A"}}},
        ReadRow{"columns are characters",
                "1\r\n00:00:01,000\xC2\xA0-->\xC2\xA0"
                "00:00:04,000\r\nA\r\n",
                {{1, 4, "A"}}},
        ReadRow{"characters of any length before the times end",
                "1\r\n00:00:01,5\xE2\x80\x82 --> \xF0\x9F\x98\x80"
                "00:00:04,000\r\nA\r\n",
                {{1, 4, "A"}}},
        ReadRow{"a line without times", "1\r\n\r\nA\r\n", {{0, 0, "A"}}},
        ReadRow{"a short time line", "1\r\n00:00:01,5\r\nA\r\n", {{1.005, 0, "A"}}},
        ReadRow{
            "line feeds alone", "1\n00:00:01,000 --> 00:00:04,000\nA\nB\n\n", {{1, 4, "A\r\nB"}}},
        ReadRow{"carriage returns alone",
                "1\r00:00:01,000 --> 00:00:04,000\rA\rB\r\r",
                {{1, 4, "A\r\nB"}}},
        ReadRow{"line ends of all kinds",
                "1\r\n00:00:01,000 --> 00:00:04,000\rA\nB\r\nC\r\n\n",
                {{1, 4, "A\r\nB\r\nC"}}},
        ReadRow{"a line of blanks is not empty",
                "1\r\n" TIMES "A\r\n \r\nB\r\n",
                {{1, 4, "A\r\n \r\nB"}}},
        ReadRow{"blanks and tabs of the text stay", "1\r\n" TIMES "  A \t\r\n", {{1, 4, "  A \t"}}},
        ReadRow{"NUL bytes are text", "1\r\n" TIMES "A\0B\r\n"sv, {{1, 4, std::string("A\0B", 3)}}},
        ReadRow{"an empty file", "", {}}, ReadRow{"an empty line", "\r\n", {}, Corrupt},
        ReadRow{"a byte-order mark",
                "\xEF\xBB\xBF"
                "1\r\n" TIMES "A\r\n",
                {{1, 4, "A"}}}));

TEST(SubRipWrite, NumbersAnewAndEndsEachBlockWithAnEmptyLine) {
    EXPECT_EQ(SavedText("x.srt", {{1, 4, "Hello"}, {5.5, 3723.004, "line one\r\nline two"}}),
              "1\r\n00:00:01,000 --> 00:00:04,000\r\nHello\r\n\r\n"
              "2\r\n00:00:05,500 --> 01:02:03,004\r\nline one\r\nline two\r\n\r\n");
}

TEST(SubRipWrite, LeavesTagsOut) {
    EXPECT_EQ(SavedText("x.srt", {{1, 4, "<i>Hel<b>lo</b></i> <I>"}}),
              "1\r\n00:00:01,000 --> 00:00:04,000\r\nHello <I>\r\n\r\n");
}

TEST(SubRipWrite, CodesComeBackAsPlainText) {
    const Loaded loaded = LoadText("x.srt", "1\r\n" TIMES "{y:i}Hello{y}\r\n\r\n");
    EXPECT_EQ(SavedText("x.srt", loaded.Titles()), "1\r\n" TIMES "Hello\r\n\r\n");
}

TEST(SubRipWrite, NegativeTimesAreWrittenAsTheyAre) {
    std::string file;
    FormatByName("x.srt")->write(ListOf({{3, 4, "A"}, {-0.5, 1, "B"}}), 25, {}, file);
    EXPECT_EQ(file, "1\r\n00:00:03,000 --> 00:00:04,000\r\nA\r\n\r\n"
                    "2\r\n-00:00:00,500 --> 00:00:01,000\r\nB\r\n\r\n");
}

TEST(SubRipWrite, WritesAnEmptyListAsAnEmptyFile) {
    EXPECT_EQ(SavedText("x.srt", {}), "");
}

TEST(SubRipRoundTrip, GivesTheSameBytes) {
    const std::string file = "1\r\n" TIMES "Hello\r\nyou\r\n\r\n2\r\n" LATER "\xC3\xA9\r\n\r\n";
    EXPECT_EQ(SavedText("x.srt", LoadText("x.srt", file).Titles()), file);
}

} // namespace

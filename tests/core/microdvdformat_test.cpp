#include "formattesting.h"

#include "model/numbers.h"

#include <gtest/gtest.h>

namespace {

using Titles = std::vector<TestTitle>;
using namespace std::string_view_literals;

struct ReadRow {
    const char* what;
    std::string_view file;
    Titles titles;
    const char* message = "";
};

class MicroDvdRead : public testing::TestWithParam<ReadRow> {};

TEST_P(MicroDvdRead, Gives) {
    const Loaded loaded = LoadText("x.sub", GetParam().file);
    EXPECT_EQ(loaded.Titles(), GetParam().titles) << GetParam().what;
    EXPECT_EQ(loaded.result.message, GetParam().message) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, MicroDvdRead,
    testing::Values(
        ReadRow{"one title", "{25}{50}Hello\r\n", {{1, 2, "Hello"}}},
        ReadRow{"styles are closed at the end of the title, not of the line",
                "{0}{50}{y:i}Hi|there\r\n",
                {{0, 2, "<i>Hi\r\nthere</i>"}}},
        ReadRow{"the last line keeps its codes", "{0}{50}{y:i}Hi\r\n", {{0, 2, "{y:i}Hi"}}},
        ReadRow{"the last of several lines keeps its codes",
                "{0}{50}a|{y:i}Hi{y}\r\n",
                {{0, 2, "a\r\n{y:i}Hi{y}"}}},
        ReadRow{
            "a bar at the end", "{0}{50}{y:i}{y:b}x{y}{y}|\r\n", {{0, 2, "<i><b>x</i></b>\r\n"}}},
        ReadRow{
            "a code that two lines share is none", "{0}{50}{y|:i}|\r\n", {{0, 2, "{y\r\n:i}\r\n"}}},
        ReadRow{"one brace pair", "{10}text\r\n", {{0.4, 0, "text"}}},
        ReadRow{
            "one brace pair, a brace in the text", "{10}te{50xt\r\n", {{0.4, 2, "{10}te{50xt"}}},
        ReadRow{"no closing brace", "{25\r\n", {{1, 0, "{25"}}},
        ReadRow{"nothing but the brace", "{\r\n", {{0, 0, "{"}}},
        ReadRow{"empty braces", "{}{}Hello\r\n", {{0, 0, "Hello"}}},
        ReadRow{"text in the braces", "{25x}{50y}Hello\r\n", {{1, 2, "Hello"}}},
        ReadRow{"frames end at their first character that is no digit",
                "{25.9}{50,7}Hello\r\n{75.}{-25.5}you\r\n",
                {{1, 2, "Hello"}, {3, -1, "you"}}},
        ReadRow{"negative frames", "{-25}{50}Hello\r\n", {{-1, 2, "Hello"}}},
        ReadRow{"no text", "{25}{50}\r\n", {{1, 2, ""}}},
        ReadRow{"blanks around and between lines",
                "\r\n  {25}{50} Hello  \r\n   \r\n",
                {{1, 2, " Hello"}}},
        ReadRow{"a line that begins otherwise",
                "{25}{50}Hello\r\nyou\r\n{75}{100}x\r\n",
                {{1, 2, "Hello"}},
                "File is corrupt or not in MicroDVD format."},
        ReadRow{"a tab is no blank",
                "\t{25}{50}Hello\r\n",
                {},
                "File is corrupt or not in MicroDVD format."},
        ReadRow{"no end of the last line",
                "{25}{50}Hello\n{50}{75}you",
                {{1, 2, "Hello"}, {2, 3, "you"}}},
        ReadRow{"NUL bytes", "{25}{50}a\0b\r"sv, {{1, 2, std::string("a\0b", 3)}}},
        ReadRow{"an empty file", "", {}}, ReadRow{"only empty lines", "\r\n \r\n", {}}));

TEST(MicroDvdRead, AsksForTheFrameRateBeforeReading) {
    std::string order;
    LoadHooks hooks;
    hooks.askFrameRate = [&order](std::optional<double>) {
        order += "rate ";
        return 50;
    };
    hooks.loading = [&order] {
        order += "loading";
    };
    EXPECT_EQ(LoadText("x.sub", "{25}{50}Hello\r\n", hooks).Titles(), (Titles{{0.5, 1, "Hello"}}));
    EXPECT_EQ(order, "rate loading");
}

struct FrameRow {
    double time;
    const char* frame;
};

class MicroDvdFrame : public testing::TestWithParam<FrameRow> {};

TEST_P(MicroDvdFrame, RoundsHalvesToEven) {
    const std::string frame = GetParam().frame;
    EXPECT_EQ(SavedText("x.sub", {{GetParam().time, GetParam().time, "x"}}),
              "{" + frame + "}{" + frame + "}x\r\n");
}

INSTANTIATE_TEST_SUITE_P(Rows, MicroDvdFrame,
                         testing::Values(FrameRow{0.5, "12"}, FrameRow{1.5, "38"},
                                         FrameRow{1, "25"}, FrameRow{0, "0"},
                                         FrameRow{3600, "90000"}));

TEST(MicroDvdWrite, JoinsLinesAndTurnsTagsIntoCodes) {
    EXPECT_EQ(SavedText("x.sub", {{1, 2, "<i><b>x</b></i>"}, {3, 4, "a\r\nb"}}),
              "{25}{50}{y:i}{y:b}x{y}{y}\r\n{75}{100}a|b\r\n");
}

TEST(MicroDvdWrite, NegativeTimesAreWrittenAsTheyAre) {
    EXPECT_EQ(SavedText("x.sub", {{3, 4, "A"}, {-1, 1, "B"}}), "{75}{100}A\r\n{-25}{25}B\r\n");
}

TEST(MicroDvdWrite, AsksForTheFrameRate) {
    SaveHooks hooks;
    hooks.askFrameRate = [] {
        return 10;
    };
    EXPECT_EQ(SavedText("x.sub", {{1, 2, "x"}}, {}, hooks), "{10}{20}x\r\n");
}

} // namespace

#include "editing/corrections.h"
#include "editing/edittitle.h"
#include "editing/listcommands.h"

#include <gtest/gtest.h>

namespace {

struct Times {
    double start;
    double end;
};

SUBTITLES Titles(std::initializer_list<Times> all) {
    SUBTITLES titles;
    for (const Times& times : all)
        titles.Add(times.start, times.end, "title " + std::to_string(titles.Count() + 1));
    titles.UndoEnabled(true);
    return titles;
}

struct SoonerRow {
    double start;
    double expected;
};

class Sooner : public testing::TestWithParam<SoonerRow> {};

TEST_P(Sooner, PassesByTheRoundedNewStart) {
    SUBTITLES titles = Titles({{GetParam().start, GetParam().start + 2}});
    const bool moved = ShowSooner(titles, 1);
    EXPECT_EQ(moved, GetParam().start != GetParam().expected);
    EXPECT_NEAR(titles.StartTime(1), GetParam().expected, 1e-9);
    EXPECT_NEAR(titles.EndTime(1), GetParam().expected + 2, 1e-9);
    EXPECT_EQ(titles.UndoCount(), moved ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Starts, Sooner,
                         testing::Values(SoonerRow{0, -0.1}, SoonerRow{-0.45, -0.45},
                                         SoonerRow{-0.4, -0.5}, SoonerRow{-0.41, -0.41},
                                         SoonerRow{10, 9.9}, SoonerRow{0.1, 0}));

TEST(ListCommands, LaterHasNoTestAndIsOneUndoStep) {
    SUBTITLES titles = Titles({{-100, -99}, {5, 6}});
    ShowLater(titles, 1);
    EXPECT_NEAR(titles.StartTime(1), -99.9, 1e-9);
    EXPECT_NEAR(titles.EndTime(1), -98.9, 1e-9);
    EXPECT_EQ(titles.UndoCount(), 1);
    EXPECT_TRUE(titles.UndoEnabled());
    EXPECT_EQ(titles.Undo(), 1);
    EXPECT_EQ(titles.StartTime(1), -100);
    EXPECT_EQ(titles.EndTime(1), -99);
}

TEST(ListCommands, ShorterKeepsAQuarterSecond) {
    SUBTITLES titles = Titles({{1, 1.1}, {10, 13}});
    EXPECT_TRUE(ShowShorter(titles, 1));
    EXPECT_EQ(titles.EndTime(1), 1.25);
    EXPECT_FALSE(ShowShorter(titles, 2));
    EXPECT_NEAR(titles.EndTime(2), 12.95, 1e-9);
    EXPECT_EQ(titles.UndoCount(), 2);
}

TEST(ListCommands, LongerKeepsAQuarterSecondBeforeTheNext) {
    SUBTITLES titles = Titles({{1, 4.73}, {5, 8}});
    EXPECT_TRUE(ShowLonger(titles, 1));
    EXPECT_EQ(titles.EndTime(1), 4.75);
    EXPECT_FALSE(ShowLonger(titles, 2));
    EXPECT_NEAR(titles.EndTime(2), 8.05, 1e-9);
    EXPECT_EQ(titles.UndoCount(), 2);
}

TEST(ListCommands, LongerShortensATitleThatRunsIntoTheNext) {
    SUBTITLES titles = Titles({{1, 7}, {5, 8}});
    EXPECT_TRUE(ShowLonger(titles, 1));
    EXPECT_EQ(titles.EndTime(1), 4.75);
}

struct InsertRow {
    double previous;
    double current;
    double start;
    double end;
};

class Inserting : public testing::TestWithParam<InsertRow> {};

TEST_P(Inserting, HalfWayWithALengthInBounds) {
    const InsertRow& row = GetParam();
    SUBTITLES titles = Titles({{row.previous, row.previous + 1}, {row.current, row.current + 1}});
    const InsertedTitle inserted = InsertBefore(titles, 2);
    EXPECT_EQ(titles.Count(), 3);
    EXPECT_EQ(titles.Text(2), "New title");
    EXPECT_NEAR(titles.StartTime(2), row.start, 1e-9);
    EXPECT_NEAR(titles.EndTime(2), row.end, 1e-9);
    EXPECT_EQ(titles.StartTime(2), inserted.start);
    EXPECT_NEAR(inserted.duration, row.end - row.start, 1e-9);
    EXPECT_EQ(titles.Text(3), "title 2");
    EXPECT_EQ(titles.UndoCount(), 1);
}

INSTANTIATE_TEST_SUITE_P(Neighbours, Inserting,
                         testing::Values(InsertRow{10, 20, 15, 17},
                                         InsertRow{10, 10.2, 10.1, 10.35},
                                         InsertRow{10, 12, 11, 12}, InsertRow{20, 10, 15, 15.25}));

struct InsertAtRow {
    const char* name;
    double time;
    std::int32_t number;
    double start;
    double end;
};

class ListInsertAt : public testing::TestWithParam<InsertAtRow> {};

TEST_P(ListInsertAt, TakesTheRoomUpToTheNextTitle) {
    const InsertAtRow& row = GetParam();
    SUBTITLES titles = Titles({{6, 8}, {10, 12}});
    EXPECT_EQ(InsertAt(titles, row.time), row.number);
    EXPECT_EQ(titles.Count(), 3);
    EXPECT_EQ(titles.Text(row.number), "New title");
    EXPECT_NEAR(titles.StartTime(row.number), row.start, 1e-9);
    EXPECT_NEAR(titles.EndTime(row.number), row.end, 1e-9);
    EXPECT_EQ(titles.UndoCount(), 1);
}

INSTANTIATE_TEST_SUITE_P(Rows, ListInsertAt,
                         testing::Values(InsertAtRow{"First", 1, 1, 1, 3},
                                         InsertAtRow{"BeforeTheFilm", -5, 1, 0, 2},
                                         InsertAtRow{"LittleRoom", 5, 1, 5, 6},
                                         InsertAtRow{"NoRoom", 9.9, 2, 9.9, 10.15},
                                         InsertAtRow{"AtAStart", 6, 2, 6, 8},
                                         InsertAtRow{"Last", 20, 3, 20, 22},
                                         InsertAtRow{"WholeMilliseconds", 7.00049, 2, 7, 9}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(ListCommands, InsertBeforeTheFirstHalvesItsStart) {
    SUBTITLES titles = Titles({{6, 8}});
    InsertBefore(titles, 1);
    EXPECT_EQ(titles.StartTime(1), 3);
    EXPECT_EQ(titles.EndTime(1), 5);
}

TEST(ListCommands, DeleteLeavesTheLastTitle) {
    SUBTITLES titles = Titles({{1, 2}, {3, 4}, {5, 6}});
    EXPECT_EQ(DeleteTitles(titles, {1, 2, 3}), (std::vector<std::int32_t>{1, 2}));
    ASSERT_EQ(titles.Count(), 1);
    EXPECT_EQ(titles.Text(1), "title 3");
    EXPECT_TRUE(DeleteTitles(titles, {1}).empty());
    EXPECT_EQ(titles.Count(), 1);
    EXPECT_EQ(titles.UndoCount(), 2);
}

TEST(ListCommands, DeleteTakesOnlyTheSelected) {
    SUBTITLES titles = Titles({{1, 2}, {3, 4}, {5, 6}});
    DeleteTitles(titles, {2});
    ASSERT_EQ(titles.Count(), 2);
    EXPECT_EQ(titles.Text(2), "title 3");
    DeleteTitles(titles, {});
    EXPECT_EQ(titles.Count(), 2);
}

struct TextRow {
    const char* text;
    const char* expected;
};

class Spelling : public testing::TestWithParam<TextRow> {};

TEST_P(Spelling, CorrectText) {
    EXPECT_EQ(CorrectText(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Spelling,
    testing::Values(TextRow{"lt was I.", "It was l."}, TextRow{"Hello. lt", "Hello. It"},
                    TextRow{"", ""}, TextRow{"Good", ""}, TextRow{"It is", ""},
                    TextRow{"BIG", "BlG"}, TextRow{"FBI AGENT", "FBl AGENT"},
                    TextRow{"- lt is!\r\n- lf so?", "- It is!\r\n- If so?"},
                    TextRow{"one\r\nlong", ""}, TextRow{"<i>lt</i>", ""}, TextRow{"\"lt", ""},
                    TextRow{"So? lt is", "So? It is"}, TextRow{"So! lt is", "So! It is"},
                    TextRow{"so; It", "so; lt"}, TextRow{"I? I", ""},
                    TextRow{"Ah... lt", "Ah... It"}, TextRow{"\xC3\xA9I", "\xC3\xA9l"},
                    TextRow{"{\\an8}lt is {\\fnIl}I", "{\\an8}It is {\\fnIl}l"},
                    TextRow{"{\\fnIMPACT\\pos(1.2)}Is", ""},
                    TextRow{"{I} {\\I {\\I}", "{l} {\\l {\\I}"}));

class Italics : public testing::TestWithParam<TextRow> {};

TEST_P(Italics, SlashesToTags) {
    EXPECT_EQ(SlashesToTags(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Italics,
    testing::Values(TextRow{"/Hello /world again", "<i>Hello world</i> again"},
                    TextRow{"plain", ""}, TextRow{"", ""}, TextRow{"either/or", ""},
                    TextRow{"/H/e/l/l/o", "<i>Hello</i>"},
                    TextRow{"a /b\r\n/c d", "a <i>b</i>\r\n<i>c</i> d"},
                    TextRow{"a  /b", "a  <i>b</i>"}, TextRow{"/a  b", "<i>a</i>  b"},
                    TextRow{"/a b /c", "<i>a</i> b <i>c</i>"},
                    TextRow{"/a\r\n\r\nb/c", "<i>a</i>\r\n\r\nb/c"}, TextRow{" /a", "<i>a</i>"},
                    TextRow{"/a{\\fn/x y}/b c", "<i>a{\\fn/x y}b</i> c"},
                    TextRow{"{\\fnA /b}c", ""}, TextRow{"{\\x /b", "{\\x <i>b</i>"}));

TEST(Corrections, WholeListsCannotBeUndone) {
    SUBTITLES titles;
    titles.Add(1, 2, "lt");
    titles.Add(3, 4, "Fine");
    titles.Add(5, 6, "/so/");
    titles.UndoEnabled(true);
    titles.Text(2, "Good");
    EXPECT_EQ(CorrectSpelling(titles), std::vector<std::int32_t>{1});
    EXPECT_EQ(titles.Text(1), "It");
    EXPECT_EQ(titles.UndoCount(), 0);
    EXPECT_TRUE(titles.UndoEnabled());
    EXPECT_EQ(ConvertItalics(titles), std::vector<std::int32_t>{3});
    EXPECT_EQ(titles.Text(3), "<i>so</i>");
    EXPECT_EQ(titles.UndoCount(), 0);
}

class LoneBreaks : public testing::TestWithParam<TextRow> {};

TEST_P(LoneBreaks, BecomeBlanks) {
    EXPECT_EQ(BlanksForLoneBreaks(GetParam().text), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Texts, LoneBreaks,
                         testing::Values(TextRow{"a\nb", "a b"}, TextRow{"a\rb", "a b"},
                                         TextRow{"a\r\nb", "a\r\nb"}, TextRow{"\n\r", "  "},
                                         TextRow{"\r\r\n\n", " \r\n "}, TextRow{"a\r", "a "},
                                         TextRow{"", ""}));

} // namespace

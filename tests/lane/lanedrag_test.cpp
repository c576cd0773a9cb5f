#include "lane/lanedrag.h"

#include "model/times.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <utility>

namespace {

using Grip = LaneDrag::Grip;
using Spans = std::vector<std::pair<double, double>>;

LaneTitles Titles(const Spans& spans) {
    std::vector<double> starts;
    std::vector<double> ends;
    for (const auto& [start, end] : spans) {
        starts.push_back(start);
        ends.push_back(end);
    }
    LaneTitles titles;
    titles.Assign(std::move(starts), std::move(ends));
    return titles;
}

struct Row {
    const char* name;
    Spans spans;
    std::int32_t title;
    Grip grip;
    std::vector<std::int32_t> rows;
    double by;
    std::vector<LaneTimes> expected;
    double length = 100;
};

const Spans Three{{10, 12}, {20, 22}, {30, 32}};

const Row Rows[] = {
    {"Middle", Three, 2, Grip::Middle, {}, 1.5, {{2, 21.5, 23.5}}},
    {"MiddleBack", Three, 2, Grip::Middle, {}, -1.5, {{2, 18.5, 20.5}}},
    {"Start", Three, 2, Grip::Start, {}, -1.5, {{2, 18.5, 22}}},
    {"End", Three, 2, Grip::End, {}, 1.5, {{2, 20, 23.5}}},
    {"MiddleNotBeforeTheStartBefore", Three, 2, Grip::Middle, {}, -50, {{2, 10, 12}}},
    {"MiddleNotBehindTheStartBehind", Three, 2, Grip::Middle, {}, 50, {{2, 30, 32}}},
    {"StartNotBeforeTheStartBefore", Three, 2, Grip::Start, {}, -50, {{2, 10, 22}}},
    {"StartKeepsTheShortestDuration", Three, 2, Grip::Start, {}, 50, {{2, 21.75, 22}}},
    {"EndKeepsTheShortestDuration", Three, 2, Grip::End, {}, -50, {{2, 20, 20.25}}},
    {"EndMayOverlapTheNext", Three, 2, Grip::End, {}, 20, {{2, 20, 42}}},
    {"EndNotBehindTheFilm", Three, 2, Grip::End, {}, 500, {{2, 20, 100}}},
    {"FirstNotBeforeTheFilm", Three, 1, Grip::Middle, {}, -50, {{1, 0, 2}}},
    {"LastStartsNotBehindTheFilm", Three, 3, Grip::Middle, {}, 500, {{3, 100, 102}}},
    {"LastMayGoAnywhereWithoutALength", Three, 3, Grip::Middle, {}, 500, {{3, 530, 532}}, 0},
    {"ShortTitlesStayAsShort", {{10, 10.1}}, 1, Grip::End, {}, -5, {{1, 10, 10.1}}},
    {"ShortTitlesMayGrow", {{10, 10.1}}, 1, Grip::End, {}, 1, {{1, 10, 11.1}}},
    {"RowsTogether", Three, 2, Grip::Middle, {1, 2, 3}, 5, {{1, 15, 17}, {2, 25, 27}, {3, 35, 37}}},
    {"RowsTogetherNotBeforeTheFilm",
     Three,
     3,
     Grip::Middle,
     {1, 2, 3},
     -50,
     {{1, 0, 2}, {2, 10, 12}, {3, 20, 22}}},
    {"RowsApartKeepTheOrder", Three, 1, Grip::Middle, {1, 3}, 50, {{1, 20, 22}, {3, 40, 42}}},
    {"AnEdgeMovesItsTitleAlone", Three, 2, Grip::End, {1, 2, 3}, 1, {{2, 20, 23}}},
    {"ATitleThatIsNotChosenMovesAlone", Three, 2, Grip::Middle, {1, 3}, 1, {{2, 21, 23}}},
    {"AListOutOfOrderIsLeftSo",
     {{20, 21}, {10, 11}, {30, 31}},
     2,
     Grip::Middle,
     {},
     1,
     {{2, 11, 12}}},
    {"TimesAreWholeMilliseconds",
     {{10.00044, 12.00063}},
     1,
     Grip::Middle,
     {},
     1.23456,
     {{1, 11.235, 13.235}}},
    {"BoundsAreMetByAWholeMillisecondInside",
     {{10.0004, 11}, {20, 22}},
     2,
     Grip::Start,
     {},
     -50,
     {{2, 10.001, 22}}},
};

class LaneDragRows : public testing::TestWithParam<Row> {};

TEST_P(LaneDragRows, GiveTheseTimes) {
    const Row& row = GetParam();
    const LaneTitles titles = Titles(row.spans);
    const double held = row.grip == Grip::End ? titles.End(row.title) : titles.Start(row.title);
    LaneDrag drag(titles, row.title, row.grip, row.rows, held + 0.1, row.length);
    EXPECT_FALSE(drag.Changed());
    drag.Move(held + 0.1 + row.by);
    ASSERT_EQ(drag.Titles().size(), row.expected.size());
    for (std::size_t i = 0; i < row.expected.size(); ++i) {
        EXPECT_EQ(drag.Titles()[i].title, row.expected[i].title);
        EXPECT_NEAR(drag.Titles()[i].start, row.expected[i].start, 1e-9);
        EXPECT_NEAR(drag.Titles()[i].end, row.expected[i].end, 1e-9);
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, LaneDragRows, testing::ValuesIn(Rows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(LaneDrag, ShowsExactlyWhatItGives) {
    const LaneTitles titles = Titles(Three);
    for (const Grip grip : {Grip::Start, Grip::Middle, Grip::End}) {
        LaneDrag drag(titles, 2, grip, {}, 21, 100);
        for (int i = 0; i < 400; ++i) {
            drag.Move(21 + i * 0.00037);
            const LaneTimes& now = drag.Titles().front();
            const double shown = grip == Grip::End ? now.end : now.start;
            EXPECT_EQ(drag.Shown(), shown);
            EXPECT_EQ(shown, RoundTime(shown));
        }
    }
}

TEST(LaneDrag, BackWhereItBeganNothingHasChanged) {
    const LaneTitles titles = Titles({{10.0001, 12.0001}});
    LaneDrag drag(titles, 1, Grip::Middle, {}, 11, 100);
    drag.Move(15);
    EXPECT_TRUE(drag.Changed());
    drag.Move(11);
    EXPECT_FALSE(drag.Changed());
}

LaneDrag::Snap To(double place, double reach) {
    return [=](double time) {
        return std::abs(time - place) <= reach ? std::optional(place) : std::nullopt;
    };
}

TEST(LaneDrag, SnapsTheEdgeThatIsHeld) {
    const LaneTitles titles = Titles(Three);
    LaneDrag start(titles, 2, Grip::Start, {}, 20, 100);
    start.Move(19.04, To(19, 0.05));
    EXPECT_EQ(start.Shown(), 19);
    start.Move(19.06, To(19, 0.05));
    EXPECT_EQ(start.Shown(), 19.06);
    LaneDrag end(titles, 2, Grip::End, {}, 22, 100);
    end.Move(22.96, To(23, 0.05));
    EXPECT_EQ(end.Shown(), 23);
}

TEST(LaneDrag, SnapsABlockByEitherEdge) {
    const LaneTitles titles = Titles(Three);
    LaneDrag drag(titles, 2, Grip::Middle, {}, 21, 100);
    drag.Move(20.04, To(19, 0.05));
    EXPECT_EQ(drag.Titles().front(), (LaneTimes{2, 19, 21}));
    drag.Move(22.04, To(23, 0.05));
    EXPECT_EQ(drag.Titles().front(), (LaneTimes{2, 21, 23}));
}

TEST(LaneDrag, NeverSnapsOutOfItsBounds) {
    const LaneTitles titles = Titles(Three);
    LaneDrag drag(titles, 2, Grip::Start, {}, 20, 100);
    drag.Move(21.9, To(21.95, 0.1));
    EXPECT_EQ(drag.Titles().front(), (LaneTimes{2, 21.75, 22}));
}

} // namespace

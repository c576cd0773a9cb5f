#include "lane/laneshape.h"
#include "lane/lanetitles.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

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

struct TrackRow {
    const char* name;
    Spans spans;
    std::vector<int> tracks;
};

class LaneTracks : public testing::TestWithParam<TrackRow> {};

TEST_P(LaneTracks, HoldTitlesThatOverlapApart) {
    const LaneTitles titles = Titles(GetParam().spans);
    std::vector<int> tracks;
    for (std::int32_t i = 1; i <= titles.Count(); ++i)
        tracks.push_back(titles.Track(i));
    EXPECT_EQ(tracks, GetParam().tracks);
}

const TrackRow TrackRows[] = {
    {"None", {}, {}},
    {"OneAfterTheOther", {{0, 1}, {2, 3}, {3, 4}}, {0, 0, 0}},
    {"Two", {{0, 5}, {2, 3}, {4, 6}}, {0, 1, 1}},
    {"ThirdFindsTheFirstTrackFree", {{0, 2}, {1, 5}, {3, 4}}, {0, 1, 0}},
    {"OverlapBelowAMillisecondIsNone", {{0, 1.0004}, {1, 2}}, {0, 0}},
    {"OverlapOfTwoMilliseconds", {{0, 1.002}, {1, 2}}, {0, 1}},
    {"AllAtOnce", {{0, 9}, {0, 9}, {0, 9}, {0, 9}, {0, 9}, {0, 9}}, {0, 1, 2, 3, 3, 3}},
    {"NotPlacedYet", {{0, 0}, {0, 0}, {0, 0}}, {0, 0, 0}},
    {"EndBeforeStart", {{5, 2}, {5.5, 6}}, {0, 0}},
    {"OutOfOrder", {{10, 12}, {0, 5}, {4, 6}}, {0, 0, 1}},
};

INSTANTIATE_TEST_SUITE_P(Rows, LaneTracks, testing::ValuesIn(TrackRows),
                         [](const auto& row) { return std::string(row.param.name); });

std::vector<std::int32_t> Within(const LaneTitles& titles, double from, double to) {
    std::vector<std::int32_t> found;
    titles.Within(from, to, [&](std::int32_t title) { found.push_back(title); });
    return found;
}

TEST(LaneTitles, FindsWhatTouchesASpan) {
    const LaneTitles titles = Titles({{0, 100}, {10, 12}, {20, 22}, {30, 30}, {40, 42}});
    EXPECT_EQ(Within(titles, 13, 19), (std::vector<std::int32_t>{1}));
    EXPECT_EQ(Within(titles, 12, 20), (std::vector<std::int32_t>{1, 2, 3}));
    EXPECT_EQ(Within(titles, 29, 31), (std::vector<std::int32_t>{1, 4}));
    EXPECT_EQ(Within(titles, 101, 200), (std::vector<std::int32_t>{}));
    EXPECT_EQ(Within(Titles({{10, 12}, {0, 5}, {4, 6}}), 5, 11),
              (std::vector<std::int32_t>{2, 3, 1}));
}

TEST(LaneTitles, ChangesTimesOfSingleTitles) {
    LaneTitles titles = Titles({{0, 1}, {2, 3}, {4, 5}});
    const LaneTimes changed[] = {{2, 0.5, 3}, {9, 1, 1}, {0, 7, 7}};
    titles.Change(changed);
    EXPECT_EQ(titles.Times(2), (LaneTimes{2, 0.5, 3}));
    EXPECT_EQ(titles.Track(2), 1);
    EXPECT_EQ(titles.Tracks(), 2);
    EXPECT_EQ(titles.Count(), 3);
}

TEST(LaneTitles, FindsTheNearestEdge) {
    const LaneTitles titles = Titles({{0, 1}, {2, 3}, {4, 5}});
    EXPECT_EQ(titles.NearestEdge(1.2, 0.5, {}), 1);
    EXPECT_EQ(titles.NearestEdge(1.8, 0.5, {}), 2);
    EXPECT_EQ(titles.NearestEdge(1.5, 0.3, {}), std::nullopt);
    const std::int32_t held[] = {2};
    EXPECT_EQ(titles.NearestEdge(2.1, 0.5, held), std::nullopt);
    EXPECT_EQ(titles.NearestEdge(3.8, 1.5, held), 4);
}

/// Two pixels of every second, 100 pixels high, of which 20 are the ruler's.
struct Scene {
    explicit Scene(const Spans& spans)
        : titles(Titles(spans)) {
        view.Width(1000);
        view.Length(1000);
        view.Show(50, 10);
        shape = {100, 20, titles.Tracks()};
    }
    LaneHit Hit(double time, double pixels, double y = 60) const {
        return HitLane(titles, view, shape, view.X(time) + pixels, y);
    }

    LaneTitles titles;
    LaneView view;
    LaneShape shape;
};

TEST(LaneHit, TellsEdgesMiddleAndGround) {
    using Part = LaneHit::Part;
    const Scene scene({{48, 50}, {52, 53}});
    struct Row {
        double time;
        double pixels;
        LaneHit hit;
    };
    for (const Row& row :
         {Row{48, 0, {Part::Start, 1}}, Row{48, 5, {Part::Start, 1}}, Row{48, 7, {Part::Middle, 1}},
          Row{48, -3, {Part::Start, 1}}, Row{48, -6, {}}, Row{50, -5, {Part::End, 1}},
          Row{50, 3, {Part::End, 1}}, Row{50, 6, {}}, Row{49, 0, {Part::Middle, 1}}, Row{51, 0, {}},
          Row{52.5, 0, {Part::Middle, 2}}})
        EXPECT_EQ(scene.Hit(row.time, row.pixels), row.hit) << row.time << " " << row.pixels;
    EXPECT_EQ(scene.Hit(49, 0, 10), LaneHit());
    EXPECT_EQ(scene.Hit(49, 0, 100), LaneHit());
    EXPECT_EQ(scene.Hit(49, 0, 99.9).title, 1);
}

TEST(LaneHit, OfBlocksThatMeetTheOneUnderThePointerCounts) {
    const Scene scene({{48, 50}, {50, 52}});
    EXPECT_EQ(scene.Hit(50, -2), (LaneHit{LaneHit::Part::End, 1}));
    EXPECT_EQ(scene.Hit(50, 2), (LaneHit{LaneHit::Part::Start, 2}));
}

TEST(LaneHit, NarrowBlocksAreTakenByTheirMiddleAndFromOutside) {
    const Scene scene({{50, 50.05}});
    EXPECT_EQ(scene.Hit(50, 2), (LaneHit{LaneHit::Part::Middle, 1}));
    EXPECT_EQ(scene.Hit(50, -3), (LaneHit{LaneHit::Part::Start, 1}));
    EXPECT_EQ(scene.Hit(50.05, 3), (LaneHit{LaneHit::Part::End, 1}));
    EXPECT_EQ(Scene({{50, 50}}).Hit(50, 0.5).title, 1);
}

TEST(LaneHit, EachTrackHasItsOwnBlocks) {
    const Scene scene({{48, 52}, {49, 53}});
    ASSERT_EQ(scene.shape.tracks, 2);
    EXPECT_EQ(scene.Hit(51, 0, 30).title, 1);
    EXPECT_EQ(scene.Hit(51, 0, 90).title, 2);
    EXPECT_EQ(scene.Hit(48.5, 0, 90).title, 0);
}

} // namespace

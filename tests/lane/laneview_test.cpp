#include "lane/laneruler.h"
#include "lane/laneview.h"

#include <gtest/gtest.h>

namespace {

LaneView Film(double length, int width) {
    LaneView view;
    view.Width(width);
    view.Length(length);
    return view;
}

TEST(LaneView, BeginsWithTwentySecondsOfAFilm) {
    const LaneView view = Film(7200, 1000);
    EXPECT_EQ(view.Start(), 0);
    EXPECT_NEAR(view.Span(), 20, 1e-9);
    EXPECT_NEAR(view.Time(500), 10, 1e-9);
    EXPECT_NEAR(view.X(10), 500, 1e-9);
}

TEST(LaneView, TimeAndPixelsAreInverse) {
    LaneView view = Film(7200, 1237);
    view.Show(3600, 7.3);
    for (const double x : {-5.0, 0.0, 0.5, 617.25, 1236.0, 2000.0})
        EXPECT_NEAR(view.X(view.Time(x)), x, 1e-6);
}

struct ZoomRow {
    const char* name;
    double length;
    double factor;
    double span;
};

class LaneZoom : public testing::TestWithParam<ZoomRow> {};

TEST_P(LaneZoom, StaysBetweenTwoSecondsAndTheWholeFilm) {
    LaneView view = Film(GetParam().length, 1000);
    view.Zoom(300, GetParam().factor);
    EXPECT_NEAR(view.Span(), GetParam().span, 1e-6);
    EXPECT_GE(view.Start(), 0);
}

INSTANTIATE_TEST_SUITE_P(Rows, LaneZoom,
                         testing::Values(ZoomRow{"In", 7200, 0.5, 10}, ZoomRow{"Out", 7200, 4, 80},
                                         ZoomRow{"AllTheWayIn", 7200, 0.0001, 2},
                                         ZoomRow{"AllTheWayOut", 7200, 1e6, 7200},
                                         ZoomRow{"OfAFilmOfFiveSeconds", 5, 1, 5},
                                         ZoomRow{"OfAFilmOfHalfASecond", 0.5, 1, 2},
                                         ZoomRow{"WithoutALength", 0, 1, 2}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(LaneView, ZoomsAboutThePointer) {
    LaneView view = Film(7200, 1000);
    view.Show(3600, 60);
    for (const double factor : {0.7, 0.7, 0.7, 1.9, 0.3}) {
        const double time = view.Time(321);
        view.Zoom(321, factor);
        // The left edge lies on a whole pixel.
        EXPECT_NEAR(view.X(time), 321, 0.5 + 1e-6);
    }
}

TEST(LaneView, ScrollsWithinTheFilm) {
    LaneView view = Film(100, 1000);
    view.Scroll(-50);
    EXPECT_EQ(view.Start(), 0);
    view.Scroll(250);
    EXPECT_NEAR(view.Start(), 5, 1e-9);
    view.Scroll(1e9);
    EXPECT_NEAR(view.End(), 100, view.Step());
}

TEST(LaneView, ScrollsBySmallParts) {
    LaneView view = Film(100, 1000);
    for (int i = 0; i < 10; ++i)
        view.Scroll(0.25);
    EXPECT_EQ(view.Offset(), 2);
}

TEST(LaneView, ResizingKeepsTheZoomAndTheStart) {
    LaneView view = Film(7200, 1000);
    view.Show(3600, 20);
    const double start = view.Start();
    view.Width(500);
    EXPECT_NEAR(view.Start(), start, 1e-9);
    EXPECT_NEAR(view.Span(), 10, 1e-9);
    view.Width(0);
    EXPECT_EQ(view.Width(), 1);
}

TEST(LaneView, RevealsWhatIsOutOfSightAndMovesForNothingElse) {
    LaneView view = Film(7200, 1000);
    view.Show(100, 20);
    const auto before = view.Offset();
    view.Reveal(95, 105);
    EXPECT_EQ(view.Offset(), before);
    view.Reveal(200, 203);
    EXPECT_LE(view.X(203), 1000);
    EXPECT_GE(view.X(200), 0);
    view.Reveal(50, 52);
    EXPECT_GE(view.X(50), 0);
    // Of a span that does not fit the start is shown.
    view.Reveal(500, 900);
    EXPECT_NEAR(view.X(500), 100, 1);
}

TEST(LaneView, FollowsSmoothlyInTheMiddle) {
    LaneView view = Film(7200, 1000);
    EXPECT_FALSE(view.Pursue(5, LaneView::Follow::Smooth));
    EXPECT_TRUE(view.Pursue(11, LaneView::Follow::Smooth));
    EXPECT_NEAR(view.X(11), 500, 1);
    EXPECT_FALSE(view.Pursue(11, LaneView::Follow::Smooth));
    EXPECT_TRUE(view.Pursue(3000, LaneView::Follow::Smooth));
    EXPECT_NEAR(view.X(3000), 500, 1);
    (void)view.Pursue(7199, LaneView::Follow::Smooth);
    EXPECT_NEAR(view.End(), 7200, view.Step());
}

TEST(LaneView, FollowsByPage) {
    LaneView view = Film(7200, 1000);
    EXPECT_FALSE(view.Pursue(19, LaneView::Follow::ByPage));
    EXPECT_TRUE(view.Pursue(19.5, LaneView::Follow::ByPage));
    EXPECT_NEAR(view.X(19.5), 40, 1);
    EXPECT_TRUE(view.Pursue(1, LaneView::Follow::ByPage));
    EXPECT_TRUE(view.Holds(1));
}

struct RulerRow {
    double secondsPerPixel;
    double labelled;
    double plain;
};

TEST(LaneRuler, TakesRoundStepsWithRoomForTheLabels) {
    for (const RulerRow& row :
         {RulerRow{0.0001, 0.05, 0.01}, RulerRow{0.002, 0.2, 0.05}, RulerRow{0.02, 2, 0.5},
          RulerRow{0.2, 15, 5}, RulerRow{7.2, 600, 120}, RulerRow{1e9, 18000, 3600}}) {
        const RulerSteps steps = RulerStepsFor(row.secondsPerPixel, 70);
        EXPECT_EQ(steps.labelled, row.labelled) << row.secondsPerPixel;
        EXPECT_EQ(steps.plain, row.plain) << row.secondsPerPixel;
    }
}

struct LabelRow {
    double seconds;
    double labelled;
    const char* label;
};

TEST(LaneRuler, LabelsAsShortAsTheStepAllows) {
    for (const LabelRow& row :
         {LabelRow{0, 1, "0:00"}, LabelRow{65, 5, "1:05"}, LabelRow{3723, 1, "1:02:03"},
          LabelRow{5.2, 0.2, "0:05.2"}, LabelRow{5.25, 0.05, "0:05.25"},
          LabelRow{59.9999999, 1, "1:00"}, LabelRow{3599.95, 0.1, "1:00:00.0"}})
        EXPECT_EQ(RulerLabel(row.seconds, row.labelled), row.label);
}

} // namespace

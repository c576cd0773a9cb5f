#include "mainwindow/buttonstrip.h"
#include "mainwindow/displaywalker.h"
#include "mainwindow/fileexists.h"
#include "mainwindow/placing.h"
#include "mainwindow/subtitlefiles.h"
#include "mainwindow/timespinner.h"
#include "mainwindow/windowplace.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using Step = DisplayWalker::Step;

class Walker : public testing::Test {
  protected:
    Walker() {
        titles.Add(1, 3, "one");
        titles.Add(4, 6, "two");
        titles.Add(6, 8, "three");
    }

    SUBTITLES titles;
    DisplayWalker walker{titles};
};

TEST_F(Walker, PositioningShowsTheComingTitleAndTheNext) {
    const DisplayTexts texts = walker.LocateCurrentTitle(3.5, DisplayMode::Position);
    EXPECT_EQ(walker.CurrentTitle(), 2);
    EXPECT_EQ(texts.subtitle, "two");
    EXPECT_EQ(texts.next, "three");
}

TEST_F(Walker, PositioningInTheMiddleOfATitleTakesTheComingOne) {
    EXPECT_EQ(walker.LocateCurrentTitle(4.5, DisplayMode::Position).subtitle, "three");
    EXPECT_EQ(walker.CurrentTitle(), 3);
}

TEST_F(Walker, ViewingLeavesTheBoxesAlone) {
    const DisplayTexts texts = walker.LocateCurrentTitle(3.5, DisplayMode::View);
    EXPECT_FALSE(texts.subtitle);
    EXPECT_FALSE(texts.next);
}

TEST_F(Walker, ViewingInTheMiddleOfATitleShowsItAtTheNextTickUntilItsEnd) {
    walker.LocateCurrentTitle(2, DisplayMode::View);
    EXPECT_EQ(walker.CurrentTitle(), 1);
    EXPECT_EQ(walker.Tick(2.05), Step::Appeared);
    EXPECT_EQ(walker.Tick(2.95), Step::None);
    EXPECT_EQ(walker.Tick(3), Step::Ended);
    EXPECT_EQ(walker.CurrentTitle(), 2);
}

TEST_F(Walker, ATitleThatEndsAtThePositionIsOver) {
    walker.LocateCurrentTitle(3, DisplayMode::View);
    EXPECT_EQ(walker.CurrentTitle(), 2);
}

TEST_F(Walker, OneTitleChangesPerTick) {
    walker.LocateCurrentTitle(4.5, DisplayMode::View);
    EXPECT_EQ(walker.Tick(4.5), Step::Appeared);
    EXPECT_EQ(walker.Tick(6), Step::Ended);
    EXPECT_EQ(walker.Tick(6), Step::Appeared);
    EXPECT_TRUE(walker.TitleShown());
}

TEST_F(Walker, NothingIsShownPastTheLastTitle) {
    walker.LocateCurrentTitle(7, DisplayMode::View);
    EXPECT_EQ(walker.Tick(7), Step::Appeared);
    EXPECT_EQ(walker.Tick(8), Step::Ended);
    EXPECT_EQ(walker.CurrentTitle(), 4);
    walker.Tick(8.05);
    EXPECT_EQ(titles.Text(walker.CurrentTitle()), "");
}

TEST_F(Walker, ANegativeStartNeverAppears) {
    titles.Clear();
    titles.Add(-1, 3, "early");
    walker.LocateCurrentTitle(0, DisplayMode::View);
    EXPECT_EQ(walker.Tick(1), Step::None);
}

TEST_F(Walker, AnEmptyListHasAnEmptyFirstTitle) {
    titles.Clear();
    walker.LocateCurrentTitle(5, DisplayMode::View);
    EXPECT_EQ(walker.CurrentTitle(), 1);
    EXPECT_EQ(walker.Tick(0), Step::Appeared);
    EXPECT_EQ(titles.Text(walker.CurrentTitle()), "");
}

TEST_F(Walker, ASeekTakesTheShownTitleDownOnce) {
    walker.LocateCurrentTitle(2, DisplayMode::View);
    EXPECT_FALSE(walker.TakeDown());
    walker.Tick(2);
    EXPECT_TRUE(walker.TakeDown());
    EXPECT_FALSE(walker.TakeDown());
}

TEST_F(Walker, AdvancingGoesPastTheEnd) {
    walker.LocateCurrentTitle(7.5, DisplayMode::Position);
    EXPECT_EQ(walker.CurrentTitle(), 3);
    EXPECT_EQ(walker.Advance().subtitle, "");
    EXPECT_EQ(walker.CurrentTitle(), 4);
}

TEST_F(Walker, PlacingLeavesTheCachedTimesAlone) {
    walker.LocateCurrentTitle(0, DisplayMode::View);
    titles.SetTimes(1, 2, 2.5);
    walker.Advance();
    EXPECT_EQ(walker.CurrentStart(), 1);
    EXPECT_EQ(walker.CurrentEnd(), 3);
}

TEST(TicksDueTest, SkippedTicksAreMadeUpFor) {
    EXPECT_EQ(TicksDue(0, 50), 1);
    EXPECT_EQ(TicksDue(50, 50), 1);
    EXPECT_EQ(TicksDue(74, 50), 1);
    EXPECT_EQ(TicksDue(300, 50), 6);
}

TEST(PlacingTest, AHeldKeyIsPressedOnce) {
    Placing placing;
    EXPECT_TRUE(placing.Press(1));
    EXPECT_FALSE(placing.Press(1.5));
    EXPECT_EQ(placing.KeyDownTime(), 1);
    placing.Release(2);
    EXPECT_FALSE(placing.KeyIsDown());
    EXPECT_EQ(placing.KeyUpTime(), 2);
    EXPECT_TRUE(placing.Press(3));
}

TEST(PlacingTest, AReleaseWithoutPressKeepsTheLastPressTime) {
    Placing placing;
    placing.Press(1);
    placing.Release(2);
    placing.Release(5);
    EXPECT_EQ(placing.KeyDownTime(), 1);
    EXPECT_EQ(placing.KeyUpTime(), 5);
}

TEST(PlacingTest, TheLagIsTakenOffDownToTheBegin) {
    EXPECT_EQ(WithoutLag(5, 0), 5);
    EXPECT_DOUBLE_EQ(WithoutLag(5, 250), 4.75);
    EXPECT_EQ(WithoutLag(0.1, 250), 0);
}

struct Zone {
    double x;
    double y;
    int button;
};

class StripZoneTest : public testing::TestWithParam<Zone> {};

TEST_P(StripZoneTest, Button) {
    EXPECT_EQ(StripButtonAt(GetParam().x, GetParam().y), GetParam().button);
}

INSTANTIATE_TEST_SUITE_P(Edges, StripZoneTest,
                         testing::Values(Zone{150, 180, 1}, Zone{390, 180, 1}, Zone{149, 180, 0},
                                         Zone{391, 180, 0}, Zone{510, 180, 2}, Zone{705, 180, 2},
                                         Zone{509, 180, 0}, Zone{706, 180, 0}, Zone{855, 180, 3},
                                         Zone{1050, 180, 3}, Zone{854, 180, 0}, Zone{1051, 180, 0},
                                         Zone{1155, 180, 4}, Zone{1410, 180, 4}, Zone{1154, 180, 0},
                                         Zone{1411, 180, 0}, Zone{200, 75, 0}, Zone{200, 76, 1},
                                         Zone{200, 284, 1}, Zone{200, 285, 0}));

TEST(ButtonStripTest, PicturesFollowTheMouse) {
    ButtonStrip strip;
    EXPECT_EQ(strip.MouseMove(false, false, 200, 180), 1);
    EXPECT_EQ(strip.ButtonUnderMouse(), 0);
    EXPECT_EQ(strip.MouseMove(true, false, 200, 20), 2);
    EXPECT_EQ(strip.MouseMove(true, false, 450, 180), 2);
    EXPECT_EQ(strip.MouseMove(true, true, 450, 180), 2);
    EXPECT_EQ(strip.MouseMove(true, false, 200, 180), 3);
    EXPECT_EQ(strip.MouseMove(true, false, 1200, 180), 6);
    EXPECT_EQ(strip.MouseMove(true, true, 200, 180), 7);
    EXPECT_EQ(strip.MouseMove(true, true, 1200, 180), 10);
}

TEST(ButtonStripTest, APressNeedsAButton) {
    ButtonStrip strip;
    EXPECT_FALSE(strip.MouseDown(true));
    strip.MouseMove(true, false, 600, 180);
    EXPECT_EQ(strip.MouseDown(true), 8);
    EXPECT_FALSE(strip.MouseDown(false));
}

TEST(ButtonStripTest, MovingOffCancels) {
    ButtonStrip strip;
    strip.MouseMove(true, true, 600, 180);
    strip.MouseMove(true, true, 600, 10);
    EXPECT_EQ(strip.ButtonUnderMouse(), 0);
    EXPECT_FALSE(StripTarget(0, 5, 1, 9));
}

TEST(ButtonStripTest, TargetsStayInTheSelection) {
    const struct {
        std::int16_t button;
        double position;
        double start;
        double end;
        double target;
    } rows[] = {{1, 5, 1, 9, 1},   {1, 5, -1, 600, 0}, {2, 5, 1, 9, 4.5}, {2, 1.2, 1, 9, 1},
                {3, 5, 1, 9, 5.5}, {3, 8.8, 1, 9, 9},  {4, 5, 1, 9, 9}};
    for (const auto& row : rows)
        EXPECT_EQ(StripTarget(row.button, row.position, row.start, row.end), row.target)
            << row.button;
}

/// The position after so many ticks of a held half, from 100 s.
double Held(double y, int ticks) {
    TimeSpinner spinner;
    spinner.MouseDown(y, 30);
    double position = 100;
    for (int i = 0; i < ticks; ++i)
        position = spinner.Tick({position, -1, 600}).value_or(position);
    return position;
}

TEST(TimeSpinnerTest, HeldForThreeSecondsItMovesSix) {
    // Fifteen ticks: five of 0.1 s, nine of 0.5 s, one of 1 s.
    EXPECT_NEAR(Held(3, 15) - 100, 6, 1e-9);
    EXPECT_NEAR(Held(27, 15) - 100, -6, 1e-9);
}

TEST(TimeSpinnerTest, TheMiddleHasNoDirection) {
    EXPECT_EQ(Held(15, 5), 100);
}

TEST(TimeSpinnerTest, StepsGrow) {
    EXPECT_NEAR(Held(3, 5) - 100, 0.5, 1e-9);
    EXPECT_NEAR(Held(3, 14) - 100, 5, 1e-9);
    EXPECT_NEAR(Held(3, 25) - 100, 16, 1e-9);
    EXPECT_NEAR(Held(3, 32) - 100, 30, 1e-9);
    EXPECT_NEAR(Held(3, 34) - 100, 40, 1e-9);
}

TEST(TimeSpinnerTest, ClicksJump) {
    TimeSpinner spinner;
    EXPECT_EQ(spinner.UpClick({100, -1, 600}), 120);
    EXPECT_EQ(spinner.DownClick({100, -1, 600}, false), 80);
    EXPECT_FALSE(spinner.DownClick({100, -1, 600}, true));
}

TEST(TimeSpinnerTest, TheSelectionsEndsAreNotReachedByClicks) {
    TimeSpinner spinner;
    EXPECT_FALSE(spinner.UpClick({100, 0, 120}));
    EXPECT_FALSE(spinner.DownClick({100, 80, 120}, false));
    EXPECT_EQ(spinner.DownClick({19.5, -1, 120}, false), -0.5);
}

TEST(TimeSpinnerTest, HoldingStaysInTheSelection) {
    TimeSpinner spinner;
    spinner.MouseDown(3, 30);
    EXPECT_TRUE(spinner.Tick({9.5, 1, 10}));
    EXPECT_FALSE(spinner.Tick({9.95, 1, 10}));
}

TEST(TimeSpinnerTest, TheClickThatEndsAHoldIsSwallowed) {
    TimeSpinner spinner;
    spinner.MouseDown(3, 30);
    spinner.Tick({100, -1, 600});
    EXPECT_FALSE(spinner.UpClick({100, -1, 600}));
    EXPECT_TRUE(spinner.UpClick({100, -1, 600}));
}

TEST(StartingNameTest, IsCutAtTheFirstDot) {
    EXPECT_EQ(StartingName(""), "");
    EXPECT_EQ(StartingName("/films/film.avi"), "/films/film");
    EXPECT_EQ(StartingName("/films/my.film.srt"), "/films/my");
    EXPECT_EQ(StartingName("C:\\my.folder\\film"), "C:\\my");
    EXPECT_EQ(StartingName("/films/film"), "/films/film");
}

class FileExistsTest : public testing::Test {
  protected:
    FileExistsTest() {
        QFile file(folder.filePath("film.avi"));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    }
    QString In(const char* name) const { return folder.filePath(QString::fromUtf8(name)); }

    QTemporaryDir folder;
};

TEST_F(FileExistsTest, FindsFilesAndPatterns) {
    const struct {
        const char* text;
        bool found;
    } rows[] = {
        {"film.avi", true},   {"*.avi", true},     {"f???.av?", true},       {"*.*", true},
        {"*", true},          {"f*l*.*", true},    {"film**.avi", true},     {"film", false},
        {"*.srt", false},     {"FILM.*", false},   {"film.av", false},       {"film.avi?", false},
        {"?film.avi", false}, {"[f]ilm.*", false}, {"nowhere/*.avi", false}, {"*/film.avi", false}};
    for (const auto& row : rows)
        EXPECT_EQ(FileExists(In(row.text)), row.found) << row.text;
}

TEST_F(FileExistsTest, AQuestionMarkIsOneCharacterAndABracketIsItself) {
    for (const char* name : {"f\xC3\xBClm", "a[b]"}) {
        QFile file(In(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    }
    EXPECT_TRUE(FileExists(In("f?lm")));
    EXPECT_TRUE(FileExists(In("a[b*")));
}

TEST_F(FileExistsTest, ANameWithoutExtensionFitsAnyPattern) {
    QFile file(In("film"));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_TRUE(QFile::remove(In("film.avi")));
    EXPECT_TRUE(FileExists(In("*.*")));
}

TEST_F(FileExistsTest, EmptyTextAndFoldersAreNoFiles) {
    EXPECT_FALSE(FileExists(""));
    EXPECT_FALSE(FileExists(folder.path()));
    EXPECT_FALSE(FileExists(folder.path() + "/"));
}

TEST_F(FileExistsTest, ARelativePatternLooksInTheWorkingFolder) {
    const auto before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path().toStdString());
    EXPECT_TRUE(FileExists("*.avi"));
    std::filesystem::current_path(before);
}

class WindowPlaceTest : public testing::Test {
  protected:
    const QList<QRect> screens{QRect(0, 0, 1920, 1080)};
    const QRect design{460, 200, 1000, 680};
    const QSize minimum{667, 334};
};

TEST_F(WindowPlaceTest, SensiblePlacesAreKept) {
    const QRect place(100, 50, 900, 600);
    EXPECT_EQ(WindowPlace(place, design, minimum, screens), place);
}

TEST_F(WindowPlaceTest, ASmallWindowGetsTheLeastSize) {
    EXPECT_EQ(WindowPlace({100, 50, 10, 10}, design, minimum, screens), QRect(100, 50, 667, 334));
}

TEST_F(WindowPlaceTest, AbsurdSizesGiveTheDesignSize) {
    EXPECT_EQ(WindowPlace({100, 50, 200000, -5}, design, minimum, screens),
              QRect(100, 50, 1000, 680));
}

TEST_F(WindowPlaceTest, AWindowOffTheScreensComesBack) {
    for (const QPoint place : {QPoint(5000, 50), QPoint(-2000, 50), QPoint(100, 1079),
                               QPoint(100, -500), QPoint(143165577, -143165577)})
        EXPECT_EQ(WindowPlace({place, QSize(900, 600)}, design, minimum, screens),
                  QRect(design.topLeft(), QSize(900, 600)));
}

TEST_F(WindowPlaceTest, TheDesignPlaceIsCentredAndFitsTheScreen) {
    const QRect large = DesignPlace({1000, 680}, minimum, screens.first());
    EXPECT_EQ(large.size(), QSize(1000, 680));
    EXPECT_EQ(large.center().x(), screens.first().center().x());
    const QRect small(0, 0, 800, 600);
    EXPECT_TRUE(small.adjusted(0, 0, -4, -32).contains(DesignPlace({1000, 680}, minimum, small)));
    EXPECT_EQ(DesignPlace({1000, 680}, minimum, {0, 0, 320, 240}), QRect(0, 0, 667, 334));
}

} // namespace

#include "lane/lane.h"

#include "model/times.h"
#include "sound/soundmap.h"
#include "tests/windows/fakeplayer.h"

#include <QContextMenuEvent>
#include <QSignalSpy>
#include <QTemporaryFile>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <vector>

namespace {

constexpr int Width = 1000;
constexpr int Height = 100;
constexpr int Middle = 60;

/// Speech from 1.28 s to 2.56 s of each page of 5.12 s.
std::shared_ptr<SoundMap> Sound(double length) {
    auto map = std::make_shared<SoundMap>(length);
    SoundPage page;
    page.least.fill(PackSample(-0.5F));
    page.greatest.fill(PackSample(0.5F));
    page.loudness.fill(PackPower(0.05F));
    SpeechPage speech{};
    std::fill_n(speech.fine.begin() + 128, 128, 255);
    for (std::size_t i = 0; i < map->Pages(); ++i) {
        map->Add(i, page);
        map->Add(i, speech);
    }
    return map;
}

/// A film of ten minutes with three titles; the lane shows its first 20 s in 1000 pixels.
class LaneTest : public testing::Test {
  protected:
    LaneTest() {
        EXPECT_TRUE(film.open());
        player.FileName(film.fileName());
        lane.resize(Width, Height);
        lane.Titles({2, 6, 10}, {4, 8, 12});
        lane.Words([](std::int32_t title) { return QStringLiteral("Words %1").arg(title); });
        lane.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&lane));
        // As the main window does it.
        QObject::connect(&lane, &Lane::PositionWanted, &player,
                         [this](double seconds) { player.CurrentPosition(seconds); });
        QObject::connect(&lane, &Lane::TimesWanted, &player,
                         [this](const std::vector<LaneTimes>& titles) {
                             wanted = titles;
                             ++drops;
                             lane.ChangeTimes(titles);
                         });
    }

    QPoint At(double seconds, int y = Middle) const {
        return {static_cast<int>(std::lround(lane.View().X(seconds))), y};
    }
    void Press(double seconds, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mousePress(&lane, Qt::LeftButton, modifiers, At(seconds));
    }
    void MoveTo(double seconds, Qt::KeyboardModifiers modifiers = {}) {
        const QPoint place = At(seconds);
        QMouseEvent move(QEvent::MouseMove, place, lane.mapToGlobal(place), Qt::NoButton,
                         Qt::LeftButton, modifiers);
        QCoreApplication::sendEvent(&lane, &move);
    }
    void Release(double seconds) { QTest::mouseRelease(&lane, Qt::LeftButton, {}, At(seconds)); }
    void Drag(double from, double to, Qt::KeyboardModifiers modifiers = {}) {
        Press(from);
        MoveTo((from + to) / 2, modifiers);
        MoveTo(to, modifiers);
        Release(to);
    }
    void Wheel(int notches, Qt::KeyboardModifiers modifiers, double seconds = 10) {
        const QPoint place = At(seconds);
        QWheelEvent wheel(place, lane.mapToGlobal(place), {}, {0, notches * 120}, Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&lane, &wheel);
    }
    void Key(int key, Qt::KeyboardModifiers modifiers = {}) {
        QTest::keyClick(&lane, static_cast<Qt::Key>(key), modifiers);
    }

    QTemporaryFile film;
    FakePlayer player;
    Lane lane{player};
    std::vector<LaneTimes> wanted;
    int drops = 0;
};

using Titles = std::vector<std::int32_t>;

TEST_F(LaneTest, AClickOnTheGroundTakesTheFilmThere) {
    QTest::mouseClick(&lane, Qt::LeftButton, {}, At(5));
    EXPECT_NEAR(player.CurrentPosition(), 5, lane.View().Step());
    EXPECT_TRUE(lane.Chosen().empty());
}

TEST_F(LaneTest, AClickOnATitleChoosesItToo) {
    QSignalSpy choices(&lane, &Lane::ChoiceChanged);
    QTest::mouseClick(&lane, Qt::LeftButton, {}, At(7));
    EXPECT_NEAR(player.CurrentPosition(), 7, lane.View().Step());
    EXPECT_EQ(lane.Chosen(), Titles{2});
    EXPECT_EQ(choices.count(), 1);
    EXPECT_EQ(drops, 0);
}

TEST_F(LaneTest, ControlAndShiftChooseMore) {
    const double before = player.CurrentPosition();
    QTest::mouseClick(&lane, Qt::LeftButton, {}, At(11));
    QTest::mouseClick(&lane, Qt::LeftButton, Qt::ControlModifier, At(3));
    EXPECT_EQ(lane.Chosen(), (Titles{1, 3}));
    QTest::mouseClick(&lane, Qt::LeftButton, Qt::ControlModifier, At(11));
    EXPECT_EQ(lane.Chosen(), Titles{1});
    QTest::mouseClick(&lane, Qt::LeftButton, Qt::ShiftModifier, At(11));
    EXPECT_EQ(lane.Chosen(), (Titles{1, 2, 3}));
    EXPECT_NE(player.CurrentPosition(), before);
}

TEST_F(LaneTest, ADragOfTheMiddleMovesTheTitle) {
    Drag(7, 8.3);
    ASSERT_EQ(drops, 1);
    ASSERT_EQ(wanted.size(), 1);
    EXPECT_EQ(wanted[0].title, 2);
    EXPECT_NEAR(wanted[0].start, 7.3, lane.View().Step());
    EXPECT_EQ(wanted[0].start, RoundTime(wanted[0].start));
    EXPECT_NEAR(wanted[0].end - wanted[0].start, 2, 1e-9);
    EXPECT_EQ(lane.Shown().Times(2), wanted[0]);
}

TEST_F(LaneTest, TheBlockIsUnderThePointerAtOnce) {
    Press(7);
    for (const double time : {7.5, 8.2, 6.6}) {
        MoveTo(time);
        EXPECT_NEAR(lane.BlockPlace(2).center().x(), At(time).x(), 7);
        EXPECT_TRUE(lane.Dragging());
    }
    EXPECT_EQ(drops, 0);
    Release(6.6);
    EXPECT_EQ(drops, 1);
}

TEST_F(LaneTest, ADragOfAnEdgeMovesThatEdge) {
    Drag(6.02, 5.4);
    EXPECT_NEAR(wanted.at(0).start, 5.38, lane.View().Step());
    EXPECT_EQ(wanted[0].end, 8);
    Drag(7.98, 8.7);
    EXPECT_NEAR(wanted.at(0).end, 8.72, lane.View().Step());
    EXPECT_EQ(drops, 2);
}

TEST_F(LaneTest, EscapeTakesADragBack) {
    Press(7);
    MoveTo(9);
    ASSERT_TRUE(lane.Dragging());
    Key(Qt::Key_Escape);
    EXPECT_FALSE(lane.Dragging());
    EXPECT_EQ(lane.Shown().Times(2), (LaneTimes{2, 6, 8}));
    MoveTo(9.5);
    Release(9.5);
    EXPECT_EQ(drops, 0);
    EXPECT_EQ(lane.Shown().Times(2), (LaneTimes{2, 6, 8}));
}

TEST_F(LaneTest, ADragBackToWhereItBeganIsNone) {
    Press(7);
    MoveTo(9);
    MoveTo(7);
    Release(7);
    EXPECT_EQ(drops, 0);
}

TEST_F(LaneTest, ChosenTitlesMoveTogether) {
    const Titles all{1, 2, 3};
    lane.Choose(all);
    Drag(7, 7.5, Qt::AltModifier);
    ASSERT_EQ(drops, 1);
    ASSERT_EQ(wanted.size(), 3);
    for (const LaneTimes& one : wanted) {
        EXPECT_NEAR(one.start, 4 * one.title - 2 + 0.5, lane.View().Step());
        EXPECT_NEAR(one.end - one.start, 2, 1e-9);
    }
    EXPECT_EQ(lane.Chosen(), all);
}

TEST_F(LaneTest, EdgesSnapToSpeechAndToNeighboursUnlessAltIsHeld) {
    lane.Sound(Sound(600));
    const double edge = *Sound(600)->NextSpeechEdge(6, SoundMap::Direction::Forward);
    const double near = 4 * lane.View().Step();
    const double far = 9 * lane.View().Step();
    Press(6);
    MoveTo(edge + near);
    EXPECT_EQ(lane.Shown().Start(2), RoundTime(edge));
    MoveTo(edge + near, Qt::AltModifier);
    EXPECT_NEAR(lane.Shown().Start(2), edge + near, lane.View().Step());
    MoveTo(edge + far);
    EXPECT_NEAR(lane.Shown().Start(2), edge + far, lane.View().Step());
    MoveTo(4 - near);
    EXPECT_EQ(lane.Shown().Start(2), 4);
    Key(Qt::Key_Escape);
    Release(4);
}

TEST_F(LaneTest, ADragOfTheGroundScrubs) {
    QSignalSpy scrubs(&lane, &Lane::ScrubWanted);
    QSignalSpy positions(&lane, &Lane::PositionWanted);
    Press(13);
    MoveTo(14);
    MoveTo(15);
    Release(15);
    ASSERT_EQ(scrubs.count(), 2);
    EXPECT_NEAR(scrubs[1][0].toDouble(), 15, lane.View().Step());
    EXPECT_EQ(positions.count(), 0);
}

TEST_F(LaneTest, ADoubleClickEdits) {
    QSignalSpy edits(&lane, &Lane::EditWanted);
    QTest::mouseDClick(&lane, Qt::LeftButton, {}, At(7));
    QTest::mouseDClick(&lane, Qt::LeftButton, {}, At(14));
    ASSERT_EQ(edits.count(), 1);
    EXPECT_EQ(edits[0][0].toInt(), 2);
}

TEST_F(LaneTest, ARightClickAsksForTheMenuOfTheTitle) {
    QSignalSpy menus(&lane, &Lane::MenuWanted);
    for (const double time : {7.0, 14.0}) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, At(time), lane.mapToGlobal(At(time)));
        QCoreApplication::sendEvent(&lane, &event);
    }
    ASSERT_EQ(menus.count(), 2);
    EXPECT_EQ(menus[0][0].toInt(), 2);
    EXPECT_EQ(menus[1][0].toInt(), 0);
    EXPECT_NEAR(menus[1][1].toDouble(), 14, lane.View().Step());
    EXPECT_EQ(lane.Chosen(), Titles{2});
    QContextMenuEvent key(QContextMenuEvent::Keyboard, {}, {});
    QCoreApplication::sendEvent(&lane, &key);
    EXPECT_EQ(menus[2][0].toInt(), 2);
}

TEST_F(LaneTest, TheWheelScrollsZoomsAndChangesTheHeight) {
    Wheel(-1, {});
    EXPECT_GT(lane.View().Start(), 0);
    Wheel(1, {});
    EXPECT_EQ(lane.View().Start(), 0);
    const double under = lane.View().Time(700);
    const double span = lane.View().Span();
    Wheel(1, Qt::ControlModifier, under);
    EXPECT_LT(lane.View().Span(), span);
    EXPECT_NEAR(lane.View().X(under), 700, 1.01);
    QSignalSpy heights(&lane, &Lane::HeightWanted);
    Wheel(1, Qt::ShiftModifier);
    Wheel(-1, Qt::ShiftModifier);
    ASSERT_EQ(heights.count(), 2);
    EXPECT_EQ(heights[0][0].toInt(), -heights[1][0].toInt());
    EXPECT_GT(heights[0][0].toInt(), 0);
}

TEST_F(LaneTest, ATouchpadScrollsBothWaysByPixels) {
    const QPoint place = At(10);
    for (const QPoint delta : {QPoint(-30, 0), QPoint(0, -30)}) {
        const auto before = lane.View().Offset();
        QWheelEvent wheel(place, lane.mapToGlobal(place), delta, delta * 2, Qt::NoButton, {},
                          Qt::ScrollUpdate, false);
        QCoreApplication::sendEvent(&lane, &wheel);
        EXPECT_EQ(lane.View().Offset() - before, 30);
    }
}

struct KeyRow {
    const char* name;
    int key;
    Qt::KeyboardModifiers modifiers;
    LaneTimes times;
};

class LaneKeys : public LaneTest, public testing::WithParamInterface<KeyRow> {};

TEST_P(LaneKeys, ChangeTheTimesOfTheChosenTitle) {
    const Titles second{2};
    lane.Choose(second);
    player.CurrentPosition(6.5);
    Key(GetParam().key, GetParam().modifiers);
    ASSERT_EQ(drops, 1);
    EXPECT_EQ(wanted.at(0).title, 2);
    EXPECT_NEAR(wanted[0].start, GetParam().times.start, 1e-9);
    EXPECT_NEAR(wanted[0].end, GetParam().times.end, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, LaneKeys,
    testing::Values(KeyRow{"Earlier", Qt::Key_Left, {}, {2, 5.99, 7.99}},
                    KeyRow{"Later", Qt::Key_Right, {}, {2, 6.01, 8.01}},
                    KeyRow{"MuchEarlier", Qt::Key_Left, Qt::ShiftModifier, {2, 5.9, 7.9}},
                    KeyRow{"MuchLater", Qt::Key_Right, Qt::ShiftModifier, {2, 6.1, 8.1}},
                    KeyRow{"StartHere", Qt::Key_BracketLeft, {}, {2, 6.5, 8}},
                    KeyRow{"EndHere", Qt::Key_BracketRight, {}, {2, 6, 6.5}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(LaneTest, WithoutAChosenTitleKeysWorkOnTheOneThatIsShown) {
    lane.Current(3);
    Key(Qt::Key_Right);
    EXPECT_EQ(wanted.at(0).title, 3);
    lane.Current(0);
    Key(Qt::Key_Right);
    EXPECT_EQ(drops, 1);
}

TEST_F(LaneTest, KeysGoFromTitleToTitle) {
    Key(Qt::Key_Down);
    EXPECT_EQ(lane.Chosen(), Titles{1});
    EXPECT_EQ(player.CurrentPosition(), 2);
    Key(Qt::Key_Down);
    Key(Qt::Key_Down);
    Key(Qt::Key_Down);
    EXPECT_EQ(lane.Chosen(), Titles{3});
    Key(Qt::Key_Up);
    EXPECT_EQ(player.CurrentPosition(), 6);
    QSignalSpy edits(&lane, &Lane::EditWanted);
    Key(Qt::Key_Return);
    ASSERT_EQ(edits.count(), 1);
    EXPECT_EQ(edits[0][0].toInt(), 2);
}

TEST_F(LaneTest, KeysGoFromSpeechToSpeech) {
    const auto sound = Sound(600);
    lane.Sound(sound);
    Key(Qt::Key_Right, Qt::ControlModifier);
    const double first = player.CurrentPosition();
    EXPECT_NEAR(first, 1.28, 0.02);
    Key(Qt::Key_Right, Qt::ControlModifier);
    EXPECT_NEAR(player.CurrentPosition(), 2.56, 0.02);
    Key(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(player.CurrentPosition(), first);
    Key(Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(player.CurrentPosition(), first);
}

TEST_F(LaneTest, KeysZoomAndScroll) {
    const double span = lane.View().Span();
    Key(Qt::Key_Plus);
    EXPECT_LT(lane.View().Span(), span);
    Key(Qt::Key_Minus);
    EXPECT_NEAR(lane.View().Span(), span, 1e-9);
    Key(Qt::Key_PageDown);
    EXPECT_NEAR(lane.View().Start(), 18, 0.1);
    Key(Qt::Key_0);
    EXPECT_NEAR(lane.View().Span(), 600, 1e-9);
    Key(Qt::Key_End);
    EXPECT_EQ(player.CurrentPosition(), 600);
    Key(Qt::Key_Home);
    EXPECT_EQ(player.CurrentPosition(), 0);
    QSignalSpy inserts(&lane, &Lane::InsertWanted);
    Key(Qt::Key_Insert);
    EXPECT_EQ(inserts.count(), 1);
}

TEST_F(LaneTest, ASeekElsewhereIsShown) {
    player.CurrentPosition(300);
    EXPECT_TRUE(lane.View().Holds(300));
    const auto before = lane.View().Offset();
    player.CurrentPosition(lane.View().Time(700));
    EXPECT_EQ(lane.View().Offset(), before);
}

struct FollowRow {
    LaneView::Follow how;
    double least;
    double most;
};

TEST_F(LaneTest, FollowsTheFilmWhileItPlays) {
    for (const FollowRow& row : {FollowRow{LaneView::Follow::Smooth, 499, 501},
                                 FollowRow{LaneView::Follow::ByPage, 30, 50}}) {
        player.Stop();
        lane.Follow(row.how);
        player.CurrentPosition(lane.View().Time(100));
        player.Play();
        player.Advance(18.2);
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                const double x = lane.View().X(player.CurrentPosition());
                return x >= row.least && x <= row.most;
            },
            30'000))
            << lane.View().X(player.CurrentPosition());
    }
}

TEST_F(LaneTest, WhoScrollsAwayIsNotTakenBack) {
    player.Play();
    Wheel(-20, {});
    const auto there = lane.View().Offset();
    player.Advance(1);
    QTest::qWait(120);
    EXPECT_EQ(lane.View().Offset(), there);
    // Until a jump, which is wanted.
    player.CurrentPosition(3);
    EXPECT_TRUE(lane.View().Holds(3));
}

TEST_F(LaneTest, AnotherFilmBeginsAtItsBeginning) {
    Key(Qt::Key_0);
    player.CurrentPosition(500);
    player.MediaLength = 50;
    player.FileName(film.fileName());
    EXPECT_EQ(lane.View().Length(), 50);
    EXPECT_TRUE(lane.View().Holds(0));
    player.FileName(QStringLiteral("/nowhere"));
    EXPECT_EQ(lane.View().Length(), 0);
    QTest::mouseClick(&lane, Qt::LeftButton, {}, QPoint(10, Middle));
    Wheel(1, {}, 0);
    Key(Qt::Key_Plus);
    EXPECT_EQ(lane.grab().size(), lane.size() * lane.devicePixelRatio());
}

TEST_F(LaneTest, OtherTitlesEndADrag) {
    Press(7);
    MoveTo(9);
    ASSERT_TRUE(lane.Dragging());
    lane.Titles({1}, {2});
    EXPECT_FALSE(lane.Dragging());
    MoveTo(9.5);
    Release(9.5);
    EXPECT_EQ(drops, 0);
    EXPECT_TRUE(lane.Chosen().empty());
    Key(Qt::Key_Right);
    EXPECT_EQ(drops, 0);
}

TEST_F(LaneTest, TellsAScreenReaderTheTitleAndItsTimes) {
    EXPECT_EQ(lane.accessibleName(), "Sound and titles");
    const Titles second{2};
    lane.Choose(second);
    EXPECT_EQ(lane.accessibleName(), "Title 2: Words 2, start 00:00:06,000, end 00:00:08,000");
    Key(Qt::Key_Right);
    EXPECT_EQ(lane.accessibleName(), "Title 2: Words 2, start 00:00:06,010, end 00:00:08,010");
    EXPECT_EQ(lane.focusPolicy(), Qt::StrongFocus);
}

/// The colours that a column of the lane shows below the ruler, and how often.
std::map<QRgb, int> Colours(const QImage& image, int x) {
    std::map<QRgb, int> colours;
    for (int y = image.height() / 3; y < image.height(); ++y)
        ++colours[image.pixel(x, y)];
    return colours;
}

TEST_F(LaneTest, PaintsSoundTitlesAndThePosition) {
    lane.Sound(Sound(600));
    player.CurrentPosition(5);
    const QImage image = lane.grab().toImage();
    const auto ground = Colours(image, At(4.6).x());
    EXPECT_NE(ground, Colours(image, At(7).x()));
    EXPECT_NE(ground, Colours(image, At(5).x()));
    const LanePalette colours = LanePaletteOf(lane.palette());
    EXPECT_GT(Colours(image, At(5).x())[colours.position.rgb()], 30);
    lane.Current(2);
    EXPECT_NE(Colours(lane.grab().toImage(), At(7).x()), Colours(image, At(7).x()));
    lane.Current(0);
    lane.Placing(13.0);
    player.CurrentPosition(15);
    EXPECT_NE(Colours(lane.grab().toImage(), At(14).x()), Colours(image, At(14).x()));
}

TEST_F(LaneTest, AScaledScreenShowsTheSamePlaces) {
    lane.Sound(Sound(600));
    const QImage plain = lane.grab().toImage();
    QImage fine(plain.size() * 2, QImage::Format_RGB32);
    fine.setDevicePixelRatio(2);
    lane.render(&fine);
    for (const double time : {3.0, 5.0, 7.0, 9.0})
        EXPECT_EQ(plain.pixel(At(time)), fine.pixel(At(time) * 2)) << time;
}

} // namespace

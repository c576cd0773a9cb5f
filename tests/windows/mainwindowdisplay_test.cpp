#include "listeditor/frmList.h"
#include "model/times.h"
#include "platform/updown.h"
#include "tests/windows/mainwindowtest.h"

#include <QTimer>

namespace {

class MainWindowDisplay : public MainWindowTest {
  protected:
    MainWindowDisplay() { Open(); }

    /// Plays to the position and lets the display see it.
    void PlayTo(double position) {
        player->Advance(position - player->CurrentPosition());
        Tick();
    }
    std::string Time() { return Line("txtTime").text().toStdString(); }
    UpDown& Spinner() { return The<UpDown>("UDTime"); }
    QPoint Upper() { return {Spinner().width() / 2, Spinner().height() / 4}; }
    QPoint Lower() { return {Spinner().width() / 2, Spinner().height() * 3 / 4}; }
    void HoldTick() { QMetaObject::invokeMethod(&The<QTimer>("tmrUDTime"), "timeout"); }
};

TEST_F(MainWindowDisplay, TheTimerRunsExactlyWhilePlaying) {
    const QTimer& timer = The<QTimer>("Timer1");
    EXPECT_FALSE(timer.isActive());
    player->Play();
    EXPECT_TRUE(timer.isActive());
    EXPECT_EQ(timer.timerType(), Qt::PreciseTimer);
    player->Pause();
    EXPECT_FALSE(timer.isActive());
    player->Play();
    player->Stop();
    EXPECT_FALSE(timer.isActive());
}

TEST_F(MainWindowDisplay, TitlesAppearAtTheirStartsAndGoAtTheirEnds) {
    player->Play();
    PlayTo(0.95);
    EXPECT_EQ(Box("txtSubtitle"), "");
    PlayTo(1);
    EXPECT_EQ(Box("txtSubtitle"), "first");
    PlayTo(2.95);
    EXPECT_EQ(Box("txtSubtitle"), "first");
    PlayTo(3);
    EXPECT_EQ(Box("txtSubtitle"), "");
    PlayTo(4);
    EXPECT_EQ(Box("txtSubtitle"), "second");
    PlayTo(6);
    EXPECT_EQ(Box("txtSubtitle"), "");
    PlayTo(6.05);
    EXPECT_EQ(Box("txtSubtitle"), "third");
    EXPECT_EQ(Box("txtNextSubtitle"), "");
}

TEST_F(MainWindowDisplay, ASeekIntoATitleShowsItUntilItsEnd) {
    player->Play();
    player->CurrentPosition(5);
    EXPECT_EQ(Box("txtSubtitle"), "");
    PlayTo(5.05);
    EXPECT_EQ(Box("txtSubtitle"), "second");
    PlayTo(6);
    EXPECT_EQ(Box("txtSubtitle"), "");
}

TEST_F(MainWindowDisplay, ASeekTakesTheShownTitleDown) {
    player->Play();
    PlayTo(1);
    ASSERT_EQ(Box("txtSubtitle"), "first");
    player->CurrentPosition(3.5);
    EXPECT_EQ(Box("txtSubtitle"), "");
}

TEST_F(MainWindowDisplay, PastTheLastTitleNothingMoreIsShown) {
    player->Play();
    player->CurrentPosition(8);
    PlayTo(8.05);
    EXPECT_EQ(Box("txtSubtitle"), "third");
    for (const double position : {8.5, 8.55, 8.6, 20.0, 100.0}) {
        PlayTo(position);
        EXPECT_EQ(Box("txtSubtitle"), "") << position;
    }
}

TEST_F(MainWindowDisplay, AnEmptyListShowsNothing) {
    Subt().Clear();
    player->Play();
    PlayTo(1);
    PlayTo(2);
    EXPECT_EQ(Box("txtSubtitle"), "");
    EXPECT_GE(window->ShownTitle(), 1);
}

TEST_F(MainWindowDisplay, PositioningShowsTheComingTitleAheadOfTime) {
    Click("optPosition");
    player->Play();
    EXPECT_EQ(Box("txtSubtitle"), "first");
    EXPECT_EQ(Box("txtNextSubtitle"), "second");
    PlayTo(3.5);
    EXPECT_EQ(Box("txtSubtitle"), "first");
    player->CurrentPosition(3.5);
    EXPECT_EQ(Box("txtSubtitle"), "second");
    EXPECT_EQ(Box("txtNextSubtitle"), "third");
}

TEST_F(MainWindowDisplay, StoppingEmptiesTheBoxes) {
    Click("optPosition");
    player->Play();
    player->Stop();
    EXPECT_EQ(Box("txtSubtitle"), "");
    EXPECT_EQ(Box("txtNextSubtitle"), "");
}

TEST_F(MainWindowDisplay, TheTimeFollows) {
    player->CurrentPosition(12.345);
    EXPECT_EQ(Time(), "00:00:12,345");
    player->Play();
    PlayTo(13.5);
    EXPECT_EQ(Time(), "00:00:13,500");
}

TEST_F(MainWindowDisplay, AHalfTypedTimeIsNeverOverwritten) {
    Line("txtTime").setFocus();
    Line("txtTime").setText("00:00:0");
    player->CurrentPosition(9);
    player->Play();
    PlayTo(10);
    EXPECT_EQ(Time(), "00:00:0");
}

TEST_F(MainWindowDisplay, ATypedTimeJumpsWhenPaused) {
    Line("txtTime").setFocus();
    Line("txtTime").setText("00:00:07,250");
    EXPECT_EQ(player->CurrentPosition(), 7.25);
}

TEST_F(MainWindowDisplay, ATypedTimeWaitsWhilePlaying) {
    player->Play();
    Line("txtTime").setFocus();
    Line("txtTime").setText("00:00:07,250");
    EXPECT_EQ(player->CurrentPosition(), 0);
    player->Pause();
    Line("txtTime").clear();
    Line("txtTime").setText("00:00:07,250");
    EXPECT_EQ(player->CurrentPosition(), 7.25);
}

TEST_F(MainWindowDisplay, TheProgramsOwnTimesDoNotMoveAPausedFilm) {
    player->CurrentPosition(1.23456);
    EXPECT_EQ(player->CurrentPosition(), 1.23456);
    EXPECT_EQ(player->Seeks.size(), 1U);
}

TEST_F(MainWindowDisplay, StoppedAnyNewTimeMovesIt) {
    player->Play();
    player->Stop();
    Line("txtTime").setText("00:00:05,000");
    EXPECT_EQ(player->CurrentPosition(), 5);
}

TEST_F(MainWindowDisplay, SpinnerClicksJumpTwentySeconds) {
    player->CurrentPosition(100);
    QTest::mouseClick(&Spinner(), Qt::LeftButton, {}, Upper());
    EXPECT_EQ(player->CurrentPosition(), 120);
    QTest::mouseClick(&Spinner(), Qt::LeftButton, {}, Lower());
    EXPECT_EQ(player->CurrentPosition(), 100);
}

TEST_F(MainWindowDisplay, WhilePlayingOnlyTheUpperHalfJumps) {
    player->CurrentPosition(100);
    player->Play();
    QTest::mouseClick(&Spinner(), Qt::LeftButton, {}, Lower());
    EXPECT_EQ(player->CurrentPosition(), 100);
    QTest::mouseClick(&Spinner(), Qt::LeftButton, {}, Upper());
    EXPECT_EQ(player->CurrentPosition(), 120);
}

TEST_F(MainWindowDisplay, TheSelectionsEndsAreOutOfReachOfClicks) {
    player->CurrentPosition(100);
    player->SelectionStart(80);
    player->SelectionEnd(120);
    QTest::mouseClick(&Spinner(), Qt::LeftButton, {}, Upper());
    QTest::mouseClick(&Spinner(), Qt::LeftButton, {}, Lower());
    EXPECT_EQ(player->CurrentPosition(), 100);
}

TEST_F(MainWindowDisplay, AHeldHalfStepsAndItsClickIsSwallowed) {
    player->CurrentPosition(100);
    const QTimer& timer = The<QTimer>("tmrUDTime");
    QTest::mousePress(&Spinner(), Qt::LeftButton, {}, Upper());
    EXPECT_TRUE(timer.isActive());
    EXPECT_EQ(timer.interval(), 300);
    for (int i = 0; i < 15; ++i)
        HoldTick();
    EXPECT_EQ(timer.interval(), 200);
    QTest::mouseRelease(&Spinner(), Qt::LeftButton, {}, Upper());
    EXPECT_FALSE(timer.isActive());
    EXPECT_NEAR(player->CurrentPosition(), 106, 1e-9);
    QTest::mouseClick(&Spinner(), Qt::LeftButton, {}, Upper());
    EXPECT_NEAR(player->CurrentPosition(), 126, 1e-9);
}

TEST_F(MainWindowDisplay, AHeldHalfReallyRepeats) {
    player->CurrentPosition(100);
    QTest::mousePress(&Spinner(), Qt::LeftButton, {}, Lower());
    EXPECT_TRUE(QTest::qWaitFor([this] { return player->CurrentPosition() < 99.85; }, 3000));
    QTest::mouseRelease(&Spinner(), Qt::LeftButton, {}, Lower());
}

TEST_F(MainWindowDisplay, TheSelectionIsShownWhenItStartsAfterZero) {
    player->SelectionStart(2);
    player->SelectionEnd(5);
    player->Play();
    EXPECT_EQ(Line("txtSelStart").text(), "00:00:02,000");
    EXPECT_EQ(Line("txtSelEnd").text(), "00:00:05,000");
    player->SelectionStart(0);
    player->Pause();
    EXPECT_EQ(Line("txtSelStart").text(), "00:00:02,000");
}

TEST_F(MainWindowDisplay, ThePlayersControlsGiveTheKeyboardBack) {
    Line("txtTime").setFocus();
    emit player->Activated();
    EXPECT_EQ(window->focusWidget(), window.get());
}

TEST_F(MainWindowDisplay, TheListEditorFollowsTheFilm) {
    Click("cmdEdit");
    auto& list = The<frmList>("frmList");
    player->Play();
    PlayTo(1);
    PlayTo(3);
    EXPECT_EQ(list.SelectedItem(), 0) << "nothing was selected";
    player->CurrentPosition(0);
    list.GoToTitle(1);
    player->CurrentPosition(0.9);
    PlayTo(1);
    PlayTo(3);
    EXPECT_EQ(list.SelectedItem(), 2);
}

TEST_F(MainWindowDisplay, TheTimerItselfDrivesTheDisplay) {
    player->Play();
    player->Advance(1.5);
    EXPECT_TRUE(QTest::qWaitFor([this] { return Box("txtSubtitle") == "first"; }, 3000));
    EXPECT_EQ(Time(), "00:00:01,500");
}

} // namespace

#include "platform/updown.h"
#include "tests/windows/mainwindowtest.h"

#include <QAction>

namespace {

class MainWindowTimes : public MainWindowTest {
  protected:
    MainWindowTimes() { Open(); }

    void PlayTo(double position) {
        player->Advance(position - player->CurrentPosition());
        Tick();
    }
    std::string Time() { return Line("txtTime").text().toStdString(); }
    std::string SelStart() { return Line("txtSelStart").text().toStdString(); }
    std::string SelEnd() { return Line("txtSelEnd").text().toStdString(); }
};

TEST_F(MainWindowTimes, APausedFilmMovedBetweenTitlesShowsNone) {
    player->Play();
    PlayTo(2);
    player->Pause();
    EXPECT_EQ(Box("txtSubtitle"), "first") << "its title is still on";
    player->CurrentPosition(3.5);
    EXPECT_EQ(Box("txtSubtitle"), "");
}

TEST_F(MainWindowTimes, APauseBetweenTitlesTakesAStaleTextDown) {
    player->Play();
    PlayTo(2.99);
    ASSERT_EQ(Box("txtSubtitle"), "first");
    player->Advance(0.02);
    player->Pause();
    EXPECT_EQ(Box("txtSubtitle"), "");
}

TEST_F(MainWindowTimes, ATextThatNoLongerIsTheTitlesGoesWithThePause) {
    player->Play();
    PlayTo(2);
    Subt().Text(1, "other");
    player->Pause();
    EXPECT_NE(Box("txtSubtitle"), "first");
}

TEST_F(MainWindowTimes, ATitleOfTwoLinesStaysThroughAPause) {
    Subt().Text(1, "two\r\nlines");
    player->Play();
    PlayTo(2);
    player->Pause();
    EXPECT_EQ(Box("txtSubtitle"), "two\nlines");
}

TEST_F(MainWindowTimes, ViewingAgainTakesThePositioningTextsDown) {
    Click("optPosition");
    player->Play();
    ASSERT_EQ(Box("txtNextSubtitle"), "second");
    Click("optShow");
    EXPECT_EQ(Box("txtSubtitle"), "");
    EXPECT_EQ(Box("txtNextSubtitle"), "");
}

TEST_F(MainWindowTimes, PositioningShowsAtOnceWhatIsPlacedNext) {
    player->Play();
    PlayTo(2);
    Click("optPosition");
    EXPECT_EQ(Box("txtSubtitle"), "first");
    EXPECT_EQ(Box("txtNextSubtitle"), "second");
}

TEST_F(MainWindowTimes, TheTimeIsExactWhereverTheFilmComesToRest) {
    player->Play();
    player->Advance(1.25);
    player->Pause();
    EXPECT_EQ(Time(), "00:00:01,250");
    player->CurrentPosition(77.7);
    EXPECT_EQ(Time(), "00:01:17,700");
    player->SelectionStart(70);
    player->SelectionEnd(80.25);
    player->Play();
    player->Advance(5);
    EXPECT_EQ(Time(), "00:01:20,250") << "the selection's end";
    player->Stop();
    EXPECT_EQ(Time(), "00:01:10,000");
    Line("txtAVI").setText(In("other.avi"));
    EXPECT_EQ(Time(), "00:00:00,000") << "a new film";
}

TEST_F(MainWindowTimes, ShowingTheTimeMovesNoStoppedFilm) {
    player->SelectionStart(2.00049);
    player->Play();
    player->Stop();
    EXPECT_EQ(player->CurrentPosition(), 2.00049);
}

TEST_F(MainWindowTimes, ANewFilmHasNoSelection) {
    player->CurrentPosition(20);
    Click("cmdSelStart");
    Click("cmdSelEnd");
    ASSERT_NE(SelStart(), "");
    Line("txtAVI").setText(In("other.avi"));
    EXPECT_EQ(SelStart(), "");
    EXPECT_EQ(SelEnd(), "");
}

TEST_F(MainWindowTimes, WithoutAStartItsBoxIsEmpty) {
    player->CurrentPosition(20);
    Click("cmdSelEnd");
    EXPECT_EQ(SelStart(), "");
    EXPECT_EQ(SelEnd(), "00:00:20,000");
}

TEST_F(MainWindowTimes, AnEndWithoutAStartLimitsNothing) {
    player->CurrentPosition(20);
    Click("cmdSelEnd");
    player->CurrentPosition(10);
    player->Play();
    player->Advance(30);
    EXPECT_EQ(player->State(), Player::Playing);
    EXPECT_EQ(player->CurrentPosition(), 40);
}

TEST_F(MainWindowTimes, ShortFormsOfATimeLeadTheFilmToo) {
    Line("txtTime").setFocus();
    const struct {
        const char* text;
        double position;
    } rows[] = {{"00:01:02,300", 62.3}, {"0:01:02.3", 62.3}, {"1:05", 65},
                {"7,25", 7.25},         {"00:02:00", 120},   {"5.", 5}};
    for (const auto& row : rows) {
        Line("txtTime").setText(row.text);
        EXPECT_EQ(player->CurrentPosition(), row.position) << row.text;
    }
}

TEST_F(MainWindowTimes, WhatIsNoTimeIsMarkedAndMovesNothing) {
    player->CurrentPosition(20);
    QLineEdit& box = Line("txtTime");
    box.setFocus();
    const QColor usual = box.palette().color(QPalette::Base);
    const QString tip = box.toolTip();
    for (const char* text : {"0:0:0:1", "abc", "1e-400", "5..5", "-"}) {
        box.setText(text);
        EXPECT_EQ(player->CurrentPosition(), 20) << text;
        EXPECT_NE(box.palette().color(QPalette::Base), usual) << text;
        EXPECT_EQ(box.toolTip(), "A time, such as 00:01:02,300, 1:02.3 or 62.3") << text;
    }
    box.clear();
    EXPECT_EQ(player->CurrentPosition(), 20);
    EXPECT_EQ(box.palette().color(QPalette::Base), usual);
    EXPECT_EQ(box.toolTip(), tip);
}

TEST_F(MainWindowTimes, TheSpinnersMiddleRowStepsTheWayThatIsDrawn) {
    player->CurrentPosition(20);
    auto& spinner = The<UpDown>("UDTime");
    auto& repeat = The<QTimer>("tmrUDTime");
    for (int y = 0; y < spinner.height(); ++y) {
        player->CurrentPosition(20);
        QTest::mousePress(&spinner, Qt::LeftButton, {}, QPoint(spinner.width() / 2, y));
        QMetaObject::invokeMethod(&repeat, "timeout");
        EXPECT_DOUBLE_EQ(player->CurrentPosition(), spinner.IsUpper(y) ? 20.1 : 19.9) << y;
        QTest::mouseRelease(&spinner, Qt::LeftButton, {}, QPoint(spinner.width() / 2, y));
    }
}

TEST_F(MainWindowTimes, EachSelectionBoxHasAClearButton) {
    player->CurrentPosition(10);
    Click("cmdSelStart");
    player->CurrentPosition(20);
    Click("cmdSelEnd");
    Child<QAction>(*window, "clearSelEnd").trigger();
    EXPECT_EQ(SelEnd(), "");
    EXPECT_EQ(SelStart(), "00:00:10,000");
    EXPECT_EQ(player->SelectionEnd(), player->Length());
    Line("txtSelStart").setFocus();
    Type(*window, Qt::Key_Delete);
    EXPECT_EQ(SelStart(), "");
    EXPECT_LT(player->SelectionStart(), 0);
    player->Play();
    EXPECT_EQ(SelStart(), "") << "it stays away";
    EXPECT_EQ(SelEnd(), "");
}

} // namespace

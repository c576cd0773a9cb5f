#include "mainwindow/placing.h"
#include "tests/windows/mainwindowtest.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QLabel>

namespace {

class MainWindowPlacing : public MainWindowTest {
  protected:
    MainWindowPlacing() {
        Open();
        Click("optPosition");
        window->setFocus();
        player->Play();
    }

    void At(double position) { player->Advance(position - player->CurrentPosition()); }
    void Key(QEvent::Type type, Qt::Key key = Qt::Key_Space, bool repeat = false) {
        QKeyEvent event(type, key, {}, " ", repeat);
        QWidget* focus = window->focusWidget();
        QCoreApplication::sendEvent(focus == nullptr ? window.get() : focus, &event);
    }
    void Place(double from, double to) {
        At(from);
        Key(QEvent::KeyPress);
        At(to);
        Key(QEvent::KeyRelease);
    }
    void ExpectTimes(std::int32_t title, double start, double end) {
        EXPECT_DOUBLE_EQ(Subt().StartTime(title), start);
        EXPECT_DOUBLE_EQ(Subt().EndTime(title), end);
    }
    QLabel& Note() { return The<QLabel>("mpNote"); }
};

TEST_F(MainWindowPlacing, AKeyHeldThroughTheFilmsEndPlacesUpToTheEnd) {
    player->CurrentPosition(7);
    At(599);
    Key(QEvent::KeyPress);
    player->Advance(5);
    ASSERT_EQ(player->State(), Player::Stopped);
    ExpectTimes(3, 599, 600);
    Key(QEvent::KeyRelease);
    ExpectTimes(3, 599, 600);
    ExpectTimes(1, 1, 3);
}

TEST_F(MainWindowPlacing, TheMenuSwitchesSnapping) {
    const auto choose = [this](bool before) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, {50, 50}, {50, 50});
        QCoreApplication::sendEvent(&The<QWidget>("MP"), &event);
        auto& snap = The<QAction>("mpSnap");
        EXPECT_EQ(snap.isChecked(), before);
        snap.trigger();
        QApplication::activePopupWidget()->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    choose(false);
    CloseWindow();
    EXPECT_EQ(StoredSettings().value("SnapSpeech").toInt(), 1);
    OpenWindow();
    Open();
    choose(true);
    CloseWindow();
    EXPECT_EQ(StoredSettings().value("SnapSpeech").toInt(), 0);
    OpenWindow();
}

TEST_F(MainWindowPlacing, AKeyStillHeldWhenTheFilmStartsAgainPlacesNothing) {
    At(599);
    Key(QEvent::KeyPress);
    player->Advance(5);
    player->Play();
    At(2);
    Key(QEvent::KeyPress, Qt::Key_Space, true);
    Key(QEvent::KeyRelease);
    ExpectTimes(2, 4, 6);
    Place(2.5, 2.75);
    EXPECT_EQ(Subt().UndoCount(), 2);
}

TEST_F(MainWindowPlacing, AKeyHeldBeyondTheStopTypesNothing) {
    Key(QEvent::KeyPress);
    player->Stop();
    Line("txtSRT").setFocus();
    Key(QEvent::KeyPress, Qt::Key_Space, true);
    EXPECT_EQ(Line("txtSRT").text(), In("film.srt"));
}

TEST_F(MainWindowPlacing, AStopByHandPlacesNothing) {
    At(0.5);
    Key(QEvent::KeyPress);
    player->Stop();
    Key(QEvent::KeyRelease);
    ExpectTimes(1, 1, 3);
}

TEST_F(MainWindowPlacing, TheMenuKeyPlacesAndOpensNoMenu) {
    window->ActionKey = 93;
    Line("txtTime").setFocus();
    At(1.5);
    Key(QEvent::KeyPress, Qt::Key_Menu);
    QContextMenuEvent menu(QContextMenuEvent::Keyboard, {5, 5},
                           Line("txtTime").mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(&Line("txtTime"), &menu);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    At(2);
    Key(QEvent::KeyRelease, Qt::Key_Menu);
    ExpectTimes(1, 1.5, 2);
}

TEST_F(MainWindowPlacing, TwoKeysChooseTheTitleToPlace) {
    Type(*window, Qt::Key_PageDown);
    EXPECT_EQ(Box("txtSubtitle"), "second");
    EXPECT_EQ(Box("txtNextSubtitle"), "third");
    Type(*window, Qt::Key_PageDown);
    Type(*window, Qt::Key_PageDown);
    EXPECT_EQ(Box("txtSubtitle"), "third") << "no further than the last";
    Type(*window, Qt::Key_PageUp);
    Place(1.5, 2);
    ExpectTimes(2, 1.5, 2);
    EXPECT_EQ(player->Seeks.size(), 0U) << "the film goes on";
    for (int i = 0; i < 5; ++i)
        Type(*window, Qt::Key_PageUp);
    EXPECT_EQ(Box("txtSubtitle"), "first");
}

TEST_F(MainWindowPlacing, EachPlacementIsShownForTwoSeconds) {
    EXPECT_FALSE(Note().isVisible());
    Place(1.5, 2.25);
    EXPECT_TRUE(Note().isVisible());
    EXPECT_EQ(Note().text(), "1: 00:00:01,500 - 00:00:02,250");
    QTest::qWait(1500);
    EXPECT_TRUE(Note().isVisible());
    EXPECT_TRUE(QTest::qWaitFor([this] { return !Note().isVisible(); }, 1500));
}

TEST_F(MainWindowPlacing, PlacementsAreTakenBackOneByOne) {
    Place(1.5, 2);
    Place(2.5, 3);
    Type(*window, QKeySequence("Ctrl+Z"));
    ExpectTimes(2, 4, 6);
    ExpectTimes(1, 1.5, 2);
    EXPECT_EQ(Box("txtSubtitle"), "second") << "it is placed next again";
    EXPECT_EQ(Note().text(), "Taken back: 2: 00:00:04,000 - 00:00:06,000");
    Type(*window, QKeySequence("Ctrl+Z"));
    ExpectTimes(1, 1, 3);
    Type(*window, QKeySequence("Ctrl+Z"));
    EXPECT_EQ(Note().text(), "No placement to take back");
}

TEST_F(MainWindowPlacing, AnotherFilesTitlesAreNotTakenBack) {
    Place(1.5, 2);
    Forget();
    Line("txtSRT").clear();
    OpenTitles();
    Type(*window, QKeySequence("Ctrl+Z"));
    ExpectTimes(1, 1, 3);
    EXPECT_FALSE(Changed());
}

TEST(PlacedTitlesTest, ATitleThatWasChangedSinceKeepsItsTimes) {
    SUBTITLES titles;
    titles.Add(1, 2, "one");
    PlacedTitles placed;
    EXPECT_TRUE(placed.Place(titles, 1, 3, 4));
    titles.SetTimes(1, 5, 6);
    EXPECT_FALSE(placed.TakenBack(titles, 1));
}

TEST(PlacedTitlesTest, PastTheEndNothingIsPlaced) {
    SUBTITLES titles;
    PlacedTitles placed;
    EXPECT_FALSE(placed.Place(titles, 1, 3, 4));
    EXPECT_FALSE(placed.TakenBack(titles, 1));
}

TEST(PlacedTitlesTest, OnlyTheLastPlacementThatStillHeldIsTakenBack) {
    SUBTITLES titles;
    titles.UndoEnabled(true);
    titles.Add(1, 2, "one");
    titles.Add(5, 6, "two");
    PlacedTitles placed;
    EXPECT_TRUE(placed.Place(titles, 1, 3, 4));
    EXPECT_TRUE(placed.Place(titles, 2, 7, 8));
    titles.Text(1, "changed");
    EXPECT_FALSE(placed.TakenBack(titles, titles.Undo()));
    EXPECT_TRUE(placed.TakenBack(titles, titles.Undo()));
    EXPECT_TRUE(placed.TakenBack(titles, titles.Undo()));
    EXPECT_FALSE(placed.TakenBack(titles, 1));
}

TEST(PlacedTitlesTest, TheTextNamesTitleAndTimes) {
    EXPECT_EQ(PlacedText(12, 62.3, 64.1), "12: 00:01:02,300 - 00:01:04,100");
}

} // namespace

#include "listeditor/frmList.h"
#include "listeditor/titleview.h"
#include "tests/windows/mainwindowtest.h"

#include <QLabel>
#include <QMenu>

namespace {

class MainWindowKeys : public MainWindowTest {
  protected:
    MainWindowKeys() {
        Open();
        Click("optPosition");
        window->setFocus();
        player->Play();
    }

    void Press(Qt::Key key = Qt::Key_Space) { QTest::keyPress(Focus(), key); }
    void Release(Qt::Key key = Qt::Key_Space) { QTest::keyRelease(Focus(), key); }
    QWidget* Focus() {
        return window->focusWidget() == nullptr ? window.get() : window->focusWidget();
    }
    void At(double position) { player->Advance(position - player->CurrentPosition()); }
    void Place(double from, double to) {
        At(from);
        Press();
        At(to);
        Release();
    }
    void ExpectTimes(std::int32_t title, double start, double end) {
        EXPECT_DOUBLE_EQ(Subt().StartTime(title), start);
        EXPECT_DOUBLE_EQ(Subt().EndTime(title), end);
    }
};

TEST_F(MainWindowKeys, PressAndReleasePlaceTheTitleAndMoveOn) {
    Place(1.5, 2.75);
    ExpectTimes(1, 1.5, 2.75);
    EXPECT_EQ(Subt().UndoCount(), 1);
    EXPECT_TRUE(Changed());
    EXPECT_EQ(Box("txtSubtitle"), "second");
    EXPECT_EQ(Box("txtNextSubtitle"), "third");
    EXPECT_EQ(window->ShownTitle(), 2);
}

TEST_F(MainWindowKeys, TheTitleThatWasClickedIsTheOnePlaced) {
    constexpr std::int32_t Titles = 1200;
    const auto start = [](std::int32_t i) {
        return i * 3.0 + i % 7 * 0.1371;
    };
    player->MediaLength = 4000;
    Subt().Clear();
    for (std::int32_t i = 1; i <= Titles; ++i)
        Subt().Add(start(i), start(i) + 2, std::to_string(i));
    Click("cmdEdit");
    TitleView& rows = *Child<frmList>(*window, "frmList").LV;
    for (std::int32_t i = 1; i <= Titles; ++i) {
        const QModelIndex row = rows.model()->index(i - 1, 0);
        rows.scrollTo(row);
        QTest::mouseClick(rows.viewport(), Qt::LeftButton, {}, rows.visualRect(row).center());
        Press();
        player->Advance(1.25);
        Release();
        ASSERT_DOUBLE_EQ(Subt().EndTime(i), start(i) + 1.25) << i;
    }
    for (std::int32_t i = 1; i <= Titles; ++i)
        ExpectTimes(i, start(i), start(i) + 1.25);
}

TEST_F(MainWindowKeys, ThePressAloneCountsAsAChange) {
    Press();
    EXPECT_TRUE(Changed());
    ExpectTimes(1, 1, 3);
}

TEST_F(MainWindowKeys, AHeldKeyIsOnePressAndOnePlacement) {
    At(1.5);
    Press();
    for (int i = 0; i < 3; ++i) {
        At(2 + i);
        for (const QEvent::Type type : {QEvent::KeyRelease, QEvent::KeyPress}) {
            QKeyEvent repeat(type, Qt::Key_Space, {}, " ", true);
            QCoreApplication::sendEvent(Focus(), &repeat);
        }
        Press();
    }
    At(5);
    Release();
    ExpectTimes(1, 1.5, 5);
    ExpectTimes(2, 4, 6);
}

TEST_F(MainWindowKeys, TitlesInQuickSuccessionStartAtTheirOwnPresses) {
    Place(1, 1.5);
    Place(1.75, 2);
    ExpectTimes(1, 1, 1.5);
    ExpectTimes(2, 1.75, 2);
}

TEST_F(MainWindowKeys, AQuickTapGivesATitleWithoutDuration) {
    Place(1.25, 1.25);
    ExpectTimes(1, 1.25, 1.25);
}

TEST_F(MainWindowKeys, StoppedAPressDoesNothing) {
    player->Stop();
    Changed() = false;
    Press();
    Release();
    EXPECT_FALSE(Changed());
    ExpectTimes(1, 1, 3);
}

TEST_F(MainWindowKeys, PausedItPlacesToo) {
    player->Pause();
    player->CurrentPosition(0.5);
    Press();
    player->CurrentPosition(0.75);
    Release();
    ExpectTimes(1, 0.5, 0.75);
}

TEST_F(MainWindowKeys, AfterASeekTheTitleCurrentThereGetsTheOldPressTime) {
    At(0.5);
    Press();
    player->CurrentPosition(3.5);
    Release();
    ExpectTimes(1, 1, 3);
    ExpectTimes(2, 0.5, 3.5);
}

TEST_F(MainWindowKeys, AStopEndsAPlacementAndTheNextPressCounts) {
    At(0.5);
    Press();
    player->Stop();
    Release();
    player->Play();
    At(0.75);
    Press();
    At(1);
    Release();
    ExpectTimes(1, 0.75, 1);
}

TEST_F(MainWindowKeys, AReleaseCountsWithoutItsPress) {
    At(2);
    Release();
    ExpectTimes(1, 0, 2);
}

TEST_F(MainWindowKeys, PastTheLastTitleNothingChanges) {
    player->CurrentPosition(7);
    Place(7, 7.5);
    ExpectTimes(3, 7, 7.5);
    Place(8, 9);
    EXPECT_EQ(Subt().Count(), 3);
    ExpectTimes(3, 7, 7.5);
    EXPECT_EQ(Box("txtSubtitle"), "");
}

TEST_F(MainWindowKeys, ItWorksInViewModeToo) {
    Click("optShow");
    player->CurrentPosition(3.5);
    Place(3.6, 3.9);
    ExpectTimes(2, 3.6, 3.9);
    EXPECT_EQ(Box("txtSubtitle"), "third");
}

TEST_F(MainWindowKeys, OneUndoTakesAPlacementBack) {
    Place(1.5, 2);
    Subt().Undo();
    ExpectTimes(1, 1, 3);
}

TEST_F(MainWindowKeys, OtherKeysPassOn) {
    player->Pause();
    Line("txtSRT").setFocus();
    Line("txtSRT").clear();
    QTest::keyClicks(&Line("txtSRT"), "ab");
    EXPECT_EQ(Line("txtSRT").text(), "ab");
    EXPECT_FALSE(Changed());
}

TEST_F(MainWindowKeys, WhilePlayingNoCharacterReachesATextBox) {
    Line("txtTime").setFocus();
    Line("txtTime").setText("1");
    QTest::keyClicks(&Line("txtTime"), "23");
    QTest::keyClick(&Line("txtTime"), Qt::Key_Backspace);
    EXPECT_EQ(Line("txtTime").text(), "1");
    QTest::keyClick(&Line("txtTime"), Qt::Key_Home);
    EXPECT_EQ(Line("txtTime").cursorPosition(), 0);
    QInputMethodEvent composed;
    composed.setCommitString("9");
    QCoreApplication::sendEvent(&Line("txtTime"), &composed);
    EXPECT_EQ(Line("txtTime").text(), "1");
}

TEST_F(MainWindowKeys, TheKeyGoesToThePlacingAlone) {
    player->Pause();
    Line("txtSRT").clear();
    Line("txtSRT").setFocus();
    QTest::keyClick(&Line("txtSRT"), Qt::Key_Space);
    EXPECT_EQ(Line("txtSRT").text(), "");
    EXPECT_TRUE(Changed());
    The("cmdSelStart").setFocus();
    QTest::keyClick(&The("cmdSelStart"), Qt::Key_Space);
    EXPECT_EQ(Line("txtSelStart").text(), "");
    The<QRadioButton>("optShow").setFocus();
    QTest::keyClick(&The<QRadioButton>("optShow"), Qt::Key_Space);
    EXPECT_TRUE(The<QRadioButton>("optPosition").isChecked());
}

TEST_F(MainWindowKeys, WithoutMediaTheKeyGoesToItsControl) {
    player->Stop();
    The<QRadioButton>("optShow").setFocus();
    QTest::keyClick(&The<QRadioButton>("optShow"), Qt::Key_Space);
    EXPECT_TRUE(The<QRadioButton>("optShow").isChecked());
}

TEST_F(MainWindowKeys, ModifierAndLetterKeysPlaceToo) {
    const struct {
        std::int16_t code;
        Qt::Key key;
    } rows[] = {{16, Qt::Key_Shift}, {17, Qt::Key_Control}, {18, Qt::Key_Alt}, {65, Qt::Key_A}};
    std::int32_t title = 1;
    for (const auto& row : rows) {
        player->Pause();
        player->Play();
        window->ActionKey = row.code;
        player->CurrentPosition(0.5);
        Press(row.key);
        At(0.75);
        Release(row.key);
        ExpectTimes(1, 0.5, 0.75);
        Subt().SetTimes(title, 1, 3);
    }
}

TEST_F(MainWindowKeys, KeysOfOtherWindowsAreNotForTheMainWindow) {
    Click("cmdEdit");
    auto& list = The<frmList>("frmList");
    QTest::keyClick(list.LV, Qt::Key_Space);
    EXPECT_FALSE(Changed());
    ExpectTimes(1, 1, 3);
}

TEST_F(MainWindowKeys, AReleaseInAnotherWindowEndsTheTitleThere) {
    Click("cmdEdit");
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([this] { return window->isActiveWindow(); }, 30'000));
    window->setFocus();
    QMenu menu;
    auto& list = The<frmList>("frmList");
    for (QWidget* elsewhere : {static_cast<QWidget*>(&menu), static_cast<QWidget*>(list.LV)}) {
        const std::int32_t title = window->ShownTitle();
        const double start = player->CurrentPosition();
        Press();
        player->Advance(0.25);
        QTest::keyPress(elsewhere, Qt::Key_Space);
        player->Advance(0.25);
        QTest::keyRelease(elsewhere, Qt::Key_Space);
        ExpectTimes(title, start, start + 0.5);
        EXPECT_EQ(window->ShownTitle(), title + 1);
        player->Advance(0.25);
    }
    // The next one is placed as ever.
    Place(5, 5.5);
    ExpectTimes(3, 5, 5.5);
}

TEST_F(MainWindowKeys, TheListEditorShowsTheNewTimes) {
    Click("cmdEdit");
    auto& list = The<frmList>("frmList");
    Place(1.5, 2.75);
    EXPECT_EQ(list.RowStart(1), "00:00:01,500");
    EXPECT_EQ(list.RowDuration(1), "1.25");
}

TEST_F(MainWindowKeys, TheLagIsTakenOffInPositioningModeOnly) {
    CloseWindow();
    StoredSettings().setValue("LagMs", 200);
    OpenWindow();
    Open();
    Click("optPosition");
    player->Play();
    Place(1.5, 2);
    ExpectTimes(1, 1.3, 1.8);
    Click("optShow");
    player->CurrentPosition(3.5);
    Place(3.5, 3.75);
    ExpectTimes(2, 3.5, 3.75);
    CloseWindow();
    EXPECT_EQ(StoredSettings().value("LagMs").toInt(), 200);
}

TEST_F(MainWindowKeys, TheStampOfTheEventCounts) {
    const auto stamped = [this](QEvent::Type type, std::int64_t age) {
        using namespace std::chrono;
        const auto now = duration_cast<milliseconds>(steady_clock::now().time_since_epoch());
        QKeyEvent event(type, Qt::Key_Space, {}, " ");
        event.setTimestamp(static_cast<quint64>(now.count() - age));
        QCoreApplication::sendEvent(Focus(), &event);
    };
    At(2);
    stamped(QEvent::KeyPress, 300);
    At(3);
    stamped(QEvent::KeyRelease, 100);
    EXPECT_NEAR(Subt().StartTime(1), 1.7, 0.02);
    EXPECT_NEAR(Subt().EndTime(1), 2.9, 0.02);
}

TEST_F(MainWindowKeys, TheKeyBoxShowsInPositioningModeOnly) {
    EXPECT_TRUE(Line("txtKey").isVisible());
    EXPECT_TRUE(The<QLabel>("Label4").isVisible());
    Click("optShow");
    EXPECT_FALSE(Line("txtKey").isVisible());
    EXPECT_FALSE(The<QLabel>("Label4").isVisible());
}

TEST_F(MainWindowKeys, AClickOnTheKeyBoxChoosesAnotherKey) {
    {
        const Modals modals({AnswerWindow(
            "frmPickKey", [](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_A); })});
        QTest::mouseClick(&Line("txtKey"), Qt::LeftButton);
    }
    EXPECT_EQ(window->ActionKey, 65);
    EXPECT_EQ(Line("txtKey").text(), "[65]");
    EXPECT_EQ(window->focusWidget(), window.get());
    EXPECT_FALSE(Changed()) << "the picked key was not for the main window";
}

TEST_F(MainWindowKeys, EnterInTheKeyBoxChoosesAnotherKey) {
    Line("txtKey").setFocus();
    const Modals modals({AnswerWindow(
        "frmPickKey", [](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Shift); })});
    QTest::keyClick(&Line("txtKey"), Qt::Key_Return);
    EXPECT_EQ(window->ActionKey, 16);
}

} // namespace

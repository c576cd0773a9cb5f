#include "listeditor/frmList.h"
#include "listeditor/titleview.h"
#include "mainwindow/transportstrip.h"
#include "tests/windows/mainwindowtest.h"

#include <QAction>
#include <QApplication>
#include <QImage>
#include <QLabel>
#include <QTimer>

#include <set>

namespace {

class MainWindowButtons : public MainWindowTest {
  protected:
    MainWindowButtons() { Open(); }

    TransportStrip& Strip() { return The<TransportStrip>("picButtons"); }
    QTimer& Repeat() { return The<QTimer>("tmrPosButtons"); }
    /// Over the middle of a button.
    static QPoint Over(int button) {
        constexpr int middles[] = {18, 40, 63, 85};
        return {middles[button - 1], 12};
    }
    void Move(QPoint place, Qt::MouseButtons held = Qt::NoButton) {
        QMouseEvent event(QEvent::MouseMove, place, Strip().mapToGlobal(place), Qt::NoButton, held,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(&Strip(), &event);
    }
    void ClickStrip(int button) {
        Move(Over(button));
        QTest::mouseClick(&Strip(), Qt::LeftButton, {}, Over(button));
    }
};

TEST_F(MainWindowButtons, TheStripIsEnabledWhileNotPlaying) {
    EXPECT_TRUE(Strip().isEnabled());
    player->Play();
    EXPECT_FALSE(Strip().isEnabled());
    EXPECT_EQ(Strip().Picture(), 1);
    player->Pause();
    EXPECT_TRUE(Strip().isEnabled());
    EXPECT_EQ(Strip().Picture(), 2);
    player->Stop();
    EXPECT_TRUE(Strip().isEnabled());
}

TEST_F(MainWindowButtons, PicturesFollowTheMouse) {
    Move({1, 1});
    EXPECT_EQ(Strip().Picture(), 2);
    for (int button = 1; button <= 4; ++button) {
        Move(Over(button));
        EXPECT_EQ(Strip().Picture(), 2 + button);
        Move(Over(button), Qt::LeftButton);
        EXPECT_EQ(Strip().Picture(), 6 + button);
    }
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&Strip(), &leave);
    EXPECT_EQ(Strip().Picture(), 2);
}

TEST_F(MainWindowButtons, TheTenPicturesDiffer) {
    std::set<QByteArray> seen;
    for (std::int16_t number = 1; number <= 10; ++number) {
        const QImage picture = The<StripPictures>("IMGL")
                                   .Picture(number, Strip().palette(), 1)
                                   .toImage()
                                   .convertToFormat(QImage::Format_ARGB32);
        seen.insert(
            QByteArray(reinterpret_cast<const char*>(picture.constBits()), picture.sizeInBytes()));
    }
    EXPECT_EQ(seen.size(), 10U);
}

TEST_F(MainWindowButtons, TheyMoveWithinTheSelection) {
    player->SelectionStart(10);
    player->SelectionEnd(20);
    player->CurrentPosition(15);
    ClickStrip(2);
    EXPECT_EQ(player->CurrentPosition(), 14.5);
    ClickStrip(3);
    EXPECT_EQ(player->CurrentPosition(), 15);
    ClickStrip(4);
    EXPECT_EQ(player->CurrentPosition(), 20);
    ClickStrip(1);
    EXPECT_EQ(player->CurrentPosition(), 10);
    player->CurrentPosition(10.2);
    ClickStrip(2);
    EXPECT_EQ(player->CurrentPosition(), 10);
}

TEST_F(MainWindowButtons, WithoutSelectionTheFirstGoesToTheBegin) {
    player->CurrentPosition(15);
    ClickStrip(1);
    EXPECT_EQ(player->CurrentPosition(), 0);
    ClickStrip(4);
    EXPECT_EQ(player->CurrentPosition(), 600);
}

TEST_F(MainWindowButtons, AHeldButtonRepeats) {
    player->CurrentPosition(15);
    Move(Over(3));
    QTest::mousePress(&Strip(), Qt::LeftButton, {}, Over(3));
    EXPECT_EQ(Strip().Picture(), 9);
    EXPECT_TRUE(Repeat().isActive());
    EXPECT_EQ(Repeat().interval(), 750);
    EXPECT_EQ(player->CurrentPosition(), 15);
    QMetaObject::invokeMethod(&Repeat(), "timeout");
    EXPECT_EQ(player->CurrentPosition(), 15.5);
    EXPECT_TRUE(Repeat().isActive());
    EXPECT_EQ(Repeat().interval(), 250);
    QTest::mouseRelease(&Strip(), Qt::LeftButton, {}, Over(3));
    EXPECT_FALSE(Repeat().isActive());
    EXPECT_EQ(player->CurrentPosition(), 16);
}

TEST_F(MainWindowButtons, MovingOffCancels) {
    player->CurrentPosition(15);
    Move(Over(3));
    QTest::mousePress(&Strip(), Qt::LeftButton, {}, Over(3));
    Move({63, 30}, Qt::LeftButton);
    QMetaObject::invokeMethod(&Repeat(), "timeout");
    QTest::mouseRelease(&Strip(), Qt::LeftButton, {}, {63, 30});
    EXPECT_EQ(player->CurrentPosition(), 15);
}

TEST_F(MainWindowButtons, PlayingEndsAHold) {
    Move(Over(3));
    QTest::mousePress(&Strip(), Qt::LeftButton, {}, Over(3));
    player->Play();
    EXPECT_FALSE(Repeat().isActive());
}

TEST_F(MainWindowButtons, TheSelectionIsSetFromThePosition) {
    player->CurrentPosition(20);
    Click("cmdSelStart");
    EXPECT_EQ(player->SelectionStart(), 20);
    EXPECT_EQ(Line("txtSelStart").text(), "00:00:20,000");
    EXPECT_EQ(Line("txtSelEnd").text(), "00:10:00,000");
    player->CurrentPosition(10);
    Click("cmdSelEnd");
    EXPECT_EQ(player->SelectionEnd(), 10);
    EXPECT_EQ(Line("txtSelEnd").text(), "00:00:10,000");
}

class MainWindowMarks : public MainWindowButtons {
  protected:
    /// The list editor is open before the media, so that the mark buttons are enabled.
    MainWindowMarks() {
        Click("cmdEdit");
        Line("txtAVI").setText(In("other.avi"));
    }
    frmList& List() { return The<frmList>("frmList"); }
};

TEST_F(MainWindowMarks, AreEnabledWhenTheMediaIsOpenedWithTheListEditorOpen) {
    for (const char* name : {"cmdBlue", "cmdGreen", "cmdAdjust"})
        EXPECT_TRUE(The(name).isEnabled()) << name;
    EXPECT_FALSE(The("cmdEdit").isEnabled());
}

TEST_F(MainWindowButtons, TheyStayDisabledWhenTheListEditorIsOpenedLater) {
    Click("cmdEdit");
    for (const char* name : {"cmdBlue", "cmdGreen", "cmdAdjust"})
        EXPECT_FALSE(The(name).isEnabled()) << name;
}

TEST_F(MainWindowMarks, ClosingTheListEditorEnablesTheEditingButtons) {
    List().close();
    for (const char* name : {"cmdEdit", "cmdBlue", "cmdGreen", "cmdAdjust"})
        EXPECT_TRUE(The(name).isEnabled()) << name;
}

TEST_F(MainWindowMarks, TwoMarksStretchTheSelectedTitles) {
    List().DoCommand("SelectAll");
    player->CurrentPosition(2);
    Click("cmdBlue");
    player->CurrentPosition(12);
    Click("cmdGreen");
    EXPECT_EQ(window->document().BlueMark(), 2);
    EXPECT_EQ(window->document().GreenMark(), 12);
    Click("cmdAdjust");
    EXPECT_DOUBLE_EQ(Subt().StartTime(1), 2);
    EXPECT_DOUBLE_EQ(Subt().StartTime(2), 8);
    EXPECT_DOUBLE_EQ(Subt().StartTime(3), 12);
    EXPECT_TRUE(Changed());
    EXPECT_EQ(List().RowStart(3), "00:00:12,000");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(window->findChild<QWidget*>("frmStretch"), nullptr);
}

TEST_F(MainWindowMarks, AdjustSaysWhichTitlesItStretched) {
    const std::vector<std::int32_t> rows{1, 2};
    List().SelectTitles(rows);
    player->CurrentPosition(2);
    Click("cmdBlue");
    player->CurrentPosition(12);
    Click("cmdGreen");
    Click("cmdAdjust");
    EXPECT_EQ(The<QLabel>("mpNote").text(), "Stretched 2 of 3 titles, 1 to 2");
}

TEST_F(MainWindowMarks, WithNothingSelectedAdjustSaysSo) {
    List().LV->clearSelection();
    player->CurrentPosition(2);
    Click("cmdBlue");
    player->CurrentPosition(12);
    Click("cmdGreen");
    const Modals modals({AnswerMessage("No title is selected in the list.")});
    Click("cmdAdjust");
    EXPECT_EQ(Subt().StartTime(1), 1);
}

TEST_F(MainWindowMarks, TheTimingEntriesMarkAndStretchFromBothWindows) {
    List().DoCommand("SelectAll");
    ASSERT_TRUE(QTest::qWaitFor([] { return QApplication::activeWindow() != nullptr; }, 30'000));
    player->CurrentPosition(2);
    QTest::keyClick(List().LV, Qt::Key_B, Qt::ControlModifier);
    player->CurrentPosition(12);
    QTest::keyClick(window.get(), Qt::Key_G, Qt::ControlModifier);
    EXPECT_EQ(window->document().BlueMark(), 2);
    EXPECT_EQ(window->document().GreenMark(), 12);
    QTest::keyClick(window.get(), Qt::Key_J, Qt::ControlModifier);
    EXPECT_DOUBLE_EQ(Subt().StartTime(1), 2);
    EXPECT_DOUBLE_EQ(Subt().StartTime(2), 8);
    EXPECT_DOUBLE_EQ(Subt().StartTime(3), 12);
    EXPECT_TRUE(Changed());
}

TEST_F(MainWindowMarks, WithoutAFilmAMarkSaysWhyItCannotBeSet) {
    const double before = window->document().BlueMark();
    player->FileName("nothing");
    const Modals modals({AnswerMessage("No film is open.")});
    Child<QAction>(List(), "mnuTimeFirstHere").trigger();
    EXPECT_EQ(window->document().BlueMark(), before);
}

TEST_F(MainWindowMarks, EqualMarksAreAnIllegalOrder) {
    player->CurrentPosition(2);
    Click("cmdBlue");
    Click("cmdGreen");
    const Modals modals({AnswerMessage("Title times have been set to an illegal order.")});
    Click("cmdAdjust");
}

TEST_F(MainWindowMarks, WithTheListEditorClosedAdjustDoesNothing) {
    player->CurrentPosition(2);
    Click("cmdBlue");
    player->CurrentPosition(12);
    Click("cmdGreen");
    List().close();
    const Modals none;
    Click("cmdAdjust");
    EXPECT_EQ(Subt().StartTime(1), 1);
}

TEST_F(MainWindowMarks, TheListsEventsReachTheListEditor) {
    const QAction* undo = nullptr;
    for (const QAction* action : List().findChildren<QAction*>("Undo"))
        undo = action;
    ASSERT_NE(undo, nullptr);
    EXPECT_FALSE(undo->isEnabled());
    Subt().Delete(2);
    EXPECT_TRUE(undo->isEnabled());
    Subt().Undo();
    EXPECT_FALSE(undo->isEnabled());
    EXPECT_EQ(List().RowCount(), 3);
}

TEST_F(MainWindowButtons, WithTheListEditorClosedTheEventsChangeNothing) {
    Subt().Delete(2);
    Subt().Undo();
    EXPECT_EQ(Subt().Count(), 3);
    EXPECT_TRUE(The("cmdEdit").isEnabled());
}

TEST_F(MainWindowMarks, TheListEditorOpensOnce) {
    The("cmdEdit").setEnabled(true);
    Click("cmdEdit");
    EXPECT_EQ(window->findChildren<frmList*>().size(), 1);
}

} // namespace

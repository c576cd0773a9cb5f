#include "listeditor/frmList.h"
#include "listeditor/titleview.h"
#include "model/step.h"
#include "model/versions.h"
#include "tests/windows/mainwindowtest.h"

namespace {

class MainWindowBack : public MainWindowTest {
  protected:
    MainWindowBack() {
        Open();
        window->setFocus();
    }

    void Undo() { Type(*window, QKeySequence("Ctrl+Z")); }
    void GoBack() { Type(*window, QKeySequence("Ctrl+Shift+Z")); }
    frmList& OpenList() {
        Click("cmdEdit");
        return Child<frmList>(*window, "frmList");
    }
    void Place(double from, double to) {
        player->Advance(from - player->CurrentPosition());
        QTest::keyPress(window.get(), Qt::Key_Space);
        player->Advance(to - from);
        QTest::keyRelease(window.get(), Qt::Key_Space);
    }
};

TEST_F(MainWindowBack, CtrlZUndoesWithoutTheListEditor) {
    Subt().SetTimes(1, 2, 3);
    Subt().Delete(3);
    Undo();
    EXPECT_EQ(Subt().Count(), 3);
    EXPECT_EQ(Subt().StartTime(1), 2);
    Undo();
    EXPECT_EQ(Subt().StartTime(1), 1);
    Undo();
    EXPECT_EQ(Subt().StartTime(1), 1);
}

TEST_F(MainWindowBack, CtrlZUndoesAsTheOpenListEditorDoes) {
    frmList& list = OpenList();
    Subt().Text(2, "changed");
    EXPECT_EQ(list.RowText(2), "changed");
    Undo();
    EXPECT_EQ(list.RowText(2), "second");
    EXPECT_EQ(list.SelectedItem(), 2);
    Subt().Delete(1);
    EXPECT_EQ(list.RowCount(), 2);
    Undo();
    EXPECT_EQ(list.RowCount(), 3);
    EXPECT_EQ(list.RowText(1), "first");
    list.LV->clearSelection();
    Undo();
    EXPECT_EQ(list.SelectedItem(), 0) << "there is nothing left to undo";
}

TEST_F(MainWindowBack, CtrlShiftZTakesAWholeRunOfPlacementsBack) {
    Click("optPosition");
    window->setFocus();
    player->Play();
    Place(1.5, 2);
    Place(4.5, 5);
    Place(6.5, 7);
    EXPECT_EQ(Subt().StartTime(3), 6.5);
    EXPECT_EQ(window->document().Earlier().Count(), 1U);
    GoBack();
    EXPECT_EQ(Subt().StartTime(1), 1);
    EXPECT_EQ(Subt().StartTime(2), 4);
    EXPECT_EQ(Subt().StartTime(3), 6);
    EXPECT_EQ(Subt().UndoCount(), 0);
    EXPECT_TRUE(Changed());
}

TEST_F(MainWindowBack, GoingBackShowsTheTitlesAndTheNameOfBefore) {
    WriteFile("other.srt", "1\r\n00:00:01,000 --> 00:00:09,000\r\nother\r\n\r\n");
    Click("optPosition");
    player->Play();
    player->Advance(0.5);
    Line("txtSRT").setText(In("other.srt"));
    ASSERT_EQ(Subt().Count(), 1);
    Changed() = false;
    window->setFocus();
    GoBack();
    EXPECT_EQ(Subt().Count(), 3);
    EXPECT_EQ(Line("txtSRT").text(), In("film.srt"));
    EXPECT_EQ(Box("txtSubtitle"), "first");
    EXPECT_EQ(Box("txtNextSubtitle"), "second");
    EXPECT_TRUE(Changed());
    GoBack();
    EXPECT_EQ(Subt().Text(1), "other");
    EXPECT_EQ(Line("txtSRT").text(), In("other.srt"));
}

TEST_F(MainWindowBack, WithoutAVersionNothingHappens) {
    GoBack();
    EXPECT_EQ(Subt().Count(), 3);
    EXPECT_FALSE(Changed());
}

TEST_F(MainWindowBack, ABoxUndoesItsOwnText) {
    Subt().Text(1, "changed");
    Line("txtTime").setEnabled(true);
    Line("txtTime").setFocus();
    Undo();
    EXPECT_EQ(Subt().Text(1), "changed");
}

} // namespace

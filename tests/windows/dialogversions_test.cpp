#include "dialogs/frmVersions.h"
#include "editing/shift.h"
#include "editing/stretch.h"
#include "model/step.h"
#include "model/versions.h"
#include "tests/windows/dialogtest.h"

#include <QAction>
#include <QPushButton>
#include <QTreeWidget>

namespace {

class DialogVersions : public DialogTest<frmVersions> {
  protected:
    /// As it is chosen in the menu.
    void OpenWith(std::function<void(frmVersions&)> act) {
        const Modals modals({AnswerWindow("frmVersions", [act = std::move(act)](QWidget& window) {
            act(dynamic_cast<frmVersions&>(window));
        })});
        Child<QAction>(List(), "mnuEditVersions").trigger();
    }
    void Shift(double seconds) {
        const Step step(Subt(), "Shift", Step::Undo::Emptied);
        ShiftTitles(Subt(), AllTitles(Subt()), seconds);
    }
    void Delete(const std::vector<std::int32_t>& rows) {
        Select(rows);
        List().DoCommand("Delete");
    }
    QString BackCaption() { return Child<QAction>(List(), "mnuEditBack").text(); }
    static QStringList Line(const frmVersions& dialog, int line) {
        const QTreeWidgetItem* item = dialog.lstVersions->topLevelItem(line);
        return {item->text(1), item->text(2)};
    }
    static void Choose(frmVersions& dialog, int line) {
        dialog.lstVersions->setCurrentItem(dialog.lstVersions->topLevelItem(line));
    }
};

TEST_F(DialogVersions, TheEntriesNameTheLatestStep) {
    Open();
    QAction& back = Child<QAction>(List(), "mnuEditBack");
    QAction& versions = Child<QAction>(List(), "mnuEditVersions");
    EXPECT_FALSE(back.isEnabled());
    EXPECT_FALSE(versions.isEnabled());
    EXPECT_EQ(BackCaption(), "&Go back");
    Shift(1);
    EXPECT_TRUE(back.isEnabled());
    EXPECT_TRUE(versions.isEnabled());
    EXPECT_EQ(BackCaption(), "&Go back to before “Shift”");
    Delete({2, 3});
    EXPECT_EQ(BackCaption(), "&Go back to before “Delete”");
    Delete({2});
    EXPECT_EQ(BackCaption(), "&Go back to before “Delete”");
    EXPECT_EQ(document().Earlier().Count(), 2U);
}

TEST_F(DialogVersions, TheShortcutGoesBackAndForthAgain) {
    Open();
    Subt().Text(3, "x");
    Shift(1);
    EXPECT_EQ(Cell(1, 1), "00:00:11,000");
    QTest::keyClick(List().LV, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Cell(1, 1), "00:00:10,000");
    EXPECT_EQ(Cell(3, 0), "x");
    EXPECT_EQ(Subt().StartTime(1), 10);
    EXPECT_FALSE(ButtonEnabled("Undo"));
    EXPECT_TRUE(document().SubtitlesChanged);
    EXPECT_EQ(BackCaption(), "&Go back to before “Going back”");
    QTest::keyClick(List().LV, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(Cell(1, 1), "00:00:11,000");
}

TEST_F(DialogVersions, AShortenedListIsWholeAgain) {
    Open();
    Delete({1, 2, 3, 4, 5});
    ASSERT_EQ(List().RowCount(), 1);
    Child<QAction>(List(), "mnuEditBack").trigger();
    EXPECT_EQ(List().RowCount(), 5);
    EXPECT_EQ(Cell(5, 0), "title 5");
    EXPECT_EQ(Colour(5), Second);
    EXPECT_TRUE(ButtonEnabled("Delete"));
}

TEST_F(DialogVersions, ListsWhatWasWhenAndHowManyTitlesDiffer) {
    Open();
    Shift(1);
    Delete({2, 3});
    Subt().Text(1, "x");
    frmVersions& dialog = OpenDialog();
    ASSERT_EQ(dialog.lstVersions->topLevelItemCount(), 2);
    EXPECT_EQ(Line(dialog, 0), (QStringList{"Delete", "3"}));
    EXPECT_EQ(Line(dialog, 1), (QStringList{"Shift", "5"}));
    EXPECT_TRUE(dialog.lstVersions->topLevelItem(0)->text(0).startsWith("today at "));
    EXPECT_EQ(dialog.lstVersions->currentItem(), nullptr);
    EXPECT_FALSE(dialog.cmdOK->isEnabled());
}

TEST_F(DialogVersions, ShowsTheChosenOneAndCancelShowsThePresentAgain) {
    Open();
    Shift(1);
    Delete({2, 3});
    Click(2);
    List().DoCommand("Later");
    const std::uint64_t changes = Subt().Changes();
    OpenWith([&](frmVersions& dialog) {
        Choose(dialog, 0);
        EXPECT_EQ(List().RowCount(), 5);
        EXPECT_EQ(Cell(3, 1), "00:00:31,000");
        Choose(dialog, 1);
        EXPECT_EQ(Cell(3, 1), "00:00:30,000");
        EXPECT_EQ(Colour(2), Plain);
        EXPECT_TRUE(dialog.cmdOK->isEnabled());
        dialog.cmdCancel->click();
    });
    EXPECT_EQ(List().RowCount(), 3);
    EXPECT_EQ(Cell(2, 0), "title 4");
    EXPECT_EQ(Colour(2), Edited);
    EXPECT_EQ(Colour(3), Second);
    EXPECT_EQ(List().SelectedRows(), std::vector<std::int32_t>{2});
    EXPECT_EQ(Subt().Changes(), changes);
    EXPECT_EQ(document().Earlier().Count(), 2U);
}

TEST_F(DialogVersions, TheCloseBoxIsCancel) {
    Open();
    Delete({2, 3});
    OpenWith([&](frmVersions& dialog) {
        Choose(dialog, 0);
        dialog.close();
    });
    EXPECT_EQ(List().RowCount(), 3);
    EXPECT_EQ(Subt().Count(), 3);
}

TEST_F(DialogVersions, OKTakesTheChosenOne) {
    Open();
    Shift(1);
    Delete({2, 3});
    document().SubtitlesChanged = false;
    OpenWith([&](frmVersions& dialog) {
        Choose(dialog, 1);
        dialog.cmdOK->click();
    });
    EXPECT_EQ(Subt().Count(), 5);
    EXPECT_EQ(Subt().StartTime(1), 10);
    EXPECT_EQ(List().RowCount(), 5);
    EXPECT_EQ(Cell(1, 1), "00:00:10,000");
    EXPECT_TRUE(document().SubtitlesChanged);
    EXPECT_EQ(document().Earlier().At(0).step, "Going back");
    EXPECT_EQ(document().Earlier().Count(), 3U);
}

TEST_F(DialogVersions, TheKeyboardIsEnough) {
    Open();
    Shift(1);
    OpenWith([&](frmVersions& dialog) {
        QTest::keyClick(dialog.lstVersions, Qt::Key_Down);
        ASSERT_NE(dialog.lstVersions->currentItem(), nullptr);
        QTest::keyClick(dialog.lstVersions, Qt::Key_Return);
    });
    EXPECT_EQ(Subt().StartTime(1), 10);
}

} // namespace

#include "dialogs/frmShift.h"
#include "dialogs/minutesecondentry.h"
#include "platform/twips.h"
#include "platform/updown.h"
#include "tests/windows/dialogtest.h"

#include <QAction>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>

namespace {

class DialogShift : public DialogTest<frmShift> {
  protected:
    static void ClickHalf(UpDown* spinner, bool upper) {
        QTest::mouseClick(spinner, Qt::LeftButton, {}, {5, upper ? 3 : spinner->height() - 3});
    }
};

TEST_F(DialogShift, ShowsTheFirstStart) {
    Open({{125.5, 127, "a"}});
    frmShift& dialog = OpenDialog();
    EXPECT_EQ(dialog.windowTitle(), "Shift all subtitles");
    EXPECT_EQ(dialog.txtCurrent->text(), "00:02:05,500");
    EXPECT_TRUE(dialog.txtCurrent->isReadOnly());
    EXPECT_EQ(dialog.Amount->txtSec->text(), "0.000");
    EXPECT_TRUE(dialog.optBeginning->isChecked());
    EXPECT_EQ(dialog.pos(), List().pos() + QPoint(ToPixels(1000), ToPixels(1000)));
}

TEST_F(DialogShift, ClickingBeginningCutsTheAmountToTheFirstStart) {
    Open({{125.5, 127, "a"}});
    frmShift& dialog = OpenDialog();
    Type(dialog.Amount->txtMin, "3");
    QTest::mouseClick(dialog.optBeginning, Qt::LeftButton);
    EXPECT_EQ(dialog.Amount->txtMin->text(), "2");
    EXPECT_EQ(dialog.Amount->txtSec->text(), "5.500");
    Type(dialog.Amount->txtMin, "1");
    QTest::mouseClick(dialog.optBeginning, Qt::LeftButton);
    EXPECT_EQ(dialog.Amount->txtMin->text(), "1");
}

TEST_F(DialogShift, MovesTheSelectedTitlesOnly) {
    Open();
    Subt().Text(1, "changed");
    Select({3, 5});
    frmShift& dialog = OpenDialog();
    dialog.optEnd->click();
    Type(dialog.Amount->txtSec, "2");
    dialog.cmdOK->click();
    EXPECT_TRUE(Closed());
    const std::vector<double> starts{10, 20, 32, 40, 52};
    for (std::int32_t i = 1; i <= 5; ++i) {
        EXPECT_EQ(Subt().StartTime(i), starts[static_cast<std::size_t>(i - 1)]);
        EXPECT_EQ(Subt().EndTime(i), Subt().StartTime(i) + 2);
    }
    EXPECT_EQ(Cell(3, 1), "00:00:32,000");
    EXPECT_EQ(Colour(3), Edited);
    EXPECT_EQ(Colour(5), Second);
    EXPECT_EQ(Subt().UndoCount(), 0);
    EXPECT_FALSE(ButtonEnabled("Undo"));
    EXPECT_EQ(List().SelectedRows(), (std::vector<std::int32_t>{3, 5}));
}

TEST_F(DialogShift, NoAmountLeavesEverything) {
    Open();
    Subt().Text(2, "changed");
    Select({3});
    OpenDialog().cmdOK->click();
    EXPECT_TRUE(Closed());
    EXPECT_EQ(Subt().UndoCount(), 1);
    EXPECT_EQ(Subt().StartTime(3), 30);
}

TEST_F(DialogShift, AnEmptyListLeavesEverything) {
    Open({});
    frmShift& dialog = OpenDialog();
    Type(dialog.Amount->txtSec, "5");
    dialog.cmdOK->click();
    EXPECT_TRUE(Closed());
}

TEST_F(DialogShift, AnAmountTypedAfterwardsGoesBelowZero) {
    Open();
    Select({1});
    frmShift& dialog = OpenDialog();
    dialog.optBeginning->click();
    Type(dialog.Amount->txtSec, "15");
    dialog.cmdOK->click();
    EXPECT_EQ(Subt().StartTime(1), -5);
    EXPECT_EQ(Cell(1, 1), "-00:00:05,000");
}

TEST_F(DialogShift, TheButtonCountsAsAChangeAndTheEntryDoesNot) {
    Open();
    const auto cancel = [](QWidget& window) {
        dynamic_cast<frmShift&>(window).reject();
    };
    {
        const Modals modals({AnswerWindow("frmShift", cancel)});
        QTest::keyClick(List().LV, Qt::Key_H, Qt::ControlModifier);
    }
    EXPECT_FALSE(document().SubtitlesChanged);
    {
        const Modals modals({AnswerWindow("frmShift", cancel)});
        List().DoCommand("Shift");
    }
    EXPECT_TRUE(document().SubtitlesChanged);
}

struct TypedRow {
    const char* box;
    const char* typed;
    const char* minutes;
    const char* seconds;
};

class DialogShiftBoxes : public DialogShift, public testing::WithParamInterface<TypedRow> {};

TEST_P(DialogShiftBoxes, KeepTheirRange) {
    frmShift& dialog = OpenDialog();
    Child<QLineEdit>(dialog, GetParam().box).setText(GetParam().typed);
    EXPECT_EQ(dialog.Amount->txtMin->text(), GetParam().minutes);
    EXPECT_EQ(dialog.Amount->txtSec->text(), GetParam().seconds);
    EXPECT_EQ(error, "");
}

INSTANTIATE_TEST_SUITE_P(Texts, DialogShiftBoxes,
                         testing::Values(TypedRow{"txtMin", "4000", "3600", "0.000"},
                                         TypedRow{"txtMin", "-3", "0", "0.000"},
                                         TypedRow{"txtSec", "75", "1", "15.000"},
                                         TypedRow{"txtSec", "150", "2", "30.000"},
                                         TypedRow{"txtSec", "-1", "0", "0.000"},
                                         TypedRow{"txtSec", "1000000", "3600", "40.000"}));

struct SpinRow {
    const char* box;
    const char* before;
    bool up;
    const char* after;
};

class DialogShiftSpinners : public DialogShift, public testing::WithParamInterface<SpinRow> {};

TEST_P(DialogShiftSpinners, StepWithinTheirLimits) {
    frmShift& dialog = OpenDialog();
    auto& box = Child<QLineEdit>(dialog, GetParam().box);
    box.setText(GetParam().before);
    ClickHalf(&box == dialog.Amount->txtMin ? dialog.Amount->UpDown1 : dialog.Amount->UpDown2,
              GetParam().up);
    EXPECT_EQ(box.text(), GetParam().after);
}

INSTANTIATE_TEST_SUITE_P(Steps, DialogShiftSpinners,
                         testing::Values(SpinRow{"txtMin", "3599", true, "3599"},
                                         SpinRow{"txtMin", "0", false, "0"},
                                         SpinRow{"txtMin", "7", true, "8"},
                                         SpinRow{"txtMin", "7", false, "6"},
                                         SpinRow{"txtSec", "59.95", true, "59.95"},
                                         SpinRow{"txtSec", "0.05", false, "0.05"},
                                         SpinRow{"txtSec", "1.000", true, "1.100"},
                                         SpinRow{"txtSec", "1.000", false, "0.900"}));

TEST_F(DialogShift, AHeldArrowRepeatsAndItsClickIsSwallowed) {
    frmShift& dialog = OpenDialog();
    UpDown* spinner = dialog.Amount->UpDown1;
    QTest::mousePress(spinner, Qt::LeftButton, {}, {5, 3});
    EXPECT_EQ(dialog.Amount->Timer1->interval(), 200);
    ASSERT_TRUE(QTest::qWaitFor([&] { return dialog.Amount->txtMin->text() == "2"; }, 3000));
    QTest::mouseRelease(spinner, Qt::LeftButton, {}, {5, 3});
    EXPECT_FALSE(dialog.Amount->Timer1->isActive());
    EXPECT_EQ(dialog.Amount->txtMin->text(), "2");
    ClickHalf(spinner, false);
    EXPECT_EQ(dialog.Amount->txtMin->text(), "1");
}

TEST_F(DialogShift, SecondsThatAreNoNumberEndTheProgram) {
    frmShift& dialog = OpenDialog();
    dialog.Amount->txtSec->selectAll();
    QTest::keyClick(dialog.Amount->txtSec, Qt::Key_Delete);
    EXPECT_EQ(error, TypeMismatch);
    error.clear();
    ClickHalf(dialog.Amount->UpDown2, true);
    EXPECT_EQ(error, TypeMismatch);
    error.clear();
    dialog.cmdOK->click();
    EXPECT_EQ(error, TypeMismatch);
}

TEST_F(DialogShift, MinutesBeyondSixteenBitsEndTheProgram) {
    OpenDialog().Amount->txtMin->setText("40000");
    EXPECT_EQ(error, Overflow);
}

TEST_F(DialogShift, MinutesThatAreNoNumberEndTheProgramAtOK) {
    Open();
    Select({2});
    frmShift& dialog = OpenDialog();
    dialog.Amount->txtMin->setText("2x");
    EXPECT_EQ(error, "");
    dialog.cmdOK->click();
    EXPECT_EQ(error, TypeMismatch);
    EXPECT_EQ(Subt().StartTime(2), 20);
}

} // namespace

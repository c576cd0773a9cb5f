#include "dialogs/frmShift.h"
#include "dialogs/minutesecondentry.h"
#include "platform/twips.h"
#include "platform/updown.h"
#include "tests/windows/dialogtest.h"

#include <QAction>
#include <QLabel>
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

TEST_F(DialogShift, TheMiddleRowStepsTheWayThatIsDrawn) {
    frmShift& dialog = OpenDialog();
    UpDown* spinner = dialog.Amount->UpDown1;
    for (const int height : {24, 25}) {
        spinner->setFixedHeight(height);
        dialog.Amount->txtMin->setText("9");
        QTest::mousePress(spinner, Qt::LeftButton, {}, {5, height / 2});
        QMetaObject::invokeMethod(dialog.Amount->Timer1, "timeout");
        QTest::mouseRelease(spinner, Qt::LeftButton, {}, {5, height / 2});
        EXPECT_EQ(dialog.Amount->txtMin->text(), "8") << height;
        QTest::mouseClick(spinner, Qt::LeftButton, {}, {5, height / 2});
        EXPECT_EQ(dialog.Amount->txtMin->text(), "7") << height;
    }
}

TEST_F(DialogShift, ATextThatIsNoNumberIsMarkedAtOnce) {
    frmShift& dialog = OpenDialog();
    for (QLineEdit* box : {dialog.Amount->txtMin, dialog.Amount->txtSec}) {
        const QColor ground = box->palette().color(QPalette::Base);
        Type(box, "2");
        Type(box, "2x");
        EXPECT_NE(box->palette().color(QPalette::Base), ground);
        EXPECT_TRUE(box->toolTip().startsWith("A number of ")) << box->toolTip().toStdString();
        EXPECT_EQ(box->text(), "2x");
        Type(box, "3");
        EXPECT_EQ(box->palette().color(QPalette::Base), ground);
        EXPECT_EQ(box->toolTip(), "");
    }
    EXPECT_EQ(error, "");
}

TEST_F(DialogShift, SpinnersCountOnFromTheLastGoodValue) {
    frmShift& dialog = OpenDialog();
    Type(dialog.Amount->txtSec, "2");
    Type(dialog.Amount->txtSec, "");
    ClickHalf(dialog.Amount->UpDown2, true);
    EXPECT_EQ(dialog.Amount->txtSec->text(), "2.100");
    dialog.Amount->txtMin->setText("7");
    dialog.Amount->txtMin->setText("soon");
    ClickHalf(dialog.Amount->UpDown1, false);
    EXPECT_EQ(dialog.Amount->txtMin->text(), "6");
    EXPECT_EQ(error, "");
}

TEST_F(DialogShift, ACommaIsTakenForAPoint) {
    Open();
    Select({2});
    frmShift& dialog = OpenDialog();
    dialog.optEnd->click();
    Type(dialog.Amount->txtSec, "2,4");
    dialog.cmdOK->click();
    EXPECT_TRUE(Closed());
    EXPECT_DOUBLE_EQ(Subt().StartTime(2), 22.4);
}

struct ComplaintRow {
    const char* box;
    const char* typed;
    const char* complaint;
};

class DialogShiftRefuses : public DialogShift, public testing::WithParamInterface<ComplaintRow> {};

TEST_P(DialogShiftRefuses, AndStaysOpen) {
    Open();
    Select({2});
    frmShift& dialog = OpenDialog();
    dialog.Amount->txtMin->setText("1");
    auto& box = Child<QLineEdit>(dialog, GetParam().box);
    box.setText(GetParam().typed);
    {
        const Modals modals({AnswerMessage(GetParam().complaint)});
        dialog.cmdOK->click();
    }
    ASSERT_FALSE(Closed());
    EXPECT_EQ(box.text(), GetParam().typed);
    EXPECT_EQ(dialog.focusWidget(), &box);
    EXPECT_EQ(Subt().StartTime(2), 20);
    EXPECT_EQ(error, "");
}

INSTANTIATE_TEST_SUITE_P(
    Texts, DialogShiftRefuses,
    testing::Values(ComplaintRow{"txtSec", "2,4x", "Not a number of seconds: “2,4x”"},
                    ComplaintRow{"txtSec", "", "Not a number of seconds: “”"},
                    ComplaintRow{"txtSec", "25.5.", "Not a number of seconds: “25.5.”"},
                    ComplaintRow{"txtSec", "1e-400", "Not a number of seconds: “1e-400”"},
                    ComplaintRow{"txtSec", "5..5", "Not a number of seconds: “5..5”"},
                    ComplaintRow{"txtMin", "2x", "Not a number of minutes: “2x”"}));

TEST_F(DialogShift, MinutesOfAnySizeAreClamped) {
    frmShift& dialog = OpenDialog();
    for (const char* text : {"40000", "99999999999999999999"}) {
        dialog.Amount->txtMin->setText(text);
        EXPECT_EQ(dialog.Amount->txtMin->text(), "3600");
    }
    EXPECT_EQ(error, "");
}

TEST_F(DialogShift, TitlesThatCouldNotBeShownAreNotMoved) {
    Open({{117960000, 117960002, "far out"}});
    Select({1});
    frmShift& dialog = OpenDialog();
    dialog.optEnd->click();
    Type(dialog.Amount->txtMin, "90");
    const Modals modals({AnswerMessage("That would move titles beyond what can be shown.")});
    dialog.cmdOK->click();
    EXPECT_EQ(Subt().StartTime(1), 117960000);
}

TEST_F(DialogShift, SaysWhichTitlesItMoves) {
    Open();
    Select({2, 3, 4});
    frmShift& dialog = OpenDialog();
    EXPECT_EQ(Child<QLabel>(dialog, "lblTitles").text(), "Moves 3 of 5 titles, 2 to 4");
    EXPECT_TRUE(dialog.cmdOK->isEnabled());
    Select({1});
    dialog.optEnd->click();
    Type(dialog.Amount->txtSec, "1");
    dialog.cmdOK->click();
    EXPECT_EQ(Subt().StartTime(1), 10) << "selected after the dialog was opened";
    EXPECT_EQ(Subt().StartTime(3), 31);
}

TEST_F(DialogShift, SelectAllTakesAllTitles) {
    Open();
    Select({2});
    frmShift& dialog = OpenDialog();
    Child<QPushButton>(dialog, "cmdSelectAll").click();
    EXPECT_EQ(Child<QLabel>(dialog, "lblTitles").text(), "Moves 5 of 5 titles, 1 to 5");
    EXPECT_FALSE(Child<QPushButton>(dialog, "cmdSelectAll").isEnabled());
    dialog.optEnd->click();
    Type(dialog.Amount->txtSec, "1");
    dialog.cmdOK->click();
    EXPECT_EQ(Subt().StartTime(5), 51);
    EXPECT_EQ(List().SelectedRows().size(), 5U);
}

TEST_F(DialogShift, WithNothingSelectedOkIsOffAndSaysWhy) {
    frmShift& dialog = OpenDialog();
    EXPECT_FALSE(dialog.cmdOK->isEnabled());
    EXPECT_EQ(Child<QLabel>(dialog, "lblTitles").text(), "No title is selected in the list.");
    EXPECT_EQ(dialog.cmdOK->toolTip(), "No title is selected in the list.");
    Child<QPushButton>(dialog, "cmdSelectAll").click();
    EXPECT_TRUE(dialog.cmdOK->isEnabled());
    EXPECT_EQ(dialog.cmdOK->toolTip(), "");
}

TEST_F(DialogShift, TabFollowsTheEyeFromTheFirstBox) {
    Open();
    Select({2});
    ExpectTabFollowsTheEye(OpenDialog(), "txtMin");
}

} // namespace

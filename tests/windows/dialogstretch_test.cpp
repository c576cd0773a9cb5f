#include "dialogs/frmStretch.h"
#include "dialogs/minutesecondentry.h"
#include "platform/twips.h"
#include "platform/updown.h"
#include "tests/windows/dialogtest.h"

#include <QAction>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>

namespace {

class DialogStretch : public DialogTest<frmStretch> {
  protected:
    void OpenThree() {
        Open({{10, 12, "a"}, {60, 62, "b"}, {110, 112, "c"}});
        List().LV->selectAll();
    }
};

TEST_F(DialogStretch, OpensOnTheMarkedTitles) {
    Open();
    List().FirstMark = 2;
    List().SecondMark = 4;
    frmStretch& dialog = OpenDialog();
    EXPECT_EQ(dialog.windowTitle(), "Stretch/shrink movie duration");
    EXPECT_EQ(dialog.txtFirstSubtitle->text(), "00:00:20,000");
    EXPECT_EQ(dialog.txtLastSubtitle->text(), "00:00:40,000");
    EXPECT_EQ(dialog.txtCurrent->text(), "00:00:50,000");
    EXPECT_EQ(dialog.Amount->txtSec->text(), "0.000");
    EXPECT_TRUE(dialog.optStretch->isChecked());
    EXPECT_EQ(dialog.cboCurrentRate->currentText(), "23.976");
    EXPECT_EQ(dialog.cboDesiredRate->currentText(), "25");
    EXPECT_EQ(dialog.lblTitleInfo->text(), "");
    EXPECT_EQ(dialog.lblRateInfo->text(), "");
    EXPECT_EQ(dialog.height(), ToPixels(3000));
}

TEST_F(DialogStretch, EachTabShowsItsPanel) {
    frmStretch& dialog = OpenDialog();
    const std::vector<std::pair<QString, QString>> tabs{
        {"By title", "Reposition all titles based on the exact start time of two selected titles"},
        {"Specify Amount",
         "Adjust all titles based on a change in position of the last subtitle of the file"},
        {"By Frame Rate", "Adjust for a different frame rate"}};
    ASSERT_EQ(dialog.TS->count(), 3);
    for (int tab = 0; tab < 3; ++tab) {
        EXPECT_EQ(dialog.TS->tabText(tab), tabs[static_cast<std::size_t>(tab)].first);
        EXPECT_EQ(dialog.TS->tabToolTip(tab), tabs[static_cast<std::size_t>(tab)].second);
        dialog.TS->setCurrentIndex(tab);
        for (int panel = 0; panel < 3; ++panel)
            EXPECT_EQ(dialog.PB[static_cast<std::size_t>(panel)]->isVisible(), panel == tab);
    }
    QStringList rates;
    for (int i = 0; i < dialog.cboCurrentRate->count(); ++i)
        rates << dialog.cboCurrentRate->itemText(i);
    EXPECT_EQ(rates, (QStringList{"23.976", "24", "25", "29.97", "30"}));
}

TEST_F(DialogStretch, ByTitle) {
    OpenThree();
    Subt().Text(1, "changed");
    frmStretch& dialog = OpenDialog();
    Type(dialog.txtFirstSubtitle, "00:00:12,000");
    Type(dialog.txtLastSubtitle, "00:02:02,000");
    dialog.cmdOK->click();
    EXPECT_TRUE(Closed());
    EXPECT_DOUBLE_EQ(Subt().StartTime(1), 12);
    EXPECT_DOUBLE_EQ(Subt().StartTime(2), 67);
    EXPECT_NEAR(Subt().EndTime(2), 69.2, 1e-9);
    EXPECT_DOUBLE_EQ(Subt().StartTime(3), 122);
    EXPECT_EQ(Cell(2, 1), "00:01:07,000");
    EXPECT_EQ(Cell(2, 2), "2.2");
    EXPECT_EQ(Colour(2), Edited);
    EXPECT_EQ(Colour(1), First);
    EXPECT_TRUE(document().SubtitlesChanged);
    EXPECT_EQ(Subt().UndoCount(), 0);
}

TEST_F(DialogStretch, UnselectedRowsStayInEveryMode) {
    OpenThree();
    Select({2});
    frmStretch& titles = OpenDialog();
    Type(titles.txtFirstSubtitle, "00:00:12,000");
    titles.cmdOK->click();
    ASSERT_TRUE(Closed());
    frmStretch& amount = OpenDialog();
    amount.TS->setCurrentIndex(1);
    Type(amount.Amount->txtSec, "10");
    amount.cmdOK->click();
    ASSERT_TRUE(Closed());
    frmStretch& rates = OpenDialog();
    rates.TS->setCurrentIndex(2);
    rates.cmdOK->click();
    EXPECT_EQ(Subt().StartTime(1), 10);
    EXPECT_EQ(Subt().EndTime(3), 112);
    EXPECT_NE(Subt().StartTime(2), 60);
}

TEST_F(DialogStretch, WithNothingSelectedOkIsOffAndSaysWhy) {
    OpenThree();
    List().LV->clearSelection();
    Subt().Text(1, "changed");
    frmStretch& dialog = OpenDialog();
    EXPECT_FALSE(dialog.cmdOK->isEnabled());
    EXPECT_EQ(dialog.cmdOK->toolTip(), "No title is selected in the list.");
    {
        const Modals modals({AnswerMessage("No title is selected in the list.")});
        dialog.cmdOK_Click();
    }
    EXPECT_FALSE(document().SubtitlesChanged);
    EXPECT_EQ(Subt().UndoCount(), 1);
    Child<QPushButton>(dialog, "cmdSelectAll").click();
    EXPECT_EQ(Child<QLabel>(dialog, "lblTitles").text(), "Stretches 3 of 3 titles, 1 to 3");
    EXPECT_TRUE(dialog.cmdOK->isEnabled());
}

struct AmountRow {
    bool stretch;
    double lastStart;
    double expectedFirst;
    double expectedLast;
};

class DialogStretchAmount : public DialogStretch, public testing::WithParamInterface<AmountRow> {};

TEST_P(DialogStretchAmount, MovesTheLastStart) {
    Open({{50, 52, "a"}, {GetParam().lastStart, 130, "b"}});
    List().LV->selectAll();
    frmStretch& dialog = OpenDialog();
    dialog.TS->setCurrentIndex(1);
    if (!GetParam().stretch)
        dialog.optShrink->click();
    Type(dialog.Amount->txtSec, "10");
    dialog.cmdOK->click();
    EXPECT_DOUBLE_EQ(Subt().StartTime(1), GetParam().expectedFirst);
    EXPECT_DOUBLE_EQ(Subt().StartTime(2), GetParam().expectedLast);
}

INSTANTIATE_TEST_SUITE_P(Modes, DialogStretchAmount,
                         testing::Values(AmountRow{true, 100, 55, 110},
                                         AmountRow{false, 100, 45, 90}, AmountRow{true, 0, 0, 0},
                                         AmountRow{false, -3, 0, 0}));

TEST_F(DialogStretch, EqualRatesStillCount) {
    OpenThree();
    Subt().Text(1, "changed");
    frmStretch& dialog = OpenDialog();
    dialog.TS->setCurrentIndex(2);
    dialog.cboCurrentRate->setCurrentText("25");
    dialog.cmdOK->click();
    EXPECT_EQ(Subt().StartTime(2), 60);
    EXPECT_EQ(Colour(2), Edited);
    EXPECT_EQ(Subt().UndoCount(), 0);
    EXPECT_TRUE(document().SubtitlesChanged);
}

TEST_F(DialogStretch, ATypedRateCounts) {
    OpenThree();
    frmStretch& dialog = OpenDialog();
    dialog.TS->setCurrentIndex(2);
    dialog.cboCurrentRate->setCurrentText("25");
    Type(dialog.cboDesiredRate->lineEdit(), "12.5");
    dialog.cmdOK->click();
    EXPECT_EQ(Subt().StartTime(2), 120);
}

TEST_F(DialogStretch, AnEmptyListLeavesEverything) {
    Open({});
    OpenDialog().cmdOK->click();
    EXPECT_TRUE(Closed());
    EXPECT_EQ(error, "");
}

TEST_F(DialogStretch, TitlesThatStartTogetherAreRefused) {
    Open({{10, 12, "a"}, {10, 13, "b"}});
    List().LV->selectAll();
    frmStretch& dialog = OpenDialog();
    const Modals modals(
        {AnswerMessage("The two marked titles start at the same time. Mark two that do not.")});
    dialog.cmdOK->click();
    EXPECT_FALSE(Closed());
    EXPECT_EQ(error, "");
}

TEST_F(DialogStretch, RatesThatCannotBeAreMarkedAndRefused) {
    OpenThree();
    frmStretch& dialog = OpenDialog();
    dialog.TS->setCurrentIndex(2);
    const QColor ground = dialog.cboDesiredRate->palette().color(QPalette::Base);
    for (const char* text : {"0", "film", "", "-25", "1e-400", "1001"}) {
        dialog.cboDesiredRate->setEditText(text);
        EXPECT_NE(dialog.cboDesiredRate->palette().color(QPalette::Base), ground) << text;
        EXPECT_EQ(dialog.cboDesiredRate->toolTip(), "A number of frames a second, such as 23.976");
        const Modals modals({AnswerMessage(QString("Not a frame rate: “%1”").arg(text))});
        dialog.cmdOK->click();
        ASSERT_FALSE(Closed());
    }
    EXPECT_EQ(Subt().StartTime(2), 60);
    EXPECT_EQ(error, "");
    dialog.cboCurrentRate->setEditText("50");
    dialog.cboDesiredRate->setEditText("12,5");
    EXPECT_EQ(dialog.cboDesiredRate->palette().color(QPalette::Base), ground);
    dialog.cmdOK->click();
    EXPECT_EQ(Subt().StartTime(2), 240);
}

TEST_F(DialogStretch, AnAmountThatIsNoNumberIsRefused) {
    OpenThree();
    frmStretch& dialog = OpenDialog();
    dialog.TS->setCurrentIndex(1);
    dialog.Amount->txtMin->setText("");
    const Modals modals({AnswerMessage("Not a number of minutes: “”")});
    dialog.cmdOK->click();
    EXPECT_FALSE(Closed());
    EXPECT_EQ(error, "");
}

struct DoubtRow {
    const char* first;
    const char* last;
    const char* doubt;
};

class DialogStretchAsks : public DialogStretch, public testing::WithParamInterface<DoubtRow> {};

TEST_P(DialogStretchAsks, BeforeItDoesAnythingOdd) {
    OpenThree();
    frmStretch& dialog = OpenDialog();
    Type(dialog.txtFirstSubtitle, GetParam().first);
    Type(dialog.txtLastSubtitle, GetParam().last);
    const QString question = QString(GetParam().doubt) + "\n\nGo on all the same?";
    {
        const Modals modals({AnswerMessage(question, QMessageBox::No)});
        dialog.cmdOK->click();
    }
    ASSERT_FALSE(Closed());
    EXPECT_EQ(Subt().StartTime(2), 60);
    EXPECT_FALSE(document().SubtitlesChanged);
    {
        const Modals modals({[](QWidget& modal) {
            QTest::keyClick(&modal, Qt::Key_Escape);
        }});
        dialog.cmdOK->click();
    }
    ASSERT_FALSE(Closed());
    EXPECT_EQ(Subt().StartTime(2), 60);
    const Modals modals({AnswerMessage(question, QMessageBox::Yes)});
    dialog.cmdOK->click();
    EXPECT_TRUE(Closed());
    EXPECT_NE(Subt().StartTime(2), 60);
    EXPECT_EQ(error, "");
}

INSTANTIATE_TEST_SUITE_P(
    Times, DialogStretchAsks,
    testing::Values(
        DoubtRow{"soon", "00:02:02,000", "“soon” is not a time and counts as 00:00:00,000."},
        DoubtRow{"00:00:12,000", "00:00:12,000",
                 "All these titles would start and end at the same moment."},
        DoubtRow{"00:02:02,000", "00:00:12,000", "The titles would come in reverse order."},
        DoubtRow{"-00:00:05,000", "00:02:02,000", "1 title would start before the film does."},
        DoubtRow{"00:00:50,000", "later",
                 "“later” is not a time and counts as 00:00:00,000.\n"
                 "The titles would come in reverse order."}));

TEST_F(DialogStretch, TakesShorterFormsOfTimes) {
    OpenThree();
    frmStretch& dialog = OpenDialog();
    Type(dialog.txtFirstSubtitle, "12");
    Type(dialog.txtLastSubtitle, "2:02,5");
    dialog.cmdOK->click();
    EXPECT_TRUE(Closed());
    EXPECT_DOUBLE_EQ(Subt().StartTime(1), 12);
    EXPECT_DOUBLE_EQ(Subt().StartTime(3), 122.5);
}

TEST_F(DialogStretch, ATextThatIsNoTimeIsMarkedAtOnce) {
    OpenThree();
    frmStretch& dialog = OpenDialog();
    const QColor ground = dialog.txtFirstSubtitle->palette().color(QPalette::Base);
    Type(dialog.txtFirstSubtitle, "0:0x");
    EXPECT_NE(dialog.txtFirstSubtitle->palette().color(QPalette::Base), ground);
    EXPECT_EQ(dialog.txtFirstSubtitle->toolTip(), "A time, such as 00:01:02,300, 1:02.3 or 62.3");
    QTest::mouseClick(dialog.UDFirst, Qt::LeftButton, {}, {5, 3});
    EXPECT_EQ(dialog.txtFirstSubtitle->text(), "00:00:01,000") << "0:0 was the last good one";
    EXPECT_EQ(dialog.txtFirstSubtitle->palette().color(QPalette::Base), ground);
}

TEST_F(DialogStretch, TabFollowsTheEyeFromTheFirstBox) {
    OpenThree();
    List().LV->clearSelection();
    Select({1, 2});
    ExpectTabFollowsTheEye(OpenDialog(), "txtFirstSubtitle");
}

TEST_F(DialogStretch, SecondsAreClampedAndNotCarried) {
    frmStretch& dialog = OpenDialog();
    dialog.Amount->txtSec->setText("75");
    EXPECT_EQ(dialog.Amount->txtSec->text(), "59.999");
    EXPECT_EQ(dialog.Amount->txtMin->text(), "0");
}

struct TimeStep {
    const char* before;
    bool up;
    const char* after;
};

class DialogStretchSpinners : public DialogStretch, public testing::WithParamInterface<TimeStep> {};

TEST_P(DialogStretchSpinners, StepTheTimes) {
    frmStretch& dialog = OpenDialog();
    for (const auto& [box, spinner] : {std::pair{dialog.txtFirstSubtitle, dialog.UDFirst},
                                       std::pair{dialog.txtLastSubtitle, dialog.UDLast}}) {
        box->setText(GetParam().before);
        QTest::mouseClick(spinner, Qt::LeftButton, {},
                          {5, GetParam().up ? 3 : spinner->height() - 3});
        EXPECT_EQ(box->text(), GetParam().after);
    }
}

INSTANTIATE_TEST_SUITE_P(Steps, DialogStretchSpinners,
                         testing::Values(TimeStep{"00:00:01,000", false, "00:00:01,000"},
                                         TimeStep{"00:00:01,001", false, "00:00:00,001"},
                                         TimeStep{"00:00:01,000", true, "00:00:02,000"},
                                         TimeStep{"10:59:59,500", true, "11:00:00,500"}));

TEST_F(DialogStretch, RemembersItsPlace) {
    Open();
    frmStretch& dialog = OpenDialog();
    EXPECT_EQ(dialog.pos(), List().pos() + QPoint(ToPixels(1000), ToPixels(1000)));
    dialog.move(30, 40);
    dialog.cmdCancel->click();
    EXPECT_TRUE(Closed());
    EXPECT_EQ(Settings().Dword("StretchLeft", 0), 450);
    EXPECT_EQ(Settings().Dword("StretchTop", 0), 600);
    EXPECT_EQ(OpenDialog().pos(), QPoint(30, 40));
}

TEST_F(DialogStretch, WorksWithoutBeingShown) {
    OpenThree();
    QPointer<frmStretch> dialog = new frmStretch(List(), &List());
    dialog->txtFirstSubtitle->setText("00:00:12,000");
    dialog->txtLastSubtitle->setText("00:02:02,000");
    dialog->cmdOK_Click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(dialog, nullptr);
    EXPECT_DOUBLE_EQ(Subt().StartTime(2), 67);
    EXPECT_NE(Settings().Dword("StretchLeft", -1), -1);
}

TEST_F(DialogStretch, TheButtonCountsAsAChangeAndTheEntryDoesNot) {
    Open();
    const auto cancel = [](QWidget& window) {
        dynamic_cast<frmStretch&>(window).reject();
    };
    {
        const Modals modals({AnswerWindow("frmStretch", cancel)});
        QTest::keyClick(List().LV, Qt::Key_T, Qt::ControlModifier);
    }
    EXPECT_FALSE(document().SubtitlesChanged);
    {
        const Modals modals({AnswerWindow("frmStretch", cancel)});
        List().DoCommand("Stretch");
    }
    EXPECT_TRUE(document().SubtitlesChanged);
}

} // namespace

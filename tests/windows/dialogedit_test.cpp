#include "dialogs/frmEdit.h"
#include "platform/twips.h"
#include "tests/windows/dialogtest.h"

#include <QApplication>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

namespace {

constexpr const char* NoDuration = "The duration cannot be negative or zero.";
constexpr const char* Beyond = "The title would lie beyond what can be shown.";
constexpr const char* BeforeMedia = "The title cannot start before the start of the media.";
constexpr const char* BeforePrevious =
    "This would start the title before the end of the previous one.";
constexpr const char* IntoNext =
    "This would make the subtitle last until after the start of the next one.";

class DialogEdit : public DialogTest<frmEdit> {
  protected:
    frmEdit& Edit(std::int32_t row) {
        if (host.list == nullptr)
            Open();
        Select({row});
        host.changes = 0;
        return OpenDialog();
    }
    static void PutCaret(frmEdit& dialog, int position) {
        QTextCursor caret = dialog.txtSubt->textCursor();
        caret.setPosition(position);
        dialog.txtSubt->setTextCursor(caret);
    }
};

TEST_F(DialogEdit, ShowsTheRow) {
    Open({{1, 3, "one"}, {5.25, 8.253, "two\r\nlines"}});
    QFont font = List().LV->font();
    font.setPointSize(19);
    font.setStrikeOut(true);
    List().LV->SetListFont(font);
    frmEdit& dialog = Edit(2);
    EXPECT_EQ(dialog.windowTitle(), "Edit subtitle");
    EXPECT_EQ(dialog.txtSubt->toPlainText(), "two\nlines");
    EXPECT_EQ(dialog.txtStart->text(), "00:00:05,250");
    EXPECT_EQ(dialog.txtDuration->text(), "3.003");
    EXPECT_EQ(dialog.txtSubt->font().pointSize(), 19);
    EXPECT_TRUE(dialog.txtSubt->font().strikeOut());
    EXPECT_EQ(dialog.txtSubt->toolTip(), "Edit the subtitle text");
    EXPECT_EQ(dialog.txtStart->toolTip(), "Edit the subtitle start point");
    EXPECT_EQ(dialog.txtDuration->toolTip(), "Edit the subtitle duration");
    EXPECT_EQ(dialog.cmdOK->toolTip(), "Save changes and return to list");
    EXPECT_EQ(dialog.cmdCancel->toolTip(), "Cancel changes and return to list");
    EXPECT_EQ(dialog.pos(), List().pos() + QPoint(ToPixels(1000), ToPixels(1000)));
}

TEST_F(DialogEdit, WithoutATitleThereIsNothingToEdit) {
    Open();
    frmEdit& dialog = OpenDialog();
    EXPECT_EQ(dialog.txtSubt->toPlainText(), "");
    const Modals modals;
    dialog.cmdOK->click();
    EXPECT_TRUE(Closed());
    EXPECT_FALSE(document().SubtitlesChanged);
}

TEST_F(DialogEdit, ATextThatIsTooLongToBeDrawnStaysWhole) {
    const std::string texts[] = {std::string(5'000'000, 'x'), "<i>" + std::string(3000, 'x'),
                                 "e" + [] {
                                     std::string marks;
                                     for (int i = 0; i < 100'000; ++i)
                                         marks += "\xCC\x81";
                                     return marks;
                                 }()};
    Open({{1, 3, texts[0]}, {4, 6, texts[1]}, {7, 9, texts[2]}, {10, 11, "last"}});
    for (std::int32_t row = 1; row <= 3; ++row) {
        frmEdit& dialog = Edit(row);
        EXPECT_LE(dialog.txtSubt->toPlainText().size(), 2003);
        EXPECT_TRUE(dialog.txtSubt->toPlainText().endsWith("..."));
        EXPECT_TRUE(dialog.txtSubt->isReadOnly());
        EXPECT_FALSE(dialog.cmdB->isEnabled());
        EXPECT_FALSE(dialog.cmdI->isEnabled());
        dialog.txtDuration->setText("-50");
        {
            const Modals modals({AnswerMessage(NoDuration)});
            dialog.cmdOK->click();
        }
        dialog.txtDuration->setText("1.5");
        dialog.cmdOK->click();
        EXPECT_TRUE(Closed());
        EXPECT_EQ(Subt().EndTime(row), Subt().StartTime(row) + 1.5);
        EXPECT_TRUE(Subt().Text(row) == texts[row - 1]);
    }
}

struct Refused {
    std::int32_t row;
    const char* start;
    const char* duration;
    const char* message;
};

class DialogEditRefuses : public DialogEdit, public testing::WithParamInterface<Refused> {};

TEST_P(DialogEditRefuses, AndStaysOpen) {
    frmEdit& dialog = Edit(GetParam().row);
    Type(dialog.txtStart, GetParam().start);
    Type(dialog.txtDuration, GetParam().duration);
    dialog.txtSubt->setPlainText("typed");
    {
        const Modals modals({AnswerMessage(GetParam().message)});
        dialog.cmdOK->click();
    }
    ASSERT_FALSE(Closed());
    EXPECT_EQ(dialog.txtSubt->toPlainText(), "typed");
    EXPECT_EQ(Subt().Text(GetParam().row), "title " + std::to_string(GetParam().row));
    EXPECT_EQ(Subt().UndoCount(), 0);
    EXPECT_FALSE(document().SubtitlesChanged);
}

INSTANTIATE_TEST_SUITE_P(Rows, DialogEditRefuses,
                         testing::Values(Refused{1, "-00:00:01,000", "3", BeforeMedia},
                                         Refused{3, "00:00:03,000", "-5", NoDuration},
                                         Refused{3, "00:00:21,999", "1", BeforePrevious},
                                         Refused{3, "00:00:30,000", "12.001", IntoNext},
                                         Refused{1, "", "", "Not a time: “”"},
                                         Refused{3, "soon", "2", "Not a time: “soon”"},
                                         Refused{3, "00:00:30,000", "2,4x",
                                                 "Not a number of seconds: “2,4x”"},
                                         Refused{5, "00:00:50,000", "1e300", Beyond}));

struct Accepted {
    std::int32_t row;
    const char* start;
    const char* duration;
    double newStart;
    double newEnd;
};

class DialogEditAccepts : public DialogEdit, public testing::WithParamInterface<Accepted> {};

TEST_P(DialogEditAccepts, AsOneUndoStep) {
    const Accepted& row = GetParam();
    frmEdit& dialog = Edit(row.row);
    Type(dialog.txtStart, row.start);
    Type(dialog.txtDuration, row.duration);
    dialog.cmdOK->click();
    EXPECT_TRUE(Closed());
    EXPECT_DOUBLE_EQ(Subt().StartTime(row.row), row.newStart);
    EXPECT_DOUBLE_EQ(Subt().EndTime(row.row), row.newEnd);
    EXPECT_EQ(Cell(row.row, 1), row.start);
    EXPECT_EQ(Subt().UndoCount(), 1);
    EXPECT_TRUE(document().SubtitlesChanged);
    EXPECT_EQ(host.changes, 1);
    Subt().Undo();
    EXPECT_EQ(Subt().StartTime(row.row), row.row * 10);
    EXPECT_EQ(Subt().EndTime(row.row), row.row * 10 + 2);
}

INSTANTIATE_TEST_SUITE_P(Rows, DialogEditAccepts,
                         testing::Values(Accepted{1, "00:00:00,000", "3", 0, 3},
                                         Accepted{1, "00:00:10,000", "0", 10, 10},
                                         Accepted{3, "00:00:30,000", "11", 30, 41},
                                         Accepted{3, "00:00:30,000", "12", 30, 42},
                                         Accepted{3, "00:00:22,000", "2", 22, 24},
                                         Accepted{5, "00:00:50,000", "1000.5", 50, 1050.5}));

TEST_F(DialogEdit, TakesTimesAsPeopleTypeThem) {
    frmEdit& dialog = Edit(1);
    Type(dialog.txtStart, "00:00:07,9");
    Type(dialog.txtDuration, "2,5");
    dialog.cmdOK->click();
    EXPECT_TRUE(Closed());
    EXPECT_DOUBLE_EQ(Subt().StartTime(1), 7.9);
    EXPECT_DOUBLE_EQ(Subt().EndTime(1), 10.4);
    EXPECT_EQ(Cell(1, 1), "00:00:07,900");
}

TEST_F(DialogEdit, MarksWhatIsNoTimeAtOnce) {
    frmEdit& dialog = Edit(1);
    const QColor ground = dialog.txtStart->palette().color(QPalette::Base);
    Type(dialog.txtStart, "1:2:3:4");
    Type(dialog.txtDuration, "2s");
    for (const QLineEdit* box : {dialog.txtStart, dialog.txtDuration})
        EXPECT_NE(box->palette().color(QPalette::Base), ground);
    EXPECT_EQ(dialog.txtDuration->toolTip(), "A number of seconds, such as 2.4");
    Type(dialog.txtDuration, "2");
    EXPECT_EQ(dialog.txtDuration->toolTip(), "Edit the subtitle duration");
}

/// Times as a stretch leaves them, each title up to the next one.
class DialogEditOffTheGrid : public DialogEdit {
  protected:
    DialogEditOffTheGrid() {
        std::vector<TestTitle> titles;
        for (int i = 1; i <= 5; ++i)
            titles.push_back({i * 3.0 * Factor, (i + 1) * 3.0 * Factor, std::to_string(i)});
        Open(titles);
    }
    static double At(int i) { return i * 3.0 * Factor; }

    static constexpr double Factor = 25 / 23.976;
};

TEST_F(DialogEditOffTheGrid, OkWithoutAChangeWritesNothing) {
    for (std::int32_t row = 1; row <= 5; ++row) {
        Edit(row).cmdOK->click();
        ASSERT_TRUE(Closed()) << row;
    }
    EXPECT_FALSE(document().SubtitlesChanged);
    EXPECT_EQ(Subt().UndoCount(), 0);
    EXPECT_EQ(host.changes, 0);
}

TEST_F(DialogEdit, HalfACharacterStays) {
    const std::string half = "a\xED\xA0\xBD\xC3\xA9\xF0\x9F\x98\x80\xED\xB8\x80x";
    Open({{1, 3, half}});
    Edit(1).cmdOK->click();
    ASSERT_TRUE(Closed());
    EXPECT_FALSE(document().SubtitlesChanged);
    EXPECT_EQ(Subt().Text(1), half);

    frmEdit& dialog = Edit(1);
    PutCaret(dialog, 0);
    dialog.txtSubt->insertPlainText("typed ");
    dialog.cmdOK->click();
    ASSERT_TRUE(Closed());
    EXPECT_EQ(Subt().Text(1), "typed " + half);

    frmEdit& again = Edit(1);
    Type(again.txtDuration, "1.5");
    again.cmdOK->click();
    ASSERT_TRUE(Closed());
    EXPECT_EQ(Subt().EndTime(1), 2.5);
    EXPECT_EQ(Subt().Text(1), "typed " + half);
}

TEST_F(DialogEditOffTheGrid, BoxesLeftAloneKeepTheTitlesOwnTimes) {
    frmEdit& text = Edit(2);
    text.txtSubt->setPlainText("typed");
    text.cmdOK->click();
    ASSERT_TRUE(Closed());
    EXPECT_EQ(Subt().Text(2), "typed");
    EXPECT_EQ(Subt().StartTime(2), At(2));
    EXPECT_EQ(Subt().EndTime(2), At(3));
    frmEdit& duration = Edit(3);
    Type(duration.txtDuration, "1.5");
    duration.cmdOK->click();
    ASSERT_TRUE(Closed());
    EXPECT_EQ(Subt().StartTime(3), At(3));
    EXPECT_DOUBLE_EQ(Subt().EndTime(3), At(3) + 1.5);
    frmEdit& start = Edit(5);
    Type(start.txtStart, "00:00:20,000");
    start.cmdOK->click();
    ASSERT_TRUE(Closed());
    EXPECT_EQ(Subt().StartTime(5), 20);
    EXPECT_DOUBLE_EQ(Subt().EndTime(5), 20 + (At(6) - At(5)));
}

TEST_F(DialogEditOffTheGrid, ContiguousTitlesTakeTheTimesThatTheirNeighboursShow) {
    for (std::int32_t row = 2; row <= 4; ++row) {
        const std::string shown = Cell(row, 1).toStdString();
        frmEdit& dialog = Edit(row);
        Type(dialog.txtStart, (shown + "0").c_str());
        dialog.cmdOK->click();
        ASSERT_TRUE(Closed()) << row;
        EXPECT_NEAR(Subt().StartTime(row), At(row), 0.0006);
    }
}

TEST_F(DialogEdit, UpdatesItsRow) {
    frmEdit& dialog = Edit(2);
    dialog.txtSubt->setPlainText("a\nb");
    Type(dialog.txtDuration, "3.2504");
    dialog.cmdOK->click();
    EXPECT_EQ(Subt().Text(2), "a\r\nb");
    EXPECT_EQ(Cell(2, 0), "a\r\nb");
    EXPECT_EQ(Cell(2, 2), "3.25");
    EXPECT_EQ(Colour(2), Edited);
}

struct MarksRow {
    const char* typed;
    const char* stored;
};

class DialogEditMarks : public DialogEdit, public testing::WithParamInterface<MarksRow> {};

TEST_P(DialogEditMarks, OpenOnesAreClosed) {
    frmEdit& dialog = Edit(2);
    dialog.txtSubt->setPlainText(GetParam().typed);
    dialog.cmdOK->click();
    EXPECT_EQ(Subt().Text(2), GetParam().stored);
}

INSTANTIATE_TEST_SUITE_P(Texts, DialogEditMarks,
                         testing::Values(MarksRow{"a <b>bold", "a <b>bold</b>"},
                                         MarksRow{"<b>x</b> <b>y", "<b>x</b> <b>y</b>"},
                                         MarksRow{"<i>x</i>", "<i>x</i>"},
                                         MarksRow{"<i>x<b>y", "<i>x<b>y</b></i>"}));

TEST_F(DialogEdit, ClosingMarksStayInTheBoxWhenTimesAreRefused) {
    frmEdit& dialog = Edit(1);
    dialog.txtSubt->setPlainText("<b>x");
    Type(dialog.txtStart, "-00:00:05,000");
    const Modals modals({AnswerMessage(NoDuration)});
    dialog.cmdOK->click();
    EXPECT_EQ(dialog.txtSubt->toPlainText(), "<b>x</b>");
}

TEST_F(DialogEdit, WithoutAChangeNothingIsWritten) {
    Open({{1.1, 3.345, "a\nlone feed\xC2\xA0"}, {5.3, 7.6, "b"}, {9, 10, "c"}});
    for (std::int32_t row = 1; row <= 3; ++row) {
        Edit(row).cmdOK->click();
        EXPECT_TRUE(Closed());
    }
    EXPECT_FALSE(document().SubtitlesChanged);
    EXPECT_EQ(Subt().UndoCount(), 0);
    EXPECT_EQ(host.changes, 0);
    EXPECT_EQ(Subt().Text(1), "a\nlone feed\xC2\xA0");
}

TEST_F(DialogEdit, CancelWritesNothing) {
    frmEdit& dialog = Edit(2);
    dialog.txtSubt->setPlainText("typed");
    QTest::mouseClick(dialog.cmdCancel, Qt::LeftButton);
    EXPECT_TRUE(Closed());
    EXPECT_EQ(Subt().Text(2), "title 2");
    frmEdit& again = Edit(2);
    QTest::keyClick(&again, Qt::Key_Escape);
    EXPECT_TRUE(Closed());
}

TEST_F(DialogEdit, TheButtonsShowWhichMarkIsDue) {
    Open({{1, 3, "<b>bold</b> plain"}});
    frmEdit& dialog = Edit(1);
    PutCaret(dialog, 0);
    EXPECT_EQ(dialog.cmdB->text(), "<&b>") << "no mark lies within one character";
    PutCaret(dialog, 5);
    EXPECT_EQ(dialog.cmdB->text(), "</&b>");
    EXPECT_EQ(dialog.cmdI->text(), "<&i>");
    QTest::keyClick(dialog.txtSubt, Qt::Key_End);
    EXPECT_EQ(dialog.cmdB->text(), "<&b>");
}

TEST_F(DialogEdit, TheButtonsInsertAtTheCaret) {
    Open({{1, 3, "word"}});
    frmEdit& dialog = Edit(1);
    PutCaret(dialog, 2);
    dialog.cmdB->click();
    EXPECT_EQ(dialog.txtSubt->toPlainText(), "wo<b>rd");
    EXPECT_EQ(dialog.txtSubt->textCursor().position(), 5);
    EXPECT_EQ(dialog.cmdB->text(), "</&b>");
    PutCaret(dialog, 7);
    dialog.cmdB->click();
    EXPECT_EQ(dialog.txtSubt->toPlainText(), "wo<b>rd</b>");
    EXPECT_EQ(dialog.txtSubt->textCursor().position(), 11);
    EXPECT_EQ(dialog.cmdB->text(), "<&b>");
    dialog.txtSubt->selectAll();
    dialog.cmdI->click();
    EXPECT_EQ(dialog.txtSubt->toPlainText(), "<i>wo<b>rd</b>") << "nothing is replaced";
    EXPECT_EQ(dialog.focusWidget(), dialog.txtSubt);
}

TEST_F(DialogEdit, SnapsBackToItsSmallestSize) {
    frmEdit& dialog = Edit(1);
    dialog.resize(10, 10);
    EXPECT_EQ(dialog.size(), QSize(ToPixels(5000), ToPixels(2565)));
    EXPECT_EQ(dialog.PB->y() - dialog.txtSubt->geometry().bottom() - 1, ToPixels(105));
    EXPECT_EQ(dialog.PB->geometry().bottom() + 1, dialog.height());
}

TEST_F(DialogEdit, RemembersItsSizeEvenWhenCancelled) {
    frmEdit& dialog = Edit(1);
    dialog.resize(500, 300);
    dialog.cmdCancel->click();
    EXPECT_EQ(Settings().Dword("SEWidth", 0), 7500);
    EXPECT_EQ(Settings().Dword("SEHeight", 0), 4500);
    EXPECT_TRUE(Closed());
    EXPECT_EQ(Edit(1).size(), QSize(500, 300));
}

TEST_F(DialogEdit, StoresTheRowsOwnText) {
    Open();
    Select({3});
    List().DoCommand("Insert");
    Edit(3).cmdOK->click();
    EXPECT_EQ(Subt().Text(3), "New Title");
}

TEST_F(DialogEdit, KeepsToItsTitleWhileThePlayerGoesOn) {
    frmEdit& dialog = Edit(2);
    List().FollowTitle(4);
    dialog.txtSubt->setPlainText("typed");
    dialog.cmdOK->click();
    EXPECT_EQ(Subt().Text(2), "typed");
    EXPECT_EQ(Subt().Text(4), "title 4");
}

TEST_F(DialogEdit, ControlReturnConfirmsFromTheText) {
    frmEdit& dialog = Edit(2);
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::activeWindow() == &dialog; }, 30'000));
    QTest::keyClicks(dialog.txtSubt, "new ");
    QTest::keyClick(dialog.txtSubt, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(Closed());
    EXPECT_EQ(Subt().Text(2).substr(0, 4), "new ");
}

} // namespace

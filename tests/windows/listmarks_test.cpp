#include "tests/windows/listtest.h"

#include "dialogs/frmEdit.h"

#include <QAction>
#include <QPlainTextEdit>

namespace {

class ListMarks : public ListTest {
  protected:
    void MarkFirst(std::int32_t row) {
        Select({row});
        Child<QAction>(List(), "mnuTimeFirst").trigger();
    }
    void MarkSecond(std::int32_t row) {
        Select({row});
        Child<QAction>(List(), "mnuTimeSecond").trigger();
    }
    QPlainTextEdit& LabelEditor() {
        auto* editor = List().LV->findChild<QPlainTextEdit*>();
        if (editor == nullptr)
            throw std::runtime_error("nothing is being edited");
        return *editor;
    }
};

const QString SameTitle = "The same title can not be marked as first and second, not set";

TEST_F(ListMarks, TheSameTitleCannotHaveBoth) {
    Open();
    {
        const Modals modals({[](QWidget& modal) {
            EXPECT_EQ(dynamic_cast<QMessageBox&>(modal).icon(), QMessageBox::Warning);
            AnswerMessage(SameTitle)(modal);
        }});
        MarkFirst(5);
    }
    {
        const Modals modals({AnswerMessage(SameTitle)});
        MarkSecond(1);
    }
    EXPECT_EQ(List().FirstMark, 1);
    EXPECT_EQ(List().SecondMark, 5);
    EXPECT_EQ(Colour(1), First);
    EXPECT_EQ(Colour(5), Second);
}

TEST_F(ListMarks, MarkingMovesTheColour) {
    Open();
    MarkFirst(2);
    EXPECT_EQ(Colour(1), Plain);
    EXPECT_EQ(Colour(2), First);
    EXPECT_EQ(List().FirstMark, 2);
    MarkSecond(4);
    EXPECT_EQ(Colour(5), Plain);
    EXPECT_EQ(Colour(4), Second);
    EXPECT_FALSE(document().SubtitlesChanged);
}

TEST_F(ListMarks, MarksChangePlacesButColoursStay) {
    Open();
    MarkSecond(3);
    MarkFirst(5);
    EXPECT_EQ(List().FirstMark, 3);
    EXPECT_EQ(List().SecondMark, 5);
    EXPECT_EQ(Colour(5), First);
    EXPECT_EQ(Colour(3), Second);
}

TEST_F(ListMarks, MarkChangedPutsThemInOrder) {
    Open();
    List().FirstMark = 4;
    List().SecondMark = 2;
    List().MarkChanged();
    EXPECT_EQ(List().FirstMark, 2);
    EXPECT_EQ(List().SecondMark, 4);
}

TEST_F(ListMarks, AClickMovesThePlayerAndEnablesButtons) {
    Open();
    for (const char* key : {"Shorter", "Longer", "Edit", "Insert"})
        EXPECT_FALSE(ButtonEnabled(key)) << key;
    Click(3);
    EXPECT_EQ(host.positions, std::vector<double>{30});
    for (const char* key : {"Shorter", "Longer", "Edit", "Insert"})
        EXPECT_TRUE(ButtonEnabled(key)) << key;
    List().LV->clearSelection();
    for (const char* key : {"Shorter", "Longer", "Edit", "Insert"})
        EXPECT_FALSE(ButtonEnabled(key)) << key;
}

TEST_F(ListMarks, TitlesAreSelectedWithoutMovingThePlayer) {
    Open();
    Click(2);
    const auto moves = host.positions.size();
    int heard = 0;
    QObject::connect(&List(), &frmList::Selected, [&] { ++heard; });
    using Rows = std::vector<std::int32_t>;
    for (const Rows& rows : {Rows{1, 2, 3}, Rows{1, 3, 4}, Rows{5}, Rows{}}) {
        List().SelectTitles(rows);
        EXPECT_EQ(List().SelectedRows(), rows);
        EXPECT_GT(heard, 0);
        heard = 0;
    }
    EXPECT_EQ(host.positions.size(), moves);
}

TEST_F(ListMarks, TheCurrentTitleHasTheFocusOrIsTheFirst) {
    Open();
    Click(2);
    Click(4, Qt::ControlModifier);
    EXPECT_EQ(List().SelectedItem(), 4);
    EXPECT_EQ(List().SelectedRows(), (std::vector<std::int32_t>{2, 4}));
    Click(4, Qt::ControlModifier);
    EXPECT_EQ(List().SelectedItem(), 2);
}

TEST_F(ListMarks, GoToTitleSelectsAndMovesThePlayer) {
    Open();
    Click(2);
    host.positions.clear();
    List().GoToTitle(4);
    EXPECT_EQ(List().SelectedRows(), std::vector<std::int32_t>{4});
    EXPECT_EQ(host.positions, std::vector<double>{40});
    List().GoToTitle(6);
    List().GoToTitle(0);
    EXPECT_EQ(List().SelectedRows(), std::vector<std::int32_t>{4});
}

TEST_F(ListMarks, EnterAndDoubleClickOpenTheEditDialog) {
    Open();
    const auto close = [](QWidget& window) {
        dynamic_cast<frmEdit&>(window).cmdCancel_Click();
    };
    Click(2);
    {
        const Modals modals({AnswerWindow("frmEdit", close)});
        QTest::keyClick(List().LV, Qt::Key_Return);
    }
    {
        const Modals modals({AnswerWindow("frmEdit", close)});
        QTest::keyClick(List().LV, Qt::Key_Enter, Qt::KeypadModifier);
    }
    {
        const Modals modals({AnswerWindow("frmEdit", close)});
        const QModelIndex index = List().LV->model()->index(1, 0);
        QTest::mouseDClick(List().LV->viewport(), Qt::LeftButton, {},
                           List().LV->visualRect(index).center());
    }
    List().LV->clearSelection();
    const Modals modals({AnswerWindow("frmEdit", close)});
    QTest::keyClick(List().LV, Qt::Key_Return);
}

TEST_F(ListMarks, F2EditsTheTextInPlace) {
    Open();
    host.changes = 0;
    Click(3);
    QTest::keyClick(List().LV, Qt::Key_F2);
    QTest::keyClicks(&LabelEditor(), "one");
    QTest::keyClick(&LabelEditor(), Qt::Key_Return, Qt::ShiftModifier);
    QTest::keyClicks(&LabelEditor(), "two");
    QTest::keyClick(&LabelEditor(), Qt::Key_Return);
    EXPECT_EQ(Subt().Text(3), "one\r\ntwo");
    EXPECT_EQ(Cell(3, 0), "one\r\ntwo");
    EXPECT_EQ(Colour(3), Edited);
    EXPECT_TRUE(document().SubtitlesChanged);
    EXPECT_EQ(Subt().UndoCount(), 1);
    EXPECT_EQ(host.changes, 1);
}

TEST_F(ListMarks, EscapeLeavesTheText) {
    Open();
    Click(3);
    QTest::keyClick(List().LV, Qt::Key_F2);
    QTest::keyClicks(&LabelEditor(), "typed");
    QTest::keyClick(&LabelEditor(), Qt::Key_Escape);
    EXPECT_EQ(Subt().Text(3), "title 3");
    EXPECT_FALSE(document().SubtitlesChanged);
}

TEST_F(ListMarks, F2NeedsASelectedRow) {
    Open();
    QTest::keyClick(List().LV, Qt::Key_F2);
    EXPECT_EQ(List().LV->findChild<QPlainTextEdit*>(), nullptr);
}

TEST_F(ListMarks, HalfACharacterStaysWhenTheTextIsEditedInPlace) {
    Open({{1, 3, "a\xED\xA0\xBDx"}});
    Click(1);
    QTest::keyClick(List().LV, Qt::Key_F2);
    QTest::keyClick(&LabelEditor(), Qt::Key_End);
    QTest::keyClicks(&LabelEditor(), "y");
    QTest::keyClick(&LabelEditor(), Qt::Key_Return);
    EXPECT_EQ(Subt().Text(1), "a\xED\xA0\xBDxy");
}

TEST_F(ListMarks, KeysTypedInPlaceAreNoCommands) {
    Open();
    Click(3);
    QTest::keyClick(List().LV, Qt::Key_F2);
    QTest::keyClick(&LabelEditor(), Qt::Key_End);
    for (const Qt::Key key : {Qt::Key_Delete, Qt::Key_Insert})
        QTest::keyClick(&LabelEditor(), key);
    QTest::keyClick(&LabelEditor(), Qt::Key_Left, Qt::ControlModifier);
    EXPECT_EQ(Subt().Count(), 5);
    EXPECT_EQ(Subt().StartTime(3), 30);
}

TEST_F(ListMarks, ALoneLineFeedBecomesABlank) {
    Open();
    Click(3);
    List().LV->model()->setData(List().LV->model()->index(2, 0), "a\nb\r\nc\rd");
    EXPECT_EQ(Subt().Text(3), "a b\r\nc d");
    EXPECT_EQ(Cell(3, 0), "a b\r\nc d");
}

TEST_F(ListMarks, TheLineBeingTypedOnStaysWhileThePlayerGoesOn) {
    Open();
    Click(3);
    QTest::keyClick(List().LV, Qt::Key_F2);
    QTest::keyClicks(&LabelEditor(), "typed");
    List().FollowTitle(4);
    QTest::keyClick(&LabelEditor(), Qt::Key_Return);
    EXPECT_EQ(Subt().Text(3), "typed");
}

TEST_F(ListMarks, MarkShortcuts) {
    Open();
    Click(2);
    QTest::keyClick(List().LV, Qt::Key_1, Qt::ControlModifier);
    Click(4);
    QTest::keyClick(List().LV, Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(List().FirstMark, 2);
    EXPECT_EQ(List().SecondMark, 4);
}

} // namespace

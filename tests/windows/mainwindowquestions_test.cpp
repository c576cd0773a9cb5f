#include "listeditor/frmList.h"
#include "tests/windows/mainwindowtest.h"

#include <array>

namespace {

constexpr auto SaveFirst = "You have changed subtitles.\nSave them first?";

class MainWindowQuestions : public MainWindowTest {
  protected:
    MainWindowQuestions() {
        Open();
        WriteFile("next.srt", "1\r\n00:00:01,000 --> 00:00:03,000\r\nnext\r\n\r\n");
    }
};

TEST_F(MainWindowQuestions, EscapeKeepsTheWindowOpenAndTheChanges) {
    Changed() = true;
    {
        const Modals modals({LeaveMessage("Save subtitles?")});
        EXPECT_FALSE(window->close());
    }
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(Changed());
}

TEST_F(MainWindowQuestions, EscapeBeforeATypedNameLeavesItUnopened) {
    Changed() = true;
    {
        const Modals modals({LeaveMessage(SaveFirst)});
        Line("txtSRT").setText(In("next.srt"));
    }
    EXPECT_EQ(Subt().Text(1), "first");
    EXPECT_TRUE(Changed());
}

TEST_F(MainWindowQuestions, EscapeBeforeBrowsingOpensNoDialog) {
    Changed() = true;
    const Modals modals({LeaveMessage(SaveFirst)});
    Click("cmdBrowseSRT");
    EXPECT_TRUE(Changed());
}

TEST_F(MainWindowQuestions, TheCloseBoxOfAQuestionDecidesNothingEither) {
    Changed() = true;
    const Modals modals({AnswerWindow("", [](QWidget& box) { box.close(); })});
    EXPECT_FALSE(window->close());
    EXPECT_TRUE(Changed());
}

TEST_F(MainWindowQuestions, ChangesThatNobodyMarkedAreAskedAboutToo) {
    Subt().SetTimes(1, 1, 2.5);
    ASSERT_FALSE(Changed());
    {
        const Modals modals({LeaveMessage("Save subtitles?")});
        EXPECT_FALSE(window->close());
    }
    {
        const Modals modals({LeaveMessage(SaveFirst)});
        Line("txtSRT").setText(In("next.srt"));
    }
    {
        const Modals modals({AnswerMessage(SaveFirst, QMessageBox::No), CancelFileDialog()});
        Click("cmdBrowseSRT");
    }
    const Modals none;
    EXPECT_TRUE(window->close()) << "the question was answered";
}

TEST_F(MainWindowQuestions, ANameIsTypedOnAfterOneAnswerAboutThem) {
    Subt().SetTimes(1, 1, 2.5);
    {
        const Modals modals({AnswerMessage(SaveFirst, QMessageBox::No)});
        Line("txtSRT").setText(In("nex"));
    }
    const Modals none;
    Line("txtSRT").setText(In("next.srt"));
    EXPECT_EQ(Subt().Text(1), "next");
}

TEST_F(MainWindowQuestions, TitlesThatAreAsTheyWereReadNeedNoQuestion) {
    Subt().SetTimes(1, 1, 2.5);
    Subt().Undo();
    const Modals none;
    EXPECT_TRUE(window->close());
}

TEST_F(MainWindowQuestions, AnUndoAfterASaveIsAskedAbout) {
    Subt().SetTimes(1, 1, 2.5);
    {
        const Modals modals({AnswerFileDialog(In("saved.srt"))});
        Click("cmdSave");
    }
    Subt().Undo();
    const Modals modals({LeaveMessage("Save subtitles?")});
    EXPECT_FALSE(window->close());
}

TEST_F(MainWindowQuestions, CommandsThatMarkNoChangeAreAskedAboutToo) {
    Click("cmdEdit");
    auto& list = Child<frmList>(*window, "frmList");
    list.SelectTitles(std::array{1});
    list.DoCommand("Longer");
    ASSERT_EQ(Subt().EndTime(1), 3.05);
    const Modals modals({LeaveMessage("Save subtitles?")});
    EXPECT_FALSE(window->close());
}

TEST_F(MainWindowQuestions, EscapeStartsNoNewFile) {
    const Modals modals(
        {AnswerFileDialog(In("new.srt")),
         LeaveMessage("This file does not yet exist.\nDo you want to start a new file?")});
    Click("cmdBrowseSRT");
    EXPECT_EQ(Subt().Count(), 3);
}

} // namespace

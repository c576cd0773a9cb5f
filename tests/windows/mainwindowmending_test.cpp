#include "formats/format.h"
#include "model/versions.h"
#include "tests/windows/mainwindowtest.h"

#include <QAction>
#include <QLabel>
#include <QMessageBox>
#include <QTreeWidget>

namespace {

constexpr auto Corrupt = "File is corrupt or not in SubRip format.";
constexpr auto TwoBlankLines =
    "A tolerant reading finds 3 titles instead of 1 (2 blank lines between blocks). Use it?";

#define BLOCK(number, second, text)                                                                \
    number "\r\n00:00:0" second ",000 --> 00:00:0" second ",500\r\n" text "\r\n"

class MainWindowMending : public MainWindowTest {
  protected:
    MainWindowMending() {
        WriteFile("gaps.srt", BLOCK("1", "1", "One") "\r\n\r\n" BLOCK(
                                  "2", "2", "Two") "\r\n\r\n" BLOCK("3", "3", "Three"));
        WriteFile("swallowed.srt", BLOCK("1", "1", "One") BLOCK("2", "2", "Two"));
        WriteFile("zero.srt", "1\r\n00:00:01 --> 00:00:02\r\nOne\r\n");
        WriteFile("two.smi", "<SAMI><HEAD><STYLE><!-- .EN {Name: English;} --></STYLE></HEAD>\r\n"
                             "<BODY>\r\n"
                             "<SYNC Start=1000><P Class=EN>One<P Class=FR>Un\r\n"
                             "<SYNC Start=2000><P Class=EN>&nbsp;<P Class=FR>&nbsp;\r\n"
                             "<SYNC Start=3000><P Class=FR>Deux\r\n"
                             "<SYNC Start=4000><P Class=FR>&nbsp;\r\n"
                             "</BODY></SAMI>\r\n");
    }

    void Load(const char* name, std::vector<Answer> answers) {
        const Modals modals(std::move(answers));
        Line("txtSRT").setText(In(name));
    }
    bool MarkedAsMended() {
        const auto* mark = The<QLineEdit>("txtSRT").findChild<QAction*>("actMended");
        return mark != nullptr && mark->isVisible();
    }
    QString Texts() {
        QStringList texts;
        for (std::int32_t i = 1; i <= Subt().Count(); ++i)
            texts << QString::fromStdString(Subt().Text(i));
        return texts.join('|');
    }
    static Answer ChooseLanguage(int line) {
        return AnswerWindow("frmLanguages", [line](QWidget& dialog) {
            auto& list = Child<QTreeWidget>(dialog, "lstChoices");
            list.setCurrentItem(list.topLevelItem(line));
            Child<QPushButton>(dialog, "cmdOK").click();
        });
    }
};

TEST_F(MainWindowMending, FollowsTheMessage) {
    Load("gaps.srt", {AnswerMessage(Corrupt), AnswerMessage(TwoBlankLines, QMessageBox::Yes)});
    EXPECT_EQ(Texts(), "One|Two|Three");
    EXPECT_TRUE(Changed());
    EXPECT_TRUE(MarkedAsMended());
    EXPECT_TRUE(Subt().UndoEnabled());
    EXPECT_EQ(Subt().UndoCount(), 0);
    EXPECT_TRUE(The("cmdEdit").isEnabled());
}

TEST_F(MainWindowMending, YesIsWhatEnterTakes) {
    Load("gaps.srt", {AnswerMessage(Corrupt), [](QWidget& box) {
                          QTest::keyClick(&box, Qt::Key_Return);
                      }});
    EXPECT_EQ(Texts(), "One|Two|Three");
}

TEST_F(MainWindowMending, NoLeavesWhatWasRead) {
    Load("gaps.srt", {AnswerMessage(Corrupt), AnswerMessage(TwoBlankLines, QMessageBox::No)});
    EXPECT_EQ(Texts(), "One");
    EXPECT_FALSE(Changed());
    EXPECT_FALSE(MarkedAsMended());
}

TEST_F(MainWindowMending, EscapeLeavesItToo) {
    Load("gaps.srt", {AnswerMessage(Corrupt), LeaveMessage(TwoBlankLines)});
    EXPECT_EQ(Texts(), "One");
    EXPECT_FALSE(Changed());
}

TEST_F(MainWindowMending, FollowsSwallowedBlocks) {
    Load("swallowed.srt",
         {AnswerMessage("A tolerant reading finds 2 titles instead of 1 (1 missing "
                        "empty line between blocks). Use it?",
                        QMessageBox::Yes)});
    EXPECT_EQ(Texts(), "One|Two");
}

TEST_F(MainWindowMending, FollowsTimesOfZero) {
    Load("zero.srt",
         {AnswerMessage("A tolerant reading finds other times for 1 of 1 title (1 line of "
                        "times in another form). Use it?",
                        QMessageBox::Yes)});
    EXPECT_EQ(Subt().EndTime(1), 2);
}

TEST_F(MainWindowMending, ARightFileIsNotAskedAbout) {
    Load("film.srt", {});
    EXPECT_FALSE(MarkedAsMended());
    EXPECT_FALSE(Changed());
}

TEST_F(MainWindowMending, TheStrictReadingStaysAsAVersion) {
    Load("gaps.srt", {AnswerMessage(Corrupt), AnswerMessage(TwoBlankLines, QMessageBox::Yes)});
    window->document().GoBack(0);
    EXPECT_EQ(Texts(), "One");
}

TEST_F(MainWindowMending, SavingWritesTheRightForm) {
    Load("gaps.srt", {AnswerMessage(Corrupt), AnswerMessage(TwoBlankLines, QMessageBox::Yes)});
    {
        const Modals modals({AnswerFileDialog(In("right.srt"))});
        Click("cmdSave");
    }
    EXPECT_EQ(ReadFile("right.srt"), BLOCK("1", "1", "One") "\r\n" BLOCK(
                                         "2", "2", "Two") "\r\n" BLOCK("3", "3", "Three") "\r\n");
    EXPECT_FALSE(Changed());
    EXPECT_FALSE(MarkedAsMended());
    Load("right.srt", {});
}

TEST_F(MainWindowMending, TheMarkTellsWhatWasMended) {
    Load("gaps.srt", {AnswerMessage(Corrupt), AnswerMessage(TwoBlankLines, QMessageBox::Yes)});
    const Modals modals(
        {AnswerMessage("The file was mended when it was read: 2 blank lines between "
                       "blocks (first on line 5).\nSaving writes it in the right "
                       "form.")});
    The<QAction>("actMended").trigger();
}

TEST_F(MainWindowMending, AnotherFileTakesTheMarkAway) {
    Load("gaps.srt", {AnswerMessage(Corrupt), AnswerMessage(TwoBlankLines, QMessageBox::Yes)});
    Forget();
    Load("film.srt", {});
    EXPECT_FALSE(MarkedAsMended());
}

TEST_F(MainWindowMending, TheLanguagesOfAFileAreOffered) {
    Load("two.smi", {AnswerWindow("frmLanguages", [](QWidget& dialog) {
             const auto& list = Child<QTreeWidget>(dialog, "lstChoices");
             ASSERT_EQ(list.topLevelItemCount(), 2);
             EXPECT_EQ(list.currentItem(), list.topLevelItem(0));
             EXPECT_EQ(list.topLevelItem(0)->text(0), "English");
             EXPECT_EQ(list.topLevelItem(0)->text(2), "1");
             EXPECT_EQ(list.topLevelItem(1)->text(0), "FR");
             EXPECT_EQ(list.topLevelItem(1)->text(2), "2");
             EXPECT_TRUE(Child<QLabel>(dialog, "Label1")
                             .text()
                             .startsWith("A tolerant reading finds titles in 2 languages"));
             Child<QPushButton>(dialog, "cmdOK").click();
         })});
    EXPECT_EQ(Texts(), "One");
    EXPECT_TRUE(MarkedAsMended());
}

TEST_F(MainWindowMending, TheOtherLanguagesComeBackOnSave) {
    Load("two.smi", {ChooseLanguage(1)});
    EXPECT_EQ(Texts(), "Un|Deux");
    {
        const Modals modals({AnswerFileDialog(In("saved.smi"))});
        Click("cmdSave");
    }
    EXPECT_FALSE(Changed());
    const std::string saved = ReadFile("saved.smi").value_or("");
    EXPECT_NE(saved.find("<SYNC Start=1000><P Class=EN>One\r\n"), std::string::npos) << saved;
    Load("saved.smi", {ChooseLanguage(0)});
    EXPECT_EQ(Texts(), "Un|Deux");
    EXPECT_FALSE(Changed());
    EXPECT_FALSE(MarkedAsMended());
    Load("two.smi", {ChooseLanguage(0)});
    Forget();
    Load("saved.smi", {ChooseLanguage(1)});
    EXPECT_EQ(Texts(), "One");
    EXPECT_TRUE(Changed());
    EXPECT_TRUE(MarkedAsMended());
}

TEST_F(MainWindowMending, NoLanguageLeavesWhatWasRead) {
    Load("two.smi", {AnswerWindow("frmLanguages", [](QWidget& dialog) {
             Child<QPushButton>(dialog, "cmdCancel").click();
         })});
    EXPECT_EQ(Subt().Text(1), "OneUn");
    EXPECT_FALSE(Changed());
}

} // namespace

#include "mainwindowtest.h"

#include <QMessageBox>

namespace {

/// A question with buttons of its own.
Answer Choose(const QString& text, const QString& button) {
    return [=](QWidget& modal) {
        auto* box = qobject_cast<QMessageBox*>(&modal);
        ASSERT_NE(box, nullptr);
        EXPECT_EQ(box->text().toStdString(), text.toStdString());
        for (QAbstractButton* choice : box->buttons())
            if (choice->text() == button)
                return choice->click();
        ADD_FAILURE() << "no button " << button.toStdString();
        box->reject();
    };
}

/// The file dialog's own question.
Answer Overwrite() {
    return [](QWidget& window) {
        dynamic_cast<QMessageBox&>(window).button(QMessageBox::Yes)->click();
    };
}

class MainWindowSaving : public MainWindowTest {
  protected:
    void Save(std::vector<Answer> answers) {
        const Modals modals(std::move(answers));
        Click("cmdSave");
    }
    bool Holds(const char* name, const char* text) const {
        return ReadFile(name).value_or("").find(text) != std::string::npos;
    }
};

const QString OneStyled =
    "SubRip files are written without italics and bold: 1 title loses its own.";
const QString TwoStyled =
    "SubRip files are written without italics and bold: 2 titles lose theirs.";

TEST_F(MainWindowSaving, StylesThatSubRipLosesAreAskedAboutOnce) {
    OpenTitles();
    Subt().Text(1, "<i>first</i>");
    Save({AnswerFileDialog(In("a.srt")), Choose(OneStyled, "Cancel")});
    EXPECT_FALSE(ReadFile("a.srt"));
    Subt().Text(2, "<b>second</b>");
    Save({AnswerFileDialog(In("a.srt")), Choose(TwoStyled, "Save without")});
    EXPECT_TRUE(Holds("a.srt", "first"));
    EXPECT_FALSE(Holds("a.srt", "<i>"));
    Save({AnswerFileDialog(In("b.srt"))});
    EXPECT_FALSE(Holds("b.srt", "<b>"));
    // Another document.
    Forget();
    WriteFile("other.srt", "1\r\n00:00:01,000 --> 00:00:03,000\r\n<i>x</i>\r\n\r\n");
    Line("txtSRT").setText(In("other.srt"));
    Save({AnswerFileDialog(In("c.srt")), Choose(OneStyled, "Keep them")});
    EXPECT_TRUE(Holds("c.srt", "<i>x</i>"));
}

TEST_F(MainWindowSaving, StylesAreKeptWithoutAskingOnceThatWasChosen) {
    OpenTitles();
    Subt().Text(1, "<i>first</i>");
    Save({AnswerFileDialog(In("a.srt")), Choose(OneStyled, "Keep them")});
    EXPECT_TRUE(Holds("a.srt", "<i>first</i>"));
    EXPECT_EQ(StoredSettings().value("SubRipStyles").toString(), "1");
    Reopen();
    OpenTitles();
    Subt().Text(1, "<b>first</b>");
    Save({AnswerFileDialog(In("b.srt"))});
    EXPECT_TRUE(Holds("b.srt", "<b>first</b>"));
}

TEST_F(MainWindowSaving, OtherFormatsKeepStylesAnyway) {
    OpenTitles();
    Subt().Text(1, "<i>first</i>");
    Save({AnswerFileDialog(In("a.smi"))});
    EXPECT_TRUE(Holds("a.smi", "<i>first</i>"));
}

TEST_F(MainWindowSaving, AFileThatWasChangedElsewhereIsNotOverwrittenUnasked) {
    const QString question = "“film.srt”: Changed on the disk since it was opened.";
    OpenTitles();
    WriteFile("film.srt", "another program's");
    Save({AnswerFileDialog(In("film.srt")), Overwrite(), Choose(question, "Cancel")});
    EXPECT_EQ(ReadFile("film.srt"), "another program's");
    Save({AnswerFileDialog(In("film.srt")), Overwrite(), Choose(question, "Save as..."),
          AnswerFileDialog(In("mine.srt"))});
    EXPECT_EQ(ReadFile("film.srt"), "another program's");
    EXPECT_TRUE(Holds("mine.srt", "first"));
}

TEST_F(MainWindowSaving, AFileThatWasChangedElsewhereCanBeOverwritten) {
    OpenTitles();
    WriteFile("film.srt", "another program's");
    Save({AnswerFileDialog(In("film.srt")), Overwrite(),
          Choose("“film.srt”: Changed on the disk since it was opened.", "Save over it")});
    EXPECT_TRUE(Holds("film.srt", "first"));
    // What the program itself wrote is no change.
    Subt().Text(1, "again");
    Save({AnswerFileDialog(In("film.srt")), Overwrite()});
    EXPECT_TRUE(Holds("film.srt", "again"));
}

TEST_F(MainWindowSaving, AFileThatWasRemovedIsToldOf) {
    OpenTitles();
    QFile::remove(In("film.srt"));
    Save({AnswerFileDialog(In("film.srt")),
          Choose("“film.srt”: Removed from the disk since it was opened.", "Save over it")});
    EXPECT_TRUE(Holds("film.srt", "first"));
}

TEST_F(MainWindowSaving, ASecondWindowsSaveIsNoticed) {
    OpenTitles();
    frmQuelmar second(std::make_unique<FakePlayer>());
    second.show();
    Child<QLineEdit>(second, "txtSRT").setText(In("film.srt"));
    second.Subt.Text(1, "theirs");
    {
        const Modals modals({AnswerFileDialog(In("film.srt")), Overwrite()});
        Child<QPushButton>(second, "cmdSave").click();
    }
    Save({AnswerFileDialog(In("film.srt")), Overwrite(),
          Choose("“film.srt”: Changed on the disk since it was opened.", "Cancel")});
    EXPECT_TRUE(Holds("film.srt", "theirs"));
}

} // namespace

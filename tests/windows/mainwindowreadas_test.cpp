#include "mainwindow/frmReadAs.h"
#include "tests/windows/mainwindowtest.h"

#include <QAction>
#include <QLabel>
#include <QMenu>
#include <QTreeWidget>

namespace {

constexpr auto SaveFirst = "You have changed subtitles.\nSave them first?";
/// "Где ты был вчера вечером?" in windows-1251.
constexpr auto Russian = "\xC3\xE4\xE5 \xF2\xFB \xE1\xFB\xEB \xE2\xF7\xE5\xF0\xE0 "
                         "\xE2\xE5\xF7\xE5\xF0\xEE\xEC?";
constexpr auto RussianWords = "Где ты был вчера вечером?";

std::string SubRipOf(const std::string& words) {
    return "1\r\n00:00:01,000 --> 00:00:03,000\r\n" + words + "\r\n\r\n";
}

class MainWindowReadAs : public MainWindowTest {
  protected:
    MainWindowReadAs() {
        WriteFile("old.srt", SubRipOf(Russian));
        WriteFile("few.srt", SubRipOf("caf\xE9"));
    }

    void Load(const char* name) { Line("txtSRT").setText(In(name)); }
    QAction& Guessed() { return Child<QAction>(Line("txtSRT"), "actGuessed"); }
    QAction& ReadAs() { return The<QAction>("actReadAs"); }
    static Answer Choose(const QString& page, QString* looksLike = nullptr) {
        return AnswerWindow("frmReadAs", [=](QWidget& dialog) {
            auto& list = Child<QTreeWidget>(dialog, "lstChoices");
            for (int line = 1; line < list.topLevelItemCount(); ++line)
                if (list.topLevelItem(line)->text(0) == page)
                    list.setCurrentItem(list.topLevelItem(line));
            EXPECT_EQ(list.currentItem()->text(0), page);
            if (looksLike != nullptr)
                *looksLike = list.currentItem()->text(2);
            Child<QPushButton>(dialog, "cmdOK").click();
        });
    }
};

TEST_F(MainWindowReadAs, AGuessIsShownAndChangeable) {
    Load("old.srt");
    EXPECT_EQ(Subt().Text(1), RussianWords);
    EXPECT_TRUE(Guessed().isVisible());
    EXPECT_EQ(Guessed().toolTip(), "Read as WINDOWS-1251, which is a guess.\nClick to read it in "
                                   "another code page.");
    EXPECT_EQ(The<QLabel>("mpNote").text(), "Read as WINDOWS-1251, which is a guess.");
    QString looksLike;
    {
        const Modals modals({Choose("KOI8-R", &looksLike)});
        Guessed().trigger();
    }
    EXPECT_EQ(QString::fromStdString(Subt().Text(1)), looksLike);
    EXPECT_NE(Subt().Text(1), RussianWords);
    EXPECT_FALSE(Guessed().isVisible());
    EXPECT_FALSE(Changed());
    const Modals modals({Choose("windows-1251")});
    ReadAs().trigger();
    EXPECT_EQ(Subt().Text(1), RussianWords);
}

TEST_F(MainWindowReadAs, TheBytesComeBackAsTheyWere) {
    for (const char* page : {"KOI8-R", "SHIFT_JIS", "BIG5", "windows-1252"}) {
        Load("old.srt");
        {
            const Modals modals({Choose(page)});
            ReadAs().trigger();
        }
        const Modals modals({AnswerFileDialog(In("again.srt"))});
        Click("cmdSave");
        EXPECT_EQ(ReadFile("again.srt"), SubRipOf(Russian)) << page;
        QFile::remove(In("again.srt"));
        Line("txtSRT").clear();
    }
}

TEST_F(MainWindowReadAs, ItIsInTheBoxsMenu) {
    Load("old.srt");
    QLineEdit& box = Line("txtSRT");
    emit box.customContextMenuRequested(QPoint(5, 5));
    const auto* menu = box.findChild<QMenu*>();
    ASSERT_NE(menu, nullptr);
    EXPECT_TRUE(menu->actions().contains(&ReadAs()));
    EXPECT_EQ(ReadAs().text(), "&Read as...");
    EXPECT_TRUE(ReadAs().isEnabled());
}

TEST_F(MainWindowReadAs, UnicodeFilesAreNotAskedAbout) {
    WriteFile("new.srt", SubRipOf(RussianWords));
    Load("new.srt");
    EXPECT_FALSE(Guessed().isVisible());
    EXPECT_FALSE(ReadAs().isEnabled());
}

TEST_F(MainWindowReadAs, OfFewBytesTheUsualPageIsTaken) {
    Load("few.srt");
    EXPECT_EQ(Subt().Text(1), "café");
}

TEST_F(MainWindowReadAs, AsksAboutChangesFirst) {
    Load("old.srt");
    Changed() = true;
    const Modals modals({Choose("KOI8-R"), LeaveMessage(SaveFirst)});
    ReadAs().trigger();
    EXPECT_EQ(Subt().Text(1), RussianWords);
}

TEST_F(MainWindowReadAs, LeftByEscapeNothingChanges) {
    Load("old.srt");
    const Modals modals({AnswerWindow(
        "frmReadAs", [](QWidget& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); })});
    ReadAs().trigger();
    EXPECT_EQ(Subt().Text(1), RussianWords);
    EXPECT_TRUE(Guessed().isVisible());
}

TEST_F(MainWindowReadAs, ASetPageIsNoGuess) {
    CloseWindow();
    StoredSettings().setValue("CodePage", "KOI8-R");
    OpenWindow();
    Load("old.srt");
    EXPECT_NE(Subt().Text(1), RussianWords);
    EXPECT_FALSE(Guessed().isVisible());
    EXPECT_TRUE(ReadAs().isEnabled());
}

TEST(TellingLine, HasTheMostBytesBeyondAscii) {
    EXPECT_EQ(TellingLine(""), "");
    EXPECT_EQ(TellingLine("plain\r\ntext"), "");
    EXPECT_EQ(TellingLine("1\r\n\xE9\r\n\xE9\xE9 a\n\xE9"), "\xE9\xE9 a");
}

} // namespace

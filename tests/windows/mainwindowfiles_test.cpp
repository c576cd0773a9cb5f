#include "formats/load.h"
#include "listeditor/frmList.h"
#include "tests/windows/mainwindowtest.h"

#include <QComboBox>
#include <QDir>

#include <QFileDialog>

namespace {

using MainWindowFiles = MainWindowTest;

const QString SaveFirst = "You have changed subtitles.\nSave them first?";
const QString NewFile = "This file does not yet exist.\nDo you want to start a new file?";

Answer AnswerFrameRate(const QString& rate) {
    return AnswerWindow("frmFrameRate", [rate](QWidget& dialog) {
        Child<QComboBox>(dialog, "cboFramerate").setEditText(rate);
        Child<QPushButton>(dialog, "cmdOK").click();
    });
}

TEST_F(MainWindowFiles, OpeningAFilmEnablesItsControls) {
    OpenFilm();
    EXPECT_TRUE(window->AVIFileOK);
    for (const char* name : {"MP", "picButtons", "txtTime", "UDTime"})
        EXPECT_TRUE(The<QWidget>(name).isEnabled()) << name;
    for (const char* name : {"cmdBlue", "cmdGreen", "cmdAdjust"})
        EXPECT_FALSE(The(name).isEnabled()) << name;
}

TEST_F(MainWindowFiles, TypingAPathTriesEveryNameThatExists) {
    WriteFile("f", "");
    WriteFile("film.a", "");
    QTest::keyClicks(&Line("txtAVI"), In("film.avi"));
    // Above the folder there may be more such names.
    EXPECT_EQ(player->Opened.last(3), (QStringList{In("f"), In("film.a"), In("film.avi")}));
}

TEST_F(MainWindowFiles, AFilmThatIsRefusedDisablesThem) {
    OpenFilm();
    player->RefusesFiles = true;
    const Modals none;
    Line("txtAVI").setText(In("other.avi"));
    EXPECT_FALSE(window->AVIFileOK);
    for (const char* name : {"MP", "picButtons", "txtTime", "UDTime"})
        EXPECT_FALSE(The<QWidget>(name).isEnabled()) << name;
}

TEST_F(MainWindowFiles, AMissingFilmLeavesTheEarlierOne) {
    OpenFilm();
    Line("txtAVI").setText(In("nowhere.avi"));
    EXPECT_TRUE(window->AVIFileOK);
    EXPECT_EQ(player->Opened.size(), 1);
}

TEST_F(MainWindowFiles, AMissingFirstFilmEnablesNothing) {
    const Modals none;
    Line("txtAVI").setText(In("nowhere.avi"));
    EXPECT_FALSE(window->AVIFileOK);
    EXPECT_TRUE(player->Opened.isEmpty());
}

TEST_F(MainWindowFiles, ALateAnswerEnablesThemToo) {
    player->AnswersLater = true;
    OpenFilm();
    EXPECT_FALSE(window->AVIFileOK);
    player->AnswerNow();
    EXPECT_TRUE(window->AVIFileOK);
    EXPECT_TRUE(The<QWidget>("txtTime").isEnabled());
    EXPECT_TRUE(The<QWidget>("picButtons").isEnabled());
}

TEST_F(MainWindowFiles, BrowsingForAFilm) {
    {
        const Modals modals({AnswerFileDialog(In("film.avi"), [](QWidget& modal) {
            auto& dialog = dynamic_cast<QFileDialog&>(modal);
            EXPECT_EQ(dialog.windowTitle(), "Select an existing media file");
            EXPECT_EQ(dialog.fileMode(), QFileDialog::ExistingFile);
            EXPECT_EQ(dialog.nameFilters().size(), 11);
        })});
        Click("cmdBrowseAVI");
    }
    EXPECT_EQ(Line("txtAVI").text(), In("film.avi"));
    EXPECT_TRUE(window->AVIFileOK);
    EXPECT_TRUE(The<QWidget>("picButtons").isEnabled());
}

TEST_F(MainWindowFiles, CancellingTheFilmDialogLeavesTheBox) {
    OpenFilm();
    {
        const Modals modals({CancelFileDialog()});
        Click("cmdBrowseAVI");
    }
    EXPECT_EQ(Line("txtAVI").text(), In("film.avi"));
    EXPECT_TRUE(window->AVIFileOK);
}

TEST_F(MainWindowFiles, TheDialogsStartOnTheLastNameWithoutExtension) {
    {
        const Modals modals({AnswerFileDialog(In("film.avi"))});
        Click("cmdBrowseAVI");
    }
    {
        const Modals modals({CancelFileDialog([this](QWidget& modal) {
            auto& dialog = dynamic_cast<QFileDialog&>(modal);
            EXPECT_EQ(dialog.windowTitle(), "Select an existing file or enter a new filename");
            EXPECT_EQ(dialog.directory(), QDir(folder.path()));
            EXPECT_EQ(Child<QLineEdit>(dialog, "fileNameEdit").text(), "film");
            EXPECT_GE(dialog.nameFilters().size(), 3);
        })});
        Click("cmdBrowseSRT");
    }
    CloseWindow();
    EXPECT_EQ(StoredSettings().value("MRU").toString(), In("film"));
}

TEST_F(MainWindowFiles, TheLastNameIsRememberedWhole) {
    {
        const Modals modals({AnswerFileDialog(In("film.avi"))});
        Click("cmdBrowseAVI");
    }
    CloseWindow();
    EXPECT_EQ(StoredSettings().value("MRU").toString(), In("film.avi"));
}

TEST_F(MainWindowFiles, LoadingSubtitles) {
    std::vector<Change> heard;
    const Connection connection =
        window->document().Subscribe([&](const Change& change) { heard.push_back(change); });
    OpenTitles();
    EXPECT_EQ(Subt().Count(), 3);
    EXPECT_TRUE(Subt().UndoEnabled());
    EXPECT_FALSE(Changed());
    EXPECT_TRUE(The("cmdEdit").isEnabled());
    EXPECT_TRUE(The("cmdSave").isEnabled());
    EXPECT_EQ(heard,
              (std::vector<Change>{{Change::Kind::Replaced, 1, 3}, {Change::Kind::Saved, 0, 0}}));
    EXPECT_EQ(window->findChild<QWidget*>("frmLoading"), nullptr);
}

TEST_F(MainWindowFiles, ANewDocumentHasNoUndoHistory) {
    OpenTitles();
    Subt().SetTimes(1, 2, 3);
    ASSERT_EQ(Subt().UndoCount(), 1);
    Forget();
    Line("txtSRT").clear();
    OpenTitles();
    EXPECT_EQ(Subt().UndoCount(), 0);
}

TEST_F(MainWindowFiles, TheExtensionsCaseDoesNotMatter) {
    WriteFile("LOUD.SRT", "1\r\n00:00:01,000 --> 00:00:02,000\r\nHELLO\r\n\r\n");
    Line("txtSRT").setText(In("LOUD.SRT"));
    EXPECT_EQ(Subt().Count(), 1);
}

TEST_F(MainWindowFiles, ContentsTellTheFormatOfOtherNames) {
    WriteFile("srt.txt", "1\r\n00:00:01,000 --> 00:00:02,000\r\nHello\r\n\r\n");
    WriteFile("sub.txt", "{1}{25}Hello\r\n");
    WriteFile("smi.txt", "<SAMI>\r\n<BODY>\r\n<SYNC Start=1000><P>Hello\r\n"
                         "<SYNC Start=2000><P>&nbsp;\r\n</BODY>\r\n</SAMI>\r\n");
    const Modals modals({AnswerFrameRate("25"),
                         AnswerMessage("A tolerant reading finds 1 title instead of 2 (1 entity). "
                                       "Use it?",
                                       QMessageBox::No)});
    for (const char* name : {"srt.txt", "sub.txt", "smi.txt"}) {
        Line("txtSRT").setText(In(name));
        EXPECT_EQ(Subt().Text(1), "Hello") << name;
    }
}

TEST_F(MainWindowFiles, AFrameCountingFileAsksForItsRateFirst) {
    WriteFile("film.sub", "{25}{50}Hello\r\n");
    {
        const Modals modals({AnswerWindow("frmFrameRate", [this](QWidget& dialog) {
            EXPECT_EQ(Subt().Count(), 0);
            Child<QComboBox>(dialog, "cboFramerate").setEditText("12.5");
            Child<QPushButton>(dialog, "cmdOK").click();
        })});
        Line("txtSRT").setText(In("film.sub"));
    }
    EXPECT_EQ(window->document().FrameRate, 12.5);
    EXPECT_EQ(Subt().StartTime(1), 2);
}

TEST_F(MainWindowFiles, KnownFrameRatesAreOffered) {
    WriteFile("named.sub", "{1}{1}29.97\r\n{25}{50}Hello\r\n");
    WriteFile("plain.sub", "{25}{50}Hello\r\n");
    OpenFilm();
    player->MediaRate = 24000.0 / 1001;
    window->document().FrameRate = 25;
    const Modals modals(
        {AnswerWindow("frmFrameRate",
                      [](QWidget& dialog) {
                          const auto& box = Child<QComboBox>(dialog, "cboFramerate");
                          EXPECT_EQ(box.currentText(), "25");
                          auto& film = Child<QPushButton>(dialog, "cmdFilmRate");
                          auto& file = Child<QPushButton>(dialog, "cmdFileRate");
                          EXPECT_EQ(film.text(), "The &film has 23.976");
                          EXPECT_EQ(file.text(), "The fi&le names 29.97");
                          film.click();
                          EXPECT_EQ(box.currentText(), "23.976");
                          file.click();
                          EXPECT_EQ(box.currentText(), "29.97");
                          Child<QPushButton>(dialog, "cmdOK").click();
                      }),
         AnswerMessage("A tolerant reading finds 1 title instead of 2 (1 line that names the frame "
                       "rate). Use it?",
                       QMessageBox::Yes),
         AnswerWindow("frmFrameRate", [](QWidget& dialog) {
             EXPECT_TRUE(Child<QPushButton>(dialog, "cmdFilmRate").isVisible());
             EXPECT_FALSE(Child<QPushButton>(dialog, "cmdFileRate").isVisible());
             dialog.close();
         })});
    Line("txtSRT").setText(In("named.sub"));
    EXPECT_EQ(window->document().FrameRate, 29.97);
    EXPECT_NEAR(Subt().StartTime(1), 25 / 29.97, 1e-9);
    Forget();
    Line("txtSRT").setText(In("plain.sub"));
    EXPECT_EQ(window->document().FrameRate, 29.97);
}

TEST_F(MainWindowFiles, AnUnknownFormatIsSaid) {
    WriteFile("x.txt", "0\r\n");
    {
        const Modals modals({AnswerMessage("Could not determine file format")});
        Line("txtSRT").setText(In("x.txt"));
    }
    EXPECT_EQ(Subt().Count(), 0);
    EXPECT_TRUE(The("cmdEdit").isEnabled());
    EXPECT_TRUE(The("cmdSave").isEnabled());
    EXPECT_TRUE(Subt().UndoEnabled());
}

TEST_F(MainWindowFiles, ACorruptFileKeepsWhatWasRead) {
    WriteFile("bad.srt", "1\r\n00:00:01,000 --> 00:00:02,000\r\nHello\r\n\r\nnonsense\r\n");
    {
        const Modals modals(
            {AnswerMessage("File is corrupt or not in SubRip format."),
             AnswerMessage("A tolerant reading finds the same 1 title, and no damage (1 blank line "
                           "within a text). Use it?",
                           QMessageBox::No)});
        Line("txtSRT").setText(In("bad.srt"));
    }
    EXPECT_EQ(Subt().Count(), 1);
    EXPECT_TRUE(The("cmdEdit").isEnabled());
    EXPECT_TRUE(The("cmdSave").isEnabled());
    EXPECT_FALSE(Changed());
}

TEST_F(MainWindowFiles, StopsOnTheWayOfAPathDoNothing) {
    OpenTitles();
    for (const QString& name : {folder.path() + "/*.srt", folder.path(), QString("/dev/null"),
                                QString("/dev/zero"), In("film.sr?")}) {
        Line("txtSRT").setText(name);
        EXPECT_EQ(Subt().Count(), 3) << name.toStdString();
        EXPECT_EQ(Subt().Text(1), "first");
    }
    EXPECT_TRUE(Subt().UndoEnabled());
    EXPECT_TRUE(The("cmdEdit").isEnabled());
}

TEST_F(MainWindowFiles, UselessFilesAreToldOfAndKeepTheTitles) {
    OpenTitles();
    Subt().Text(1, "mine");
    Forget();
    WriteFile("empty.txt", "");
    WriteFile("lines.txt", "\r\n\r\n");
    WriteFile("x.txt", "0\r\n");
    for (const char* name : {"empty.txt", "lines.txt", "x.txt"}) {
        const Modals modals({AnswerMessage("Could not determine file format")});
        Line("txtSRT").setText(In(name));
        EXPECT_EQ(Subt().Text(1), "mine") << name;
    }
    WriteFile("far.sub", "{9000000000}{9000000001}x\n");
    const Modals modals(
        {AnswerFrameRate("25"), AnswerMessage("The file was not opened: a time of title 1 is "
                                              "beyond what can be shown.")});
    Line("txtSRT").setText(In("far.sub"));
    EXPECT_EQ(Subt().Text(1), "mine");
}

TEST_F(MainWindowFiles, UselessFilesDoNotMakeChangesForgotten) {
    OpenTitles();
    Changed() = true;
    WriteFile("x.txt", "0\r\n");
    const Modals modals(
        {AnswerMessage("You have changed subtitles.\nSave them first?", QMessageBox::No),
         AnswerMessage("Could not determine file format")});
    Line("txtSRT").setText(In("x.txt"));
    EXPECT_TRUE(Changed());
}

TEST_F(MainWindowFiles, NamesShorterThanFiveCharactersAreNotRead) {
    const QString before = QDir::currentPath();
    QDir::setCurrent(folder.path());
    WriteFile("a.sr", "1\r\n00:00:01,000 --> 00:00:02,000\r\nHello\r\n\r\n");
    WriteFile("a.srt", "1\r\n00:00:01,000 --> 00:00:02,000\r\nHello\r\n\r\n");
    Line("txtSRT").setText("a.sr");
    EXPECT_EQ(Subt().Count(), 0);
    Line("txtSRT").setText("a.srt");
    EXPECT_EQ(Subt().Count(), 1);
    QDir::setCurrent(before);
}

TEST_F(MainWindowFiles, AMissingNameThatIsTypedLeadsToNothing) {
    OpenTitles();
    const Modals none;
    Line("txtSRT").setText(In("nowhere.srt"));
    EXPECT_EQ(Subt().Count(), 3);
}

TEST_F(MainWindowFiles, TypingWithChangesAsksAtEveryKeystroke) {
    OpenTitles();
    Changed() = true;
    const Modals modals(
        {AnswerMessage(SaveFirst, QMessageBox::No), AnswerMessage(SaveFirst, QMessageBox::No)});
    QTest::keyClicks(&Line("txtSRT"), "xy");
    EXPECT_TRUE(Changed());
}

TEST_F(MainWindowFiles, TypingWithChangesCanSaveThem) {
    OpenTitles();
    Changed() = true;
    const Modals modals(
        {AnswerMessage(SaveFirst, QMessageBox::Yes), AnswerFileDialog(In("kept.srt"))});
    QTest::keyClicks(&Line("txtSRT"), "x");
    EXPECT_FALSE(Changed());
    EXPECT_TRUE(ReadFile("kept.srt"));
}

TEST_F(MainWindowFiles, ChoosingTheSameFileAgainReadsItAgain) {
    for (const char* text : {"one", "two"}) {
        WriteFile("same.srt",
                  std::string("1\r\n00:00:01,000 --> 00:00:02,000\r\n") + text + "\r\n\r\n");
        const Modals modals({AnswerFileDialog(In("same.srt"))});
        Click("cmdBrowseSRT");
        EXPECT_EQ(Subt().Text(1), text);
    }
}

TEST_F(MainWindowFiles, BrowsingGivesChangesUpWhenTheUserDeclinesToSave) {
    OpenTitles();
    Changed() = true;
    {
        const Modals modals({AnswerMessage(SaveFirst, QMessageBox::No), CancelFileDialog()});
        Click("cmdBrowseSRT");
    }
    EXPECT_FALSE(Changed());
    const Modals none;
    EXPECT_TRUE(window->close());
}

TEST_F(MainWindowFiles, BrowsingStopsWhenSavingFails) {
    OpenTitles();
    Changed() = true;
    {
        const Modals modals({AnswerMessage(SaveFirst, QMessageBox::Yes), CancelFileDialog()});
        Click("cmdBrowseSRT");
    }
    EXPECT_TRUE(Changed());
    EXPECT_EQ(Line("txtSRT").text(), In("film.srt"));
}

TEST_F(MainWindowFiles, ANewFileHasOneTitle) {
    OpenTitles();
    Subt().SetTimes(1, 2, 3);
    Forget();
    {
        const Modals modals(
            {AnswerFileDialog(In("new.srt")), AnswerMessage(NewFile, QMessageBox::Yes)});
        Click("cmdBrowseSRT");
    }
    EXPECT_EQ(Line("txtSRT").text(), In("new.srt"));
    ASSERT_EQ(Subt().Count(), 1);
    EXPECT_EQ(Subt().Text(1), "First subtitle");
    EXPECT_EQ(Subt().StartTime(1), 1);
    EXPECT_EQ(Subt().EndTime(1), 2);
    EXPECT_EQ(Subt().UndoCount(), 0);
    EXPECT_TRUE(Subt().UndoEnabled());
    EXPECT_FALSE(Changed());
    EXPECT_TRUE(The("cmdEdit").isEnabled());
    EXPECT_TRUE(The("cmdSave").isEnabled());
}

TEST_F(MainWindowFiles, ANewFileThatIsDeclinedKeepsTheNameAndTheTitles) {
    OpenTitles();
    {
        const Modals modals(
            {AnswerFileDialog(In("new.srt")), AnswerMessage(NewFile, QMessageBox::No)});
        Click("cmdBrowseSRT");
    }
    EXPECT_EQ(Line("txtSRT").text(), In("new.srt"));
    EXPECT_EQ(Subt().Count(), 3);
}

TEST_F(MainWindowFiles, ANewFileIsWrittenAsUtf8WithoutAMark) {
    WriteFile("marked.srt", "\xEF\xBB\xBF"
                            "1\r\n00:00:01,000 --> 00:00:02,000\r\nHello\r\n\r\n");
    Line("txtSRT").setText(In("marked.srt"));
    {
        const Modals modals(
            {AnswerFileDialog(In("new.srt")), AnswerMessage(NewFile, QMessageBox::Yes)});
        Click("cmdBrowseSRT");
    }
    Subt().Text(1, "\xC3\xA9");
    {
        const Modals modals({AnswerFileDialog(In("new.srt"))});
        Click("cmdSave");
    }
    EXPECT_EQ(ReadFile("new.srt"), "1\r\n00:00:01,000 --> 00:00:02,000\r\n\xC3\xA9\r\n\r\n");
}

TEST_F(MainWindowFiles, SavingWritesTheFormatOfTheName) {
    OpenTitles();
    Changed() = true;
    {
        const Modals modals({AnswerFileDialog(In("out.SRT"), [this](QWidget& dialog) {
            EXPECT_EQ(Child<QLineEdit>(dialog, "fileNameEdit").text(), "film.srt");
            EXPECT_EQ(Child<QComboBox>(dialog, "fileTypeCombo").currentText(),
                      "SubRip files (*.srt)");
            EXPECT_EQ(dynamic_cast<QFileDialog&>(dialog).directory().path(), folder.path());
        })});
        Click("cmdSave");
    }
    EXPECT_EQ(ReadFile("out.SRT")->substr(0, 46),
              "1\r\n00:00:01,000 --> 00:00:03,000\r\nfirst\r\n\r\n2\r\n");
    EXPECT_FALSE(Changed());
}

TEST_F(MainWindowFiles, SavingAFrameCountingFileAsksForTheRate) {
    OpenTitles();
    {
        const Modals modals({AnswerFileDialog(In("out.sub")), AnswerFrameRate("25")});
        Click("cmdSave");
    }
    EXPECT_EQ(ReadFile("out.sub")->substr(0, 13), "{25}{75}first");
}

TEST_F(MainWindowFiles, TheLastFilterIsPickedAgain) {
    const auto look = [](const char* expected, int count) {
        return [=](QWidget& dialog) {
            auto& types = Child<QComboBox>(dialog, "fileTypeCombo");
            EXPECT_EQ(types.currentText().toStdString(), expected);
            EXPECT_GE(types.count(), count);
            types.setCurrentIndex(1);
        };
    };
    const Modals modals(
        {AnswerFileDialog(In("film.srt"), look("All subtitle files", 4)),
         AnswerFileDialog(In("film.srt"), look("SubRip files (*.srt)", 4)),
         AnswerFileDialog(In("film.avi"), look("All films and sound", 11)),
         AnswerFileDialog(In("film.avi"), look("Video files (avi, mpg, asf, mov)", 11))});
    Click("cmdBrowseSRT");
    Click("cmdBrowseSRT");
    Click("cmdBrowseAVI");
    Click("cmdBrowseAVI");
}

/// The dialog with another filter picked.
Answer SaveAs(const QString& name, int filter) {
    return AnswerFileDialog(name, [=](QWidget& dialog) {
        Child<QComboBox>(dialog, "fileTypeCombo").setCurrentIndex(filter);
    });
}

TEST_F(MainWindowFiles, ANameThatTellsNoFormatGetsThePickedOne) {
    OpenTitles();
    for (const auto& [filter, name] : {std::pair{0, "out.smi"}, std::pair{1, "out.srt"}}) {
        Changed() = true;
        const Modals modals(
            {SaveAs(In("out"), filter),
             AnswerMessage(
                 QStringLiteral("“out” does not tell the format. Save it as “%1”?").arg(name),
                 QMessageBox::Yes)});
        Click("cmdSave");
        EXPECT_GT(ReadFile(name)->size(), 0U);
        EXPECT_FALSE(Changed());
    }
    EXPECT_FALSE(ReadFile("out"));
}

TEST_F(MainWindowFiles, ANameThatTellsNoFormatIsAskedForAgain) {
    OpenTitles();
    Changed() = true;
    WriteFile("out.srt", "old");
    const QString refusal = "“out” does not tell the format. Save it as “out.srt”?";
    {
        const Modals modals({AnswerFileDialog(In("out")), AnswerMessage(refusal, QMessageBox::No),
                             AnswerFileDialog(In("out")), AnswerMessage(refusal, QMessageBox::Yes),
                             AnswerMessage("“out.srt” already exists.\nDo you want to replace it?",
                                           QMessageBox::No),
                             CancelFileDialog()});
        Click("cmdSave");
    }
    EXPECT_EQ(ReadFile("out.srt"), "old");
    EXPECT_FALSE(ReadFile("out"));
    EXPECT_TRUE(Changed());
}

TEST_F(MainWindowFiles, CancellingTheSaveLeavesFileAndFlag) {
    OpenTitles();
    Changed() = true;
    WriteFile("target.srt", "old");
    {
        const Modals modals({CancelFileDialog()});
        Click("cmdSave");
    }
    EXPECT_EQ(ReadFile("target.srt"), "old");
    EXPECT_TRUE(Changed());
}

TEST_F(MainWindowFiles, OverwritingIsAskedFirst) {
    OpenTitles();
    WriteFile("target.srt", "old");
    const Modals modals(
        {AnswerFileDialog(In("target.srt")),
         [](QWidget& box) { dynamic_cast<QMessageBox&>(box).button(QMessageBox::No)->click(); },
         CancelFileDialog()});
    Click("cmdSave");
    EXPECT_EQ(ReadFile("target.srt"), "old");
}

TEST_F(MainWindowFiles, AFirstTitleBeforeZeroIsNotSaved) {
    Subt().Add(-0.5, 1, "early");
    Subt().Add(3, 4, "late");
    The("cmdSave").setEnabled(true);
    const Modals modals({AnswerMessage("Cannot save: all starting times must be positive.")});
    Click("cmdSave");
}

TEST_F(MainWindowFiles, ALaterTitleBeforeZeroIsSaved) {
    Subt().Add(3, 4, "late");
    Subt().Add(-0.5, 1, "early");
    The("cmdSave").setEnabled(true);
    {
        const Modals modals({AnswerFileDialog(In("out.srt")),
                             AnswerMessage("“out.srt” was written, but does not give the titles "
                                           "back: title 2 starts at -00:00:00,050 instead of "
                                           "-00:00:00,500.")});
        Click("cmdSave");
    }
    EXPECT_NE(ReadFile("out.srt")->find("-00:00:00,500"), std::string::npos);
    EXPECT_TRUE(Changed());
}

TEST_F(MainWindowFiles, AFileThatCannotBeWrittenIsSaid) {
    OpenTitles();
    Changed() = true;
    {
        const Modals modals({AnswerFileDialog("/dev/full.srt/out.srt"),
                             AnswerMessage("One or more errors occurred while saving.\n"
                                           "The file may be invalid.")});
        Click("cmdSave");
    }
    EXPECT_TRUE(Changed());
}

TEST_F(MainWindowFiles, AFailedSaveIsAskedAboutAtTheEnd) {
    OpenTitles();
    {
        const Modals modals({AnswerFileDialog("/dev/full.srt/out.srt"),
                             AnswerMessage("One or more errors occurred while saving.\n"
                                           "The file may be invalid.")});
        Click("cmdSave");
    }
    const Modals modals({AnswerMessage("Save subtitles?", QMessageBox::No)});
    EXPECT_TRUE(window->close());
}

TEST_F(MainWindowFiles, FilesNamedAtTheStartAreOpened) {
    window->OpenFiles(In("film.avi"), In("film.srt"));
    EXPECT_TRUE(window->AVIFileOK);
    EXPECT_EQ(Subt().Count(), 3);
}

TEST_F(MainWindowFiles, LoadingReloadsAnOpenListEditor) {
    OpenTitles();
    Click("cmdEdit");
    auto& list = The<frmList>("frmList");
    EXPECT_EQ(list.RowCount(), 3);
    WriteFile("two.srt", "1\r\n00:00:11,000 --> 00:00:12,000\r\na\r\n\r\n"
                         "2\r\n00:00:13,000 --> 00:00:14,000\r\nb\r\n\r\n");
    Line("txtSRT").setText(In("two.srt"));
    EXPECT_EQ(list.RowCount(), 2);
    EXPECT_EQ(list.RowText(1), "a");
    EXPECT_EQ(list.SecondMark, 2);
    EXPECT_EQ(window->document().BlueMark(), 11);
    EXPECT_EQ(window->document().GreenMark(), 13);
}

} // namespace

#include "mainwindow/frmTracks.h"
#include "player/mediaplayercontrol.h"
#include "tests/sound/filmmaking.h"
#include "tests/windows/mainwindowtest.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMessageBox>
#include <QTreeWidget>

namespace {

constexpr std::string_view SubRip = "1\n00:00:01,000 --> 00:00:02,500\nOne\n\n"
                                    "2\n00:00:03,000 --> 00:00:04,000\nTwo\n\n";
constexpr std::string_view Script =
    "[Script Info]\nScriptType: v4.00+\n\n[V4+ Styles]\nFormat: Name, Fontname, Fontsize\n"
    "Style: Default,Arial,16\n\n"
    "[Events]\nFormat: Layer, Start, End, Style, Name, MarginL, MarginR, MarginV, Effect, Text\n"
    "Dialogue: 0,0:00:01.00,0:00:02.00,Default,,0,0,0,,{\\pos(1,2)}Eins\n";

class MainWindowTracks : public MainWindowTest {
  public:
    static void SetUpTestSuite() {
        m_films = new TestFolder;
        PutFile(*m_films / "t.srt", SubRip);
        PutFile(*m_films / "t.ass", Script);
        Ffmpeg(*m_films,
               Pictures(6) +
                   "-i t.srt -i t.ass -map 0 -map 1 -map 2 -c:v libx264 -preset ultrafast "
                   "-c:s:0 srt -c:s:1 copy -metadata:s:s:0 language=eng "
                   "-metadata:s:s:1 language=ger -metadata:s:s:1 title=Schilder two.mkv");
        Ffmpeg(*m_films, Pictures(2) + "-c:v libx264 -preset ultrafast none.mkv");
    }
    static void TearDownTestSuite() {
        delete m_films;
        m_films = nullptr;
    }

  protected:
    static QString Film(const char* name) {
        return QString::fromStdString((*m_films / name).string());
    }
    static Answer Choose(int line) {
        return AnswerWindow("frmTracks", [line](QWidget& dialog) {
            auto& list = Child<QTreeWidget>(dialog, "lstChoices");
            list.setCurrentItem(list.topLevelItem(line));
            Child<QPushButton>(dialog, "cmdOK").click();
        });
    }
    static Answer Cancel() {
        return AnswerWindow("frmTracks", [](QWidget& dialog) { dialog.close(); });
    }
    void Name(const QString& film, std::vector<Answer> answers) {
        const Modals modals(std::move(answers));
        Line("txtSRT").setText(film);
    }
    /// Chooses the entry in the picture's menu.
    void AskInTheMenu(std::vector<Answer> answers) {
        auto& control = The<MediaPlayerControl>("MP");
        const QPoint place(5, 5);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place, control.mapToGlobal(place));
        QCoreApplication::sendEvent(&control, &event);
        EXPECT_EQ(Child<QAction>(control, "mpSubtitles").text(), "Su&btitles in this film...");
        const Modals modals(std::move(answers));
        // As a person does: the menu closes, and goes, before the dialog has its answer.
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_B);
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(control.findChild<QAction*>("mpSubtitles"), nullptr);
    }

    static TestFolder* m_films;
};

TestFolder* MainWindowTracks::m_films = nullptr;

TEST_F(MainWindowTracks, AreListedWhenTheSubtitleBoxNamesAFilm) {
    Name(Film("two.mkv"), {AnswerWindow("frmTracks", [](QWidget& dialog) {
             EXPECT_EQ(dialog.windowTitle(), "Subtitles in this film");
             auto& list = Child<QTreeWidget>(dialog, "lstChoices");
             ASSERT_EQ(list.topLevelItemCount(), 2);
             const auto texts = [&](int line) {
                 QStringList columns;
                 for (int i = 0; i < list.columnCount(); ++i)
                     columns << list.topLevelItem(line)->text(i);
                 return columns;
             };
             EXPECT_TRUE(QTest::qWaitFor([&] { return !texts(1)[4].endsWith("..."); }, 30000));
             EXPECT_EQ(texts(0), (QStringList{"1", "English (eng)", "", "SubRip", "2"}));
             EXPECT_EQ(texts(1),
                       (QStringList{"2", "German (ger)", "Schilder", "SubStation Alpha", "1"}));
             EXPECT_EQ(list.currentItem(), list.topLevelItem(0));
             QTest::keyClick(&list, Qt::Key_Return);
         })});
    EXPECT_EQ(Subt().Count(), 2);
    EXPECT_EQ(Subt().Text(1), "One");
    EXPECT_FALSE(Changed());
    EXPECT_TRUE(Subt().UndoEnabled());
    EXPECT_TRUE(The("cmdEdit").isEnabled());
    EXPECT_TRUE(The("cmdSave").isEnabled());
    EXPECT_EQ(Line("txtSRT").text(), Film("two.mkv"));
}

TEST_F(MainWindowTracks, AreListedByThePicturesMenu) {
    OpenTitles();
    Line("txtAVI").setText(Film("two.mkv"));
    AskInTheMenu({Choose(1)});
    EXPECT_EQ(Subt().Count(), 1);
    EXPECT_EQ(Subt().Text(1), "{\\pos(1,2)}Eins");
    EXPECT_EQ(Line("txtSRT").text(), Film("two.mkv"));
    EXPECT_EQ(window->document().SubtitleFile, Film("two.mkv").toStdString());
}

TEST_F(MainWindowTracks, LeaveTheDocumentWhereNoneIsChosen) {
    OpenTitles();
    Line("txtAVI").setText(Film("two.mkv"));
    AskInTheMenu({Cancel()});
    EXPECT_EQ(Subt().Count(), 3);
    EXPECT_EQ(Line("txtSRT").text(), In("film.srt"));
    EXPECT_EQ(window->document().SubtitleFile, In("film.srt").toStdString());
}

TEST_F(MainWindowTracks, AskAboutChangesFirst) {
    OpenTitles();
    Line("txtAVI").setText(Film("two.mkv"));
    Changed() = true;
    AskInTheMenu({LeaveMessage("You have changed subtitles.\nSave them first?")});
    EXPECT_EQ(Subt().Count(), 3);
    AskInTheMenu({AnswerMessage("You have changed subtitles.\nSave them first?", QMessageBox::No),
                  Choose(0)});
    EXPECT_EQ(Subt().Text(2), "Two");
    window->document().GoBack(0);
    EXPECT_EQ(Subt().Text(2), "second");
}

TEST_F(MainWindowTracks, AreSavedUnderANameOfTheirOwn) {
    Name(Film("two.mkv"), {Choose(1)});
    const std::string film = FileText(*m_films / "two.mkv");
    {
        const Modals modals({AnswerFileDialog(In("saved.ass"), [](QWidget& modal) {
            EXPECT_EQ(Child<QLineEdit>(modal, "fileNameEdit").text(), "two.ass");
        })});
        Click("cmdSave");
    }
    EXPECT_EQ(ReadFile("saved.ass"), Script);
    {
        const QString refused = "“two.mkv” does not tell the format.";
        const Modals modals({AnswerFileDialog(Film("two.mkv")), [](QWidget& box) { box.close(); },
                             CancelFileDialog()});
        Click("cmdSave");
    }
    EXPECT_EQ(FileText(*m_films / "two.mkv"), film);
}

TEST_F(MainWindowTracks, AreMissed) {
    WriteFile("broken.mkv", "no film");
    Name(Film("none.mkv"), {AnswerMessage("“none.mkv” holds no subtitles.")});
    Name(In("broken.mkv"), {AnswerMessage("“broken.mkv” is no film that can be read.")});
    EXPECT_EQ(Subt().Count(), 0);
}

struct LanguageRow {
    const char* code;
    const char* name;
};

TEST(LanguageName, IsTheLanguages) {
    for (const LanguageRow& row :
         {LanguageRow{"", ""}, LanguageRow{"eng", "English (eng)"},
          LanguageRow{"fre", "French (fre)"}, LanguageRow{"fra", "French (fra)"},
          LanguageRow{"de", "German (de)"}, LanguageRow{"xyz", "xyz"}})
        EXPECT_EQ(LanguageName(row.code), row.name) << row.code;
}

} // namespace

#include "mainwindow/filedrops.h"
#include "platform/paths.h"
#include "tests/windows/mainwindowtest.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

namespace {

constexpr auto SaveFirst = "You have changed subtitles.\nSave them first?";
/// A file name in Latin-1.
constexpr auto NoText = "caf\xE9.srt";

class MainWindowDrops : public MainWindowTest {
  protected:
    /// As the window system hands it in, over the middle of the control.
    static void Drop(QWidget& control, const QMimeData& dragged) {
        QWidget& top = *control.window();
        const QPoint place = control.mapTo(&top, control.rect().center());
        QDragEnterEvent enter(place, Qt::CopyAction | Qt::MoveAction, &dragged, Qt::LeftButton,
                              Qt::NoModifier);
        QCoreApplication::sendEvent(top.windowHandle(), &enter);
        QDragMoveEvent move(place, Qt::CopyAction | Qt::MoveAction, &dragged, Qt::LeftButton,
                            Qt::NoModifier);
        QCoreApplication::sendEvent(top.windowHandle(), &move);
        EXPECT_TRUE(move.isAccepted()) << control.objectName().toStdString();
        EXPECT_EQ(move.dropAction(), Qt::CopyAction);
        QDropEvent drop(place, Qt::CopyAction | Qt::MoveAction, &dragged, Qt::LeftButton,
                        Qt::NoModifier);
        QCoreApplication::sendEvent(top.windowHandle(), &drop);
        QCoreApplication::processEvents();
    }
    static void DropFiles(QWidget& control, const QStringList& files) {
        QMimeData dragged;
        QList<QUrl> links;
        for (const QString& file : files)
            links << QUrl::fromLocalFile(file);
        dragged.setUrls(links);
        Drop(control, dragged);
    }
    /// Makes a file whose name is no UTF-8.
    std::filesystem::path MakeNoText() {
        const std::filesystem::path file = PathOf(folder.path()) / NoText;
        std::filesystem::copy_file(PathOf(In("film.srt")), file);
        return file;
    }
};

TEST_F(MainWindowDrops, AnywhereOnTheWindowOpensBothFiles) {
    for (const char* place : {"mpPicture", "MP", "picButtons", "PB", "PB2", "txtSubtitle",
                              "txtNextSubtitle", "txtTime", "txtAVI", "txtSRT", "cmdExit"}) {
        CloseWindow();
        OpenWindow();
        DropFiles(The<QWidget>(place), {In("film.srt"), In("film.avi")});
        EXPECT_EQ(Subt().Count(), 3) << place;
        EXPECT_EQ(Line("txtAVI").text(), In("film.avi")) << place;
        EXPECT_EQ(player->FileName(), In("film.avi")) << place;
        EXPECT_EQ(Line("txtTime").text(), "00:00:00,000") << place;
    }
}

TEST_F(MainWindowDrops, FilesThatAreLeftOutAreNamed) {
    WriteFile("other.srt", "1\r\n00:00:01,000 --> 00:00:03,000\r\nother\r\n\r\n");
    const Modals modals({AnswerMessage("Only one film and one subtitle file are opened at a time: "
                                       "“other.srt” was left out.",
                                       QMessageBox::Ok)});
    DropFiles(The<QWidget>("mpPicture"), {In("film.srt"), In("other.srt"), In("film.avi")});
    EXPECT_EQ(Subt().Text(1), "first");
    EXPECT_EQ(Line("txtSRT").text(), In("film.srt"));
    EXPECT_EQ(player->FileName(), In("film.avi"));
}

TEST_F(MainWindowDrops, OnTheListEditorToo) {
    OpenTitles();
    Click("cmdEdit");
    WriteFile("other.srt", "1\r\n00:00:01,000 --> 00:00:03,000\r\nother\r\n\r\n");
    DropFiles(The<QWidget>("LV"), {In("other.srt")});
    EXPECT_EQ(Subt().Text(1), "other");
    EXPECT_EQ(Line("txtSRT").text(), In("other.srt"));
}

TEST_F(MainWindowDrops, LinksInATextAreFilesAndOtherTextsAreNot) {
    QMimeData links;
    links.setText(QUrl::fromLocalFile(In("film.avi")).toString() + "\r\n" +
                  QUrl::fromLocalFile(In("film.srt")).toString());
    Drop(The<QWidget>("txtSubtitle"), links);
    EXPECT_EQ(Subt().Count(), 3);
    QMimeData words;
    words.setText("film.srt");
    EXPECT_TRUE(DraggedFiles(words).isEmpty());
    QMimeData elsewhere;
    elsewhere.setUrls({QUrl("https://example.org/film.srt")});
    EXPECT_TRUE(DraggedFiles(elsewhere).isEmpty());
}

TEST_F(MainWindowDrops, AsksAboutSubtitlesBesideTheFilm) {
    const Modals modals({AnswerMessage(
        "“film.srt” lies beside the film.\nOpen these subtitles too?", QMessageBox::Yes)});
    DropFiles(The<QWidget>("mpPicture"), {In("film.avi")});
    EXPECT_EQ(Subt().Count(), 3);
}

TEST_F(MainWindowDrops, AsksAboutChangesFirst) {
    Open();
    Changed() = true;
    WriteFile("other.srt", "1\r\n00:00:01,000 --> 00:00:03,000\r\nother\r\n\r\n");
    {
        const Modals modals({LeaveMessage(SaveFirst)});
        DropFiles(The<QWidget>("mpPicture"), {In("other.srt")});
    }
    EXPECT_EQ(Subt().Text(1), "first");
    EXPECT_TRUE(Changed());
    {
        const Modals modals({AnswerMessage(SaveFirst, QMessageBox::No)});
        DropFiles(The<QWidget>("mpPicture"), {In("film.srt")});
    }
    EXPECT_EQ(Subt().Text(1), "first");
    EXPECT_FALSE(Changed());
}

TEST_F(MainWindowDrops, TheSameFileOnceMoreIsReadOnceMore) {
    Open();
    WriteFile("film.srt", "1\r\n00:00:01,000 --> 00:00:03,000\r\nnew\r\n\r\n");
    DropFiles(The<QWidget>("PB"), {In("film.srt")});
    EXPECT_EQ(Subt().Text(1), "new");
}

#ifdef Q_OS_LINUX
TEST_F(MainWindowDrops, NamesThatAreNoTextComeThrough) {
    const std::filesystem::path file = MakeNoText();
    QMimeData dragged;
    dragged.setData("text/uri-list",
                    "file://" + QFile::encodeName(folder.path()) + "/caf%E9.srt\r\n");
    ASSERT_EQ(DraggedFiles(dragged).size(), 1);
    EXPECT_EQ(PathOf(DraggedFiles(dragged).first()), file);
    Drop(The<QWidget>("mpPicture"), dragged);
    EXPECT_EQ(Subt().Count(), 3);
    EXPECT_EQ(PathOf(QString::fromStdString(window->document().SubtitleFile)), file);
    std::filesystem::remove(file);
}

TEST_F(MainWindowDrops, AFileWhoseNameIsNoTextIsSavedUnderItsName) {
    const std::filesystem::path file = MakeNoText();
    window->Open({NameOf(file)});
    Subt().Text(1, "changed");
    Changed() = true;
    const QString question =
        "“" + NameOf(file.filename()) + "” already exists.\nDo you want to replace it?";
    {
        const Modals modals({AnswerFileDialog(NameOf(file)),
                             AnswerMessage(question, QMessageBox::No), CancelFileDialog()});
        Click("cmdSave");
    }
    EXPECT_TRUE(Changed());
    {
        const Modals modals(
            {AnswerFileDialog(NameOf(file)), AnswerMessage(question, QMessageBox::Yes)});
        Click("cmdSave");
    }
    EXPECT_FALSE(Changed());
    window->Open({NameOf(file)});
    EXPECT_EQ(Subt().Text(1), "changed");
    std::filesystem::remove(file);
}

TEST(NamesOfFiles, ComeBackWhole) {
    for (const char* bytes :
         {"plain.srt", "caf\xC3\xA9.srt", "caf\xE9.srt", "\xFF\xFE", "\xE9\xC3\xA9\xE9",
          "\xEE\xBE\x80 for private use", "\xF0\x9F\x8E\xAC film", "\xC3", "\xED\xA0\x80", ""}) {
        const QString name = NameOfBytes(bytes);
        EXPECT_EQ(PathOf(name).string(), bytes);
        EXPECT_EQ(PathOf(QString::fromStdString(name.toStdString())).string(), bytes);
    }
    EXPECT_EQ(NameOfBytes("caf\xC3\xA9"), "café");
    EXPECT_FALSE(IsNoText("café"));
    EXPECT_TRUE(IsNoText(NameOfBytes("caf\xE9")));
}
#endif

} // namespace

#include "mainwindow/frmQuelmar.h"
#include "model/times.h"
#include "player/mpvplayer.h"
#include "tests/windows/drive.h"
#include "tests/windows/films.h"

#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

namespace {

constexpr int Patience = 10000;

/// The main window with a real film in the real player.
class MainWindowReal : public testing::Test {
  protected:
    MainWindowReal() {
        auto real = MakeMpvPlayer();
        player = real.get();
        window = std::make_unique<frmQuelmar>(std::move(real));
        QFile titles(folder.filePath("film.srt"));
        EXPECT_TRUE(titles.open(QIODevice::WriteOnly));
        titles.write("1\r\n00:00:01,000 --> 00:00:01,400\r\nfirst\r\n\r\n"
                     "2\r\n00:00:02,000 --> 00:00:02,400\r\nsecond\r\n\r\n");
        titles.close();
        window->show();
        window->OpenFiles(MakeFilm({}), titles.fileName());
    }
    ~MainWindowReal() override {
        window->document().SubtitlesChanged = false;
        window->document().Saved();
        window->close();
    }

    bool WaitFor(const std::function<bool()>& condition) {
        return QTest::qWaitFor(condition, Patience);
    }
    QString Shown() { return Child<QPlainTextEdit>(*window, "txtSubtitle").toPlainText(); }

    QTemporaryDir folder;
    Player* player = nullptr;
    std::unique_ptr<frmQuelmar> window;
};

TEST_F(MainWindowReal, OpensAFilmAndRefusesATextFile) {
    EXPECT_TRUE(window->AVIFileOK);
    EXPECT_TRUE(Child<QWidget>(*window, "picButtons").isEnabled());
    Child<QLineEdit>(*window, "txtAVI").setText(folder.filePath("film.srt"));
    EXPECT_TRUE(WaitFor([this] { return !window->AVIFileOK; }));
    EXPECT_FALSE(Child<QWidget>(*window, "txtTime").isEnabled());
    EXPECT_FALSE(Child<QWidget>(*window, "picButtons").isEnabled());
}

TEST_F(MainWindowReal, ShowsTheTitlesInStep) {
    player->CurrentPosition(0.8);
    player->Play();
    ASSERT_TRUE(WaitFor([this] { return Shown() == "first"; }));
    EXPECT_GE(player->CurrentPosition(), 1);
    ASSERT_TRUE(WaitFor([this] { return Shown().isEmpty(); }));
    EXPECT_GE(player->CurrentPosition(), 1.4);
    ASSERT_TRUE(WaitFor([this] { return Shown() == "second"; }));
}

TEST_F(MainWindowReal, PlacesATitleByKeyAndSavesIt) {
    Child<QRadioButton>(*window, "optPosition").click();
    window->setFocus();
    player->Play();
    ASSERT_TRUE(WaitFor([this] { return player->CurrentPosition() > 0.3; }));
    const double before = player->CurrentPosition();
    QTest::keyPress(window.get(), Qt::Key_Space);
    const double pressed = player->CurrentPosition();
    ASSERT_TRUE(WaitFor([&] { return player->CurrentPosition() > pressed + 0.3; }));
    const double held = player->CurrentPosition();
    QTest::keyRelease(window.get(), Qt::Key_Space);
    const double released = player->CurrentPosition();
    player->Pause();

    const SUBTITLES& titles = window->Subt;
    EXPECT_GE(titles.StartTime(1), before);
    EXPECT_LE(titles.StartTime(1), pressed);
    EXPECT_GE(titles.EndTime(1), held);
    EXPECT_LE(titles.EndTime(1), released);
    {
        const Modals modals({AnswerFileDialog(folder.filePath("placed.srt"))});
        Child<QPushButton>(*window, "cmdSave").click();
    }
    QFile saved(folder.filePath("placed.srt"));
    ASSERT_TRUE(saved.open(QIODevice::ReadOnly));
    EXPECT_EQ(saved.readAll().toStdString().substr(0, 34),
              "1\r\n" + FormatTime(titles.StartTime(1)) + " --> " + FormatTime(titles.EndTime(1)) +
                  "\r\n");
}

TEST_F(MainWindowReal, TheStripAndTheTimeBoxMoveThePausedFilm) {
    auto& time = Child<QLineEdit>(*window, "txtTime");
    time.setFocus();
    time.setText("00:00:02,500");
    EXPECT_EQ(player->CurrentPosition(), 2.5);
    QWidget& strip = Child<QWidget>(*window, "picButtons");
    QTest::mouseClick(&strip, Qt::LeftButton, {}, {40, 12});
    EXPECT_EQ(player->CurrentPosition(), 2);
    QTest::mouseClick(&strip, Qt::LeftButton, {}, {18, 12});
    EXPECT_EQ(player->CurrentPosition(), 0);
}

} // namespace

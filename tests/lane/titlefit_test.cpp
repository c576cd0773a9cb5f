#include "dialogs/frmFit.h"
#include "lane/lane.h"
#include "lane/lanecolours.h"
#include "mainwindow/displaypanel.h"
#include "mainwindow/frmQuelmar.h"
#include "tests/windows/drive.h"
#include "tests/windows/fakeplayer.h"
#include "tests/windows/films.h"

#include <QFile>
#include <QFileInfo>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace {

/// The main window with a player whose clock the test moves, and a film that can be heard.
class TitleFitting : public testing::Test {
  protected:
    TitleFitting() {
        QSettings(QSettings::NativeFormat, QSettings::UserScope, "Tevo", "Quelmar").clear();
        auto owned = std::make_unique<FakePlayer>();
        player = owned.get();
        player->MediaLength = 8;
        player->Tracks << QStringLiteral("Track 1");
        window = std::make_unique<frmQuelmar>(std::move(owned));
        window->resize(900, 700);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    }
    ~TitleFitting() override {
        window->document().SubtitlesChanged = false;
        window->close();
    }

    static QString SoundFilm() {
        Film film;
        film.container = QStringLiteral("wav");
        film.pictures = 200;
        return MakeFilm(film);
    }
    void OpenFilm() { window->OpenFiles(SoundFilm(), {}); }
    void AddTitles() {
        for (const double start : {1.0, 3.0, 5.0})
            window->Subt.Add(start, start + 1, "words");
    }
    QToolButton& Button() const { return Child<QToolButton>(*window, "mpFit"); }
    /// What the dialog is called that `open` opens; empty when it opens none.
    QString Opened(const std::function<void()>& open) const {
        QString caption;
        const Modals modals({AnswerWindow("frmFit", [&caption](QWidget& dialog) {
            caption = dialog.windowTitle();
            dynamic_cast<frmFit&>(dialog).cmdCancel->click();
        })});
        open();
        return caption;
    }

    FakePlayer* player = nullptr;
    std::unique_ptr<frmQuelmar> window;
};

TEST_F(TitleFitting, TheButtonIsThereForAFilmWithSoundAndWorksWithTitles) {
    EXPECT_FALSE(Button().isVisible());
    OpenFilm();
    EXPECT_TRUE(Button().isVisible());
    EXPECT_FALSE(Button().isEnabled());
    AddTitles();
    EXPECT_TRUE(Button().isEnabled());
    EXPECT_TRUE(Button().toolTip().contains("Ctrl+Shift+F")) << Button().toolTip().toStdString();
    QFile silent(InFilmFolder(QStringLiteral("silent.avi")));
    ASSERT_TRUE(silent.open(QIODevice::WriteOnly));
    player->Tracks.clear();
    window->OpenFiles(silent.fileName(), {});
    EXPECT_FALSE(Button().isVisible());
}

TEST_F(TitleFitting, ButtonAndKeyOpenTheDialogWithoutTheListEditor) {
    OpenFilm();
    AddTitles();
    const QString caption = "Fit to the sound of " + QFileInfo(SoundFilm()).fileName();
    EXPECT_EQ(Opened([this] { Button().click(); }), caption);
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    EXPECT_EQ(Opened([this] {
                  QTest::keyClick(window.get(), Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
              }),
              caption);
}

TEST_F(TitleFitting, TheKeyDoesNothingWithoutTitlesOrSound) {
    OpenFilm();
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QTest::keyClick(window.get(), Qt::Key_F, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

TEST_F(TitleFitting, AHiddenLaneDoesNotMatter) {
    OpenFilm();
    AddTitles();
    Child<QToolButton>(*window, "mpLane").click();
    ASSERT_FALSE(Child<Lane>(*window, "lane").isVisible());
    EXPECT_EQ(Opened([this] { Button().click(); }),
              "Fit to the sound of " + QFileInfo(SoundFilm()).fileName());
}

TEST_F(TitleFitting, FilmAndLaneShowWhatIsProposed) {
    OpenFilm();
    AddTitles();
    player->Play();
    player->Pause();
    player->CurrentPosition(2.5);
    const QSignalSpy shown(&Child<DisplayPanel>(*window, "PB2"), &DisplayPanel::TitleOnPicture);
    const auto outlined = [this] {
        auto& lane = Child<Lane>(*window, "lane");
        const QRgb colour = LanePaletteOf(lane.palette()).proposed.rgb();
        const QImage drawn = lane.grab().toImage();
        int pixels = 0;
        for (int y = 0; y < drawn.height(); ++y)
            for (int x = 0; x < drawn.width(); ++x)
                pixels += drawn.pixel(x, y) == colour ? 1 : 0;
        return pixels > 0;
    };
    EXPECT_FALSE(outlined());
    SUBTITLES proposed;
    for (const double start : {2.2, 4.2, 6.2})
        proposed.Add(start, start + 1, "proposed");
    window->ShowInstead(proposed);
    EXPECT_TRUE(outlined());
    ASSERT_FALSE(shown.isEmpty());
    EXPECT_EQ(shown.last().at(0).toString(), "proposed");
    player->CurrentPosition(4.5);
    EXPECT_EQ(shown.last().at(0).toString(), "proposed");
    player->CurrentPosition(3.5);
    EXPECT_EQ(shown.last().at(0).toString(), "");
    window->ShowOwn();
    EXPECT_FALSE(outlined());
    EXPECT_EQ(shown.last().at(0).toString(), "words");
    EXPECT_EQ(window->Subt.StartTime(1), 1);
}

TEST_F(TitleFitting, WhatIsProposedIsShownWhilePlacingToo) {
    OpenFilm();
    AddTitles();
    player->Play();
    player->Pause();
    Child<QRadioButton>(*window, "optPosition").click();
    player->CurrentPosition(0.5);
    const QSignalSpy shown(&Child<DisplayPanel>(*window, "PB2"), &DisplayPanel::TitleOnPicture);
    const auto boxes = [this] {
        return Child<QPlainTextEdit>(*window, "txtSubtitle").toPlainText() + "|" +
               Child<QPlainTextEdit>(*window, "txtNextSubtitle").toPlainText();
    };
    EXPECT_EQ(boxes(), "words|words");
    SUBTITLES proposed;
    for (const double start : {0.2, 4.2, 6.2})
        proposed.Add(start, start + 1, "proposed");
    window->ShowInstead(proposed);
    ASSERT_FALSE(shown.isEmpty());
    EXPECT_EQ(shown.last().at(0).toString(), "proposed");
    window->ShowOwn();
    EXPECT_EQ(shown.last().at(0).toString(), "");
    EXPECT_EQ(boxes(), "words|words");
}

} // namespace

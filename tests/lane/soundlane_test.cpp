#include "lane/lane.h"
#include "listeditor/frmList.h"
#include "mainwindow/frmQuelmar.h"
#include "platform/settings.h"
#include "tests/windows/drive.h"
#include "tests/windows/fakeplayer.h"
#include "tests/windows/films.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QPointer>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

#include <memory>

namespace {

/// The main window with a film of eight seconds that can be heard, and three titles.
class SoundLaneTest : public testing::Test {
  protected:
    SoundLaneTest() {
        QFile file(QFile::decodeName(qgetenv("XDG_CONFIG_HOME")) + "/Tevo/Quelmar.conf");
        file.remove();
        auto owned = std::make_unique<FakePlayer>();
        player = owned.get();
        player->MediaLength = 8;
        player->Tracks << QStringLiteral("Track 1");
        window = std::make_unique<frmQuelmar>(std::move(owned));
        window->resize(900, 700);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
        for (const double start : {1.0, 3.0, 5.0})
            window->Subt.Add(start, start + 1, "Words <i>here</i>");
        window->Subt.UndoEnabled(true);
    }

    static QString SoundFilm() {
        Film film;
        film.container = QStringLiteral("wav");
        film.pictures = 200;
        return MakeFilm(film);
    }
    void OpenFilm() { window->OpenFiles(SoundFilm(), {}); }
    Lane* FindLane() const { return window->findChild<Lane*>(QStringLiteral("lane")); }
    bool Shown() const {
        const Lane* lane = FindLane();
        return lane != nullptr && lane->isVisible();
    }
    QToolButton* Button() const {
        return window->findChild<QToolButton*>(QStringLiteral("mpLane"));
    }
    frmList* OpenList() {
        window->document();
        window->EditButtonsEnabled(true);
        window->findChild<QAbstractButton*>(QStringLiteral("cmdEdit"))->click();
        for (QWidget* top : QApplication::topLevelWidgets())
            if (auto* list = qobject_cast<frmList*>(top))
                return list;
        return nullptr;
    }
    void Click(double seconds, Qt::KeyboardModifiers modifiers = {}) {
        QTest::mouseClick(FindLane(), Qt::LeftButton, modifiers, Place(seconds));
    }
    QPoint Place(double seconds) const {
        return {static_cast<int>(FindLane()->View().X(seconds)), FindLane()->height() * 2 / 3};
    }
    void Drag(double from, double to) {
        Lane* lane = FindLane();
        QTest::mousePress(lane, Qt::LeftButton, {}, Place(from));
        for (const double time : {(from + to) / 2, to}) {
            QMouseEvent move(QEvent::MouseMove, Place(time), lane->mapToGlobal(Place(time)),
                             Qt::NoButton, Qt::LeftButton, Qt::AltModifier);
            QCoreApplication::sendEvent(lane, &move);
        }
        QTest::mouseRelease(lane, Qt::LeftButton, {}, Place(to));
    }

    FakePlayer* player = nullptr;
    std::unique_ptr<frmQuelmar> window;
};

using Titles = std::vector<std::int32_t>;

TEST_F(SoundLaneTest, StandsBetweenPictureAndPanelsWhenAFilmHasSound) {
    EXPECT_EQ(FindLane(), nullptr);
    EXPECT_FALSE(Button()->isVisible());
    OpenFilm();
    ASSERT_TRUE(Shown());
    EXPECT_TRUE(Button()->isVisible());
    EXPECT_TRUE(Button()->isChecked());
    const auto* picture = window->findChild<QWidget*>(QStringLiteral("MP"));
    const auto* panel = window->findChild<QWidget*>(QStringLiteral("PB"));
    EXPECT_EQ(FindLane()->geometry().top(), picture->geometry().bottom() + 1);
    EXPECT_EQ(FindLane()->geometry().bottom() + 1, panel->geometry().top());
    EXPECT_EQ(FindLane()->width(), window->width());
    EXPECT_EQ(FindLane()->height(), 96);
    EXPECT_EQ(FindLane()->Shown().Count(), 3);
}

TEST_F(SoundLaneTest, IsNotThereForASilentFilm) {
    player->Tracks.clear();
    OpenFilm();
    EXPECT_FALSE(Shown());
    EXPECT_FALSE(Button()->isVisible());
}

TEST_F(SoundLaneTest, GoesWhereTheSoundCannotBeRead) {
    QFile film(InFilmFolder(QStringLiteral("nothing.avi")));
    ASSERT_TRUE(film.open(QIODevice::WriteOnly));
    film.write("nothing to hear");
    film.close();
    window->OpenFiles(film.fileName(), {});
    EXPECT_TRUE(QTest::qWaitFor([&] { return !Shown(); }, 30'000));
    EXPECT_FALSE(Button()->isVisible());
    OpenFilm();
    EXPECT_TRUE(Shown());
}

TEST_F(SoundLaneTest, TheButtonAndTheKeyHideAndShowIt) {
    OpenFilm();
    const int high = window->findChild<QWidget*>(QStringLiteral("MP"))->height();
    Button()->click();
    EXPECT_FALSE(Shown());
    EXPECT_GT(window->findChild<QWidget*>(QStringLiteral("MP"))->height(), high);
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QTest::keyClick(window.get(), Qt::Key_L, Qt::ControlModifier);
    EXPECT_TRUE(Shown());
    QTest::keyClick(window.get(), Qt::Key_L, Qt::ControlModifier);
    EXPECT_FALSE(Shown());
    window->close();
    EXPECT_EQ(Settings().Dword("Lane"), 0);
}

TEST_F(SoundLaneTest, AWindowTooLowHidesItFirst) {
    OpenFilm();
    ASSERT_TRUE(Shown());
    window->resize(window->width(), window->minimumHeight());
    EXPECT_FALSE(Shown());
    EXPECT_GT(window->findChild<QWidget*>(QStringLiteral("MP"))->height(), 100);
    window->resize(window->width(), 700);
    EXPECT_TRUE(Shown());
}

TEST_F(SoundLaneTest, ItsHeightIsDraggedAndKept) {
    OpenFilm();
    Lane* lane = FindLane();
    const QPoint edge(300, 1);
    QTest::mousePress(lane, Qt::LeftButton, {}, edge);
    const QPoint global = lane->mapToGlobal(edge);
    for (const int up : {20, 40}) {
        const QPoint now = global - QPoint(0, up);
        QMouseEvent move(QEvent::MouseMove, lane->mapFromGlobal(now), now, Qt::NoButton,
                         Qt::LeftButton, {});
        QCoreApplication::sendEvent(lane, &move);
    }
    QTest::mouseRelease(lane, Qt::LeftButton, {}, edge);
    EXPECT_EQ(lane->height(), 136);
    emit lane->HeightWanted(-1000);
    EXPECT_EQ(lane->height(), 48);
    emit lane->HeightWanted(100000);
    EXPECT_LT(lane->height(), 700);
    emit lane->HeightWanted(-10);
    const int height = lane->height();
    window->close();
    EXPECT_EQ(Settings().Dword("LaneHeight"), height);
}

TEST_F(SoundLaneTest, ShowsTheSoundOfTheFilm) {
    OpenFilm();
    FindLane()->Sound(nullptr);
    const QImage silent = FindLane()->grab().toImage();
    OpenFilm();
    EXPECT_TRUE(QTest::qWaitFor([&] { return FindLane()->grab().toImage() != silent; }, 30'000));
    FindLane()->Sound(nullptr);
    EXPECT_EQ(FindLane()->grab().toImage(), silent);
}

TEST_F(SoundLaneTest, AClickMovesTheFilmAndADragTheTitle) {
    OpenFilm();
    Click(6.5);
    EXPECT_NEAR(player->CurrentPosition(), 6.5, 0.05);
    Drag(3.5, 3.9);
    EXPECT_NEAR(window->Subt.StartTime(2), 3.4, 0.05);
    EXPECT_NEAR(window->Subt.EndTime(2) - window->Subt.StartTime(2), 1, 1e-9);
    EXPECT_TRUE(window->document().SubtitlesChanged);
    EXPECT_EQ(window->Subt.UndoCount(), 1);
    EXPECT_EQ(FindLane()->Shown().Start(2), window->Subt.StartTime(2));
    window->Subt.Undo();
    EXPECT_EQ(FindLane()->Shown().Start(2), 3);
}

TEST_F(SoundLaneTest, ShowsWhatOthersChange) {
    OpenFilm();
    window->Subt.SetTimes(3, 6, 7);
    EXPECT_EQ(FindLane()->Shown().Times(3), (LaneTimes{3, 6, 7}));
    window->Subt.Insert(1, 0, 0.5, "First");
    EXPECT_EQ(FindLane()->Shown().Count(), 4);
    EXPECT_EQ(FindLane()->Shown().End(1), 0.5);
    window->Subt.Delete(2);
    EXPECT_EQ(FindLane()->Shown().Count(), 3);
}

TEST_F(SoundLaneTest, SelectionsOfLaneAndListAreOne) {
    OpenFilm();
    QPointer<frmList> list = OpenList();
    ASSERT_NE(list, nullptr);
    player->CurrentPosition(0);
    Click(3.5);
    EXPECT_EQ(list->SelectedRows(), Titles{2});
    EXPECT_NEAR(player->CurrentPosition(), 3.5, 0.05);
    Click(5.5, Qt::ControlModifier);
    EXPECT_EQ(list->SelectedRows(), (Titles{2, 3}));
    list->DoCommand(QStringLiteral("SelectAll"));
    EXPECT_EQ(FindLane()->Chosen(), (Titles{1, 2, 3}));
    list->SelectTitles(Titles{1});
    EXPECT_EQ(FindLane()->Chosen(), Titles{1});
    Drag(5.5, 6.1);
    EXPECT_EQ(list->RowStart(3).toStdString().substr(0, 8), "00:00:05");
    EXPECT_NE(list->RowStart(3), QStringLiteral("00:00:05,000"));
    list->close();
}

TEST_F(SoundLaneTest, TheEditDialogWorksWithoutTheListEditor) {
    OpenFilm();
    const Modals modals({AnswerWindow(QStringLiteral("frmEdit"), [](QWidget& dialog) {
        EXPECT_EQ(Child<QLineEdit>(dialog, "txtStart").text(), QStringLiteral("00:00:03,000"));
        EXPECT_EQ(Child<QLineEdit>(dialog, "txtDuration").text(), QStringLiteral("1"));
        Child<QLineEdit>(dialog, "txtDuration").setText(QStringLiteral("1.500"));
        Child<QAbstractButton>(dialog, "cmdOK").click();
    })});
    emit FindLane()->EditWanted(2);
    EXPECT_EQ(window->Subt.EndTime(2), 4.5);
    EXPECT_EQ(FindLane()->Shown().End(2), 4.5);
}

TEST_F(SoundLaneTest, InsertsATitleThere) {
    OpenFilm();
    const Modals modals({AnswerWindow(QStringLiteral("frmEdit"), [](QWidget& dialog) {
        Child<QAbstractButton>(dialog, "cmdCancel").click();
    })});
    emit FindLane()->InsertWanted(4.2);
    ASSERT_EQ(window->Subt.Count(), 4);
    EXPECT_EQ(window->Subt.StartTime(3), 4.2);
    EXPECT_EQ(window->Subt.EndTime(3), 5);
    EXPECT_EQ(FindLane()->Chosen(), Titles{3});
}

TEST_F(SoundLaneTest, TheMenuOffersTheListsCommands) {
    OpenFilm();
    QContextMenuEvent event(QContextMenuEvent::Mouse, Place(3.5),
                            FindLane()->mapToGlobal(Place(3.5)));
    QCoreApplication::sendEvent(FindLane(), &event);
    auto* menu = window->findChild<QMenu*>(QStringLiteral("laneMenu"));
    ASSERT_NE(menu, nullptr);
    EXPECT_NE(menu->findChild<QAction*>(QStringLiteral("laneInsert")), nullptr);
    auto* later = menu->findChild<QAction*>(QStringLiteral("mnuTimeLater"));
    ASSERT_NE(later, nullptr);
    later->trigger();
    EXPECT_NEAR(window->Subt.StartTime(2), 3.1, 1e-9);
    EXPECT_EQ(window->Subt.StartTime(1), 1);
    menu->close();
}

} // namespace

#include "player/mediapicture.h"
#include "player/mediaplayercontrol.h"
#include "tests/windows/mainwindowtest.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QMenu>

namespace {

class MainWindowPicture : public MainWindowTest {
  protected:
    MainWindowPicture() { Open(); }

    void PlayTo(double position) {
        player->Advance(position - player->CurrentPosition());
        Tick();
    }
    std::string Title() { return The<MediaPicture>("mpPicture").Title().toStdString(); }
    /// The entry of the picture's menu.
    QAction* Entry() {
        auto& picture = The<QWidget>("mpPicture");
        QContextMenuEvent event(QContextMenuEvent::Mouse, {20, 20},
                                picture.mapToGlobal(QPoint(20, 20)));
        QCoreApplication::sendEvent(&picture, &event);
        return window->findChild<QAction*>("mpTitles");
    }
    void Toggle() {
        QAction* entry = Entry();
        ASSERT_NE(entry, nullptr);
        entry->trigger();
        QApplication::activePopupWidget()->close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
};

TEST_F(MainWindowPicture, TheCurrentTitleIsOnThePicture) {
    Subt().Text(1, "<i>first</i>\r\nline");
    player->Play();
    PlayTo(0.95);
    EXPECT_EQ(Title(), "");
    PlayTo(1);
    EXPECT_EQ(Title(), "<i>first</i>\r\nline");
    PlayTo(3);
    EXPECT_EQ(Title(), "");
}

TEST_F(MainWindowPicture, PausedItShowsTheTitleWhereverTheFilmIsMoved) {
    player->Play();
    player->Pause();
    player->CurrentPosition(5);
    EXPECT_EQ(Title(), "second");
    player->CurrentPosition(3.5);
    EXPECT_EQ(Title(), "");
}

TEST_F(MainWindowPicture, PositioningAndStoppingShowNone) {
    player->Play();
    PlayTo(2);
    ASSERT_EQ(Title(), "first");
    Click("optPosition");
    EXPECT_EQ(Title(), "");
    Click("optShow");
    EXPECT_EQ(Title(), "first");
    player->Stop();
    EXPECT_EQ(Title(), "");
}

TEST_F(MainWindowPicture, TheMenuTurnsItOffForGood) {
    player->Play();
    PlayTo(2);
    EXPECT_TRUE(Entry()->isChecked());
    QApplication::activePopupWidget()->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    Toggle();
    EXPECT_EQ(Title(), "");
    Reopen();
    Open();
    player->Play();
    PlayTo(2);
    EXPECT_EQ(Title(), "");
    EXPECT_EQ(Box("txtSubtitle"), "first");
    Toggle();
    EXPECT_EQ(Title(), "first");
}

TEST_F(MainWindowPicture, NoTwoEntriesOfItsMenuHaveTheSameAccessKey) {
    Entry();
    const auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(menu, nullptr);
    QString keys;
    for (const QAction* action : menu->actions()) {
        const qsizetype at = action->text().indexOf('&');
        if (action->isSeparator() || at < 0)
            continue;
        const QChar key = action->text()[at + 1].toLower();
        EXPECT_FALSE(keys.contains(key)) << action->text().toStdString();
        keys += key;
    }
    EXPECT_GE(keys.size(), 7);
    QApplication::activePopupWidget()->close();
}

} // namespace

#include "player/jumpslider.h"
#include "player/mediamenu.h"
#include "player/mediaplayercontrol.h"
#include "tests/windows/drive.h"
#include "tests/windows/fakeplayer.h"
#include "tests/windows/films.h"
#include "tests/windows/screening.h"

#include <QAction>
#include <QApplication>
#include <QContextMenuEvent>
#include <QFile>
#include <QLabel>
#include <QMenu>
#include <QPainter>
#include <QScreen>
#include <QSignalSpy>
#include <QToolButton>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace {

/// A file that the fake player takes.
QString AnyFile() {
    const QString path = InFilmFolder("any.avi");
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    return path;
}

class ControlTest : public testing::Test {
  protected:
    ControlTest() {
        control.resize(640, 400);
        control.show();
        player.FileName(AnyFile());
        player.Stop();
    }

    template <typename T>
    T& Part(const char* name) {
        return Child<T>(control, name);
    }
    void Click(const char* name) { QTest::mouseClick(&Part<QWidget>(name), Qt::LeftButton); }
    QPoint OnSlider(double share) {
        QWidget& slider = Part<QWidget>("mpSlider");
        return {static_cast<int>(slider.width() * share), slider.height() / 2};
    }
    QMenu* OpenMenu() {
        QContextMenuEvent event(QContextMenuEvent::Mouse, {50, 50},
                                control.mapToGlobal(QPoint(50, 50)));
        QApplication::sendEvent(&control, &event);
        return qobject_cast<QMenu*>(QApplication::activePopupWidget());
    }

    FakePlayer player;
    MediaPlayerControl control{player};
    QSignalSpy activated{&player, &Player::Activated};
};

QAction* Find(const QMenu& menu, const QString& text) {
    for (QAction* action : menu.actions()) {
        if (action->text().remove('&') == text)
            return action;
        if (action->menu() != nullptr)
            if (QAction* inner = Find(*action->menu(), text))
                return inner;
    }
    return nullptr;
}

TEST_F(ControlTest, PlaysPausesAndStops) {
    Click("mpPlay");
    EXPECT_EQ(player.State(), Player::Playing);
    EXPECT_EQ(Part<QToolButton>("mpPlay").accessibleName(), "Pause");
    player.Advance(3.5);
    Click("mpPlay");
    EXPECT_EQ(player.State(), Player::Paused);
    EXPECT_EQ(Part<QToolButton>("mpPlay").accessibleName(), "Play");
    EXPECT_EQ(Part<QLabel>("mpElapsed").text(), "0:03");
    Click("mpStop");
    EXPECT_EQ(player.State(), Player::Stopped);
    EXPECT_EQ(Part<QLabel>("mpElapsed").text(), "0:00");
    EXPECT_EQ(activated.count(), 3);
}

TEST_F(ControlTest, TheSliderFollows) {
    EXPECT_EQ(Part<QLabel>("mpTotal").text(), "10:00");
    EXPECT_EQ(Part<JumpSlider>("mpSlider").maximum(), 600000);
    player.CurrentPosition(61.25);
    EXPECT_EQ(Part<JumpSlider>("mpSlider").value(), 61250);
    EXPECT_EQ(Part<QLabel>("mpElapsed").text(), "1:01");
    player.Play();
    player.Advance(10);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return Part<JumpSlider>("mpSlider").value() == 71250; }, 30'000));
    // Following is no seeking.
    EXPECT_EQ(player.Seeks, std::vector<double>{61.25});
}

TEST_F(ControlTest, LongMediaShowHours) {
    player.MediaLength = 3723;
    player.FileName(AnyFile());
    EXPECT_EQ(Part<QLabel>("mpTotal").text(), "1:02:03");
}

TEST_F(ControlTest, AClickOnTheSliderJumpsThere) {
    QTest::mouseClick(&Part<QWidget>("mpSlider"), Qt::LeftButton, {}, OnSlider(0.75));
    EXPECT_NEAR(player.CurrentPosition(), 450, 25);
    EXPECT_EQ(activated.count(), 1);
    QTest::mouseClick(&Part<QWidget>("mpSlider"), Qt::LeftButton, {}, OnSlider(0.999));
    EXPECT_EQ(player.CurrentPosition(), 600);
    QTest::mouseClick(&Part<QWidget>("mpSlider"), Qt::LeftButton, {}, {0, 5});
    EXPECT_EQ(player.CurrentPosition(), 0);
    QTest::mouseClick(&Part<QWidget>("mpSlider"), Qt::RightButton, {}, OnSlider(0.5));
    EXPECT_EQ(player.CurrentPosition(), 0);
}

TEST_F(ControlTest, DraggingSeeksAllTheWay) {
    QWidget& slider = Part<QWidget>("mpSlider");
    QTest::mousePress(&slider, Qt::LeftButton, {}, OnSlider(0.2));
    for (const double share : {0.3, 0.4, 0.5, 0.6})
        QTest::mouseMove(&slider, OnSlider(share));
    EXPECT_NEAR(player.CurrentPosition(), 360, 25);
    EXPECT_EQ(player.Seeks.size(), 5U);
    EXPECT_EQ(activated.count(), 0);
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, OnSlider(0.6));
    EXPECT_EQ(player.Seeks.size(), 5U);
    EXPECT_EQ(activated.count(), 1);
    QTest::mouseMove(&slider, OnSlider(0.1));
    EXPECT_EQ(player.Seeks.size(), 5U);
}

TEST_F(ControlTest, AHeldSliderIsNotPulledAway) {
    QWidget& slider = Part<QWidget>("mpSlider");
    player.Play();
    QTest::mousePress(&slider, Qt::LeftButton, {}, OnSlider(0.5));
    const int held = Part<JumpSlider>("mpSlider").value();
    player.Advance(60);
    QTest::qWait(120);
    EXPECT_EQ(Part<JumpSlider>("mpSlider").value(), held);
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, OnSlider(0.5));
}

TEST_F(ControlTest, MutesAndSetsTheVolume) {
    Click("mpMute");
    EXPECT_TRUE(player.Muted());
    Click("mpMute");
    EXPECT_FALSE(player.Muted());
    QWidget& volume = Part<QWidget>("mpVolume");
    QTest::mouseClick(&volume, Qt::LeftButton, {}, {volume.width() / 2, volume.height() / 2});
    EXPECT_NEAR(player.Volume(), 50, 10);
    player.Volume(20);
    EXPECT_EQ(Part<JumpSlider>("mpVolume").value(), 20);
    player.Muted(true);
    EXPECT_TRUE(Part<QToolButton>("mpMute").isChecked());
}

TEST_F(ControlTest, TheRateMenuSetsTheRate) {
    auto& button = Part<QToolButton>("mpRate");
    EXPECT_EQ(button.text(), "1x");
    QMenu& menu = *button.menu();
    emit menu.aboutToShow();
    ASSERT_EQ(menu.actions().size(), 6);
    EXPECT_TRUE(Find(menu, "1x")->isChecked());
    Find(menu, "0.5x")->trigger();
    EXPECT_EQ(player.Rate(), 0.5);
    EXPECT_EQ(button.text(), "0.5x");
    EXPECT_EQ(activated.count(), 1);
    emit menu.aboutToShow();
    EXPECT_TRUE(Find(menu, "0.5x")->isChecked());
}

TEST_F(ControlTest, TheMenuOffersEverything) {
    player.Tracks = {"English", "Q & A (deu)"};
    player.AudioTrack(0);
    player.CurrentPosition(100);
    QMenu* menu = OpenMenu();
    ASSERT_NE(menu, nullptr);
    const auto choose = [&](const char* text) {
        QAction* action = Find(*menu, QString::fromUtf8(text));
        ASSERT_NE(action, nullptr) << text;
        action->trigger();
    };
    choose("Play");
    EXPECT_EQ(player.State(), Player::Playing);
    choose("30 s forward");
    EXPECT_EQ(player.CurrentPosition(), 130);
    choose("5 s back");
    EXPECT_EQ(player.CurrentPosition(), 125);
    choose("To the end");
    EXPECT_EQ(player.CurrentPosition(), 600);
    choose("To the start");
    EXPECT_EQ(player.CurrentPosition(), 0);
    choose("1.5x");
    EXPECT_EQ(player.Rate(), 1.5);
    choose("Mute");
    EXPECT_TRUE(player.Muted());
    choose("Quieter");
    EXPECT_EQ(player.Volume(), 90);
    choose("Louder");
    EXPECT_EQ(player.Volume(), 100);
    choose("16:9");
    EXPECT_NEAR(player.Aspect(), 16.0 / 9, 1e-9);
    choose("As the film says");
    EXPECT_EQ(player.Aspect(), 0);
    choose("Q  A (deu)");
    EXPECT_EQ(player.AudioTrack(), 1);
    choose("Stop");
    EXPECT_EQ(player.State(), Player::Stopped);
    EXPECT_EQ(activated.count(), 13);
    menu->close();
}

TEST_F(ControlTest, NoMenuWithoutMedia) {
    player.FileName("");
    EXPECT_EQ(OpenMenu(), nullptr);
}

TEST_F(ControlTest, WithoutMediaTheBarIsDisabled) {
    EXPECT_TRUE(Part<QWidget>("mpPlay").isEnabled());
    player.FileName("");
    for (const char* name : {"mpPlay", "mpStop", "mpSlider", "mpMute", "mpVolume", "mpRate"})
        EXPECT_FALSE(Part<QWidget>(name).isEnabled()) << name;
    EXPECT_EQ(Part<QLabel>("mpTotal").text(), "0:00");
    EXPECT_FALSE(Part<JumpSlider>("mpSlider").isEnabled());
    player.FileName(AnyFile());
    EXPECT_TRUE(Part<QWidget>("mpPlay").isEnabled());
}

TEST_F(ControlTest, ButtonsAndSlidersTakeTheFocusFromTheKeyboardAlone) {
    for (const char* name : {"mpPlay", "mpStop", "mpSlider", "mpMute", "mpVolume", "mpRate"})
        EXPECT_EQ(Part<QWidget>(name).focusPolicy(), Qt::TabFocus) << name;
    EXPECT_EQ(Part<QWidget>("mpPicture").focusPolicy(), Qt::NoFocus);
    EXPECT_EQ(control.focusPolicy(), Qt::NoFocus);
}

TEST_F(ControlTest, AFocusedButtonIsPressedByEnterAndKeepsTheFocus) {
    player.FileName(AnyFile());
    control.activateWindow();
    auto& play = Part<QToolButton>("mpPlay");
    play.setFocus();
    const QSignalSpy back(&player, &Player::Activated);
    QTest::keyClick(&play, Qt::Key_Return);
    EXPECT_EQ(player.State(), Player::Playing);
    EXPECT_EQ(back.count(), 0);
}

TEST_F(ControlTest, ArrowsMoveAFocusedSlider) {
    player.FileName(AnyFile());
    player.CurrentPosition(10);
    QTest::keyClick(&Part<JumpSlider>("mpSlider"), Qt::Key_Right);
    EXPECT_EQ(player.CurrentPosition(), 11);
}

TEST_F(ControlTest, ScreenReadersHearTheTimes) {
    player.FileName(AnyFile());
    player.CurrentPosition(65);
    EXPECT_EQ(Part<QLabel>("mpElapsed").accessibleName(), "Elapsed time 1:05");
    EXPECT_EQ(Part<QLabel>("mpTotal").accessibleName(), "Total time 10:00");
}

TEST_F(ControlTest, EveryPartHasAName) {
    for (const char* name : {"mpPlay", "mpStop", "mpSlider", "mpElapsed", "mpTotal", "mpMute",
                             "mpVolume", "mpRate", "mpPicture"})
        EXPECT_FALSE(Part<QWidget>(name).accessibleName().isEmpty()) << name;
    EXPECT_EQ(Part<QWidget>("mpPicture").toolTip(),
              "Right-click for a player options menu, or move the mouse out to get rid of this "
              "text");
}

TEST_F(ControlTest, ThePicturesClickGivesTheKeyboardBack) {
    QTest::mouseClick(&Part<QWidget>("mpPicture"), Qt::LeftButton);
    EXPECT_EQ(activated.count(), 1);
}

TEST_F(ControlTest, TheStripHasItsRoomAndNothingOverlaps) {
    for (const int width : {900, 640, 480, 420, 380, 320, 280}) {
        control.resize(width, 300);
        QTest::qWait(1);
        int last = MediaPlayerControl::StripSpace - 1;
        for (const char* name : {"mpPlay", "mpStop", "mpSlider", "mpElapsed", "mpTotal", "mpMute",
                                 "mpVolume", "mpRate"}) {
            const QWidget& part = Part<QWidget>(name);
            if (!part.isVisible())
                continue;
            EXPECT_GT(part.x(), last) << name << " at " << width;
            last = part.geometry().right();
        }
        EXPECT_LT(last, width);
        EXPECT_TRUE(Part<QWidget>("mpSlider").isVisible());
        EXPECT_EQ(Part<QWidget>("mpPicture").height(), 300 - MediaPlayerControl::ControlBarHeight);
    }
}

/// The colours of a picture of the control.
QColor At(QWidget& widget, const QPoint& place) {
    const QImage image = widget.grab().toImage();
    return image.pixelColor(place * image.devicePixelRatio());
}

TEST_F(ControlTest, EveryButtonGrowsWithTheFont) {
    const auto buttons = control.findChildren<QToolButton*>();
    ASSERT_GE(buttons.size(), 6);
    std::vector<std::pair<int, int>> before;
    for (const QToolButton* button : buttons)
        before.emplace_back(button->iconSize().height(), button->minimumHeight());
    QFont large = control.font();
    large.setPointSizeF(2.5 * large.pointSizeF());
    control.setFont(large);
    const QSize side = Part<QToolButton>("mpPlay").iconSize();
    for (qsizetype i = 0; i < buttons.size(); ++i) {
        const QToolButton& button = *buttons[i];
        const auto [icon, height] = before[static_cast<std::size_t>(i)];
        const std::string name = button.objectName().toStdString();
        EXPECT_GT(button.iconSize().height(), icon) << name;
        EXPECT_GT(button.minimumHeight(), height) << name;
        EXPECT_EQ(button.iconSize(), side) << name;
    }
}

TEST_F(ControlTest, TheIconsAreInTheTextsColour) {
    const QPalette before = QApplication::palette();
    for (const bool dark : {false, true}) {
        QPalette palette = before;
        palette.setColor(QPalette::Window, dark ? QColor(40, 40, 40) : QColor(240, 240, 240));
        palette.setColor(QPalette::Button, palette.color(QPalette::Window));
        palette.setColor(QPalette::ButtonText, dark ? Qt::white : Qt::black);
        QApplication::setPalette(palette);
        auto& stop = Part<QToolButton>("mpStop");
        const int middle = qGray(At(stop, stop.rect().center()).rgb());
        EXPECT_TRUE(dark ? middle > 200 : middle < 50) << middle;
    }
    QApplication::setPalette(before);
}

TEST(MediaControl, DrawsTheFilmAtEverySize) {
    const auto player = MakeMpvPlayer();
    MediaPlayerControl control(*player);
    control.resize(400, 300);
    control.show();
    Film film;
    player->FileName(MakeFilm(film));
    player->CurrentPosition(2);
    auto& picture = Child<QWidget>(control, "mpPicture");
    const auto shown = [&] {
        return PictureNumber(picture.grab().toImage());
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown() == 50; }, 30'000));
    control.resize(720, 300);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown() == 50; }, 30'000));
    control.resize(300, 500);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown() == 50; }, 30'000));
}

TEST(MediaControl, DrawsTheFilmWhereItIsInTheWindow) {
    const auto player = MakeMpvPlayer();
    QWidget window;
    window.resize(700, 500);
    MediaPlayerControl control(*player, &window);
    control.setGeometry(150, 90, 400, 300);
    window.show();
    Film film;
    player->FileName(MakeFilm(film));
    player->CurrentPosition(2);
    auto& picture = Child<QWidget>(control, "mpPicture");
    const auto onScreen = [&] {
        return window.screen()->grabWindow(window.winId()).toImage();
    };
    const QRect place(picture.mapTo(&window, QPoint(0, 0)), picture.size());
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return PictureNumber(onScreen().copy(place)) == 50; }, 30'000));
    // All around it the window is as it would be without.
    const QImage with = onScreen();
    player->FileName("");
    QTest::qWait(50);
    const QImage without = onScreen();
    for (const QRect& side : {QRect(0, 0, 700, place.top()), QRect(0, 0, place.left(), 500),
                              QRect(place.right() + 1, 0, 699 - place.right(), 500)})
        EXPECT_EQ(with.copy(side), without.copy(side));
}

class PaintCount : public QObject {
  public:
    explicit PaintCount(QWidget& widget) { widget.installEventFilter(this); }
    int paints = 0;

  protected:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        paints += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

TEST_F(ControlTest, TheSliderIsPaintedOnlyWhenItsHandleMoves) {
    auto& slider = Part<JumpSlider>("mpSlider");
    const QSignalBlocker quiet(slider);
    slider.setValue(300'000);
    QTest::qWait(20);
    PaintCount count(slider);
    for (int tick = 1; tick <= 5; ++tick) {
        slider.setValue(300'000 + tick);
        QTest::qWait(5);
    }
    EXPECT_LE(count.paints, 1);
    EXPECT_EQ(slider.value(), 300'005);
    count.paints = 0;
    slider.setValue(100'000);
    EXPECT_TRUE(QTest::qWaitFor([&] { return count.paints > 0; }, 30'000));
}

TEST(MediaControl, SoundShowsASymbol) {
    const auto player = MakeMpvPlayer();
    MediaPlayerControl control(*player);
    control.resize(400, 300);
    control.show();
    auto& picture = Child<QWidget>(control, "mpPicture");
    const QImage nothing = picture.grab().toImage();
    player->FileName(MakeFilm(FilmIn("mp3")));
    const QImage note = picture.grab().toImage();
    EXPECT_NE(nothing, note);
    EXPECT_EQ(note.pixelColor(2, 2), nothing.pixelColor(2, 2));
    player->FileName("");
    EXPECT_EQ(picture.grab().toImage(), nothing);
}

TEST(MediaControl, ADraggedSliderEndsOnTheLastPicture) {
    const auto player = MakeMpvPlayer();
    MediaPlayerControl control(*player);
    control.resize(640, 300);
    control.show();
    Film film;
    film.pictures = 300;
    film.group = 250;
    player->FileName(MakeFilm(film));
    auto& slider = Child<QWidget>(control, "mpSlider");
    const int y = slider.height() / 2;
    QTest::mousePress(&slider, Qt::LeftButton, {}, {10, y});
    for (int x = 12; x < slider.width() - 20; x += 3)
        QTest::mouseMove(&slider, {x, y});
    QTest::mouseRelease(&slider, Qt::LeftButton, {}, {slider.width() - 20, y});
    const int number = PictureTimes(film).NumberAt(player->CurrentPosition());
    EXPECT_GT(number, 200);
    auto& picture = Child<QWidget>(control, "mpPicture");
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return PictureNumber(picture.grab().toImage()) == number; }, 30'000));
}

} // namespace

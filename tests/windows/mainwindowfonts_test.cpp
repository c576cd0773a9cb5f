#include "mainwindow/transportstrip.h"
#include "platform/fontstyle.h"
#include "tests/windows/mainwindowtest.h"

#include <QLabel>
#include <QLayout>
#include <QScreen>
#include <QToolButton>

namespace {

constexpr int Points[] = {9, 12, 16, 24};

/// The main window with texts of another size, as a first start gives it.
class MainWindowFonts : public MainWindowTest, public testing::WithParamInterface<int> {
  protected:
    MainWindowFonts() {
        CloseWindow();
        QSettings(QSettings::NativeFormat, QSettings::UserScope, "Tevo", "Quelmar").clear();
        QApplication::setStyle(new FontStyle);
        SetPoints(GetParam());
        OpenWindow();
        Settle();
    }
    ~MainWindowFonts() override {
        CloseWindow();
        QApplication::setFont(m_usual);
    }

    static void SetPoints(int points) {
        QFont font = QApplication::font();
        font.setPointSize(points);
        QApplication::setFont(font);
    }
    void Settle() {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
    }
    static int Line(const QWidget& widget) { return QFontMetrics(widget.font()).height(); }

    static int NeededWidth(const QWidget& control) {
        // The styles want more for a button than a short caption needs.
        if (const auto* button = qobject_cast<const QPushButton*>(&control);
            button != nullptr && !button->text().isEmpty())
            return button->fontMetrics().horizontalAdvance(button->text()) + 6;
        return qobject_cast<const QLineEdit*>(&control) != nullptr
                   ? 4 * Line(control)
                   : control.minimumSizeHint().width();
    }
    static std::string Words(const QRect& place) {
        return QStringLiteral(" %1,%2 %3x%4")
            .arg(place.x())
            .arg(place.y())
            .arg(place.width())
            .arg(place.height())
            .toStdString();
    }
    /// What a person reads or presses in a panel.
    QList<QWidget*> Controls(const char* panel) {
        QList<QWidget*> controls;
        for (QWidget* control : The<QWidget>(panel).findChildren<QWidget*>())
            if (control->isVisible() && !control->objectName().isEmpty() &&
                !control->objectName().startsWith("qt_"))
                controls << control;
        return controls;
    }
    void ExpectWhole(const char* panel) {
        const QWidget& within = The<QWidget>(panel);
        const QList<QWidget*> controls = Controls(panel);
        for (const QWidget* control : controls) {
            const std::string name = control->objectName().toStdString();
            const QRect place(control->mapTo(&within, QPoint()), control->size());
            EXPECT_TRUE(within.rect().contains(place)) << name;
            EXPECT_GE(control->width(), NeededWidth(*control)) << name;
            EXPECT_GE(control->height(), Line(*control)) << name;
            for (const QWidget* other : controls) {
                const QRect otherPlace(other->mapTo(&within, QPoint()), other->size());
                if (other != control && other->parentWidget() == control->parentWidget()) {
                    EXPECT_FALSE(place.intersects(otherPlace))
                        << name << " and " << other->objectName().toStdString();
                }
            }
        }
    }

  private:
    const QFont m_usual = QApplication::font();
};

TEST_P(MainWindowFonts, AFirstStartFitsTheFontAndShowsBothPanels) {
    const QWidget& files = The<QWidget>("PB");
    const QWidget& display = The<QWidget>("PB2");
    EXPECT_TRUE(window->screen()->availableGeometry().contains(window->geometry()));
    EXPECT_EQ(display.x(), files.width());
    EXPECT_LE(display.geometry().right(), window->width());
    EXPECT_TRUE(window->rect().contains(files.geometry()));
    EXPECT_GE(The<QWidget>("mpPicture").height(), 140);
    ExpectWhole("PB");
    ExpectWhole("PB2");
}

TEST_P(MainWindowFonts, TheFilmsControlsFollowTheFont) {
    OpenFilm();
    Settle();
    const QWidget& media = The<QWidget>("MP");
    const QWidget& picture = The<QWidget>("mpPicture");
    const int bar = media.height() - picture.height();
    EXPECT_GE(bar, 34);
    EXPECT_GE(bar, 2 * Line(*window));
    for (const char* name : {"mpPlay", "mpStop", "mpMute"}) {
        const auto& button = The<QToolButton>(name);
        EXPECT_GE(button.iconSize().height() + 1, Line(button) * 16 / 17) << name;
        EXPECT_TRUE(QRect(QPoint(), button.size()).contains(QRect(QPoint(), button.iconSize())))
            << name;
    }
    for (const char* name : {"mpElapsed", "mpTotal"})
        EXPECT_GE(The<QWidget>(name).height(), Line(*window)) << name;
    const QWidget& strip = The<QWidget>("picButtons");
    const QWidget& play = The<QWidget>("mpPlay");
    EXPECT_TRUE(media.geometry().contains(strip.geometry()));
    EXPECT_GE(strip.y(), picture.height());
    EXPECT_LT(strip.geometry().right(), play.mapTo(window.get(), QPoint()).x());
    EXPECT_GE(strip.height() + 1, 24 * Line(*window) / 17);
    EXPECT_GE(The("cmdBlue").iconSize().height() + 1, Line(*window) * 20 / 17);
}

TEST_P(MainWindowFonts, TheStripsButtonsAreWhereTheyAreDrawn) {
    OpenFilm();
    player->CurrentPosition(15);
    auto& strip = The<TransportStrip>("picButtons");
    constexpr double Middles[] = {18.0 / 104, 40.5 / 104, 63.5 / 104, 85.5 / 104};
    const auto over = [&](int button) {
        return QPoint(qRound(strip.width() * Middles[button - 1]), strip.height() / 2);
    };
    for (int button = 1; button <= 4; ++button) {
        QTest::mouseMove(&strip, over(button));
        QMouseEvent move(QEvent::MouseMove, over(button), strip.mapToGlobal(over(button)),
                         Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&strip, &move);
        EXPECT_EQ(strip.Picture(), 2 + button);
    }
    QTest::mouseClick(&strip, Qt::LeftButton, {}, over(3));
    EXPECT_EQ(player->CurrentPosition(), 15.5);
}

TEST_P(MainWindowFonts, AtAnySizeThePanelsLieSideBySideOrOneOverTheOther) {
    const QWidget& files = The<QWidget>("PB");
    const QWidget& display = The<QWidget>("PB2");
    for (const int width : {667, 700, 840, 1000, 1200, 1500, 2200}) {
        window->resize(width, 900);
        Settle();
        const bool sideBySide =
            files.width() + display.width() < width + 1 && display.x() == files.width();
        const bool over = display.pos() == files.pos();
        EXPECT_NE(sideBySide, over) << width;
        EXPECT_EQ(files.x(), 0) << width;
        EXPECT_EQ(files.y(), 900 - files.height()) << width;
        EXPECT_EQ(display.y(), files.y()) << width;
    }
}

TEST_P(MainWindowFonts, AnotherFontWhileItRunsIsFollowed) {
    for (const int points : Points) {
        SetPoints(points);
        Settle();
        const QWidget& media = The<QWidget>("MP");
        const QWidget& strip = The<QWidget>("picButtons");
        EXPECT_GE(media.height() - The<QWidget>("mpPicture").height(), 2 * Line(*window));
        EXPECT_TRUE(media.geometry().contains(strip.geometry())) << points;
        EXPECT_GE(strip.height() + 1, 24 * Line(*window) / 17) << points;
        ExpectWhole("PB2");
    }
}

TEST_P(MainWindowFonts, TheEditorOpensInsideTheScreenAndNotOverTheFilm) {
    OpenTitles();
    OpenFilm();
    Settle();
    Click("cmdEdit");
    const auto& editor = The<QWidget>("frmList");
    ASSERT_TRUE(QTest::qWaitForWindowExposed(const_cast<QWidget*>(&editor)));
    const QWidget& picture = The<QWidget>("mpPicture");
    const QRect film(picture.mapToGlobal(QPoint()), picture.size());
    EXPECT_TRUE(window->screen()->availableGeometry().contains(editor.geometry()));
    EXPECT_FALSE(film.intersects(editor.frameGeometry()))
        << Words(film) << Words(editor.frameGeometry());
    EXPECT_GE(The<QWidget>("LV").height(), 4 * Line(editor));
}

INSTANTIATE_TEST_SUITE_P(InPoints, MainWindowFonts, testing::ValuesIn(Points));

} // namespace

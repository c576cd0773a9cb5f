#include "dialogs/placement.h"

#include "platform/twips.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace {

constexpr std::int32_t BesideTwips = 1000;

} // namespace

void KeepOnScreen(QWidget& window) {
    const QRect screen = window.screen()->availableGeometry();
    QRect frame(window.pos(), window.frameSize());
    frame.moveRight(qMin(frame.right(), screen.right()));
    frame.moveBottom(qMin(frame.bottom(), screen.bottom()));
    frame.moveLeft(qMax(frame.left(), screen.left()));
    frame.moveTop(qMax(frame.top(), screen.top()));
    if (frame.topLeft() != window.pos())
        window.move(frame.topLeft());
}

void KeepReachable(QWidget& window) {
    constexpr QSize Grip(100, 20);
    const QRect title(window.pos(), QSize(window.width(), Grip.height()));
    for (const QScreen* screen : QGuiApplication::screens()) {
        const QRect shown = title & screen->availableGeometry();
        if (shown.width() >= Grip.width() && shown.height() >= Grip.height())
            return;
    }
    KeepOnScreen(window);
}

void PlaceBeside(QWidget& window, const QWidget& other) {
    window.move(other.pos() + QPoint(ToPixels(BesideTwips), ToPixels(BesideTwips)));
}

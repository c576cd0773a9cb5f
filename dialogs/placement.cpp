#include "dialogs/placement.h"

#include "platform/twips.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

#include <algorithm>
#include <array>

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

QRect BesideFilm(QSize size, QSize least, const QRect& film, const QRect& screen) {
    const std::array<QRect, 4> rooms{screen.adjusted(film.right() + 1 - screen.left(), 0, 0, 0),
                                     screen.adjusted(0, film.bottom() + 1 - screen.top(), 0, 0),
                                     screen.adjusted(0, 0, film.left() - 1 - screen.right(), 0),
                                     screen.adjusted(0, 0, 0, film.top() - 1 - screen.bottom())};
    const auto fitting = [&](const QRect& room) {
        return size.boundedTo(room.size().expandedTo(QSize(0, 0)));
    };
    const auto area = [&](const QRect& room) {
        const QSize fits = fitting(room);
        return fits.width() < least.width() || fits.height() < least.height()
                   ? 0
                   : fits.width() * fits.height();
    };
    const auto best =
        std::max_element(rooms.begin(), rooms.end(), [&](const QRect& one, const QRect& other) {
            return area(one) < area(other);
        });
    if (area(*best) == 0) {
        const QSize lower(screen.width(), qMax(least.height(), screen.height() / 2));
        QRect place(QPoint(), size.boundedTo(lower).boundedTo(screen.size()));
        place.moveBottomRight(screen.bottomRight());
        return place;
    }
    // As near to the film's own corner as the room allows.
    QRect place(QPoint(), fitting(*best));
    place.moveTopLeft({qBound(best->left(), film.left(), best->right() + 1 - place.width()),
                       qBound(best->top(), film.top(), best->bottom() + 1 - place.height())});
    return place;
}

void PlaceBeside(QWidget& window, const QWidget& other) {
    window.move(other.pos() + QPoint(ToPixels(BesideTwips), ToPixels(BesideTwips)));
}

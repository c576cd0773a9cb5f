#include "mainwindow/windowplace.h"

#include <algorithm>

namespace {

/// No window is larger, whatever a settings file says.
constexpr int LargestSide = 16384;
/// How much of the top edge must lie on a screen.
constexpr int Graspable = 80;
constexpr int TitleBarHeight = 32;
/// What a window's frame takes at both sides, and at the top and the bottom.
constexpr QSize FrameRoom(8, TitleBarHeight + 8);

int SensibleSide(int remembered, int design, int minimum) {
    return remembered <= 0 || remembered > LargestSide ? design : std::max(remembered, minimum);
}

bool CanBeGrasped(const QRect& window, const QList<QRect>& screens) {
    const QRect edge(window.left(), window.top(), window.width(), TitleBarHeight);
    return std::any_of(screens.begin(), screens.end(), [&](const QRect& screen) {
        const QRect visible = edge.intersected(screen);
        return visible.width() >= Graspable && visible.height() >= TitleBarHeight / 2 &&
               window.top() >= screen.top() - TitleBarHeight / 2;
    });
}

} // namespace

QRect WindowPlace(const QRect& remembered, const QRect& design, QSize minimum,
                  const QList<QRect>& screens) {
    const QSize size(SensibleSide(remembered.width(), design.width(), minimum.width()),
                     SensibleSide(remembered.height(), design.height(), minimum.height()));
    const QRect place(remembered.topLeft(), size);
    return CanBeGrasped(place, screens) ? place : QRect(design.topLeft(), size);
}

QRect DesignPlace(QSize size, QSize minimum, const QRect& screen) {
    QRect place(QPoint(), size.boundedTo(screen.size() - FrameRoom).expandedTo(minimum));
    place.moveCenter(screen.center() - QPoint(0, TitleBarHeight / 2));
    place.moveTopLeft({std::max(place.left(), screen.left()), std::max(place.top(), screen.top())});
    return place;
}

#pragma once

#include <QFontMetrics>
#include <QWidget>

/// How many times larger than usual a widget's texts are; never less than 1. What stands
/// beside texts (icons, bars, little buttons) grows as they do.
inline double FontScale(const QWidget& widget) {
    constexpr double UsualLine = 17;
    return qMax(1.0, QFontMetrics(widget.font()).height() / UsualLine);
}

/// A length in pixels that is right beside texts of the usual size.
inline int Scaled(int pixels, const QWidget& widget) {
    return qRound(pixels * FontScale(widget));
}
inline QSize Scaled(QSize pixels, const QWidget& widget) {
    return {Scaled(pixels.width(), widget), Scaled(pixels.height(), widget)};
}

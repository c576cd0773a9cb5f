#include "mainwindow/toolicons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

namespace {

void DrawFlag(QPainter& painter, const QColor& pole, const QColor& cloth) {
    QPainterPath flag(QPointF(5.5, 3));
    flag.cubicTo(9, 1, 12, 5.5, 16.5, 3.5);
    flag.lineTo(16.5, 11);
    flag.cubicTo(12, 13, 9, 8.5, 5.5, 10.5);
    flag.closeSubpath();
    painter.setPen(QPen(cloth.darker(130), 1));
    painter.setBrush(cloth);
    painter.drawPath(flag);
    painter.setPen(QPen(pole, 1.8, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(4.5, 2.5), QPointF(4.5, 17.5));
}

void DrawStretch(QPainter& painter, const QColor& ink, const QColor& blue, const QColor& green) {
    painter.setPen(QPen(blue, 2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(2, 4), QPointF(2, 16));
    painter.setPen(QPen(green, 2, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(QPointF(18, 4), QPointF(18, 16));
    painter.setPen(QPen(ink, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawLine(QPointF(5, 10), QPointF(15, 10));
    painter.drawPolyline(QPolygonF({{7.5, 7}, {4.8, 10}, {7.5, 13}}));
    painter.drawPolyline(QPolygonF({{12.5, 7}, {15.2, 10}, {12.5, 13}}));
}

QPixmap Draw(ToolIcon icon, const QPalette& palette, QPalette::ColorGroup group, int scale) {
    QPixmap picture(ToolIconSide * scale, ToolIconSide * scale);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor ink = palette.color(group, QPalette::ButtonText);
    const bool disabled = group == QPalette::Disabled;
    const QColor blue = disabled ? ink : QColor(0x2f, 0x6f, 0xe0);
    const QColor green = disabled ? ink : QColor(0x2f, 0xa0, 0x48);
    switch (icon) {
    case ToolIcon::BlueFlag:
        DrawFlag(painter, ink, blue);
        break;
    case ToolIcon::GreenFlag:
        DrawFlag(painter, ink, green);
        break;
    case ToolIcon::Stretch:
        DrawStretch(painter, ink, blue, green);
        break;
    }
    return picture;
}

} // namespace

QIcon MakeToolIcon(ToolIcon icon, const QPalette& palette) {
    QIcon result;
    for (const int scale : {1, 2, 3}) {
        result.addPixmap(Draw(icon, palette, QPalette::Active, scale), QIcon::Normal);
        result.addPixmap(Draw(icon, palette, QPalette::Disabled, scale), QIcon::Disabled);
    }
    return result;
}

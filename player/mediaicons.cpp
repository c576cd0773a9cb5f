#include "player/mediaicons.h"

#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>

#include <algorithm>
#include <utility>

namespace {

// Every shape is drawn in a square of 16 by 16.

QPainterPath Polygon(std::initializer_list<QPointF> points) {
    QPainterPath path;
    path.addPolygon(QPolygonF(QList<QPointF>(points)));
    path.closeSubpath();
    return path;
}

QPainterPath Box(double x, double y, double width, double height) {
    QPainterPath path;
    path.addRoundedRect(x, y, width, height, 0.8, 0.8);
    return path;
}

QPainterPath Loudspeaker() {
    return Polygon({{1.5, 5.8}, {4, 5.8}, {7.5, 2.6}, {7.5, 13.4}, {4, 10.2}, {1.5, 10.2}});
}

QPainterPath Stroke(const QPainterPath& line) {
    QPainterPathStroker stroker;
    stroker.setWidth(1.5);
    stroker.setCapStyle(Qt::RoundCap);
    return stroker.createStroke(line);
}

QPainterPath Waves() {
    QPainterPath line;
    line.arcMoveTo(QRectF(5.5, 5, 6, 6), -50);
    line.arcTo(QRectF(5.5, 5, 6, 6), -50, 100);
    line.arcMoveTo(QRectF(3.5, 2.5, 11, 11), -50);
    line.arcTo(QRectF(3.5, 2.5, 11, 11), -50, 100);
    return Stroke(line);
}

QPainterPath Cross() {
    QPainterPath line(QPointF(10, 5.8));
    line.lineTo(14.4, 10.2);
    line.moveTo(14.4, 5.8);
    line.lineTo(10, 10.2);
    return Stroke(line);
}

QPainterPath Note() {
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    path.addEllipse(QRectF(2, 10.6, 4.6, 3.6));
    path.addEllipse(QRectF(9.4, 9.1, 4.6, 3.6));
    path.addPath(Polygon({{5.4, 12.4},
                          {5.4, 3.3},
                          {14, 1.6},
                          {14, 11},
                          {12.8, 11},
                          {12.8, 4.8},
                          {6.6, 6},
                          {6.6, 12.4}}));
    return path;
}

QPainterPath Shape(MediaShape shape) {
    switch (shape) {
    case MediaShape::Play:
        return Polygon({{4, 2.4}, {13.4, 8}, {4, 13.6}});
    case MediaShape::Pause:
        return Box(3.4, 2.8, 3.4, 10.4) + Box(9.2, 2.8, 3.4, 10.4);
    case MediaShape::Stop:
        return Box(3.2, 3.2, 9.6, 9.6);
    case MediaShape::Sound:
        return Loudspeaker() + Waves();
    case MediaShape::Silence:
        return Loudspeaker() + Cross();
    case MediaShape::Note:
        return Note();
    }
    return {};
}

class ShapeEngine : public QIconEngine {
  public:
    ShapeEngine(MediaShape shape, QPalette palette)
        : m_shape(shape)
        , m_palette(std::move(palette)) {}

    void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        DrawMediaShape(*painter, m_shape, place, m_palette.color(group, QPalette::ButtonText));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new ShapeEngine(m_shape, m_palette); }

  private:
    MediaShape m_shape;
    QPalette m_palette;
};

} // namespace

void DrawMediaShape(QPainter& painter, MediaShape shape, const QRectF& place,
                    const QColor& colour) {
    const double side = std::min(place.width(), place.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(place.center() - QPointF(side, side) / 2);
    painter.scale(side / 16, side / 16);
    painter.fillPath(Shape(shape), colour);
    painter.restore();
}

QIcon MediaIcon(MediaShape shape, const QPalette& palette) {
    return QIcon(new ShapeEngine(shape, palette));
}

#include "listeditor/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>

#include <map>

namespace {

// Drawn on a field of 24 by 24 units.
constexpr qreal Field = 24;
constexpr qreal PenWidth = 1.7;

using Line = QList<QPointF>;
using Lines = QList<Line>;

const Lines& LinesOf(Sign sign) {
    static const std::map<Sign, Lines> All{
        {Sign::None, {}},
        {Sign::Undo, {{{8, 4}, {4, 8}, {8, 12}}}},
        {Sign::Find, {{{15, 15}, {20, 20}}}},
        {Sign::Italic, {{{10, 4.5}, {18, 4.5}}, {{6, 19.5}, {14, 19.5}}, {{14, 4.5}, {10, 19.5}}}},
        {Sign::Spelling,
         {{{3, 12}, {6, 4}, {9, 12}}, {{4.2, 9}, {7.8, 9}}, {{10, 17}, {13.5, 20.5}, {21, 11}}}},
        {Sign::Edit,
         {{{4, 20}, {5, 15.5}, {16, 4.5}, {19.5, 8}, {8.5, 19}, {4, 20}}, {{13.5, 7}, {17, 10.5}}}},
        {Sign::Insert, {{{4, 19}, {20, 19}}, {{12, 4}, {12, 14}}, {{7, 9}, {17, 9}}}},
        {Sign::Delete,
         {{{4, 6.5}, {20, 6.5}},
          {{9, 6.5}, {9, 4}, {15, 4}, {15, 6.5}},
          {{6, 6.5}, {7, 20}, {17, 20}, {18, 6.5}},
          {{10, 10}, {10.3, 16.5}},
          {{14, 10}, {13.7, 16.5}}}},
        {Sign::Sooner, {{{20, 12}, {5, 12}}, {{10, 7}, {5, 12}, {10, 17}}}},
        {Sign::Later, {{{4, 12}, {19, 12}}, {{14, 7}, {19, 12}, {14, 17}}}},
        {Sign::Shorter,
         {{{2, 12}, {9.5, 12}},
          {{6, 8}, {9.5, 12}, {6, 16}},
          {{22, 12}, {14.5, 12}},
          {{18, 8}, {14.5, 12}, {18, 16}}}},
        {Sign::Longer,
         {{{10.5, 12}, {3, 12}},
          {{6.5, 8}, {3, 12}, {6.5, 16}},
          {{13.5, 12}, {21, 12}},
          {{17.5, 8}, {21, 12}, {17.5, 16}}}},
        {Sign::Stretch,
         {{{3, 5}, {3, 19}},
          {{21, 5}, {21, 19}},
          {{6, 12}, {18, 12}},
          {{9, 9}, {6, 12}, {9, 15}},
          {{15, 9}, {18, 12}, {15, 15}}}},
        {Sign::Shift,
         {{{4, 6}, {13, 6}},
          {{4, 18}, {13, 18}},
          {{4, 12}, {20, 12}},
          {{16, 8}, {20, 12}, {16, 16}}}},
        {Sign::Bye,
         {{{13, 4}, {5, 4}, {5, 20}, {13, 20}},
          {{10, 12}, {20, 12}},
          {{16, 8}, {20, 12}, {16, 16}}}},
    };
    return All.at(sign);
}

QPainterPath PathOf(Sign sign) {
    QPainterPath path;
    for (const Line& line : LinesOf(sign)) {
        path.moveTo(line.front());
        for (const QPointF& point : line)
            path.lineTo(point);
    }
    if (sign == Sign::Find)
        path.addEllipse(QPointF(10.5, 10.5), 6, 6);
    if (sign == Sign::Undo) {
        path.moveTo(4, 8);
        path.lineTo(14, 8);
        path.arcTo(QRectF(9, 8, 11, 11), 90, -180);
        path.lineTo(9, 19);
    }
    return path;
}

class SignEngine : public QIconEngine {
  public:
    explicit SignEngine(Sign sign)
        : m_sign(sign) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State /*state*/) override {
        const QPalette::ColorGroup group =
            mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const qreal side = qMin(rect.width(), rect.height());
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.center().x() + 0.5 - side / 2, rect.center().y() + 0.5 - side / 2);
        painter->scale(side / Field, side / Field);
        painter->setPen(QPen(QGuiApplication::palette().color(group, QPalette::ButtonText),
                             PenWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->drawPath(PathOf(m_sign));
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap pixmap(size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return pixmap;
    }

    QIconEngine* clone() const override { return new SignEngine(m_sign); }

  private:
    Sign m_sign;
};

} // namespace

QIcon DrawnIcon(Sign sign) {
    return QIcon(new SignEngine(sign));
}

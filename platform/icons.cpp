#include "platform/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>

#include <algorithm>
#include <map>
#include <optional>

namespace {

// All signs are drawn on a field of 24 by 24 units.
constexpr qreal Field = 24;
constexpr qreal PenWidth = 1.7;
constexpr QColor Blue(0x2f, 0x6f, 0xe0);
constexpr QColor Green(0x2f, 0xa0, 0x48);

/// A piece of a sign: a line, or a filled shape.
struct Piece {
    QPainterPath path;
    bool filled = false;
    /// Of its own; else in the colour of the texts.
    std::optional<QColor> colour = {};
};
using Pieces = QList<Piece>;
using Points = QList<QPointF>;

QPainterPath Along(const QList<Points>& lines) {
    QPainterPath path;
    for (const Points& line : lines) {
        path.moveTo(line.front());
        for (const QPointF& point : line)
            path.lineTo(point);
    }
    return path;
}

Pieces Lines(const QList<Points>& lines) {
    return {{Along(lines)}};
}

Pieces UndoSign() {
    QPainterPath path = Along({{{8, 4}, {4, 8}, {8, 12}}, {{4, 8}, {14, 8}}});
    path.arcTo(QRectF(9, 8, 11, 11), 90, -180);
    path.lineTo(9, 19);
    return {{path}};
}

Pieces FindSign() {
    QPainterPath path = Along({{{15, 15}, {20, 20}}});
    path.addEllipse(QPointF(10.5, 10.5), 6, 6);
    return {{path}};
}

Piece Polygon(const Points& points) {
    QPainterPath path = Along({points});
    path.closeSubpath();
    return {path, true};
}

Piece Box(const QRectF& place) {
    QPainterPath path;
    path.addRoundedRect(place, 1.2, 1.2);
    return {path, true};
}

Piece Loudspeaker() {
    return Polygon({{2.25, 8.7}, {6, 8.7}, {11.25, 3.9}, {11.25, 20.1}, {6, 15.3}, {2.25, 15.3}});
}

Piece Waves() {
    QPainterPath path;
    for (const QRectF& circle : {QRectF(8.25, 7.5, 9, 9), QRectF(5.25, 3.75, 16.5, 16.5)}) {
        path.arcMoveTo(circle, -50);
        path.arcTo(circle, -50, 100);
    }
    return {path};
}

Pieces NoteSign() {
    QPainterPath heads;
    heads.addEllipse(QRectF(3, 15.9, 6.9, 5.4));
    heads.addEllipse(QRectF(14.1, 13.65, 6.9, 5.4));
    return {{heads, true},
            Polygon({{8.1, 18.6},
                     {8.1, 4.95},
                     {21, 2.4},
                     {21, 16.5},
                     {19.2, 16.5},
                     {19.2, 7.2},
                     {9.9, 9},
                     {9.9, 18.6}})};
}

Pieces Flag(const QColor& colour) {
    QPainterPath cloth(QPointF(6.6, 3.6));
    cloth.cubicTo(10.8, 1.2, 14.4, 6.6, 19.8, 4.2);
    cloth.lineTo(19.8, 13.2);
    cloth.cubicTo(14.4, 15.6, 10.8, 10.2, 6.6, 12.6);
    cloth.closeSubpath();
    return {{cloth, true, colour}, {Along({{{5.4, 3}, {5.4, 21}}})}};
}

/// A title that goes to where the sound is.
Pieces FitSign() {
    return {Box({2.4, 3.6, 9.6, 5.4}),
            {Along({{{7.2, 12}, {16.2, 12}}, {{13.2, 9}, {16.2, 12}, {13.2, 15}}})},
            {Along({{{12, 18.6}, {12, 20.4}},
                    {{14.9, 16.2}, {14.9, 22.2}},
                    {{17.8, 17.4}, {17.8, 21}},
                    {{20.7, 16.2}, {20.7, 22.2}}})}};
}

Pieces StretchToMarksSign() {
    return {{Along({{{2.4, 4.8}, {2.4, 19.2}}}), false, Blue},
            {Along({{{21.6, 4.8}, {21.6, 19.2}}}), false, Green},
            {Along({{{6, 12}, {18, 12}},
                    {{9, 8.4}, {5.8, 12}, {9, 15.6}},
                    {{15, 8.4}, {18.2, 12}, {15, 15.6}}})}};
}

const Pieces& PiecesOf(Sign sign) {
    static const std::map<Sign, Pieces> All{
        {Sign::None, {}},
        {Sign::Undo, UndoSign()},
        {Sign::Find, FindSign()},
        {Sign::Italic,
         Lines({{{10, 4.5}, {18, 4.5}}, {{6, 19.5}, {14, 19.5}}, {{14, 4.5}, {10, 19.5}}})},
        {Sign::Spelling, Lines({{{3, 12}, {6, 4}, {9, 12}},
                                {{4.2, 9}, {7.8, 9}},
                                {{10, 17}, {13.5, 20.5}, {21, 11}}})},
        {Sign::Edit, Lines({{{4, 20}, {5, 15.5}, {16, 4.5}, {19.5, 8}, {8.5, 19}, {4, 20}},
                            {{13.5, 7}, {17, 10.5}}})},
        {Sign::Insert, Lines({{{4, 19}, {20, 19}}, {{12, 4}, {12, 14}}, {{7, 9}, {17, 9}}})},
        {Sign::Delete, Lines({{{4, 6.5}, {20, 6.5}},
                              {{9, 6.5}, {9, 4}, {15, 4}, {15, 6.5}},
                              {{6, 6.5}, {7, 20}, {17, 20}, {18, 6.5}},
                              {{10, 10}, {10.3, 16.5}},
                              {{14, 10}, {13.7, 16.5}}})},
        {Sign::Sooner, Lines({{{20, 12}, {5, 12}}, {{10, 7}, {5, 12}, {10, 17}}})},
        {Sign::Later, Lines({{{4, 12}, {19, 12}}, {{14, 7}, {19, 12}, {14, 17}}})},
        {Sign::Shorter, Lines({{{2, 12}, {9.5, 12}},
                               {{6, 8}, {9.5, 12}, {6, 16}},
                               {{22, 12}, {14.5, 12}},
                               {{18, 8}, {14.5, 12}, {18, 16}}})},
        {Sign::Longer, Lines({{{10.5, 12}, {3, 12}},
                              {{6.5, 8}, {3, 12}, {6.5, 16}},
                              {{13.5, 12}, {21, 12}},
                              {{17.5, 8}, {21, 12}, {17.5, 16}}})},
        {Sign::Stretch, Lines({{{3, 5}, {3, 19}},
                               {{21, 5}, {21, 19}},
                               {{6, 12}, {18, 12}},
                               {{9, 9}, {6, 12}, {9, 15}},
                               {{15, 9}, {18, 12}, {15, 15}}})},
        {Sign::Shift, Lines({{{4, 6}, {13, 6}},
                             {{4, 18}, {13, 18}},
                             {{4, 12}, {20, 12}},
                             {{16, 8}, {20, 12}, {16, 16}}})},
        {Sign::Bye, Lines({{{13, 4}, {5, 4}, {5, 20}, {13, 20}},
                           {{10, 12}, {20, 12}},
                           {{16, 8}, {20, 12}, {16, 16}}})},
        {Sign::Play, {Polygon({{6, 3.6}, {20.1, 12}, {6, 20.4}})}},
        {Sign::Pause, {Box({5.1, 4.2, 5.1, 15.6}), Box({13.8, 4.2, 5.1, 15.6})}},
        {Sign::Stop, {Box({4.8, 4.8, 14.4, 14.4})}},
        {Sign::Sound, {Loudspeaker(), Waves()}},
        {Sign::Silence,
         {Loudspeaker(), {Along({{{15, 8.7}, {21.6, 15.3}}, {{21.6, 8.7}, {15, 15.3}}})}}},
        {Sign::Note, NoteSign()},
        {Sign::Lane, Lines({{{2.5, 10.5}, {2.5, 13.5}},
                            {{6.3, 6.5}, {6.3, 17.5}},
                            {{10.1, 9}, {10.1, 15}},
                            {{13.9, 3}, {13.9, 21}},
                            {{17.7, 7}, {17.7, 17}},
                            {{21.5, 10.5}, {21.5, 13.5}}})},
        {Sign::Fit, FitSign()},
        {Sign::BlueFlag, Flag(Blue)},
        {Sign::GreenFlag, Flag(Green)},
        {Sign::StretchToMarks, StretchToMarksSign()},
        {Sign::Clear, Lines({{{7, 7}, {17, 17}}, {{17, 7}, {7, 17}}})},
    };
    return All.at(sign);
}

void Draw(QPainter& painter, Sign sign, const QRectF& place, const QColor& ink, bool coloured) {
    const qreal side = std::min(place.width(), place.height());
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(place.center() - QPointF(side, side) / 2);
    painter.scale(side / Field, side / Field);
    for (const Piece& piece : PiecesOf(sign)) {
        const QColor colour = coloured ? piece.colour.value_or(ink) : ink;
        if (piece.filled)
            painter.fillPath(piece.path, colour);
        else
            painter.strokePath(piece.path,
                               QPen(colour, PenWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    }
    painter.restore();
}

class SignEngine : public QIconEngine {
  public:
    explicit SignEngine(Sign sign)
        : m_sign(sign) {}

    // The palette of the moment: an icon need not be made anew when it changes.
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode,
               QIcon::State /*state*/) override {
        const bool disabled = mode == QIcon::Disabled;
        const QColor ink = QGuiApplication::palette().color(
            disabled ? QPalette::Disabled : QPalette::Active, QPalette::ButtonText);
        Draw(*painter, m_sign, rect, ink, !disabled);
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

void DrawSign(QPainter& painter, Sign sign, const QRectF& place, const QColor& ink) {
    Draw(painter, sign, place, ink, false);
}

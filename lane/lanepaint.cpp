#include "lane/lane.h"

#include "model/times.h"

#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionFocusRect>

#include <algorithm>
#include <cmath>

// What is painted over the ground.

namespace {

constexpr double LineWidth = 1.5;
constexpr double FlagSide = 7;
constexpr double HeadSide = 5;
constexpr int LitAlpha = 70;
constexpr int SelectionAlpha = 90;
constexpr double SelectionBand = 4;
constexpr double BubbleGap = 8;
constexpr double BubbleInset = 5;

} // namespace

QRectF Lane::Block(double start, double end, int track) const {
    const LaneShape shape = Shape();
    const double left = m_view.X(start);
    const double right = std::max(left + 1, m_view.X(end));
    return {left, shape.TrackTop(track), right - left, shape.TrackHeight()};
}

QRect Lane::BlockPlace(std::int32_t title) const {
    const LaneTitles& titles = Shown();
    if (title < 1 || title > titles.Count())
        return {};
    return Block(titles.Start(title), titles.End(title), titles.Track(title)).toAlignedRect();
}

void Lane::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const LaneShape shape = Shape();
    const LaneTiles::Scene scene{
        m_view, shape, {m_sound.get(), &Shown(), m_choice}, m_words, devicePixelRatioF()};
    for (const QRect& dirty : event->region())
        m_tiles.Draw(painter, dirty, scene);
    PaintOver(painter);
}

void Lane::PaintOver(QPainter& painter) {
    painter.setRenderHint(QPainter::Antialiasing);
    PaintSelection(painter);
    const LaneTitles& titles = Shown();
    if (m_current >= 1 && m_current <= titles.Count() && !m_placing)
        PaintLit(painter,
                 Block(titles.Start(m_current), titles.End(m_current), titles.Track(m_current)),
                 m_colours.current);
    PaintProposed(painter);
    if (m_placing)
        PaintLit(painter, Block(*m_placing, std::max(*m_placing, m_position), 0),
                 m_colours.placing);
    PaintFlag(painter, m_blueMark, m_colours.blueMark);
    PaintFlag(painter, m_greenMark, m_colours.greenMark);
    const double x = std::floor(m_view.X(m_position)) + 0.5;
    painter.fillRect(QRectF(x - LineWidth / 2, 0, LineWidth, height()), m_colours.position);
    QPainterPath head;
    head.moveTo(x - HeadSide, 0);
    head.lineTo(x + HeadSide, 0);
    head.lineTo(x, HeadSide * 1.4);
    painter.fillPath(head, m_colours.position);
    if (m_drag)
        PaintBubble(painter);
    if (hasFocus()) {
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setPen(QPen(m_colours.selection, 1));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }
}

/// A band in the ruler from the selection's start to its end, and a line at either.
void Lane::PaintSelection(QPainter& painter) {
    const double last = m_view.Length();
    const bool ends = m_selectionEnd >= 0 && m_selectionEnd < last;
    if (m_selectionStart <= 0 && !ends)
        return;
    const double from = std::max(-1.0, m_view.X(std::max(0.0, m_selectionStart)));
    const double to = std::min(width() + 1.0, m_view.X(ends ? m_selectionEnd : last));
    QColor band = m_colours.selection;
    painter.fillRect(QRectF(from, Shape().ruler - SelectionBand, to - from, SelectionBand), band);
    band.setAlpha(SelectionAlpha * 2);
    for (const double x : {from, to})
        painter.fillRect(QRectF(std::floor(x), 0, 1, height()), band);
}

void Lane::PaintLit(QPainter& painter, const QRectF& place, const QColor& colour) const {
    // Far outside of the lane nothing is to be seen of it, and pens grow slow there.
    const QRectF seen =
        place.intersected(QRectF(rect()).adjusted(-LineWidth * 2, 0, LineWidth * 2, 0));
    if (seen.isEmpty())
        return;
    QColor light = colour;
    light.setAlpha(LitAlpha);
    painter.fillRect(seen, light);
    painter.setPen(QPen(colour, LineWidth));
    painter.drawRect(seen.adjusted(0.5, 0.5, -0.5, -0.5));
}

/// Within the track, so that an outline that lies on its block is seen too.
void Lane::PaintProposed(QPainter& painter) const {
    if (m_proposed.Count() == 0)
        return;
    const LaneShape shape = Shape();
    const QRectF seen = QRectF(rect()).adjusted(-LineWidth * 2, 0, LineWidth * 2, 0);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(m_colours.proposed, LineWidth));
    m_proposed.Within(m_view.Time(0), m_view.Time(width()), [&](std::int32_t title) {
        const int track = std::min(m_proposed.Track(title), shape.tracks - 1);
        const QRectF place = Block(m_proposed.Start(title), m_proposed.End(title), track);
        painter.drawRect(place.intersected(seen).adjusted(0.5, 1.5, -0.5, -1.5));
    });
}

void Lane::PaintFlag(QPainter& painter, double time, const QColor& colour) const {
    const double x = std::floor(m_view.X(time));
    if (time <= 0 || x < -FlagSide || x > width())
        return;
    painter.fillRect(QRectF(x, 0, 1, height()), colour);
    QPainterPath flag;
    flag.moveTo(x + 1, 1);
    flag.lineTo(x + 1 + FlagSide, 1 + FlagSide / 2);
    flag.lineTo(x + 1, 1 + FlagSide);
    painter.fillPath(flag, colour);
}

void Lane::PaintBubble(QPainter& painter) const {
    const QString text = QString::fromStdString(FormatTime(m_drag->Shown()));
    const QFontMetrics metrics = painter.fontMetrics();
    QRectF bubble(0, 0, metrics.horizontalAdvance(text) + 2 * BubbleInset, metrics.height() + 2);
    bubble.moveTopLeft({m_pointer.x() + BubbleGap, Shape().ruler + 2});
    if (bubble.right() > width())
        bubble.moveRight(m_pointer.x() - BubbleGap);
    painter.setPen(QPen(m_colours.bubbleWords, 0.5));
    painter.setBrush(m_colours.bubble);
    painter.drawRoundedRect(bubble, 3, 3);
    painter.setPen(m_colours.bubbleWords);
    painter.drawText(bubble, Qt::AlignCenter, text);
    painter.setBrush(Qt::NoBrush);
}

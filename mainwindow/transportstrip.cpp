#include "mainwindow/transportstrip.h"

#include "mainwindow/buttonstrip.h"
#include "platform/fontscale.h"
#include "platform/twips.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QToolTip>

#include <array>

namespace {

constexpr int ButtonCount = TransportStrip::ButtonCount;

constexpr std::array<const char*, ButtonCount> Tips = {
    "To the start of the selection", "Half a second back", "Half a second forward",
    "To the end of the selection"};

QRectF ZoneArea(int button) {
    const auto& zone = StripZones[button - 1];
    return {QPointF(double(zone.left) / TwipsPerPixel, double(StripZonesTop) / TwipsPerPixel),
            QPointF(double(zone.right) / TwipsPerPixel, double(StripZonesBottom) / TwipsPerPixel)};
}

void AddTriangle(QPainterPath& path, QPointF middle, double halfWidth, double halfHeight) {
    path.moveTo(middle + QPointF(-halfWidth, -halfHeight));
    path.lineTo(middle + QPointF(halfWidth, 0));
    path.lineTo(middle + QPointF(-halfWidth, halfHeight));
    path.closeSubpath();
}

/// The sign of a button, drawn as for going forward: a triangle, before a bar at the ends.
QPainterPath Sign(int button) {
    const bool toTheEnd = button == 1 || button == ButtonCount;
    QPainterPath path;
    AddTriangle(path, QPointF(toTheEnd ? -1.5 : 0, 0), 3.5, 4.5);
    if (toTheEnd)
        path.addRect(QRectF(3, -4.5, 2, 9));
    return path;
}

void DrawButton(QPainter& painter, int button, const QColor& ink, const QColor& ground) {
    const QRectF area = ZoneArea(button);
    if (ground.alpha() > 0) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(ground);
        painter.drawRoundedRect(area.adjusted(-1.5, -2.5, 1.5, 2.5), 3, 3);
    }
    painter.save();
    painter.translate(area.center());
    if (button <= ButtonCount / 2)
        painter.scale(-1, 1);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    painter.drawPath(Sign(button));
    painter.restore();
}

QPixmap DrawStrip(std::int16_t number, const QPalette& palette, qreal scale) {
    QPixmap picture(QSizeF(TransportStrip::Size * scale).toSize());
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    const auto group = number == StripPictureDisabled ? QPalette::Disabled : QPalette::Active;
    const QColor ink = palette.color(group, QPalette::ButtonText);
    const QColor highlight = palette.color(QPalette::Active, QPalette::Highlight);
    const int lit =
        number <= StripPictureEnabled ? 0 : (number - StripPictureEnabled - 1) % ButtonCount + 1;
    const bool pressed = number > StripPictureEnabled + ButtonCount;
    for (int button = 1; button <= ButtonCount; ++button) {
        QColor ground = highlight;
        ground.setAlpha(button != lit ? 0 : pressed ? 255 : 90);
        const bool onHighlight = button == lit && pressed;
        DrawButton(painter, button,
                   onHighlight ? palette.color(QPalette::Active, QPalette::HighlightedText) : ink,
                   ground);
    }
    return picture;
}

} // namespace

const QPixmap& StripPictures::Picture(std::int16_t number, const QPalette& palette, qreal scale) {
    if (m_palette != palette.cacheKey() || m_scale != scale) {
        m_palette = palette.cacheKey();
        m_scale = scale;
        m_pictures.fill({});
    }
    QPixmap& picture = m_pictures.at(static_cast<std::size_t>(number - 1));
    if (picture.isNull())
        picture = DrawStrip(number, palette, scale);
    return picture;
}

TransportStrip::TransportStrip(StripPictures& pictures, QWidget* parent)
    : QWidget(parent)
    , m_pictures(pictures) {
    setFixedSize(Scaled(Size, *this));
    setMouseTracking(true);
}

void TransportStrip::Picture(std::int16_t number) {
    if (m_picture == number)
        return;
    m_picture = number;
    update();
}

QString TransportStrip::Name(std::int16_t button) {
    return QString::fromLatin1(Tips.at(static_cast<std::size_t>(button - 1)));
}

QString TransportStrip::Tip(std::int16_t button) const {
    const QString key = Key(button);
    return key.isEmpty() ? Name(button) : QStringLiteral("%1 (%2)").arg(Name(button), key);
}

QRect TransportStrip::ButtonArea(std::int16_t button) const {
    const QRectF area = ZoneArea(button);
    const double scale = FontScale(*this);
    return QRectF(area.topLeft() * scale, area.size() * scale).toAlignedRect();
}

bool TransportStrip::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::Leave:
        // No button keeps its look when the mouse has gone.
        if (isEnabled())
            ReportMouse({-1, -1}, false);
        break;
    case QEvent::EnabledChange:
        emit EnabledChanged();
        break;
    case QEvent::ToolTip: {
        auto* help = static_cast<QHelpEvent*>(event);
        const QPointF place = StripPlace(help->pos());
        const std::int16_t button = StripButtonAt(place.x(), place.y());
        if (button > 0)
            QToolTip::showText(help->globalPos(), Tip(button), this);
        else
            QToolTip::hideText();
        return true;
    }
    default:
        break;
    }
    return QWidget::event(event);
}

void TransportStrip::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        setFixedSize(Scaled(Size, *this));
}

QPointF TransportStrip::StripPlace(const QPointF& place) const {
    return place * TwipsPerPixel / FontScale(*this);
}

void TransportStrip::paintEvent(QPaintEvent* /*event*/) {
    const qreal scale = FontScale(*this) * devicePixelRatioF();
    QPainter(this).drawPixmap(rect(), m_pictures.Picture(m_picture, palette(), scale));
}

void TransportStrip::mouseMoveEvent(QMouseEvent* event) {
    ReportMouse(event->position(), event->buttons() != Qt::NoButton);
}

void TransportStrip::mousePressEvent(QMouseEvent* event) {
    // A press can come without a move before it: a touch, or a window just raised.
    ReportMouse(event->position(), true);
    emit MouseDown();
}

void TransportStrip::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

void TransportStrip::mouseReleaseEvent(QMouseEvent* /*event*/) {
    emit MouseUp();
}

void TransportStrip::ReportMouse(const QPointF& place, bool held) {
    const QPointF twips = StripPlace(place);
    emit MouseMove(held, twips.x(), twips.y());
}

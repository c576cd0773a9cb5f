#include "platform/updown.h"

#include "platform/fontscale.h"
#include "platform/spokenupdown.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionButton>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

namespace {

constexpr int Width = 20;
constexpr float DividerStrength = 0.25F;

} // namespace

UpDown::UpDown(QWidget* parent)
    : QWidget(parent) {
    SpeakUpDowns();
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
}

/// As high as the box of one line that it stands beside.
QSize UpDown::sizeHint() const {
    constexpr int leastText = 14;
    constexpr int textMargins = 2;
    QStyleOptionFrame box;
    box.initFrom(this);
    box.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &box, this);
    const QSize text(0, qMax(fontMetrics().height(), leastText) + textMargins);
    return {Scaled(Width, *this),
            style()->sizeFromContents(QStyle::CT_LineEdit, &box, text, this).height()};
}

void UpDown::paintEvent(QPaintEvent* /*event*/) {
    QStylePainter painter(this);
    const int middle = height() / 2;
    const QRect upper(0, 0, width(), middle);
    const QRect lower(0, middle, width(), height() - middle);
    DrawHalf(painter, upper, Half::Upper);
    DrawHalf(painter, lower, Half::Lower);
    QColor divider = palette().color(QPalette::ButtonText);
    divider.setAlphaF(DividerStrength);
    painter.setPen(divider);
    painter.drawLine(1, middle, width() - 2, middle);
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = rect().adjusted(2, 2, -2, -2);
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
    }
}

/// Both halves are parts of one push button's face.
void UpDown::DrawHalf(QStylePainter& painter, const QRect& area, Half half) const {
    QStyleOptionButton button;
    button.initFrom(this);
    button.state &= ~(QStyle::State_HasFocus | QStyle::State_MouseOver);
    button.state |= m_pressed == half ? QStyle::State_Sunken : QStyle::State_Raised;
    painter.save();
    painter.setClipRect(area);
    painter.drawPrimitive(QStyle::PE_PanelButtonCommand, button);
    painter.restore();
    const int side = qMax(7, qMin(area.width(), area.height()) - 6);
    button.rect = QRect(0, 0, side, side);
    button.rect.moveCenter(area.center());
    painter.drawPrimitive(
        half == Half::Upper ? QStyle::PE_IndicatorArrowUp : QStyle::PE_IndicatorArrowDown, button);
}

void UpDown::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const int y = event->position().toPoint().y();
    m_pressed = IsUpper(y) ? Half::Upper : Half::Lower;
    update();
    emit MouseDown(y);
}

void UpDown::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
}

void UpDown::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || m_pressed == Half::None)
        return;
    const Half half = m_pressed;
    m_pressed = Half::None;
    update();
    emit MouseUp();
    Click(half);
}

void UpDown::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Up:
        return Click(Half::Upper);
    case Qt::Key_Down:
        return Click(Half::Lower);
    default:
        QWidget::keyPressEvent(event);
    }
}

void UpDown::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange && !isEnabled() && m_pressed != Half::None) {
        m_pressed = Half::None;
        emit MouseUp();
    }
    if (event->type() == QEvent::FontChange)
        updateGeometry();
    QWidget::changeEvent(event);
    update();
}

void UpDown::Click(Half half) {
    if (half == Half::Upper)
        emit UpClick();
    else
        emit DownClick();
    if (Speaks.value) {
        QAccessibleValueChangeEvent changed(this, Speaks.value());
        QAccessible::updateAccessibility(&changed);
    }
}

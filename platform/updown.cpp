#include "platform/updown.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QStyleOptionButton>
#include <QStyleOptionFocusRect>
#include <QStylePainter>

UpDown::UpDown(QWidget* parent)
    : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
}

QSize UpDown::sizeHint() const {
    return {20, fontMetrics().height() + 10};
}

void UpDown::paintEvent(QPaintEvent* /*event*/) {
    QStylePainter painter(this);
    const int middle = height() / 2;
    const auto drawHalf = [&](const QRect& area, Half half) {
        QStyleOptionButton button;
        button.initFrom(this);
        button.state.setFlag(QStyle::State_HasFocus, false);
        button.state.setFlag(QStyle::State_MouseOver, false);
        button.rect = area;
        button.state |= m_pressed == half ? QStyle::State_Sunken : QStyle::State_Raised;
        painter.drawPrimitive(QStyle::PE_PanelButtonBevel, button);
        const int side = qMax(7, qMin(area.width(), area.height()) - 6);
        button.rect = QRect(0, 0, side, side);
        button.rect.moveCenter(area.center());
        painter.drawPrimitive(half == Half::Upper ? QStyle::PE_IndicatorArrowUp
                                                  : QStyle::PE_IndicatorArrowDown,
                              button);
    };
    drawHalf(QRect(0, 0, width(), middle), Half::Upper);
    drawHalf(QRect(0, middle, width(), height() - middle), Half::Lower);
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = rect().adjusted(2, 2, -2, -2);
        painter.drawPrimitive(QStyle::PE_FrameFocusRect, focus);
    }
}

void UpDown::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    const int y = event->position().toPoint().y();
    m_pressed = y < height() / 2 ? Half::Upper : Half::Lower;
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
    QWidget::changeEvent(event);
    update();
}

void UpDown::Click(Half half) {
    if (half == Half::Upper)
        emit UpClick();
    else
        emit DownClick();
}

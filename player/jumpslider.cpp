#include "player/jumpslider.h"

#include <QMouseEvent>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QWheelEvent>

#include <utility>

JumpSlider::JumpSlider(QWidget* parent)
    : QSlider(Qt::Horizontal, parent) {
    setFocusPolicy(Qt::TabFocus);
}

void JumpSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return event->ignore();
    setSliderDown(true);
    setSliderPosition(ValueAt(event->position().toPoint()));
}

void JumpSlider::mouseMoveEvent(QMouseEvent* event) {
    if (isSliderDown())
        setSliderPosition(ValueAt(event->position().toPoint()));
    else
        event->ignore();
}

void JumpSlider::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return event->ignore();
    setSliderDown(false);
}

void JumpSlider::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

/// Playing moves the handle by less than a pixel at a time. It is painted only when it
/// stands on another pixel: painting it each time would cost more than all else that
/// this window does while a film plays.
void JumpSlider::sliderChange(SliderChange change) {
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRect handle =
        style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    if (std::exchange(m_handle, handle) != handle || change != SliderValueChange)
        QSlider::sliderChange(change);
}

int JumpSlider::ValueAt(const QPoint& place) const {
    QStyleOptionSlider option;
    initStyleOption(&option);
    const QRect groove =
        style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, this);
    const int handle =
        style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this).width();
    return QStyle::sliderValueFromPosition(minimum(), maximum(),
                                           place.x() - groove.left() - handle / 2,
                                           groove.width() - handle, option.upsideDown);
}

#include "player/jumpslider.h"

#include <QMouseEvent>
#include <QStyle>
#include <QStyleOptionSlider>
#include <QWheelEvent>

#include <utility>

JumpSlider::JumpSlider(QWidget* parent)
    : QSlider(Qt::Horizontal, parent) {
    setFocusPolicy(Qt::NoFocus);
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

/// A film moves the handle by less than a pixel at a time; painting it all the same is
/// what playing would cost most in this window.
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

#pragma once

#include <QKeyEvent>
#include <QToolButton>

/// A button of the player's bar: Enter presses it too, for the space bar may be placing
/// titles. Only the keyboard gives it the focus.
class BarButton : public QToolButton {
  public:
    explicit BarButton(QWidget* parent)
        : QToolButton(parent) {
        setAutoRaise(true);
        setFocusPolicy(Qt::TabFocus);
    }

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            click();
        else
            QToolButton::keyPressEvent(event);
    }
};

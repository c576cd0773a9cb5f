#pragma once

#include <QSlider>

/// A horizontal slider that jumps to the place where it is pressed and follows
/// the mouse from there.
class JumpSlider : public QSlider {
    Q_OBJECT

  public:
    explicit JumpSlider(QWidget* parent = nullptr);

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void sliderChange(SliderChange change) override;

  private:
    int ValueAt(const QPoint& place) const;

    /// Where the handle was when it was last painted.
    QRect m_handle;
};

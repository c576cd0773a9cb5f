#pragma once

#include <QString>
#include <QWidget>

#include <functional>

class QStylePainter;

/// An up-down control: two arrow halves, one above the other. It has no value
/// and no repeat of its own; its owner listens and acts.
class UpDown : public QWidget {
    Q_OBJECT

  public:
    explicit UpDown(QWidget* parent = nullptr);

    QSize sizeHint() const override;

    /// What assistive tools are told of the value that its owner steps, and may set.
    struct Spoken {
        std::function<double()> value;
        std::function<void(double)> set;
        /// The value in words; may be empty.
        std::function<QString()> text;
        double least = 0;
        double most = 0;
        double step = 1;
    };
    Spoken Speaks;

    /// Whether the arrow up is drawn at this height (pixels from the top).
    bool IsUpper(int y) const { return y < height() / 2; }

  signals:
    /// A click counts for the half that was pressed and comes with the release,
    /// right after `MouseUp`; the arrow keys click too.
    void DownClick();
    void UpClick();
    /// The left button went down at this height (pixels from the top).
    void MouseDown(int y);
    void MouseUp();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    enum class Half { None, Upper, Lower };

    void Click(Half half);
    void DrawHalf(QStylePainter& painter, const QRect& area, Half half) const;

    Half m_pressed = Half::None;
};

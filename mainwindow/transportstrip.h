#pragma once

#include <QObject>
#include <QPalette>
#include <QPixmap>
#include <QWidget>

#include <cstdint>

/// The ten pictures of the transport strip, drawn when they are needed.
class StripPictures : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    /// Numbered from 1; in device-independent pixels as large as the strip.
    static QPixmap Picture(std::int16_t number, const QPalette& palette, qreal scale);
};

/// The picture box that shows one of them and tells where the mouse is, in twips.
class TransportStrip : public QWidget {
    Q_OBJECT

  public:
    static constexpr QSize Size{104, 24};

    explicit TransportStrip(QWidget* parent = nullptr);

    std::int16_t Picture() const { return m_picture; }
    void Picture(std::int16_t number);

  signals:
    void MouseMove(bool mouseHeld, double x, double y);
    void MouseDown();
    void MouseUp();
    /// It was enabled or disabled while the mouse may be over it.
    void EnabledChanged();

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    void ReportMouse(const QPointF& place, bool held);

    std::int16_t m_picture = 1;
};

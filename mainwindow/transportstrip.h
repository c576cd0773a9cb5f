#pragma once

#include <QObject>
#include <QPalette>
#include <QPixmap>
#include <QStringList>
#include <QWidget>

#include <array>
#include <cstdint>

/// The ten pictures of the transport strip, drawn when they are first needed for a
/// palette and a screen.
class StripPictures : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;

    /// Numbered from 1; in device-independent pixels as large as the strip.
    const QPixmap& Picture(std::int16_t number, const QPalette& palette, qreal scale);

  private:
    std::array<QPixmap, 10> m_pictures;
    qint64 m_palette = 0;
    qreal m_scale = 0;
};

/// The picture box that shows one of them and tells where the mouse is, in twips.
class TransportStrip : public QWidget {
    Q_OBJECT

  public:
    /// With texts of the usual size; it grows with them.
    static constexpr QSize Size{104, 24};
    static constexpr std::int16_t ButtonCount = 4;

    TransportStrip(StripPictures& pictures, QWidget* parent);

    std::int16_t Picture() const { return m_picture; }
    void Picture(std::int16_t number);
    /// The keys that do what the four buttons do, for their tool tips.
    void NameKeys(const QStringList& keys) { m_keys = keys; }
    /// The place (pixels of the strip as it is) in twips of the strip at its usual size.
    QPointF StripPlace(const QPointF& place) const;

    /// Of the button of that number, from 1: what it does, the key that does the same, and
    /// where it is drawn.
    static QString Name(std::int16_t button);
    QString Key(std::int16_t button) const { return m_keys.value(button - 1); }
    QRect ButtonArea(std::int16_t button) const;

  signals:
    /// An assistive tool pressed the button of that number.
    void Pressed(std::int16_t button);
    void MouseMove(bool mouseHeld, double x, double y);
    void MouseDown();
    void MouseUp();
    /// It was enabled or disabled while the mouse may be over it.
    void EnabledChanged();

  protected:
    bool event(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

  private:
    QString Tip(std::int16_t button) const;
    void ReportMouse(const QPointF& place, bool held);

    StripPictures& m_pictures;
    std::int16_t m_picture = 1;
    QStringList m_keys;
};

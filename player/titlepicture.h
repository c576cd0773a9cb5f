#pragma once

#include <QImage>
#include <QString>

class QPainter;

/// A title as players draw it on the picture: white with a black outline, at the bottom,
/// centred, with its line breaks, italics and bold. It is drawn once for each text and
/// size and then only copied, for a film asks for it with every picture.
class TitlePicture {
  public:
    /// With the tags <i>, </i>, <b> and </b>; empty: no title.
    void Text(const QString& text);
    const QString& Text() const { return m_text; }

    /// Into an area of that size whose corner is at 0, 0.
    void Draw(QPainter& painter, QSize area);

  private:
    void Make(QSize area, qreal scale);

    QString m_text;
    QSize m_area;
    QImage m_image;
    QPointF m_place;
};

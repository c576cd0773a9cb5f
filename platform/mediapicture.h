#pragma once

#include "platform/player.h"

#include <QImage>
#include <QWidget>

/// The film's picture at the screen's own resolution, or a calm panel where
/// there is none.
class MediaPicture : public QWidget {
    Q_OBJECT

  public:
    explicit MediaPicture(Player& player, QWidget* parent = nullptr);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

  private:
    void Draw();

    Player& m_player;
    QImage m_image;
    bool m_drawn = false;
};

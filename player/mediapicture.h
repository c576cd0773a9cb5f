#pragma once

#include "player/player.h"

#include <QImage>
#include <QWidget>

/// The film's picture at the screen's own resolution, or a calm panel where
/// there is none. Pictures are drawn straight into the window's memory.
class MediaPicture : public QWidget {
    Q_OBJECT

  public:
    explicit MediaPicture(Player& player, QWidget* parent = nullptr);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QImage Target() const;
    bool DrawFilm(QPainter& painter);

    Player& m_player;
};

#pragma once

#include "player/player.h"
#include "player/titlepicture.h"

#include <QImage>
#include <QTimer>
#include <QWidget>

class QLabel;

/// The film's picture at the screen's own resolution, or a calm panel where
/// there is none. Pictures are drawn straight into the window's memory.
class MediaPicture : public QWidget {
    Q_OBJECT

  public:
    explicit MediaPicture(Player& player, QWidget* parent = nullptr);

    /// Draws the title on the picture; an empty one: none.
    void Title(const QString& text);
    const QString& Title() const { return m_title.Text(); }
    /// Shows a short text at the top left for two seconds.
    void ShowNote(const QString& text);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QImage Target() const;
    bool DrawFilm(QPainter& painter);

    Player& m_player;
    TitlePicture m_title;
    QLabel* m_note;
    QTimer m_noteTimer;
};

#pragma once

#include "player/player.h"

#include <QTimer>
#include <QWidget>

class JumpSlider;
class QLabel;
class QMenu;
class QToolButton;

/// The embedded media player: the picture and, under it, its own controls
/// (play/pause, stop, a seek slider, times, rate, volume), with a right-click menu.
/// Keys stay with the main window: its controls take no keyboard focus.
class MediaPlayerControl : public QWidget {
    Q_OBJECT

  public:
    /// The bar under the picture; its first pixels are left free for a strip of
    /// the window's own, which is laid over them.
    static constexpr int ControlBarHeight = 34;
    static constexpr int StripLeft = 8;
    static constexpr int StripSpace = 120;

    explicit MediaPlayerControl(Player& player, QWidget* parent = nullptr);
    ~MediaPlayerControl() override;

  protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    QToolButton* MakeButton(const char* name, const QString& text);
    QLabel* MakeTime(const char* name, const QString& accessible);
    void MakeBar();
    void Listen();
    void ShowIcons();
    /// Everything but the position.
    void Refresh();
    void Follow(double position);
    void FitBar();
    void Seek(int milliseconds);

    Player& m_player;
    QTimer m_follow;
    QWidget* m_picture = nullptr;
    QWidget* m_bar = nullptr;
    QToolButton* m_play = nullptr;
    QToolButton* m_stop = nullptr;
    JumpSlider* m_slider = nullptr;
    QLabel* m_elapsed = nullptr;
    QLabel* m_slash = nullptr;
    QLabel* m_total = nullptr;
    QToolButton* m_mute = nullptr;
    JumpSlider* m_volume = nullptr;
    QToolButton* m_rate = nullptr;
    QMenu* m_rates = nullptr;
};

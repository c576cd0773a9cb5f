#pragma once

#include "platform/player.h"

#include <QWidget>

/// The embedded media player: the picture and, under it, its own controls
/// (play/pause, stop, a seek slider, times, rate, volume), with a right-click menu.
/// Keys stay with the main window: its controls take no keyboard focus.
class MediaPlayerControl : public QWidget {
    Q_OBJECT

  public:
    explicit MediaPlayerControl(Player& player, QWidget* parent = nullptr);
    ~MediaPlayerControl() override;
};

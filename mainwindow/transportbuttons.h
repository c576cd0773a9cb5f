#pragma once

#include "mainwindow/buttonstrip.h"
#include "mainwindow/transportstrip.h"
#include "player/player.h"

#include <QObject>

class QTimer;

/// The strip of four drawn buttons over the player's lower edge: they step through the
/// media within the selection, while the player does not play.
class TransportButtons : public QObject {
    Q_OBJECT

  public:
    TransportButtons(Player& player, QWidget* window);

    TransportStrip* picButtons;

    /// There is media to step through.
    void MediaEnabled(bool enabled);
    /// What a click on the button of that number (1 to 4) does.
    void Step(std::int16_t button);

  private:
    void MP_PlayStateChange(int oldState, int newState);
    void picButtons_MouseMove(bool mouseHeld, double x, double y);
    void picButtons_MouseDown();
    void picButtons_MouseUp();
    void picButtons_EnabledChange();
    void picButtons_Pressed(std::int16_t button);
    void tmrPosButtons_Timer();

    Player& m_player;
    ButtonStrip m_strip;
    QTimer* tmrPosButtons;
};

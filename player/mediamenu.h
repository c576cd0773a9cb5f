#pragma once

#include "player/player.h"

class QMenu;

/// "1x", "0.75x"
QString RateText(double rate);

/// The next of the rates that are offered; the last one stays.
double FasterRate(double rate);
double SlowerRate(double rate);

/// The player's rates, the one in use ticked.
void FillRateMenu(QMenu& menu, Player& player);

/// Everything that the player's controls do, and the audio tracks and the
/// picture's shape besides, as it stands now.
void FillMediaMenu(QMenu& menu, Player& player);

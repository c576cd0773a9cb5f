#pragma once

#include "player/player.h"

#include <memory>

/// The player that plays real files, by libmpv. The library is loaded when a
/// file is first named, so that it never delays the window. Where
/// it is missing, every file has ready state 0.
///
/// The environment's QUELMAR_AUDIO names another sound output of libmpv's than
/// the usual one; "null" plays in time and in silence.
std::unique_ptr<Player> MakeMpvPlayer();

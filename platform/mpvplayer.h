#pragma once

#include "platform/player.h"

#include <memory>

/// The player that plays real files, by libmpv. The library is loaded when a
/// file is first named (or by `Warm`), so that it never delays the window. Where
/// it is missing, every file has ready state 0.
std::unique_ptr<Player> MakeMpvPlayer();

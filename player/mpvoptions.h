#pragma once

#include "player/mpvlibrary.h"

/// Sets a fresh player up: it draws by software into our pictures, seeks exactly,
/// opens plain media files and nothing else. false: this library cannot be held
/// to that, so it must not be used.
bool SetMpvOptions(const MpvLibrary& mpv, mpv_handle* player);

#pragma once

#include "formats/format.h"

/// One title per line, its times as numbers of frames: {25}{50}Hello|there
Format MicroDvdFormat();

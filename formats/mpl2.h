#pragma once

#include "formats/format.h"

/// One title per line, its times in tenths of a second: [10][45]Hello|/there
/// Lines stand apart by "|"; one that begins with "/" is in italics.
Format Mpl2Format();

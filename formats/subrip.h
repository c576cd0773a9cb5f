#pragma once

#include "formats/format.h"

/// Numbered blocks of a time line and text lines, each ended by an empty line.
Format SubRipFormat();

#pragma once

#include "formats/format.h"

/// Blocks of a line of two times and lines of text, each ended by an empty line.
/// 0:00:01.000,0:00:04.000
Format SbvFormat();

/// The same with a header in front, times in hundredths, and "[br]" between the lines
/// of a title. The header is kept.
Format SubViewerFormat();

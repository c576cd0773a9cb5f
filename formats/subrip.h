#pragma once

#include "formats/format.h"

/// Numbered blocks of a time line and text lines, each ended by an empty line.
Format SubRipFormat();

/// How many titles hold italics or bold, which are left out unless `subRipStyles` is set.
std::int32_t TitlesWithStyles(const SUBTITLES& titles);

#pragma once

#include "formats/format.h"

/// One line of words for each title, led by the time of its start; an empty line clears.
/// [00:12.00]Hello
/// The lines in front that say title and author are kept, and so are times between the
/// words, <00:12.50>, which move with their title.
Format LrcFormat();

#pragma once

#include "formats/tolerance.h"

#include <string>

/// Must the file be left alone unless its reader asked for a tolerant reading? A line that
/// names the frame rate, and no other damage, does no harm where the rate was given.
bool NeedsRepair(const MendOffer& offer, bool frameRateGiven);

/// "A tolerant reading finds 2 titles instead of 1: 1 blank line between blocks (line 5).
/// --repair takes it."
std::string RepairHint(const MendOffer& offer);

/// Puts the tolerant reading in the place of the titles: of several languages the one of that
/// name or class, in any letter case, or the first when `language` is empty. In `message` what
/// was mended and which languages there are; false, and the titles as they were, when there is
/// no such language.
bool TakeRepaired(const MendOffer& offer, const std::string& language, SUBTITLES& titles,
                  FileStyle& style, std::string& message);

#pragma once

#include "formats/timedtextsource.h"
#include "model/subtitles.h"

#include <string>

/// What ties a title to its element of the source: its number, counted from 0.
TitleExtra ElementExtra(std::size_t element);

/// Appends the source with the titles in it: times and texts of those that came from it
/// are changed where they have changed, elements without a title go, and titles without
/// an element get one. The source has an element or a place for a first one.
void PatchTimedText(const TimedTextSource& source, const SUBTITLES& titles, std::string& out);

#pragma once

#include "formats/format.h"

/// Sections of lines; the titles are the "Dialogue:" lines of [Events], their fields named
/// by its "Format:" line. All but the times is kept byte for byte. Both versions are read
/// alike; they differ in what a new file begins with.
Format AdvancedSubStationFormat();
Format SubStationFormat();

ReadOutcome ReadSubStation(std::string_view text, double frameRate, SUBTITLES& titles,
                           FileStyle& style, const Progress& progress);

// The text of a line. A title holds "\N" as CR LF, {\i1}, {\i0}, {\b1} and {\b0} as the
// tags, and all other override blocks as they are.

std::string SubStationToText(std::string_view raw);
void TextToSubStation(std::string_view text, std::string& out);
/// The text of another format: what would be taken for an override block but is none,
/// and what would be taken for a line break, is told apart.
void ForeignTextToSubStation(std::string_view text, std::string& out);
/// Without override blocks and drawings; takes back what `ForeignTextToSubStation` did.
std::string SubStationPlainText(std::string_view text);

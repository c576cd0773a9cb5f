#pragma once

#include "formats/format.h"

/// A header, then SYNC tags, each of which says when what follows it is shown.
Format SamiFormat();

/// Reads the body into titles; keeps header, paragraph class and footer in `style`.
ReadOutcome ReadSAMI(std::string_view text, double frameRate, SUBTITLES& titles, FileStyle& style,
                     const Progress& progress);
/// Writes with the kept header, class and footer, or with a plain set of its own.
void WriteSAMI(const SUBTITLES& titles, double frameRate, const FileStyle& style, std::string& out);

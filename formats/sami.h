#pragma once

#include "formats/format.h"

#include <optional>
#include <string>

/// A header, then SYNC tags, each of which says when what follows it is shown.
Format SamiFormat();

/// What is kept of a file that was read up to its body tag (UTF-8).
struct SamiParts {
    std::string header;
    std::string paragraphClass;
    std::string footer;

    bool operator==(const SamiParts&) const = default;
};
/// Nothing when the style holds none.
std::optional<SamiParts> KeptSami(const FileStyle& style);
void KeepSami(const SamiParts& parts, FileStyle& style);

/// Reads the body into titles; keeps header, paragraph class and footer in `style`.
ReadOutcome ReadSAMI(std::string_view text, double frameRate, SUBTITLES& titles, FileStyle& style,
                     const Progress& progress);
/// Writes with the kept header, class and footer, or with a plain set of its own.
void WriteSAMI(const SUBTITLES& titles, double frameRate, const FileStyle& style, std::string& out);

#pragma once

#include "formats/format.h"

#include <string>

/// Compares titles with what is read of the file that they were written to. What a
/// format cannot hold by its rules is no difference: styles in SubRip, parts of a frame
/// in MicroDVD, titles without words and overlaps in SAMI. Answers the first title that
/// differs and how ("title 12 ends at 00:00:04,000 instead of 00:00:05,000"); empty when
/// all came back.
/// `style` is the one that they were written with.
std::string FirstDifference(const Format& format, double frameRate, const FileStyle& style,
                            const SUBTITLES& written, const SUBTITLES& readBack);

/// The words of a text: without tags and style codes, white space of any kind as one blank.
std::string WordsOf(const Format& format, std::string_view text);

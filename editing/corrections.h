#pragma once

#include "model/subtitles.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Mends "l" and "I" that were taken for each other: an "l" that begins a sentence
/// becomes "I", any other "I" becomes "l". Empty when there was nothing to mend.
std::string CorrectText(std::string_view text);
/// Words that begin with "/" become italics, up to the next word that does not.
/// Empty when there was no such word.
std::string SlashesToTags(std::string_view text);

/// Both go over all titles, cannot be undone, and empty the undo history. They
/// answer the numbers of the titles that were changed.
std::vector<std::int32_t> CorrectSpelling(SUBTITLES& titles);
std::vector<std::int32_t> ConvertItalics(SUBTITLES& titles);

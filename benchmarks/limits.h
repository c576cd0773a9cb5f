#pragma once

#include "model/subtitles.h"

#include <filesystem>
#include <string>
#include <vector>

/// What the speed of loading and saving is measured against: the least that any
/// program must do, with no eye for odd files.

struct PlainTitle {
    double start;
    double end;
    std::string text;
};

/// Reads a well-formed .srt with CR LF: one pass, one copy of each text.
std::vector<PlainTitle> ScanSubRip(const std::filesystem::path& file);
/// Lays the titles out as .srt in one buffer and writes it at once.
bool DumpSubRip(const std::filesystem::path& file, const SUBTITLES& titles, bool flush);

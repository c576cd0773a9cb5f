#pragma once

#include "model/subtitles.h"

#include <cstdint>
#include <string>

/// The same titles for every run and every machine: one to three lines of about
/// 35 characters, some in italics, in order and mostly apart.
SUBTITLES GeneratedTitles(std::int32_t count);

/// As most programs write .srt, tags kept; ours would leave them out.
std::string SubRipWithTags(const SUBTITLES& titles);

#pragma once

#include "formats/format.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

/// What the fuzz targets share. Each defines this, as libFuzzer calls it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// Ends the program with the reason when something that must hold does not.
void Require(bool holds, const char* what);

inline std::string_view TextOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// Reads the text and looks at what came of it; then writes it in every format.
void TryReader(const Format& format, std::string_view text);
void TryReader(const char* extension, std::string_view text);
/// Writes the titles in every format. Times that a format cannot tell are no fault.
void TryWriters(const SUBTITLES& titles, const FileStyle& style);

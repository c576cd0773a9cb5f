#pragma once

#include <string_view>

/// What a file is that holds its titles as pictures and not as text: "VobSub", "PGS".
/// Null: it is no such file.
const char* PicturesIn(std::string_view bytes);

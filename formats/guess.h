#pragma once

#include <string>
#include <string_view>

/// Stands in the place of a code page's name: each file's own is guessed.
inline constexpr std::string_view GuessedPage = "guess";

/// The code page of a text that is neither marked nor UTF-8, by its usual name. It is one that
/// gives exactly these bytes back; "windows-1252" where nothing else can be told, and in
/// a build without QUELMAR_GUESS.
std::string GuessCodePage(std::string_view bytes);

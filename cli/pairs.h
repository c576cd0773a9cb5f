#pragma once

#include <filesystem>
#include <vector>

/// A film and the subtitle files that are named after it.
struct FilmPair {
    std::filesystem::path film;
    std::vector<std::filesystem::path> titles;
};

/// Where the fitted copy of a subtitle file goes: "Film.en.srt" gives "Film.en.fitted.srt".
std::filesystem::path FittedName(const std::filesystem::path& titles);

/// Is `titles` named after `film`: the same name, or that and a language, with words such as
/// "forced" behind it? Both without folder and extension; letter case is ignored.
bool BelongsTo(const std::string& titles, const std::string& film);

/// All films of the folder and the folders in it, each with the subtitle files in the same
/// folder that are named after it; sorted by name. Those without any are left out, as are
/// fitted copies. A subtitle file goes with one film, the one whose name is longest. Folders
/// that cannot be read and links to folders are passed over.
std::vector<FilmPair> PairsIn(const std::filesystem::path& folder);

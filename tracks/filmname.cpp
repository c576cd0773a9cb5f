#include "tracks/filmname.h"

#include "base/ascii.h"

#include <algorithm>
#include <array>

bool IsFilmName(std::string_view name) {
    constexpr std::array<std::string_view, 33> Extensions{
        ".avi", ".mpg",  ".mpeg", ".asf", ".mov",  ".wav",  ".mp3",  ".mkv", ".mka",
        ".mks", ".mp4",  ".m4v",  ".m4a", ".webm", ".ts",   ".m2ts", ".mts", ".wmv",
        ".flv", ".ogv",  ".ogg",  ".ogm", ".oga",  ".flac", ".opus", ".aac", ".ac3",
        ".vob", ".divx", ".3gp",  ".wma", ".rmvb", ".ismv"};
    const std::size_t point = name.rfind('.');
    if (point == std::string_view::npos)
        return false;
    const std::string extension = AsciiLower(name.substr(point));
    return std::find(Extensions.begin(), Extensions.end(), extension) != Extensions.end();
}

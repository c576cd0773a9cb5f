#include "cli/filmreference.h"

std::optional<FilmSpeech> SpeechOfFilm(const std::filesystem::path& /*film*/, int /*track*/,
                                       std::string& message) {
    message = "this build has no sound, or FFmpeg's libraries are missing";
    return std::nullopt;
}

std::vector<RightTitles> TextTracksOf(const std::filesystem::path& /*film*/, int /*track*/) {
    return {};
}

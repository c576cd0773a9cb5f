#include "cli/filmtitles.h"

#include "cli/titlefile.h"
#include "tracks/filmtracks.h"

#include <algorithm>

namespace {

/// Without what parts fields and lines.
std::string OneField(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\t' || c == '\r' || c == '\n'; }, ' ');
    return text;
}

/// false, and the reason: there is nothing to be read.
bool Read(const FilmTracks& tracks, const std::string& film, std::string& fault) {
    std::error_code error;
    if (!SoundAvailable())
        fault = "this build reads no films, or FFmpeg's libraries are missing";
    else if (!std::filesystem::is_regular_file(PathOf(film), error))
        fault = "cannot be opened";
    if (!fault.empty())
        return false;
    tracks.Wait();
    if (tracks.Now() == FilmTracks::State::NoFilm)
        fault = "no film that can be read";
    return fault.empty();
}

} // namespace

bool PrintTracks(const std::string& film, std::ostream& out, std::string& fault) {
    const FilmTracks tracks(PathOf(film));
    if (!Read(tracks, film, fault))
        return false;
    int number = 0;
    for (const FilmTracks::Track& track : tracks.Tracks()) {
        out << ++number << '\t' << OneField(track.about.language) << '\t' << track.kind << '\t';
        if (track.format != nullptr)
            out << track.titles;
        out << '\t' << OneField(track.about.name) << '\n';
    }
    return true;
}

bool TitlesOfFilm(const std::string& film, int track, const std::string& codePage,
                  SUBTITLES& titles, FileStyle& style, std::string& fault) {
    const FilmTracks tracks(PathOf(film));
    if (!Read(tracks, film, fault))
        return false;
    const std::vector<FilmTracks::Track> found = tracks.Tracks();
    const auto place = static_cast<std::size_t>(track - 1);
    if (place >= found.size())
        fault = found.empty() ? "no subtitles are in this film" : "no such track";
    else if (found[place].format == nullptr)
        fault = "that track holds " + found[place].kind + ", not text";
    else
        tracks.Load(place, codePage, titles, style);
    return fault.empty();
}

#include "cli/filmsound.h"

#include "media/mediafile.h"
#include "sound/soundmapper.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <vector>

namespace {

/// So many lines are made at once.
constexpr std::size_t Portion = 1000;
constexpr const char* Placeholder = "...";

/// Null, and the reason, when there is no sound.
std::unique_ptr<SoundMapper> MapperFor(const std::string& film, int track, double position,
                                       std::string& fault) {
    const std::filesystem::path path = std::u8string(film.begin(), film.end());
    std::error_code error;
    if (!SoundAvailable())
        fault = "this build has no sound, or FFmpeg's libraries are missing";
    else if (!std::filesystem::is_regular_file(path, error))
        fault = "cannot be opened";
    if (!fault.empty())
        return nullptr;
    SoundMapper::Wish wish;
    wish.film = path;
    wish.track = track;
    wish.position = position;
    wish.background = false;
    return std::make_unique<SoundMapper>(std::move(wish));
}

/// Null, and the reason, when the map could not be made.
std::shared_ptr<const SoundMap> MapOf(const SoundMapper& mapper, int track, std::string& fault) {
    if (mapper.Now() != SoundMapper::State::NoSound)
        return mapper.Map();
    fault = track == 0 ? "no sound that can be read" : "no such sound track that can be read";
    return nullptr;
}

void PutNumber(std::ostream& out, double number, int digits) {
    char text[64];
    const auto end =
        std::to_chars(text, text + sizeof text, number, std::chars_format::fixed, digits);
    out.write(text, end.ptr - text);
}

void PutColumn(std::ostream& out, double time, const SoundColumn& column) {
    PutNumber(out, time, 3);
    for (const auto& [number, digits] :
         {std::pair{column.least, 4}, std::pair{column.greatest, 4}, std::pair{column.loudness, 1},
          std::pair{column.speech, 3}}) {
        out << '\t';
        PutNumber(out, static_cast<double>(number), digits);
    }
    out << '\n';
}

} // namespace

bool PrintSound(const std::string& film, int track, const SoundStretch& stretch, std::ostream& out,
                std::string& fault) {
    const auto mapper = MapperFor(film, track, stretch.from, fault);
    if (mapper == nullptr)
        return false;
    mapper->WaitFor(stretch.from, stretch.to);
    const auto map = MapOf(*mapper, track, fault);
    if (map == nullptr)
        return false;
    const double from = std::max(stretch.from, 0.0);
    const double to = std::min(stretch.to, map->Length());
    std::vector<SoundColumn> columns(Portion);
    for (std::size_t line = 0;; ++line) {
        const double time = from + static_cast<double>(line) * stretch.step;
        if (time >= to)
            return true;
        if (line % Portion == 0)
            map->Columns(time, stretch.step, columns);
        PutColumn(out, time, columns[line % Portion]);
    }
}

bool TitlesOfSpeech(const std::string& film, int track, SUBTITLES& titles, std::string& fault) {
    const auto mapper = MapperFor(film, track, 0, fault);
    if (mapper == nullptr)
        return false;
    mapper->Wait();
    const auto map = MapOf(*mapper, track, fault);
    if (map == nullptr)
        return false;
    for (const SpeechSpan& span : map->SpeechSpans())
        titles.Add(span.start, span.end, Placeholder);
    return true;
}

#include "dialogs/fitsources.h"

#include "formats/load.h"
#include "sound/soundmapper.h"

#include <chrono>
#include <thread>
#include <utility>

namespace {

constexpr auto LookInterval = std::chrono::milliseconds(30);

/// In UTF-8.
std::string NameOf(const std::filesystem::path& file) {
    const std::u8string name = file.filename().u8string();
    return {name.begin(), name.end()};
}

FitSource::Got Listen(const SoundMapper& mapper, const FitSource::Progress& progress) {
    while (mapper.Now() == SoundMapper::State::Opening ||
           mapper.Now() == SoundMapper::State::Growing) {
        const std::shared_ptr<const SoundMap> map = mapper.Map();
        if (!progress("Reading the sound, looking for speech", map ? map->Progress() : 0))
            return {};
        std::this_thread::sleep_for(LookInterval);
    }
    const std::shared_ptr<const SoundMap> map = mapper.Map();
    if (mapper.Now() == SoundMapper::State::NoSound || !map)
        return {{}, "The film has no sound that can be read."};
    return {SpeechCurve{0, map->SpeechCurve()}, {}};
}

FitSource::Got Read(const std::filesystem::path& file, const std::string& codePage,
                    double frameRate, const FitSource::Progress& progress) {
    SUBTITLES titles;
    FileStyle style;
    LoadHooks hooks;
    hooks.askFrameRate = [frameRate](std::optional<double> named) {
        return named.value_or(frameRate);
    };
    hooks.progress = [&progress](double done) {
        return progress("Reading the other file", done);
    };
    const LoadResult result = LoadTitles(file, codePage, titles, style, hooks);
    if (result.outcome == LoadOutcome::NotOpened)
        return {{}, NameOf(file) + " cannot be opened."};
    if (titles.Count() == 0)
        return {{}, result.message.empty() ? NameOf(file) + " holds no titles." : result.message};
    return {RightTitles(TitlesToFit(titles)), {}};
}

} // namespace

std::vector<FitTitle> TitlesToFit(const SUBTITLES& titles) {
    std::vector<FitTitle> all;
    all.reserve(static_cast<std::size_t>(titles.Count()));
    for (std::int32_t i = 1; i <= titles.Count(); ++i)
        all.push_back({titles.StartTime(i), titles.EndTime(i), titles.Text(i)});
    return all;
}

FitSource SoundOf(const std::filesystem::path& film, int track) {
    return {"the sound of " + NameOf(film), [film, track](const FitSource::Progress& progress) {
                return Listen(SoundMapper({.film = film, .track = track, .background = false}),
                              progress);
            }};
}

FitSource SoundOf(const std::filesystem::path& film, std::shared_ptr<const SoundMapper> mapper) {
    return {"the sound of " + NameOf(film),
            [mapper = std::move(mapper)](const FitSource::Progress& progress) {
                return Listen(*mapper, progress);
            }};
}

FitSource TitlesOf(const std::filesystem::path& file, const std::string& codePage,
                   double frameRate) {
    return {NameOf(file), [file, codePage, frameRate](const FitSource::Progress& progress) {
                return Read(file, codePage, frameRate, progress);
            }};
}

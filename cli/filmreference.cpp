#include "cli/filmreference.h"

#include "media/mediafile.h"
#include "media/texttrackreader.h"
#include "sound/soundmapper.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace {

/// What is said, without what the form of the packet puts around it.
std::string TextOf(const TextPacket& packet, const std::string& codec) {
    if (codec != "ass" && codec != "ssa")
        return packet.payload;
    // ReadOrder,Layer,Style,Name,MarginL,MarginR,MarginV,Effect,Text
    std::size_t at = 0;
    for (int field = 0; field < 8 && at != std::string::npos; ++field)
        at = packet.payload.find(',', at == 0 ? 0 : at + 1);
    return at == std::string::npos ? packet.payload : packet.payload.substr(at + 1);
}

RightTitles TitlesOf(const std::filesystem::path& film, const TextTrack& track) {
    RightTitles titles;
    const auto reader = TextTrackReader::Open(film, track.index);
    TextPacket packet;
    while (reader != nullptr && reader->Read(packet))
        titles.push_back({packet.start, packet.end, TextOf(packet, track.codec)});
    return titles;
}

/// Waits for the map; answers how long reading took of the whole.
double WaitForSound(const SoundMapper& mapper) {
    constexpr std::chrono::milliseconds LookEvery{10};
    const auto begin = std::chrono::steady_clock::now();
    const auto working = [&mapper] {
        const SoundMapper::State state = mapper.Now();
        return state == SoundMapper::State::Opening || state == SoundMapper::State::Growing;
    };
    double read = 0;
    std::size_t page = 0;
    while (working()) {
        if (const auto map = mapper.Map()) {
            while (page < map->Pages() && map->Shape(page) != nullptr)
                ++page;
        }
        std::this_thread::sleep_for(LookEvery);
        const auto map = mapper.Map();
        if (map == nullptr || page < map->Pages())
            read = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    }
    return read;
}

} // namespace

std::optional<FilmSpeech> SpeechOfFilm(const std::filesystem::path& film, int track,
                                       std::string& message) {
    if (!SoundAvailable()) {
        message = "this build has no sound, or FFmpeg's libraries are missing";
        return std::nullopt;
    }
    const auto begin = std::chrono::steady_clock::now();
    SoundMapper::Wish wish;
    wish.film = film;
    wish.track = track;
    const SoundMapper mapper(std::move(wish));
    FilmSpeech speech;
    speech.decodeSeconds = WaitForSound(mapper);
    if (mapper.Now() != SoundMapper::State::Complete || mapper.Map() == nullptr) {
        message = track == 0 ? "no sound that can be read" : "no such sound track that can be read";
        return std::nullopt;
    }
    speech.curve.values = mapper.Map()->SpeechCurve();
    const std::chrono::duration<double> whole = std::chrono::steady_clock::now() - begin;
    speech.speechSeconds = std::max(whole.count() - speech.decodeSeconds, 0.0);
    return speech;
}

std::vector<RightTitles> TextTracksOf(const std::filesystem::path& film, int track) {
    std::vector<RightTitles> tracks;
    const std::optional<MediaFile> file = MediaFile::Read(film);
    if (!file)
        return tracks;
    int number = 0;
    for (const TextTrack& text : file->textTracks) {
        ++number;
        if (text.kind != TextTrack::Kind::Text || (track != 0 && track != number))
            continue;
        RightTitles titles = TitlesOf(film, text);
        if (!titles.empty())
            tracks.push_back(std::move(titles));
    }
    return tracks;
}

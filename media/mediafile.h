#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

/// Whether films can be read for their sound at all: false when the program was built
/// without it, or where FFmpeg's libraries are missing.
bool SoundAvailable();

/// A sound track. Texts are UTF-8, and empty where the file does not tell.
struct SoundTrack {
    std::string name;
    /// As the file has it, mostly three letters ("eng").
    std::string language;
    std::string codec;
    bool isDefault = false;
    int channels = 0;
    /// Samples a second; 0 when only decoding would tell.
    int frequency = 0;
};

/// A track of subtitles.
struct TextTrack {
    enum class Kind { Text, Picture };

    /// What `TextTrackReader` takes; counts all tracks of the file from 0.
    int index = 0;
    /// FFmpeg's name: "subrip", "ass", "mov_text", "webvtt", "ttml", "hdmv_pgs_subtitle", ...
    std::string codec;
    Kind kind = Kind::Text;
    std::string name;
    std::string language;
    bool isDefault = false;
    bool isForced = false;
};

struct Chapter {
    /// Seconds on the player's clock.
    double start = 0;
    double end = 0;
    std::string name;
};

/// What a film or sound file holds. Times are seconds on the player's clock: time 0 is the
/// first picture, or the first sound where there is none.
struct MediaFile {
    /// 0 when the file does not tell.
    double length = 0;
    /// The file's own time stamp of time 0.
    double firstTime = 0;
    /// Pictures a second; nothing without pictures, 0 when the file does not tell.
    std::optional<double> pictureRate;
    std::vector<SoundTrack> soundTracks;
    std::vector<TextTrack> textTracks;
    std::vector<Chapter> chapters;

    /// Reads a file. Nothing when it is no local film or sound file in a format that the
    /// player takes, when it is too damaged, or when a stop was asked for (heeded within
    /// 100 ms). A file that names other files gets none of them.
    static std::optional<MediaFile> Read(const std::filesystem::path& file,
                                         const std::stop_token& stop = {});
    /// The sound track that the player takes by itself, counted from 1; 0 without any.
    int PlayedTrack() const;
};

#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <vector>

/// One title of a text track as the film holds it.
struct TextPacket {
    /// Seconds on the player's clock; they may lie below 0. The end is the start when the
    /// film does not tell how long the title is shown.
    double start = 0;
    double end = 0;
    /// In the form that the codec asks for; any bytes.
    std::string payload;
    /// Of "webvtt": the cue's identifier and its settings.
    std::string name;
    std::string settings;
    /// Times within the payload count from its start, not from that of the film.
    bool timesFromStart = false;
    /// `TextTrack::index`
    int track = 0;
};

/// Reads the packets of text tracks in the order of the file.
class TextTrackReader {
  public:
    /// Takes `TextTrack::index`. Null when there is no such track, the file cannot be
    /// read, or a stop was asked for (heeded within 100 ms, here and below).
    static std::unique_ptr<TextTrackReader> Open(const std::filesystem::path& file, int index,
                                                 std::stop_token stop = {});
    /// Several tracks in one go; at least one.
    static std::unique_ptr<TextTrackReader>
    Open(const std::filesystem::path& file, std::vector<int> indexes, std::stop_token stop = {});
    virtual ~TextTrackReader() = default;

    /// `progress` hears while packets are read how much of the file is, 0 to 1.
    virtual void OnProgress(std::function<void(double)> progress) = 0;
    virtual std::string Codec(int index) const = 0;
    /// What the codec needs to know beside the packets: the header of "ass", for example.
    virtual std::string CodecPrivate(int index) const = 0;
    /// false at the end of the film and when a stop was asked for.
    virtual bool Read(TextPacket& packet) = 0;
};

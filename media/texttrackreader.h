#pragma once

#include <filesystem>
#include <memory>
#include <stop_token>
#include <string>

/// One title of a text track as the film holds it.
struct TextPacket {
    /// Seconds on the player's clock; they may lie below 0. The end is the start when the
    /// film does not tell how long the title is shown.
    double start = 0;
    double end = 0;
    /// In the form that the codec asks for; any bytes.
    std::string payload;
};

/// Reads the packets of a text track in the order of the file.
class TextTrackReader {
  public:
    /// Takes `TextTrack::index`. Null when there is no such track, the file cannot be
    /// read, or a stop was asked for (heeded within 100 ms, here and below).
    static std::unique_ptr<TextTrackReader> Open(const std::filesystem::path& file, int index,
                                                 std::stop_token stop = {});
    virtual ~TextTrackReader() = default;

    virtual const std::string& Codec() const = 0;
    /// What the codec needs to know beside the packets: the header of "ass", for example.
    virtual const std::string& CodecPrivate() const = 0;
    /// false at the end of the film and when a stop was asked for.
    virtual bool Read(TextPacket& packet) = 0;
};

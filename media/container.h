#pragma once

#include "media/ffmpeg.h"

#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <utility>
#include <vector>

/// FFmpeg's name of the codec of a track of subtitles; empty when it is another kind of track.
/// Some kinds the library does not know by a name of its own.
std::string CodecOfText(const FfmpegLibrary& ffmpeg, const AVStream& stream);

/// A film that libavformat has open, as the player opens it: the same formats, the same
/// options, the same time 0.
class Container {
  public:
    /// Null when it is no local file of a known format, or a stop was asked for.
    static std::unique_ptr<Container> Open(const std::filesystem::path& file, std::stop_token stop);
    ~Container();
    Container(const Container&) = delete;
    Container& operator=(const Container&) = delete;

    const FfmpegLibrary& Library() const { return m_ffmpeg; }
    const AVFormatContext& Format() const { return *m_format; }
    const AVStream& Stream(int index) const;
    bool Stopped() const { return m_stop.stop_requested(); }

    /// The file's time at the player's time 0, in seconds.
    double Zero() const { return m_zero; }
    /// In seconds; 0: unknown.
    double Length() const { return m_length; }
    /// A stream's time on the player's clock.
    double Time(const AVStream& stream, std::int64_t stamp) const;
    /// The index of the n-th sound track, counted from 1, 0 being the one that the player
    /// takes; -1 without one.
    int SoundStream(int track) const;
    /// The index of the pictures that the player shows; -1 without them.
    int PictureStream() const;

    /// From now on only this stream is read, or these.
    void Select(int stream) { Select(std::vector<int>{stream}); }
    void Select(const std::vector<int>& streams);
    /// The next packet; false at the end and when a stop was asked for.
    bool Read(AVPacket& packet);
    /// How much of the file is read, 0 to 1; while packets are read, `progress` hears of it.
    double Done() const;
    void OnProgress(std::function<void(double)> progress) { m_progress = std::move(progress); }
    /// Goes to a packet of the stream at the time or before it (seconds on the player's
    /// clock), as near as the file allows, or to the beginning.
    void Seek(int stream, double time);

  private:
    Container(const FfmpegLibrary& ffmpeg, std::stop_token stop);
    bool OpenFile(const std::filesystem::path& file);
    bool Named(const char* format) const;

    double FirstShown();
    double LengthTold() const;
    bool ReadFromFile(AVPacket& packet);
    bool IsSelected(int stream) const;

    const FfmpegLibrary& m_ffmpeg;
    const std::stop_token m_stop;
    AVIOContext* m_file = nullptr;
    AVFormatContext* m_format = nullptr;
    double m_zero = 0;
    double m_length = 0;
    /// In bytes.
    double m_size = 0;
    std::function<void(double)> m_progress;
    std::vector<int> m_selected;
    /// What was read to find time 0 and is still to be given out.
    std::deque<PacketPointer> m_ahead;
};

#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <span>
#include <stop_token>

/// Reads one sound track as mono samples of 16 kHz, each at its place on the player's
/// clock: sample n is heard n / 16000 seconds after the player's time 0. A container's
/// delay is kept, what an encoder put in front is left out as the player leaves it out,
/// gaps and broken packets are silent.
class SoundReader {
  public:
    static constexpr int Frequency = 16000;

    /// Samples that follow each other; valid until the next call.
    struct Block {
        /// The number of the first one.
        std::int64_t first = 0;
        /// From -1 to 1, or a little beyond.
        std::span<const float> samples;

        double Time() const { return static_cast<double>(first) / Frequency; }
    };

    /// Tracks are counted from 1 as the player counts them; 0: the one that it plays by
    /// itself. Null when there is no such track or none that can be decoded, when the file
    /// cannot be read, or when a stop was asked for. A stop is heeded within 100 ms by every
    /// function here.
    static std::unique_ptr<SoundReader> Open(const std::filesystem::path& file, int track,
                                             std::stop_token stop = {});
    virtual ~SoundReader() = default;

    /// In seconds; 0 when the file does not tell.
    virtual double Length() const = 0;
    /// The next block begins at this sample, at 0 or later.
    virtual void Seek(std::int64_t sample) = 0;
    /// The next block, without a gap behind the one before. false at the end of the track
    /// and when a stop was asked for.
    virtual bool Read(Block& block) = 0;
};

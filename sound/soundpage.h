#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// How sound is laid out in memory and in the cache: pages of 5.12 s, each a
/// pyramid of its own, so that a page can be made, shown and stored alone.
/// All is bytes, so a page reads the same on every machine.

/// The lowest loudness, in decibels below full scale.
inline constexpr float Silence = -96;

struct SoundPage {
    static constexpr int Milliseconds = 5120;
    /// A bucket of level n lasts 4^n milliseconds: 1 ms to 1.024 s.
    static constexpr int Levels = 6;
    static constexpr int Factor = 4;
    static constexpr int Buckets = 5120 + 1280 + 320 + 80 + 20 + 5;

    static constexpr std::int64_t BucketMilliseconds(int level) {
        return std::int64_t{1} << (2 * level);
    }
    static constexpr int BucketsOf(int level) { return Milliseconds >> (2 * level); }
    /// Where the buckets of a level begin.
    static constexpr int First(int level) {
        int first = 0;
        for (int below = 0; below < level; ++below)
            first += BucketsOf(below);
        return first;
    }

    /// Least and greatest sample of each bucket, and its mean power, coded as below.
    std::array<std::int8_t, Buckets> least;
    std::array<std::int8_t, Buckets> greatest;
    std::array<std::uint8_t, Buckets> loudness;
};
static_assert(sizeof(SoundPage) == std::size_t{3} * SoundPage::Buckets);

struct SpeechPage {
    static constexpr int Values = SoundPage::Milliseconds / 10;
    /// How many values a coarse one sums up.
    static constexpr int Factor = 16;

    /// The probability that someone speaks, 0 to 255, for each 10 ms.
    std::array<std::uint8_t, Values> fine;
    /// The mean of each 160 ms.
    std::array<std::uint8_t, Values / Factor> coarse;
};
static_assert(sizeof(SpeechPage) == SpeechPage::Values + SpeechPage::Values / SpeechPage::Factor);

/// A sample of -1 to 1 in a byte. The root of it is kept, so quiet sound stays as fine
/// as loud sound: the steps are 1/16129 near 0 and 1/64 near 1.
std::int8_t PackSample(float sample);
float UnpackSample(std::int8_t packed);

/// Mean power (1: a square wave of full scale) in a byte, in steps of 0.5 dB.
std::uint8_t PackPower(float power);
/// In decibels, `Silence` to 0.
float UnpackLoudness(std::uint8_t packed);

/// A page of its samples, 16 for each millisecond; what is missing at the end is silent.
SoundPage MakePage(std::span<const float> samples);

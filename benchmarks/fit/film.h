#pragma once

#include "fit/fit.h"

#include <cstdint>
#include <filesystem>
#include <random>
#include <span>
#include <string>
#include <vector>

/// Films made here: voices over music and noise, and what is known of them.

inline constexpr int SampleRate = 16000;
using Samples = std::vector<float>;

/// The phrases of one voice, without the silence around them, equally loud.
struct Voice {
    std::string name;
    std::vector<Samples> phrases;
};

/// Reads NAME.raw and NAME.lengths for all names that begin with the prefix.
std::vector<Voice> ReadVoices(const std::filesystem::path& folder, const std::string& prefix);

/// Random numbers that are the same everywhere.
class Dice {
  public:
    explicit Dice(std::uint64_t seed)
        : m_engine(seed) {}
    /// low <= number < high
    double Between(double low, double high) {
        return low + (high - low) * static_cast<double>(m_engine() >> 11U) / 9007199254740992.0;
    }
    bool Chance(double share) { return Between(0, 1) < share; }
    std::size_t Index(std::size_t count) {
        return static_cast<std::size_t>(Between(0, static_cast<double>(count)));
    }
    /// About normal, mean 0.
    double Spread(double deviation) {
        double sum = 0;
        for (int i = 0; i < 6; ++i)
            sum += Between(-1, 1);
        return sum * deviation / 1.4142135623730951;
    }

  private:
    std::mt19937_64 m_engine;
};

struct MadeFilm {
    std::string name;
    double length = 0;
    /// What an author would write, with the right times.
    std::vector<FitTitle> titles;
    /// The same in another language, split otherwise here and there.
    std::vector<FitTitle> otherLanguage;
    Samples sound;
};

/// How the voices stand against what else is heard.
struct Mix {
    /// dB of the music, the steady noise and the murmur of others against the voices.
    double music = -12;
    double noise = -22;
    double murmur = -20;
};

/// Without `heard` there is no sound, which is what takes long, but the same titles.
MadeFilm Shoot(std::uint64_t seed, std::span<const Voice> voices, double length, const Mix& mix,
               bool heard);

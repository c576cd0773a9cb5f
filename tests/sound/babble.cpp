#include "tests/sound/babble.h"

#include <cmath>
#include <cstdint>
#include <vector>

namespace {

constexpr double Pi = 3.14159265358979323846;

/// 16 kHz, one channel, 16 bits.
std::string WaveFile(const std::vector<std::int16_t>& samples) {
    const auto number = [](std::uint32_t value, int bytes) {
        std::string text;
        for (int i = 0; i < bytes; ++i)
            text += static_cast<char>(value >> static_cast<unsigned>(8 * i));
        return text;
    };
    const auto size = static_cast<std::uint32_t>(2 * samples.size());
    std::string file = "RIFF" + number(36 + size, 4) + "WAVEfmt " + number(16, 4) + number(1, 2) +
                       number(1, 2) + number(16000, 4) + number(32000, 4) + number(2, 2) +
                       number(16, 2) + "data" + number(size, 4);
    for (const std::int16_t sample : samples)
        file += number(static_cast<std::uint16_t>(sample), 2);
    return file;
}

} // namespace

std::string Babble(const FittingFilm& film) {
    std::vector<std::int16_t> samples(static_cast<std::size_t>(film.length * 16000));
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] =
            static_cast<std::int16_t>(60 * (Chance(3, static_cast<std::uint32_t>(i)) - 0.5));
    for (const FitTitle& title : film.titles) {
        const auto first = static_cast<std::size_t>(title.start * 16000);
        const auto last = static_cast<std::size_t>(title.end * 16000);
        for (std::size_t i = first; i < last && i < samples.size(); ++i) {
            const double time = static_cast<double>(i - first) / 16000;
            const double syllable = 0.5 - 0.5 * std::cos(2 * Pi * 4 * time);
            double buzz = 0;
            for (int harmonic = 3; harmonic < 16; ++harmonic)
                buzz += std::sin(2 * Pi * 140 * harmonic * time) / harmonic;
            samples[i] = static_cast<std::int16_t>(samples[i] + 5000 * syllable * buzz);
        }
    }
    return WaveFile(samples);
}

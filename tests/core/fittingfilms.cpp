#include "tests/core/fittingfilms.h"

#include <algorithm>

double Chance(std::uint32_t seed, std::uint32_t number) {
    std::uint64_t x = (static_cast<std::uint64_t>(seed) << 32U) + number + 0x9E3779B97F4A7C15U;
    x = (x ^ (x >> 30U)) * 0xBF58476D1CE4E5B9U;
    x = (x ^ (x >> 27U)) * 0x94D049BB133111EBU;
    x ^= x >> 31U;
    return static_cast<double>(x >> 11U) / static_cast<double>(1ULL << 53U);
}

FittingFilm MakeFilm(std::uint32_t seed, double length) {
    FittingFilm film{length, {}};
    double time = 5;
    for (std::uint32_t i = 0;; ++i) {
        const double spoken = 0.8 + 2.5 * Chance(seed, 4 * i);
        if (time + spoken + 5 > length)
            return film;
        // The text takes about as long to speak as the title is shown.
        const auto letters = static_cast<std::size_t>((spoken - 0.25) * 15 / 1.2);
        film.titles.push_back({time, time + spoken, std::string(letters, 'a')});
        const double pause = Chance(seed, 4 * i + 1) < 0.12 ? 4 + 12 * Chance(seed, 4 * i + 2)
                                                            : 0.1 + 1.9 * Chance(seed, 4 * i + 3);
        time += spoken + pause;
    }
}

SpeechCurve SpeechOf(const FittingFilm& film, double noise, std::uint32_t seed) {
    SpeechCurve curve;
    curve.values.assign(static_cast<std::size_t>(film.length / SpeechCurve::Step), 0.0F);
    for (const FitTitle& title : film.titles) {
        const auto first = static_cast<std::size_t>(title.start / SpeechCurve::Step + 0.5);
        const auto last = static_cast<std::size_t>(title.end / SpeechCurve::Step + 0.5);
        std::fill(curve.values.begin() + static_cast<std::ptrdiff_t>(first),
                  curve.values.begin() + static_cast<std::ptrdiff_t>(last), 1.0F);
    }
    // Noise comes in pieces of 0.2 s to 1 s, as sounds do.
    std::size_t at = 0;
    for (std::uint32_t i = 0; noise > 0 && at < curve.values.size(); ++i) {
        const auto length = static_cast<std::size_t>(20 + 80 * Chance(seed, 3 * i));
        const std::size_t end = std::min(at + length, curve.values.size());
        const double heard = Chance(seed, 3 * i + 1) * noise;
        for (; at < end; ++at) {
            const double value = static_cast<double>(curve.values[at]);
            curve.values[at] = static_cast<float>(value + heard * (1 - 2 * value));
        }
    }
    return curve;
}

std::vector<FitTitle> Misplaced(std::vector<FitTitle> titles, double offset, double rate) {
    for (FitTitle& title : titles) {
        title.start = (title.start - offset) / rate;
        title.end = (title.end - offset) / rate;
    }
    return titles;
}

#include "benchmarks/fit/film.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>

namespace {

constexpr double Pi = 3.14159265358979323846;
/// Of all voices before gains.
constexpr float VoiceLevel = 0.1F;

double LevelOf(std::span<const float> samples) {
    double squares = 0;
    for (const float sample : samples)
        squares += static_cast<double>(sample) * static_cast<double>(sample);
    return std::sqrt(squares / static_cast<double>(std::max<std::size_t>(samples.size(), 1)));
}

/// Cuts the silence off both ends and makes the rest as loud as all.
Samples Trimmed(std::span<const std::int16_t> raw) {
    constexpr std::size_t Frame = 80;
    Samples samples(raw.size());
    std::transform(raw.begin(), raw.end(), samples.begin(),
                   [](std::int16_t value) { return static_cast<float>(value) / 32768.0F; });
    std::vector<double> levels;
    for (std::size_t i = 0; i + Frame <= samples.size(); i += Frame)
        levels.push_back(LevelOf(std::span(samples).subspan(i, Frame)));
    if (levels.empty())
        return {};
    const double threshold = *std::max_element(levels.begin(), levels.end()) * 0.04;
    const auto loud = [&](double level) {
        return level > threshold;
    };
    const auto first = std::find_if(levels.begin(), levels.end(), loud);
    const auto last = std::find_if(levels.rbegin(), levels.rend(), loud).base();
    const auto begin = static_cast<std::ptrdiff_t>(Frame) * (first - levels.begin());
    const auto end = static_cast<std::ptrdiff_t>(Frame) * (last - levels.begin());
    Samples phrase(samples.begin() + begin, samples.begin() + end);
    const auto gain = VoiceLevel / static_cast<float>(std::max(LevelOf(phrase), 1e-4));
    for (float& sample : phrase)
        sample *= gain;
    return phrase;
}

float Decibel(double level) {
    return static_cast<float>(std::pow(10, level / 20));
}

std::size_t At(double seconds) {
    return static_cast<std::size_t>(std::max(seconds, 0.0) * SampleRate);
}

void Mixed(Samples& sound, double start, std::span<const float> what, float gain) {
    const std::size_t first = At(start);
    for (std::size_t i = 0; i < what.size() && first + i < sound.size(); ++i)
        sound[first + i] += what[i] * gain;
}

/// Chords that change twice a second to every two seconds, with a beat.
void AddMusic(Samples& sound, double from, double to, float gain, Dice& dice) {
    constexpr std::array<double, 7> Scale{0, 2, 4, 5, 7, 9, 11};
    const double beat = dice.Between(0.35, 0.8);
    const double key = dice.Between(40, 52);
    const bool drums = dice.Chance(0.6);
    for (double time = from; time < to; time += beat) {
        const double held = beat * static_cast<double>(1 + dice.Index(4));
        std::array<double, 4> pitches{};
        for (double& pitch : pitches)
            pitch = 440 * std::pow(2, (key + Scale[dice.Index(7)] +
                                       12 * static_cast<double>(dice.Index(3)) - 57) /
                                          12);
        const std::size_t length = At(held);
        Samples chord(length, 0.0F);
        for (const double pitch : pitches) {
            for (int harmonic = 1; harmonic <= 4; ++harmonic) {
                const double step = 2 * Pi * pitch * harmonic / SampleRate;
                if (step > 2.5)
                    break;
                // A turning pointer is cheaper than a sine for each sample.
                const double cosine = std::cos(step);
                const double sine = std::sin(step);
                double x = 1;
                double y = 0;
                const double level = 0.03 / harmonic;
                for (std::size_t i = 0; i < length; ++i) {
                    const double next = x * cosine - y * sine;
                    y = x * sine + y * cosine;
                    x = next;
                    const double at = static_cast<double>(i) / static_cast<double>(length);
                    chord[i] += static_cast<float>(y * level * std::min(at * 20, 1.0) * (1 - at));
                }
            }
        }
        Mixed(sound, time, chord, gain * 1.6F);
        if (!drums)
            continue;
        Samples drum(At(0.12));
        for (std::size_t i = 0; i < drum.size(); ++i) {
            const double fall = std::exp(-40.0 * static_cast<double>(i) / SampleRate);
            drum[i] = static_cast<float>(dice.Between(-0.3, 0.3) * fall);
        }
        Mixed(sound, time, drum, gain);
    }
}

void AddNoise(Samples& sound, float gain, Dice& dice) {
    double low = 0;
    double loudness = 1;
    double goal = 1;
    for (std::size_t i = 0; i < sound.size(); ++i) {
        if (i % SampleRate == 0 && dice.Chance(0.1))
            goal = dice.Between(0.3, 2.5);
        loudness += (goal - loudness) / SampleRate;
        const double white = dice.Between(-1, 1);
        low += (white - low) * 0.15;
        sound[i] += static_cast<float>((low * 2.0 + white * 0.3) * 0.15 * loudness) * gain;
    }
}

/// Doors, steps, shots.
void AddKnocks(Samples& sound, double length, Dice& dice) {
    for (double time = dice.Between(1, 10); time < length; time += dice.Between(0.5, 20)) {
        Samples knock(At(dice.Between(0.05, 0.6)));
        const double fall = dice.Between(4, 30);
        double low = 0;
        for (std::size_t i = 0; i < knock.size(); ++i) {
            low += (dice.Between(-1, 1) - low) * 0.4;
            knock[i] = static_cast<float>(low * 0.5 *
                                          std::exp(-fall * static_cast<double>(i) / SampleRate));
        }
        Mixed(sound, time, knock, Decibel(dice.Between(-14, 4)));
    }
}

std::string TextFor(double seconds, Dice& dice) {
    const double letters = std::max(seconds * dice.Between(11, 17), 2.0);
    std::string text;
    while (static_cast<double>(text.size()) < letters) {
        if (!text.empty())
            text += text.size() % 34 > 26 ? "\r\n" : " ";
        text += std::string(3 + dice.Index(6), 'a');
    }
    return text;
}

/// What stays on the screen a little longer than it is spoken, but not into the next.
void MendEnds(std::vector<FitTitle>& titles) {
    for (std::size_t i = 0; i + 1 < titles.size(); ++i)
        titles[i].end =
            std::max(std::min(titles[i].end, titles[i + 1].start - 0.04), titles[i].start + 0.3);
}

std::vector<FitTitle> OtherLanguage(const std::vector<FitTitle>& titles, Dice& dice) {
    std::vector<FitTitle> other;
    for (std::size_t i = 0; i < titles.size(); ++i) {
        FitTitle title = titles[i];
        const bool sameStart = dice.Chance(0.7);
        title.start += sameStart ? 0 : dice.Spread(0.06);
        title.end += dice.Chance(0.5) ? 0 : dice.Spread(0.2);
        title.text += std::string(dice.Index(9), 'e');
        if (dice.Chance(0.04))
            continue;
        const bool joins =
            dice.Chance(0.075) && i + 1 < titles.size() && titles[i + 1].start - title.end < 0.8;
        if (joins) {
            title.end = titles[++i].end;
            title.text += titles[i].text;
        } else if (dice.Chance(0.075) && title.end - title.start > 2) {
            FitTitle second = title;
            title.end = second.start =
                title.start + (title.end - title.start) * dice.Between(0.4, 0.6);
            other.push_back(title);
            title = second;
        }
        other.push_back(title);
    }
    MendEnds(other);
    return other;
}

} // namespace

std::vector<Voice> ReadVoices(const std::filesystem::path& folder, const std::string& prefix) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        const bool wanted = entry.path().filename().string().starts_with(prefix);
        if (wanted && entry.path().extension() == ".raw")
            files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    std::vector<Voice> voices;
    for (std::filesystem::path file : files) {
        Voice voice{file.stem().string(), {}};
        std::ifstream raw(file, std::ios::binary);
        std::ifstream lengths(file.replace_extension(".lengths"));
        std::size_t length = 0;
        while (lengths >> length) {
            std::vector<std::int16_t> samples(length);
            raw.read(reinterpret_cast<char*>(samples.data()),
                     static_cast<std::streamsize>(length * sizeof(std::int16_t)));
            Samples phrase = Trimmed(samples);
            if (phrase.size() > At(0.4) && phrase.size() < At(6))
                voice.phrases.push_back(std::move(phrase));
        }
        voices.push_back(std::move(voice));
    }
    return voices;
}

MadeFilm Shoot(std::uint64_t seed, std::span<const Voice> voices, double length, const Mix& mix,
               bool heard) {
    Dice dice(seed);
    MadeFilm film{voices[seed % voices.size()].name, length, {}, {}, {}};
    // Most is said by one voice at three pitches of loudness, some by another.
    const Voice& main = voices[seed % voices.size()];
    const Voice& other = voices[(seed + 1) % voices.size()];
    // Authors differ in how early, how exactly and for how long they show a title.
    const double lead = dice.Between(-0.04, 0.08);
    const double inexact = dice.Between(0.04, 0.2);
    const double lasting = dice.Between(0.3, 2);
    if (heard)
        film.sound.assign(At(length), 0.0F);
    double time = dice.Between(3, 40);
    double loudness = 0;
    while (time < length - 20) {
        if (dice.Chance(0.3))
            loudness = dice.Between(-5, 4);
        const Voice& voice = dice.Chance(0.75) ? main : other;
        const Samples& phrase = voice.phrases[dice.Index(voice.phrases.size())];
        const double spoken = static_cast<double>(phrase.size()) / SampleRate;
        const bool spokenAloud = !dice.Chance(0.13);
        const bool written = !dice.Chance(0.15);
        if (spokenAloud && heard)
            Mixed(film.sound, time, phrase, Decibel(loudness));
        if (written || !spokenAloud) {
            const double start = time - lead + dice.Spread(inexact);
            film.titles.push_back({start, time + std::max(spoken + dice.Between(0.1, lasting), 1.0),
                                   TextFor(spoken, dice)});
        }
        const double pause = dice.Chance(0.1) ? dice.Between(4, 25) : dice.Between(0.05, 2.2);
        time += spoken + pause;
        if (dice.Chance(0.012))
            time += dice.Between(20, 70);
    }
    MendEnds(film.titles);
    film.otherLanguage = OtherLanguage(film.titles, dice);
    if (!heard)
        return film;
    AddNoise(film.sound, Decibel(mix.noise), dice);
    AddKnocks(film.sound, length, dice);
    for (double from = dice.Between(0, 60); from < length; from += dice.Between(30, 240)) {
        const double to = std::min(from + dice.Between(20, 150), length);
        AddMusic(film.sound, from, to, Decibel(mix.music + dice.Between(-6, 6)), dice);
        from = to;
    }
    for (double at = 0; at < length; at += dice.Between(0.3, 4)) {
        const Samples& phrase = other.phrases[dice.Index(other.phrases.size())];
        Mixed(film.sound, at, phrase, Decibel(mix.murmur + dice.Between(-6, 6)));
    }
    return film;
}

#include "sound/speechdetector.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using Curve = std::vector<float>;

constexpr double Frequency = 16000;
/// The middles of the bands, and the ratio of middle to width.
constexpr std::array<double, SpeechBands::Count> Middles{400, 850, 1700, 3100};
constexpr double Quality = 1.3;

// Times are in values of 10 ms.

constexpr std::ptrdiff_t Surroundings = SpeechContext - 128;
constexpr std::ptrdiff_t SurroundingsStep = 8;
/// Background is measured over 0.4 s, so that notes and beats belong to it.
constexpr std::ptrdiff_t BackgroundReach = 20;
/// Which share of the surroundings is background, and which the loudest.
constexpr float BackgroundShare = 0.15F;
constexpr float LoudShare = 0.95F;
/// Above the background (in dB): where a band begins to count, and where it counts wholly.
constexpr float RiseBegin = 1;
constexpr float RiseWhole = 7;
/// Below the loudest of the surroundings (in dB): where it counts wholly, and where nobody
/// speaks any more.
constexpr float QuietWhole = 25;
constexpr float QuietEnd = 40;
/// Nor does anybody below this loudness.
constexpr float Inaudible = -70;
/// The swing of the syllables (in dB): where it begins to count, and where it counts wholly.
constexpr float SwingBegin = 0.7F;
constexpr float SwingWhole = 2.2F;
constexpr std::ptrdiff_t SwingReach = 50;
/// A mean over 1/8 s less one over 1/2 s leaves what swings 2 to 8 times a second.
constexpr std::ptrdiff_t FastReach = 5;
constexpr std::ptrdiff_t SlowReach = 25;
constexpr std::ptrdiff_t SmoothReach = 2;
/// Pauses up to twice this length stay inside speech, bursts up to twice this length are none.
constexpr std::ptrdiff_t PauseReach = 10;
constexpr std::ptrdiff_t BurstReach = 4;

struct Coefficients {
    std::array<float, SpeechBands::Count> in{};
    std::array<float, SpeechBands::Count> back1{};
    std::array<float, SpeechBands::Count> back2{};
};

/// Band passes of second order with gain 1 in the middle.
Coefficients BandPasses() {
    Coefficients coefficients;
    for (std::size_t i = 0; i < Middles.size(); ++i) {
        const double turn = 2 * std::numbers::pi * Middles[i] / Frequency;
        const double alpha = std::sin(turn) / (2 * Quality);
        coefficients.in[i] = static_cast<float>(alpha / (1 + alpha));
        coefficients.back1[i] = static_cast<float>(2 * std::cos(turn) / (1 + alpha));
        coefficients.back2[i] = static_cast<float>((alpha - 1) / (1 + alpha));
    }
    return coefficients;
}

float Between(float value, float none, float whole) {
    return std::clamp((value - none) / (whole - none), 0.0F, 1.0F);
}

/// The mean of each value and its neighbours up to `reach` away.
Curve MovingMean(const Curve& curve, std::ptrdiff_t reach) {
    const auto count = static_cast<std::ptrdiff_t>(curve.size());
    std::vector<double> sums(curve.size() + 1);
    for (std::size_t i = 0; i < curve.size(); ++i)
        sums[i + 1] = sums[i] + static_cast<double>(curve[i]);
    Curve mean(curve.size());
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const auto from = static_cast<std::size_t>(std::max<std::ptrdiff_t>(i - reach, 0));
        const auto to = static_cast<std::size_t>(std::min(i + reach + 1, count));
        mean[static_cast<std::size_t>(i)] =
            static_cast<float>((sums[to] - sums[from]) / static_cast<double>(to - from));
    }
    return mean;
}

/// The greatest (or by `std::less`, the least) of each value and its neighbours.
template <typename ORDER>
Curve Extreme(const Curve& curve, std::ptrdiff_t reach, ORDER order) {
    const auto count = static_cast<std::ptrdiff_t>(curve.size());
    Curve extreme(curve.size());
    for (std::ptrdiff_t i = 0; i < count; ++i) {
        const auto from = curve.begin() + std::max<std::ptrdiff_t>(i - reach, 0);
        const auto to = curve.begin() + std::min(i + reach + 1, count);
        extreme[static_cast<std::size_t>(i)] =
            *std::min_element(from, to, [order](float a, float b) { return order(a, b); });
    }
    return extreme;
}

Curve Greatest(const Curve& curve, std::ptrdiff_t reach) {
    return Extreme(curve, reach, std::greater<>());
}

Curve Least(const Curve& curve, std::ptrdiff_t reach) {
    return Extreme(curve, reach, std::less<>());
}

/// For each value the one below which that share of its surroundings lies.
Curve ShareOfSurroundings(const std::vector<std::uint8_t>& packed, float share) {
    const auto count = static_cast<std::ptrdiff_t>(packed.size());
    std::array<int, 256> histogram{};
    Curve result(packed.size());
    std::ptrdiff_t from = 0;
    std::ptrdiff_t to = 0;
    for (std::ptrdiff_t i = 0; i < count; i += SurroundingsStep) {
        for (; to < std::min(i + Surroundings, count); ++to)
            ++histogram[packed[static_cast<std::size_t>(to)]];
        for (; from < i - Surroundings; ++from)
            --histogram[packed[static_cast<std::size_t>(from)]];
        auto below = static_cast<int>(share * static_cast<float>(to - from));
        std::size_t value = 0;
        while (value < 255 && (below -= histogram[value]) >= 0)
            ++value;
        const auto end = std::min(i + SurroundingsStep, count);
        std::fill(result.begin() + i, result.begin() + end,
                  UnpackLoudness(static_cast<std::uint8_t>(value)));
    }
    return result;
}

/// The loudness of what is always there.
Curve Background(std::vector<std::uint8_t> packed) {
    Curve power(packed.size());
    for (std::size_t i = 0; i < packed.size(); ++i)
        power[i] = std::pow(10.0F, UnpackLoudness(packed[i]) / 10);
    power = MovingMean(power, BackgroundReach);
    for (std::size_t i = 0; i < packed.size(); ++i)
        packed[i] = PackPower(power[i]);
    return ShareOfSurroundings(packed, BackgroundShare);
}

/// How strongly a curve of decibels swings about each value, at the pace of syllables.
Curve Swing(const Curve& decibels) {
    Curve swing = MovingMean(decibels, FastReach);
    const Curve slow = MovingMean(decibels, SlowReach);
    for (std::size_t i = 0; i < swing.size(); ++i) {
        const float difference = swing[i] - slow[i];
        swing[i] = difference * difference;
    }
    swing = MovingMean(swing, SwingReach);
    for (float& value : swing)
        value = std::sqrt(value);
    return swing;
}

void AddTo(Curve& sum, const Curve& curve, float share) {
    for (std::size_t i = 0; i < sum.size(); ++i)
        sum[i] += share * curve[i];
}

Curve Probability(std::span<const SpeechBands> bands) {
    constexpr float Share = 1.0F / SpeechBands::Count;
    Curve energy(bands.size());
    Curve swing(bands.size());
    Curve loudness(bands.size());
    std::vector<std::uint8_t> packed(bands.size());
    for (std::size_t band = 0; band < SpeechBands::Count; ++band) {
        for (std::size_t i = 0; i < bands.size(); ++i)
            packed[i] = bands[i].power[band];
        const Curve background = Background(packed);
        Curve decibels(bands.size());
        for (std::size_t i = 0; i < bands.size(); ++i) {
            decibels[i] = UnpackLoudness(packed[i]);
            loudness[i] += Share * decibels[i];
            decibels[i] = std::max(decibels[i], background[i]);
            energy[i] += Share * Between(decibels[i] - background[i], RiseBegin, RiseWhole);
        }
        AddTo(swing, Swing(decibels), Share);
    }
    for (std::size_t i = 0; i < bands.size(); ++i)
        packed[i] = static_cast<std::uint8_t>((loudness[i] - Silence) * 2);
    const Curve loudest = ShareOfSurroundings(packed, LoudShare);
    for (std::size_t i = 0; i < bands.size(); ++i) {
        const float heard = Between(loudness[i], std::max(loudest[i] - QuietEnd, Inaudible),
                                    std::max(loudest[i] - QuietWhole, Inaudible + 1));
        energy[i] *= heard;
    }
    energy = MovingMean(energy, SmoothReach);
    for (std::size_t i = 0; i < bands.size(); ++i)
        energy[i] = std::sqrt(energy[i] * Between(swing[i], SwingBegin, SwingWhole));
    energy = Least(Greatest(energy, PauseReach), PauseReach);
    return Greatest(Least(energy, BurstReach), BurstReach);
}

} // namespace

void SpeechFilter::Push(std::span<const float> samples, std::vector<SpeechBands>& bands) {
    static const Coefficients Filter = BandPasses();
    // Too quiet to be heard, and it keeps the filters off numbers that are slow to reckon with.
    constexpr float Whisper = 1e-9F;
    for (const float sample : samples) {
        Lanes value;
        value.fill(sample + Whisper);
        for (Section& section : m_sections) {
            for (std::size_t i = 0; i < SpeechBands::Count; ++i) {
                const float in = Filter.in[i] * value[i];
                const float out = in + section.z1[i];
                section.z1[i] = Filter.back1[i] * out + section.z2[i];
                section.z2[i] = Filter.back2[i] * out - in;
                value[i] = out;
            }
        }
        for (std::size_t i = 0; i < SpeechBands::Count; ++i)
            m_energy[i] += value[i] * value[i];
        if (++m_count < SamplesOfAValue)
            continue;
        SpeechBands& result = bands.emplace_back();
        for (std::size_t i = 0; i < SpeechBands::Count; ++i)
            result.power[i] = PackPower(m_energy[i] / SamplesOfAValue);
        m_energy = {};
        m_count = 0;
    }
}

SpeechPage DetectSpeech(std::span<const SpeechBands> bands, std::size_t first) {
    const Curve probability = Probability(bands);
    SpeechPage page{};
    for (std::size_t i = 0; i < page.fine.size() && first + i < probability.size(); ++i)
        page.fine[i] = static_cast<std::uint8_t>(
            std::lround(255 * std::clamp(probability[first + i], 0.0F, 1.0F)));
    for (std::size_t i = 0; i < page.coarse.size(); ++i) {
        int sum = 0;
        for (std::size_t j = 0; j < SpeechPage::Factor; ++j)
            sum += page.fine[i * SpeechPage::Factor + j];
        page.coarse[i] = static_cast<std::uint8_t>(sum / SpeechPage::Factor);
    }
    return page;
}

#include "sound/soundpage.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float Steps = 127;
constexpr float StepsOfADecibel = 2;
constexpr float LeastPower = 1e-10F;

} // namespace

std::int8_t PackSample(float sample) {
    const float root = std::sqrt(std::min(std::abs(sample), 1.0F)) * Steps;
    return static_cast<std::int8_t>(std::lround(std::copysign(root, sample)));
}

float UnpackSample(std::int8_t packed) {
    const float root = static_cast<float>(packed) / Steps;
    return root * std::abs(root);
}

std::uint8_t PackPower(float power) {
    const float decibels = 10 * std::log10(std::clamp(power, LeastPower, 1.0F));
    const float above = std::max(decibels - Silence, 0.0F);
    return static_cast<std::uint8_t>(std::lround(above * StepsOfADecibel));
}

float UnpackLoudness(std::uint8_t packed) {
    return std::min(Silence + static_cast<float>(packed) / StepsOfADecibel, 0.0F);
}

SoundPage MakePage(std::span<const float> samples) {
    constexpr std::size_t SamplesOfABucket = 16;
    SoundPage page{};
    std::array<float, SoundPage::Buckets> power{};
    const std::size_t whole = std::min<std::size_t>(
        (samples.size() + SamplesOfABucket - 1) / SamplesOfABucket, SoundPage::Milliseconds);
    for (std::size_t i = 0; i < whole; ++i) {
        const std::size_t from = i * SamplesOfABucket;
        const auto bucket =
            samples.subspan(from, std::min(SamplesOfABucket, samples.size() - from));
        float least = bucket[0];
        float greatest = bucket[0];
        float sum = 0;
        for (const float sample : bucket) {
            least = std::min(least, sample);
            greatest = std::max(greatest, sample);
            sum += sample * sample;
        }
        page.least[i] = PackSample(least);
        page.greatest[i] = PackSample(greatest);
        power[i] = sum / SamplesOfABucket;
        page.loudness[i] = PackPower(power[i]);
    }
    for (int level = 1; level < SoundPage::Levels; ++level) {
        auto below = static_cast<std::size_t>(SoundPage::First(level - 1));
        auto at = static_cast<std::size_t>(SoundPage::First(level));
        for (int i = 0; i < SoundPage::BucketsOf(level); ++i, ++at, below += SoundPage::Factor) {
            const auto least = page.least.begin() + static_cast<std::ptrdiff_t>(below);
            const auto greatest = page.greatest.begin() + static_cast<std::ptrdiff_t>(below);
            page.least[at] = *std::min_element(least, least + SoundPage::Factor);
            page.greatest[at] = *std::max_element(greatest, greatest + SoundPage::Factor);
            for (std::size_t j = 0; j < SoundPage::Factor; ++j)
                power[at] += power[below + j] / SoundPage::Factor;
            page.loudness[at] = PackPower(power[at]);
        }
    }
    return page;
}

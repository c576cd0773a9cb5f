#include "sound/soundpage.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <limits>

namespace {

constexpr float Steps = 127;
constexpr float StepsOfADecibel = 2;
constexpr float LeastPower = 1e-10F;
constexpr float MostPower = 1;

std::uint8_t PackedPower(float power) {
    const float decibels = 10 * std::log10(std::clamp(power, LeastPower, MostPower));
    const float above = std::max(decibels - Silence, 0.0F);
    return static_cast<std::uint8_t>(std::lround(above * StepsOfADecibel));
}

/// The same without a logarithm, which would cost more than the rest of a column. The upper
/// half of a float's bits narrows its power down to a range with one step at most in it.
class PowerTable {
  public:
    PowerTable() {
        for (std::size_t i = 0; i < m_packed.size(); ++i)
            m_packed[i] = PackedPower(FloatOf(static_cast<std::uint32_t>(i) << LowerBits));
        m_from.fill(std::numeric_limits<float>::infinity());
        for (std::size_t step = 1; step <= PackedPower(MostPower); ++step)
            m_from[step] = LeastOf(step);
    }

    /// 0 <= power <= 1
    std::uint8_t Pack(float power) const {
        const std::uint8_t packed = m_packed[BitsOf(power) >> LowerBits];
        return power < m_from[packed + std::size_t{1}] ? packed
                                                       : static_cast<std::uint8_t>(packed + 1);
    }

  private:
    static constexpr int LowerBits = 16;

    static std::uint32_t BitsOf(float power) { return std::bit_cast<std::uint32_t>(power); }
    static float FloatOf(std::uint32_t bits) { return std::bit_cast<float>(bits); }

    /// The least power that is packed as this step. Positive floats lie in the order of
    /// their bits.
    static float LeastOf(std::size_t step) {
        std::uint32_t below = 0;
        std::uint32_t least = BitsOf(MostPower);
        while (least - below > 1) {
            const std::uint32_t middle = below + (least - below) / 2;
            (PackedPower(FloatOf(middle)) >= step ? least : below) = middle;
        }
        return FloatOf(least);
    }

    std::array<std::uint8_t, (std::bit_cast<std::uint32_t>(MostPower) >> LowerBits) + 1> m_packed{};
    std::array<float, 256> m_from{};
};

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
    static const PowerTable Table;
    // No number counts as none.
    return Table.Pack(power > 0 ? std::min(power, MostPower) : 0);
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

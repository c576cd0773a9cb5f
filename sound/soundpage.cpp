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

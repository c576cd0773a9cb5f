#pragma once

#include <cstdint>

/// Windows are laid out and remembered in twips; 15 twips are one
/// device-independent pixel.
inline constexpr std::int32_t TwipsPerPixel = 15;

constexpr std::int32_t ToTwips(int pixels) {
    return pixels * TwipsPerPixel;
}
/// Up to the next whole pixel, so that a minimum in twips is reached.
constexpr int ToPixels(std::int32_t twips) {
    return twips / TwipsPerPixel + (twips % TwipsPerPixel > 0 ? 1 : 0);
}

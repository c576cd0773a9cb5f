#include "mainwindow/buttonstrip.h"

#include <algorithm>

namespace {

constexpr double StepSeconds = 0.5;
constexpr std::int16_t HoverPictures = 2;
constexpr std::int16_t PressedPictures = 6;

std::int16_t PictureOf(std::int16_t button, std::int16_t pictures) {
    return static_cast<std::int16_t>(button + pictures);
}

} // namespace

std::int16_t StripButtonAt(double x, double y) {
    if (y <= StripZonesTop || y >= StripZonesBottom)
        return 0;
    std::int16_t button = 0;
    for (const StripZone& zone : StripZones) {
        ++button;
        if (x >= zone.left && x <= zone.right)
            return button;
    }
    return 0;
}

std::int16_t ButtonStrip::MouseMove(bool enabled, bool mouseHeld, double x, double y) {
    m_buttonUnderMouse = enabled ? StripButtonAt(x, y) : std::int16_t(0);
    if (!enabled)
        return StripPictureDisabled;
    if (m_buttonUnderMouse == 0)
        return StripPictureEnabled;
    return PictureOf(m_buttonUnderMouse, mouseHeld ? PressedPictures : HoverPictures);
}

std::optional<std::int16_t> ButtonStrip::MouseDown(bool enabled) const {
    if (!enabled || m_buttonUnderMouse == 0)
        return {};
    return PictureOf(m_buttonUnderMouse, PressedPictures);
}

std::optional<double> StripTarget(std::int16_t button, double position, double selectionStart,
                                  double selectionEnd) {
    switch (button) {
    case 1:
        return std::max(0.0, selectionStart);
    case 2:
        return position - std::min(position - selectionStart, StepSeconds);
    case 3:
        return position + std::min(selectionEnd - position, StepSeconds);
    case 4:
        return selectionEnd;
    default:
        return {};
    }
}

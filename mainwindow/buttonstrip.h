#pragma once

#include <cstdint>
#include <optional>

/// The four transport buttons that are zones of one drawn strip. Distances are
/// twips from the strip's corner; pictures are numbered from 1 to 10: disabled,
/// enabled, button 1 to 4 under the mouse, button 1 to 4 pressed.
class ButtonStrip {
  public:
    /// 0: the mouse is over no button.
    std::int16_t ButtonUnderMouse() const { return m_buttonUnderMouse; }

    /// Answers the picture to show.
    std::int16_t MouseMove(bool enabled, bool mouseHeld, double x, double y);
    /// The picture to show, when the press begins to repeat; nothing otherwise.
    std::optional<std::int16_t> MouseDown(bool enabled) const;

  private:
    std::int16_t m_buttonUnderMouse = 0;
};

/// Where the button leads; nothing for 0. A selection start below 0: no selection.
std::optional<double> StripTarget(std::int16_t button, double position, double selectionStart,
                                  double selectionEnd);

inline constexpr std::int16_t StripPictureDisabled = 1;
inline constexpr std::int16_t StripPictureEnabled = 2;

/// The button at that place, 0 for none.
std::int16_t StripButtonAt(double x, double y);

struct StripZone {
    std::int32_t left;
    std::int32_t right;
};
/// Both ends belong to the zone.
inline constexpr StripZone StripZones[] = {{150, 390}, {510, 705}, {855, 1050}, {1155, 1410}};
/// Neither end belongs to a zone.
inline constexpr std::int32_t StripZonesTop = 75;
inline constexpr std::int32_t StripZonesBottom = 285;

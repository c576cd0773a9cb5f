#pragma once

#include <cstdint>
#include <optional>

/// The spinner beside the time box: clicks jump by 20 s, a held half steps ever
/// faster. Each member that moves answers the position to jump to, if any.
class TimeSpinner {
  public:
    static constexpr int FirstInterval = 300;
    static constexpr int NextInterval = 200;

    struct Place {
        double position;
        double selectionStart;
        double selectionEnd;
    };

    void MouseDown(double y, double height);
    std::optional<double> Tick(const Place& place);
    /// Ignored while playing.
    std::optional<double> DownClick(const Place& place, bool playing);
    std::optional<double> UpClick(const Place& place);

  private:
    bool m_spinRepeated = false;
    std::int16_t m_spinDirection = 0;
    std::int16_t m_spinTicks = 0;
    double m_spinStep = 0;
};

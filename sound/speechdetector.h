#pragma once

#include "sound/soundpage.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

// Where someone speaks, without any trained model: speech is energy between 250 and
// 4000 Hz that rises and falls with the syllables, two to eight times a second.

/// The mean power of 10 ms in the bands of speech, packed as `PackPower` does.
struct SpeechBands {
    static constexpr int Count = 4;
    std::array<std::uint8_t, Count> power{};
};

/// Measures the bands of samples of 16 kHz that come one after another. It takes 50 ms to
/// swing in.
class SpeechFilter {
  public:
    static constexpr int SamplesOfAValue = 160;

    /// Appends the bands of each whole 10 ms; what is left waits for the next samples.
    void Push(std::span<const float> samples, std::vector<SpeechBands>& bands);
    /// Forgets all samples.
    void Reset() { *this = SpeechFilter(); }

  private:
    using Lanes = std::array<float, SpeechBands::Count>;
    /// A filter of second order for each band.
    struct Section {
        Lanes z1{};
        Lanes z2{};
    };

    std::array<Section, 2> m_sections;
    Lanes m_energy{};
    int m_count = 0;
};

/// How many values before and behind a page its speech depends on.
inline constexpr std::size_t SpeechContext = SpeechPage::Values;

/// The speech of the page whose bands begin at `first`. `bands` should reach
/// `SpeechContext` to both sides of the page; where the film begins or ends it is shorter.
SpeechPage DetectSpeech(std::span<const SpeechBands> bands, std::size_t first);

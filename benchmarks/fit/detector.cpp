#include "benchmarks/fit/detector.h"

#include "sound/speechdetector.h"

#include <algorithm>

std::vector<float> DetectSpeech(const Samples& sound) {
    std::vector<SpeechBands> bands;
    SpeechFilter().Push(sound, bands);
    std::vector<float> curve;
    curve.reserve(bands.size());
    for (std::size_t first = 0; first < bands.size(); first += SpeechPage::Values) {
        const std::size_t from = first > SpeechContext ? first - SpeechContext : 0;
        const std::size_t to = std::min(first + SpeechPage::Values + SpeechContext, bands.size());
        const SpeechPage page =
            DetectSpeech(std::span(bands).subspan(from, to - from), first - from);
        const std::size_t count = std::min<std::size_t>(SpeechPage::Values, bands.size() - first);
        std::transform(page.fine.begin(), page.fine.begin() + static_cast<std::ptrdiff_t>(count),
                       std::back_inserter(curve),
                       [](std::uint8_t value) { return static_cast<float>(value) / 255.0F; });
    }
    return curve;
}

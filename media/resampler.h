#pragma once

#include "media/ffmpeg.h"

#include <vector>

/// Makes mono samples of one frequency of whatever is decoded. The first sample that comes
/// out is heard when the first that went in was.
class Resampler {
  public:
    Resampler(const FfmpegLibrary& ffmpeg, int frequency);
    ~Resampler();
    Resampler(const Resampler&) = delete;
    Resampler& operator=(const Resampler&) = delete;

    /// Whether this frame can follow the ones before it.
    bool Fits(const AVFrame& frame) const;
    /// Begins anew. false when there is no way to read such frames.
    bool Begin(const AVFrame& frame);
    /// Appends what a part of a frame gives.
    void Convert(const AVFrame& frame, int skipped, int count, std::vector<float>& samples);
    /// Appends what is still inside.
    void End(std::vector<float>& samples);
    /// Forgets it.
    void Reset() { m_resampler.reset(); }

  private:
    void Run(const std::uint8_t** input, int count, std::vector<float>& samples);

    const FfmpegLibrary& m_ffmpeg;
    const int m_frequency;
    ResamplerPointer m_resampler;
    int m_rate = 0;
    int m_format = AV_SAMPLE_FMT_NONE;
    AVChannelLayout m_layout{};
};

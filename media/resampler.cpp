#include "media/resampler.h"

#include <algorithm>
#include <cmath>

namespace {

// Others are damage, and would ask for any amount of memory.
constexpr int LowestRate = 1000;
constexpr int HighestRate = 768000;
/// So many samples are taken at once.
constexpr int Portion = 8192;
constexpr float Loudest = 8;

} // namespace

Resampler::Resampler(const FfmpegLibrary& ffmpeg, int frequency)
    : m_ffmpeg(ffmpeg)
    , m_frequency(frequency) {}

Resampler::~Resampler() {
    m_ffmpeg.av_channel_layout_uninit(&m_layout);
}

bool Resampler::Fits(const AVFrame& frame) const {
    return m_resampler != nullptr && frame.sample_rate == m_rate && frame.format == m_format &&
           m_ffmpeg.av_channel_layout_compare(&frame.ch_layout, &m_layout) == 0;
}

bool Resampler::Begin(const AVFrame& frame) {
    m_resampler.reset();
    if (frame.sample_rate < LowestRate || frame.sample_rate > HighestRate)
        return false;
    m_ffmpeg.av_channel_layout_copy(&m_layout, &frame.ch_layout);
    m_rate = frame.sample_rate;
    m_format = frame.format;
    AVChannelLayout in{};
    if (frame.ch_layout.order == AV_CHANNEL_ORDER_UNSPEC)
        m_ffmpeg.av_channel_layout_default(&in, frame.ch_layout.nb_channels);
    else
        m_ffmpeg.av_channel_layout_copy(&in, &frame.ch_layout);
    AVChannelLayout mono{};
    m_ffmpeg.av_channel_layout_default(&mono, 1);
    SwrContext* resampler = nullptr;
    m_ffmpeg.swr_alloc_set_opts2(&resampler, &mono, AV_SAMPLE_FMT_FLT, m_frequency, &in,
                                 static_cast<AVSampleFormat>(m_format), m_rate, 0, nullptr);
    m_ffmpeg.av_channel_layout_uninit(&in);
    m_resampler.reset(resampler);
    if (resampler == nullptr || m_ffmpeg.swr_init(resampler) < 0)
        m_resampler.reset();
    return m_resampler != nullptr;
}

void Resampler::Convert(const AVFrame& frame, int skipped, int count, std::vector<float>& samples) {
    const auto format = static_cast<AVSampleFormat>(frame.format);
    const bool planar = m_ffmpeg.av_sample_fmt_is_planar(format) != 0;
    const int channels = frame.ch_layout.nb_channels;
    const std::ptrdiff_t width =
        std::ptrdiff_t{m_ffmpeg.av_get_bytes_per_sample(format)} * (planar ? 1 : channels);
    std::vector<const std::uint8_t*> planes(static_cast<std::size_t>(planar ? channels : 1));
    for (int end = skipped + count; skipped < end;) {
        const int portion = std::min(Portion, end - skipped);
        for (std::size_t i = 0; i < planes.size(); ++i)
            planes[i] = frame.extended_data[i] + width * skipped;
        Run(planes.data(), portion, samples);
        skipped += portion;
    }
}

void Resampler::End(std::vector<float>& samples) {
    if (m_resampler != nullptr)
        Run(nullptr, 0, samples);
    m_resampler.reset();
}

void Resampler::Run(const std::uint8_t** input, int count, std::vector<float>& samples) {
    // What lies inside is far less than a tenth of a second.
    const std::int64_t room = std::int64_t{count} * m_frequency / m_rate + m_frequency / 10;
    const std::size_t before = samples.size();
    samples.resize(before + static_cast<std::size_t>(room));
    auto* output = reinterpret_cast<std::uint8_t*>(samples.data() + before);
    const int made =
        m_ffmpeg.swr_convert(m_resampler.get(), &output, static_cast<int>(room), input, count);
    samples.resize(before + static_cast<std::size_t>(std::max(made, 0)));
    // Damaged sound may hold any number, or none.
    for (std::size_t i = before; i < samples.size(); ++i)
        samples[i] = std::isfinite(samples[i]) ? std::clamp(samples[i], -Loudest, Loudest) : 0;
}

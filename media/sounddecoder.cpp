#include "media/sounddecoder.h"

#include <algorithm>
#include <cmath>

namespace {

/// Containers that count in milliseconds round by that much (in seconds).
constexpr double Rounding = 0.001;

} // namespace

SoundDecoder::SoundDecoder(const Container& container, int stream)
    : m_container(container)
    , m_stream(container.Stream(stream)) {
    const FfmpegLibrary& ffmpeg = container.Library();
    const AVCodec* codec = ffmpeg.avcodec_find_decoder(m_stream.codecpar->codec_id);
    CodecPointer context(codec != nullptr ? ffmpeg.avcodec_alloc_context3(codec) : nullptr);
    if (context == nullptr ||
        ffmpeg.avcodec_parameters_to_context(context.get(), m_stream.codecpar) < 0)
        return;
    context->pkt_timebase = m_stream.time_base;
    context->flags2 |= AV_CODEC_FLAG2_SKIP_MANUAL;
    context->thread_count = 1;
    m_frame.reset(ffmpeg.av_frame_alloc());
    if (m_frame != nullptr && ffmpeg.avcodec_open2(context.get(), codec, nullptr) >= 0)
        m_codec = std::move(context);
}

void SoundDecoder::Send(const AVPacket* packet) {
    // What cannot be decoded is missing, and so becomes a gap.
    m_container.Library().avcodec_send_packet(m_codec.get(), packet);
}

bool SoundDecoder::Receive(Piece& piece) {
    const FfmpegLibrary& ffmpeg = m_container.Library();
    while (ffmpeg.avcodec_receive_frame(m_codec.get(), m_frame.get()) >= 0) {
        piece = {m_frame.get(), 0, m_frame->nb_samples, 0, false};
        if (m_frame->sample_rate <= 0 || piece.count <= 0)
            continue;
        Trim(piece);
        if (piece.count == 0)
            continue;
        Place(piece);
        return true;
    }
    return false;
}

void SoundDecoder::Trim(Piece& piece) {
    const double rate = m_frame->sample_rate;
    const double start = m_frame->pts != AV_NOPTS_VALUE ? m_container.Time(m_stream, m_frame->pts)
                                                        : m_counted.value_or(0);
    m_counted = start + piece.count / rate;
    const AVFrameSideData* side =
        m_container.Library().av_frame_get_side_data(m_frame.get(), AV_FRAME_DATA_SKIP_SAMPLES);
    constexpr std::size_t SideSize = 10;
    if (side != nullptr && side->size >= SideSize) {
        m_skip = LittleEndian(side->data);
        m_trim = LittleEndian(side->data + 4);
    }
    const auto whole = static_cast<std::uint32_t>(piece.count);
    const std::uint32_t skip = std::min(m_skip, whole);
    const std::uint32_t trim = std::min(m_trim, whole - skip);
    m_skip -= skip;
    m_trim -= trim;
    piece.skipped = static_cast<int>(skip);
    piece.count = static_cast<int>(whole - skip - trim);
    piece.time = start + skip / rate;
}

void SoundDecoder::Place(Piece& piece) {
    piece.apart = !m_next || std::abs(piece.time - *m_next) > Rounding;
    if (!piece.apart)
        piece.time = *m_next;
    m_next = piece.time + static_cast<double>(piece.count) / m_frame->sample_rate;
}

void SoundDecoder::Reset() {
    m_container.Library().avcodec_flush_buffers(m_codec.get());
    m_skip = 0;
    m_trim = 0;
    m_counted.reset();
    m_next.reset();
}

#pragma once

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavformat/avformat.h>
#include <libavutil/channel_layout.h>
#include <libavutil/dict.h>
#include <libavutil/log.h>
#include <libavutil/samplefmt.h>
#include <libswresample/swresample.h>
}

#include <cstdint>
#include <memory>

// The functions that are used, by library.
#define QUELMAR_AVUTIL(use)                                                                        \
    use(av_dict_get) use(av_dict_set) use(av_dict_free) use(av_frame_alloc) use(av_frame_free)     \
        use(av_frame_unref) use(av_frame_get_side_data) use(av_channel_layout_default)             \
            use(av_channel_layout_compare) use(av_channel_layout_copy)                             \
                use(av_channel_layout_uninit) use(av_log_set_level) use(av_get_bytes_per_sample)   \
                    use(av_sample_fmt_is_planar)
#define QUELMAR_AVCODEC(use)                                                                       \
    use(avcodec_find_decoder) use(avcodec_alloc_context3) use(avcodec_free_context)                \
        use(avcodec_parameters_to_context) use(avcodec_open2) use(avcodec_send_packet)             \
            use(avcodec_receive_frame) use(avcodec_flush_buffers) use(avcodec_get_name)            \
                use(avcodec_descriptor_get) use(av_packet_alloc) use(av_packet_free)               \
                    use(av_packet_unref)
#define QUELMAR_AVFORMAT(use)                                                                      \
    use(avformat_alloc_context) use(avformat_open_input) use(avformat_close_input)                 \
        use(avformat_find_stream_info) use(avio_open2) use(avio_closep) use(av_read_frame)         \
            use(av_seek_frame)
#define QUELMAR_SWRESAMPLE(use)                                                                    \
    use(swr_alloc_set_opts2) use(swr_init) use(swr_free) use(swr_convert)

/// FFmpeg's libraries. They are loaded at run time and nothing links them: they
/// bring some 200 others along, which would delay the first window.
struct FfmpegLibrary {
#define QUELMAR_MEMBER(name) decltype(&::name) name = nullptr;
    QUELMAR_AVUTIL(QUELMAR_MEMBER)
    QUELMAR_AVCODEC(QUELMAR_MEMBER)
    QUELMAR_AVFORMAT(QUELMAR_MEMBER)
    QUELMAR_SWRESAMPLE(QUELMAR_MEMBER)
#undef QUELMAR_MEMBER

    /// Loads the libraries at the first call, from whichever thread; null where one is missing.
    static const FfmpegLibrary* Get();
};

/// What FFmpeg's side data is made of.
inline std::uint32_t LittleEndian(const std::uint8_t* bytes) {
    return static_cast<std::uint32_t>(bytes[0]) | static_cast<std::uint32_t>(bytes[1]) << 8 |
           static_cast<std::uint32_t>(bytes[2]) << 16 | static_cast<std::uint32_t>(bytes[3]) << 24;
}

/// Frees what FFmpeg allocated; made only where the libraries were loaded.
struct FfmpegFree {
    void operator()(AVPacket* packet) const { FfmpegLibrary::Get()->av_packet_free(&packet); }
    void operator()(AVFrame* frame) const { FfmpegLibrary::Get()->av_frame_free(&frame); }
    void operator()(AVCodecContext* codec) const {
        FfmpegLibrary::Get()->avcodec_free_context(&codec);
    }
    void operator()(SwrContext* resampler) const { FfmpegLibrary::Get()->swr_free(&resampler); }
};
using PacketPointer = std::unique_ptr<AVPacket, FfmpegFree>;
using FramePointer = std::unique_ptr<AVFrame, FfmpegFree>;
using CodecPointer = std::unique_ptr<AVCodecContext, FfmpegFree>;
using ResamplerPointer = std::unique_ptr<SwrContext, FfmpegFree>;

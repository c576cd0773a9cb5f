#include "media/texttrackreader.h"

#include "media/container.h"

#include <algorithm>

namespace {

class ContainerTextReader : public TextTrackReader {
  public:
    ContainerTextReader(std::unique_ptr<Container> container, int index)
        : m_container(std::move(container))
        , m_stream(m_container->Stream(index))
        , m_packet(m_container->Library().av_packet_alloc())
        , m_codec(m_container->Library().avcodec_get_name(m_stream.codecpar->codec_id)) {
        const AVCodecParameters& codec = *m_stream.codecpar;
        if (codec.extradata_size > 0)
            m_private.assign(reinterpret_cast<const char*>(codec.extradata),
                             static_cast<std::size_t>(codec.extradata_size));
        m_container->Select(index);
    }

    const std::string& Codec() const override { return m_codec; }
    const std::string& CodecPrivate() const override { return m_private; }

    bool Read(TextPacket& packet) override {
        while (m_packet != nullptr && m_container->Read(*m_packet)) {
            const AVPacket& read = *m_packet;
            if (read.pts == AV_NOPTS_VALUE)
                continue;
            packet.start = m_container->Time(m_stream, read.pts);
            const double lasts = static_cast<double>(read.duration) * av_q2d(m_stream.time_base);
            packet.end = packet.start + std::max(lasts, 0.0);
            packet.payload.assign(reinterpret_cast<const char*>(read.data),
                                  static_cast<std::size_t>(std::max(read.size, 0)));
            return true;
        }
        return false;
    }

  private:
    const std::unique_ptr<Container> m_container;
    const AVStream& m_stream;
    const PacketPointer m_packet;
    std::string m_codec;
    std::string m_private;
};

} // namespace

std::unique_ptr<TextTrackReader> TextTrackReader::Open(const std::filesystem::path& file, int index,
                                                       std::stop_token stop) {
    std::unique_ptr<Container> container = Container::Open(file, std::move(stop));
    if (container == nullptr || index < 0 ||
        static_cast<unsigned>(index) >= container->Format().nb_streams ||
        container->Stream(index).codecpar->codec_type != AVMEDIA_TYPE_SUBTITLE)
        return nullptr;
    return std::make_unique<ContainerTextReader>(std::move(container), index);
}

#include "media/texttrackreader.h"

#include "media/container.h"

#include <algorithm>
#include <string_view>

namespace {

std::string SideData(const AVPacket& packet, AVPacketSideDataType type) {
    for (int i = 0; i < packet.side_data_elems; ++i) {
        const AVPacketSideData& side = packet.side_data[i];
        if (side.type == type)
            return {reinterpret_cast<const char*>(side.data), side.size};
    }
    return {};
}

/// What Matroska puts beside a cue: its settings, then its identifier, on a line each.
void TakeAddition(std::string_view addition, TextPacket& packet) {
    constexpr std::size_t NumberSize = 8;
    addition.remove_prefix(std::min(NumberSize, addition.size()));
    for (std::string* part : {&packet.settings, &packet.name}) {
        const std::size_t end = std::min(addition.find('\n'), addition.size());
        *part = addition.substr(0, end);
        addition.remove_prefix(std::min(end + 1, addition.size()));
    }
}

class ContainerTextReader : public TextTrackReader {
  public:
    ContainerTextReader(std::unique_ptr<Container> container, const std::vector<int>& indexes)
        : m_container(std::move(container))
        , m_packet(m_container->Library().av_packet_alloc()) {
        m_container->Select(indexes);
    }

    void OnProgress(std::function<void(double)> progress) override {
        m_container->OnProgress(std::move(progress));
    }
    std::string Codec(int index) const override {
        return CodecOfText(m_container->Library(), m_container->Stream(index));
    }
    std::string CodecPrivate(int index) const override {
        const AVCodecParameters& codec = *m_container->Stream(index).codecpar;
        if (codec.extradata_size <= 0)
            return {};
        return {reinterpret_cast<const char*>(codec.extradata),
                static_cast<std::size_t>(codec.extradata_size)};
    }

    bool Read(TextPacket& packet) override {
        while (m_packet != nullptr && m_container->Read(*m_packet)) {
            const AVPacket& read = *m_packet;
            if (read.pts == AV_NOPTS_VALUE)
                continue;
            const AVStream& stream = m_container->Stream(read.stream_index);
            packet.track = read.stream_index;
            packet.start = m_container->Time(stream, read.pts);
            const double lasts = static_cast<double>(read.duration) * av_q2d(stream.time_base);
            packet.end = packet.start + std::max(lasts, 0.0);
            packet.payload.assign(reinterpret_cast<const char*>(read.data),
                                  static_cast<std::size_t>(std::max(read.size, 0)));
            packet.name = SideData(read, AV_PKT_DATA_WEBVTT_IDENTIFIER);
            packet.settings = SideData(read, AV_PKT_DATA_WEBVTT_SETTINGS);
            packet.timesFromStart = stream.codecpar->codec_id == AV_CODEC_ID_NONE;
            if (packet.timesFromStart)
                TakeAddition(SideData(read, AV_PKT_DATA_MATROSKA_BLOCKADDITIONAL), packet);
            return true;
        }
        return false;
    }

  private:
    const std::unique_ptr<Container> m_container;
    const PacketPointer m_packet;
};

} // namespace

std::unique_ptr<TextTrackReader> TextTrackReader::Open(const std::filesystem::path& file, int index,
                                                       std::stop_token stop) {
    return Open(file, std::vector<int>{index}, std::move(stop));
}

std::unique_ptr<TextTrackReader> TextTrackReader::Open(const std::filesystem::path& file,
                                                       std::vector<int> indexes,
                                                       std::stop_token stop) {
    std::unique_ptr<Container> container = Container::Open(file, std::move(stop));
    if (container == nullptr)
        return nullptr;
    const bool all =
        !indexes.empty() && std::all_of(indexes.begin(), indexes.end(), [&](int index) {
            return index >= 0 && static_cast<unsigned>(index) < container->Format().nb_streams &&
                   !CodecOfText(container->Library(), container->Stream(index)).empty();
        });
    return all ? std::make_unique<ContainerTextReader>(std::move(container), indexes) : nullptr;
}

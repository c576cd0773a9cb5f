#include "tracks/trackdocument.h"

#include "base/utf8.h"
#include "fuzz/fuzzing.h"

#include <array>

namespace {

constexpr char Apart = '\x1E';

/// A letter for the codec, then the head and the packets, apart from each other. Every packet is
/// shown for a second, but every fifth does not say how long.
TrackPackets TrackOf(std::string_view text) {
    static constexpr std::array<const char*, 5> Codecs{"subrip", "mov_text", "ass", "webvtt",
                                                       "ttml"};
    TrackPackets track;
    track.codec = Codecs[static_cast<unsigned char>(text.front()) % Codecs.size()];
    text.remove_prefix(1);
    bool head = true;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(Apart), text.size());
        const std::string part(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (head) {
            track.head = part;
            head = false;
            continue;
        }
        const std::size_t number = track.packets.size();
        TextPacket packet;
        packet.start = static_cast<double>(number) - 1.5;
        packet.end = packet.start + (number % 5 == 4 ? 0 : 1);
        packet.payload = part;
        packet.timesFromStart = number % 2 == 1;
        if (number % 3 == 2)
            packet.name = packet.settings = part;
        track.packets.push_back(std::move(packet));
    }
    return track;
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const TrackPackets track = TrackOf(TextOf(data, size));
    std::int32_t told = 0;
    for (const TextPacket& packet : track.packets)
        told += TitlesIn(track.codec, packet);
    SUBTITLES titles;
    FileStyle style;
    TitlesOfTrack(track, "windows-1252", titles, style);
    Require(titles.Count() <= told, "no more titles than were told");
    for (std::int32_t i = 1; i <= titles.Count(); ++i)
        Require(IsValidUtf8(titles.Text(i)), "texts are UTF-8");
    TryWriters(titles, style);
    return 0;
}

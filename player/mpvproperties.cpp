#include "player/mpvproperties.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>

namespace {

/// Films whose mean rate is another one have pictures of unequal durations.
constexpr double UsualRates[] = {
    10, 12,  12.5, 15, 24000.0 / 1001, 24, 25, 30000.0 / 1001, 30, 48, 50, 60000.0 / 1001,
    60, 100, 120};
constexpr double UsualRateSlack = 0.0005;
constexpr double UnequalShare = 0.45;
/// How long a picture of unknown rate may last at least (in seconds).
constexpr double ShortestPicture = 0.02;

const mpv_node* Find(const mpv_node& map, const char* key) {
    if (map.format != MPV_FORMAT_NODE_MAP)
        return nullptr;
    for (int i = 0; i < map.u.list->num; ++i)
        if (std::strcmp(map.u.list->keys[i], key) == 0)
            return &map.u.list->values[i];
    return nullptr;
}

bool Flag(const mpv_node& map, const char* key) {
    const mpv_node* node = Find(map, key);
    return node != nullptr && node->format == MPV_FORMAT_FLAG && node->u.flag != 0;
}

/// Whole quarters, as 0 to 270 degrees.
int QuarterTurns(std::int64_t degrees) {
    constexpr std::int64_t Quarter = 90;
    const std::int64_t quarters = (degrees % 360 + 360 + Quarter / 2) / Quarter % 4;
    return static_cast<int>(quarters * Quarter);
}

} // namespace

std::string MpvString(const mpv_node& map, const char* key) {
    const mpv_node* node = Find(map, key);
    return node != nullptr && node->format == MPV_FORMAT_STRING ? node->u.string : std::string();
}

std::int64_t MpvInteger(const mpv_node& map, const char* key, std::int64_t otherwise) {
    const mpv_node* node = Find(map, key);
    return node != nullptr && node->format == MPV_FORMAT_INT64 ? node->u.int64 : otherwise;
}

double MpvProperties::Number(const char* property, double otherwise) const {
    double value = 0;
    return m_mpv.get_property(m_player, property, MPV_FORMAT_DOUBLE, &value) < 0 ? otherwise
                                                                                 : value;
}

std::string MpvProperties::Text(const char* property) const {
    mpv_node node;
    if (m_mpv.get_property(m_player, property, MPV_FORMAT_NODE, &node) < 0)
        return {};
    std::string text = node.format == MPV_FORMAT_STRING ? node.u.string : "";
    m_mpv.free_node_contents(&node);
    return text;
}

MpvMedia MpvProperties::Media() const {
    MpvMedia media;
    mpv_node list;
    if (m_mpv.get_property(m_player, "track-list", MPV_FORMAT_NODE, &list) < 0)
        return media;
    for (int i = 0; list.format == MPV_FORMAT_NODE_ARRAY && i < list.u.list->num; ++i) {
        const mpv_node& track = list.u.list->values[i];
        const std::string type = MpvString(track, "type");
        if (type == "video" && Flag(track, "selected")) {
            media.picture = true;
            media.rotation = QuarterTurns(MpvInteger(track, "demux-rotation", 0));
        }
        if (type == "audio")
            media.sound.push_back({MpvInteger(track, "id", 0), MpvString(track, "title"),
                                   MpvString(track, "lang"), Flag(track, "selected")});
    }
    m_mpv.free_node_contents(&list);
    if (media.picture)
        media.pictureRate = std::max(0.0, Number("container-fps", 0));
    return media;
}

PicturePace MpvProperties::Pace() const {
    const double rate = Number("container-fps", 0);
    const bool usual = std::any_of(std::begin(UsualRates), std::end(UsualRates), [&](double one) {
        return std::abs(rate - one) < one * UsualRateSlack;
    });
    // Some containers count in whole milliseconds, which a picture's start and end are both
    // rounded to.
    const std::string format = Text("file-format");
    const bool coarse = format == "asf" || format == "flv" || format == "matroska,webm";
    return {rate > 1 ? (usual ? 1 : UnequalShare) / rate : ShortestPicture,
            coarse ? 0.001 : 0.00001};
}

double MpvProperties::PictureShown() const {
    // At the end of the file libmpv tells the time of the sound.
    int end = 0;
    const bool known = m_mpv.get_property(m_player, "eof-reached", MPV_FORMAT_FLAG, &end) >= 0;
    return known && end == 0 ? Number("time-pos", 0) : 0;
}

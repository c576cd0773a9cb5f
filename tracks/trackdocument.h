#pragma once

#include "formats/format.h"
#include "media/texttrackreader.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// A text track as a film holds it.
struct TrackPackets {
    /// FFmpeg's name.
    std::string codec;
    /// What stands in front of all packets.
    std::string head;
    std::vector<TextPacket> packets;
};

/// The format that the titles of such a track are read as. Null: they are pictures, or in a form
/// that nothing here reads.
const Format* FormatOfTrack(std::string_view codec);
/// What such tracks are called: "SubRip", "PGS pictures".
std::string TrackKind(std::string_view codec);

/// How many titles a packet of such a track holds, mostly one.
std::int32_t TitlesIn(std::string_view codec, const TextPacket& packet);

/// Appends the titles, as the format would have read them from a file of its own, styles and
/// positions included. Packets without words are none; what does not say how long it is shown
/// is so until the next title, but no more than three seconds. Texts that are not UTF-8 are in
/// the code page. Nothing happens for a codec without a format.
void TitlesOfTrack(const TrackPackets& track, const std::string& codePage, SUBTITLES& titles,
                   FileStyle& style);

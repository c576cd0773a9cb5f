#pragma once

#include "player/mpvlibrary.h"
#include "player/seeking.h"

#include <cstdint>
#include <string>
#include <vector>

struct MpvTrack {
    std::int64_t id = 0;
    std::string title;
    std::string language;
    bool selected = false;
};

/// What is known of the open file.
struct MpvMedia {
    bool ready = false;
    /// In seconds, 0 when unknown.
    double length = 0;
    bool picture = false;
    /// Pictures in a second, as the film says; 0 when unknown.
    double pictureRate = 0;
    /// Degrees by which the picture is to be turned clockwise: 0, 90, 180 or 270.
    int rotation = 0;
    std::vector<MpvTrack> sound;
};

/// The fields of the maps and lists that libmpv answers in.
std::string MpvString(const mpv_node& map, const char* key);
std::int64_t MpvInteger(const mpv_node& map, const char* key, std::int64_t otherwise);

/// What libmpv says of the open file when asked. Every question waits for the answer,
/// so only the engine's thread asks.
class MpvProperties {
  public:
    MpvProperties(const MpvLibrary& mpv, mpv_handle* player)
        : m_mpv(mpv)
        , m_player(player) {}

    double Number(const char* property, double otherwise) const;
    /// Tracks and picture rate; the length is the caller's to correct.
    MpvMedia Media() const;
    PicturePace Pace() const;
    /// The time of the picture that a seek ended on; 0 when there is none to tell.
    double PictureShown() const;

  private:
    std::string Text(const char* property) const;

    const MpvLibrary& m_mpv;
    mpv_handle* const m_player;
};

#include "player/mpvoptions.h"

#include <QByteArray>
#include <QtGlobal>

namespace {

enum class Need {
    /// The player works without it; other versions of the library may lack it.
    Wish,
    /// Without it a hostile file or a foreign configuration could reach further.
    Safety,
    /// The same, but a library that has no such option was built without the feature.
    SafetyIfThere,
};

struct Option {
    const char* name;
    const char* value;
    Need need = Need::Wish;
};

constexpr Option Options[] = {
    {"vo", "libmpv", Need::Safety},
    // Nothing of the user's own mpv, no scripts, no helpers, no keys.
    {"config", "no", Need::Safety},
    {"load-scripts", "no", Need::SafetyIfThere},
    {"ytdl", "no"},
    {"osc", "no"},
    {"load-stats-overlay", "no"},
    {"load-osd-console", "no"},
    {"load-auto-profiles", "no"},
    {"terminal", "no"},
    {"input-default-bindings", "no"},
    {"input-builtin-bindings", "no"},
    {"input-vo-keyboard", "no"},
    {"input-media-keys", "no"},
    {"osd-level", "0"},
    // The named file alone, none of its neighbours and none that it names.
    {"sub-auto", "no", Need::Safety},
    {"sid", "no"},
    {"audio-file-auto", "no", Need::Safety},
    {"cover-art-auto", "no"},
    {"audio-display", "no"},
    {"autoload-files", "no"},
    {"resume-playback", "no", Need::Safety},
    {"ordered-chapters", "no", Need::Safety},
    {"access-references", "no", Need::Safety},
    {"load-unsafe-playlists", "no", Need::Safety},
    // By the defaults a playlist in disguise opens other files or the network.
    {"demuxer", "lavf", Need::Safety},
    {"demuxer-lavf-o",
     "protocol_whitelist=[file],format_whitelist=[avi,mpeg,mpegvideo,asf,wav,mp3,mp2,mpegts,aac,"
     "ac3,mov,mp4,m4a,3gp,3g2,mj2,matroska,webm,ogg,flac,flv]",
     Need::Safety},
    {"hwdec", "no"},
    {"idle", "yes"},
    {"pause", "yes"},
    // The last picture stays, and the end of the file is a pause.
    {"keep-open", "yes"},
    {"hr-seek", "yes"},
    {"hr-seek-framedrop", "no"},
    // Without it seeks in .mpg land up to 0.4 s late.
    {"hr-seek-demuxer-offset", "1"},
    // By default pictures and times run almost a frame ahead of the sound.
    {"video-timing-offset", "0"},
    // Drawing a turned picture by software ends the process, so it is turned afterwards.
    {"video-rotate", "no", Need::Safety},
    {"audio-fallback-to-null", "yes"},
};

} // namespace

bool SetMpvOptions(const MpvLibrary& mpv, mpv_handle* player) {
    for (const Option& option : Options) {
        const int error = mpv.set_option_string(player, option.name, option.value);
        const bool absent = error == MPV_ERROR_OPTION_NOT_FOUND;
        if (error < 0 &&
            (option.need == Need::Safety || (option.need == Need::SafetyIfThere && !absent)))
            return false;
    }
    const QByteArray output = qgetenv("QUELMAR_AUDIO");
    if (!output.isEmpty())
        mpv.set_option_string(player, "ao", output.constData());
    return true;
}

#include "player/mpvengine.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <utility>

// The engine's own thread: it hears what libmpv reports, keeps the clock and
// stops at the limit.

namespace {

using std::chrono::milliseconds;

constexpr double Idle = 10;
/// Between two looks at the sound (in seconds): while the clock runs, and until it does.
constexpr double SoundInterval = 0.02;
constexpr double StartInterval = 0.003;
/// So near to the limit nothing else is begun that could take its time (in seconds).
constexpr double Vigilance = 0.015;
/// Pictures keep the clock only where there is no sound to keep it.
constexpr auto SoundSilence = milliseconds(200);
/// A picture that starts later than the position by more than this does not cover it (in seconds).
constexpr double PictureSlack = 0.001;
/// Where pictures last longer than was taken, further and further back is tried.
constexpr int MostRetries = 12;
constexpr int CarefulRetries = 6;
constexpr double CarefulStep = 1.3;
constexpr double BoldStep = 2.5;
/// Films whose mean rate is another one have pictures of unequal durations.
constexpr double UsualRates[] = {
    10, 12,  12.5, 15, 24000.0 / 1001, 24, 25, 30000.0 / 1001, 30, 48, 50, 60000.0 / 1001,
    60, 100, 120};
constexpr double UsualRateSlack = 0.0005;
constexpr double UnequalShare = 0.45;
/// Streams of one file begin this far apart without meaning it (in seconds).
constexpr double LooseStart = 0.15;

double Seconds(std::chrono::steady_clock::duration span) {
    return std::chrono::duration<double>(span).count();
}

const mpv_node* Find(const mpv_node& map, const char* key) {
    if (map.format != MPV_FORMAT_NODE_MAP)
        return nullptr;
    for (int i = 0; i < map.u.list->num; ++i)
        if (std::strcmp(map.u.list->keys[i], key) == 0)
            return &map.u.list->values[i];
    return nullptr;
}

std::string String(const mpv_node& map, const char* key) {
    const mpv_node* node = Find(map, key);
    return node != nullptr && node->format == MPV_FORMAT_STRING ? node->u.string : std::string();
}

std::int64_t Integer(const mpv_node& map, const char* key, std::int64_t otherwise) {
    const mpv_node* node = Find(map, key);
    return node != nullptr && node->format == MPV_FORMAT_INT64 ? node->u.int64 : otherwise;
}

bool Flag(const mpv_node& map, const char* key) {
    const mpv_node* node = Find(map, key);
    return node != nullptr && node->format == MPV_FORMAT_FLAG && node->u.flag != 0;
}

} // namespace

void MpvEngine::Run() {
    for (;;) {
        double timeout = 0;
        {
            const std::lock_guard lock(m_lock);
            if (m_quit)
                return;
            timeout = NextTimeout();
        }
        const mpv_event& event = *m_mpv.wait_event(m_player, timeout);
        if (event.event_id != MPV_EVENT_NONE)
            Handle(event);
        Mind();
        Tell();
    }
}

double MpvEngine::NextTimeout() const {
    const auto now = Clock::now();
    double timeout = Idle;
    if (m_loading != Loading::Idle && m_loading != Loading::Done)
        timeout = std::min(timeout, Seconds(m_loadDeadline - now));
    if (m_seeking)
        timeout = std::min(timeout, Seconds(m_seekDeadline - now));
    if (Moving()) {
        timeout = std::min(timeout, Seconds(m_lastSample - now) + SampleInterval());
        if (m_limit && m_clock.Running())
            timeout = std::min(timeout, (*m_limit - m_clock.Position(now)) / m_rate);
    }
    return std::max(timeout, 0.0);
}

double MpvEngine::SampleInterval() const {
    return m_clock.Running() ? SoundInterval : StartInterval;
}

void MpvEngine::Handle(const mpv_event& event) {
    const auto now = Clock::now();
    const std::lock_guard lock(m_lock);
    switch (event.event_id) {
    case MPV_EVENT_COMMAND_REPLY:
        return HandleCommandReply(event);
    case MPV_EVENT_START_FILE:
        if (m_loading == Loading::Asked &&
            static_cast<mpv_event_start_file*>(event.data)->playlist_entry_id == m_entry)
            m_loading = Loading::Started;
        return;
    case MPV_EVENT_FILE_LOADED:
        if (m_loading == Loading::Started)
            m_loading = Loading::Loaded;
        return;
    case MPV_EVENT_PLAYBACK_RESTART:
        m_restarted = true;
        return;
    case MPV_EVENT_END_FILE:
        return HandleEndOfFile(*static_cast<mpv_event_end_file*>(event.data));
    case MPV_EVENT_PROPERTY_CHANGE:
        return HandleProperty(*static_cast<mpv_event_property*>(event.data), now);
    case MPV_EVENT_GET_PROPERTY_REPLY:
        if (event.reply_userdata == m_epoch)
            HandlePauseReply(event);
        return;
    default:
        return;
    }
}

void MpvEngine::HandleCommandReply(const mpv_event& event) {
    if (event.reply_userdata == 0 || event.reply_userdata != m_load || m_loading != Loading::Asked)
        return;
    if (event.error < 0)
        return Answer(false);
    m_entry = Integer(static_cast<mpv_event_command*>(event.data)->result, "playlist_entry_id", -1);
}

void MpvEngine::HandleEndOfFile(const mpv_event_end_file& end) {
    if (m_entry < 0 || end.playlist_entry_id != m_entry)
        return;
    if (m_loading != Loading::Done)
        return Answer(false);
    m_media = {};
    m_playing = false;
    m_clock.Hold(Clock::now());
    m_news.lost = true;
}

void MpvEngine::HandleProperty(const mpv_event_property& property, Clock::time_point now) {
    const bool flag = property.format == MPV_FORMAT_FLAG && *static_cast<int*>(property.data) != 0;
    const double number =
        property.format == MPV_FORMAT_DOUBLE ? *static_cast<double*>(property.data) : -1;
    if (std::strcmp(property.name, "time-pos") == 0) {
        if (number >= 0 && Moving() && m_media.picture && now - m_lastSound >= SoundSilence)
            m_clock.Picture(number - m_origin, now);
    } else if (std::strcmp(property.name, "pause") == 0) {
        m_pauseReported = flag;
        m_pauseDoubted = true;
    } else if (std::strcmp(property.name, "eof-reached") == 0) {
        m_endReported = flag;
        m_pauseDoubted = true;
    } else if (std::strcmp(property.name, "duration") == 0) {
        if (m_media.ready && number > 0) {
            m_media.length = std::max(0.0, number - m_origin);
            m_news.properties = true;
        }
    } else if (std::strcmp(property.name, "aid") == 0) {
        m_tracksChanged = true;
    }
}

/// libmpv has paused though it was told to play: at the end of the file, or it
/// was overtaken by a seek. Both reports may be older than the last wish, so it
/// is asked once more; the question stands behind everything sent before.
void MpvEngine::DoubtPause() {
    if (!m_pauseDoubted || !Moving() || !m_pauseReported)
        return;
    m_pauseDoubted = false;
    m_mpv.get_property_async(m_player, m_epoch, "eof-reached", MPV_FORMAT_FLAG);
    m_mpv.get_property_async(m_player, m_epoch, "pause", MPV_FORMAT_FLAG);
}

void MpvEngine::HandlePauseReply(const mpv_event& event) {
    const auto& property = *static_cast<mpv_event_property*>(event.data);
    const bool flag = event.error >= 0 && property.format == MPV_FORMAT_FLAG &&
                      *static_cast<int*>(property.data) != 0;
    if (std::strcmp(property.name, "eof-reached") == 0) {
        m_endVerified = flag;
    } else if (flag && Moving()) {
        m_pauseSent = true;
        if (m_endVerified)
            StopHere(m_news.fileEnded);
        else
            Pump();
    }
}

void MpvEngine::StopHere(bool& reason) {
    ++m_epoch;
    m_playing = false;
    m_clock.Hold(Clock::now());
    Pump();
    reason = true;
}

/// What is due, whether libmpv said anything or not.
void MpvEngine::Mind() {
    std::unique_lock lock(m_lock);
    auto now = Clock::now();
    if (std::exchange(m_restarted, false)) {
        if (m_loading == Loading::Loaded) {
            lock.unlock();
            ReadMedia();
            lock.lock();
        } else if (m_seeking) {
            lock.unlock();
            const double shown = PictureShown();
            lock.lock();
            HandleRestart(shown - m_origin);
        }
    }
    if (std::exchange(m_tracksChanged, false) && m_media.ready) {
        lock.unlock();
        const MpvMedia media = AskMedia();
        lock.lock();
        m_media.sound = media.sound;
        m_news.properties = true;
    }
    now = Clock::now();
    if (m_seeking && now >= m_seekDeadline) {
        m_seeking = false;
        Pump();
    }
    if (m_loading != Loading::Idle && m_loading != Loading::Done && now >= m_loadDeadline) {
        Send({"stop"});
        Answer(false);
    }
    DoubtPause();
    if (!Moving())
        return;
    if (m_limit && m_clock.Position(now) >= *m_limit)
        return StopHere(m_news.limitReached);
    if (Seconds(now - m_lastSample) < SampleInterval())
        return;
    m_lastSample = now;
    const bool nearLimit =
        m_limit && m_clock.Running() && (*m_limit - m_clock.Position(now)) / m_rate < Vigilance;
    if (m_media.sound.empty() || nearLimit)
        return;
    const std::uint64_t epoch = m_epoch;
    lock.unlock();
    const double heard = Number("audio-pts", -1);
    now = Clock::now();
    lock.lock();
    if (heard >= 0 && epoch == m_epoch && Moving()) {
        m_lastSound = now;
        m_clock.Sound(heard - m_origin, now);
    }
}

void MpvEngine::HandleRestart(double shown) {
    if (!m_seeking)
        return;
    // Where pictures last longer than the film says, the one that covers the
    // position lies further back.
    if (m_reach > 0 && !m_wanted && shown > m_target + PictureSlack && m_target > m_reach &&
        m_retries < MostRetries) {
        m_reach *= m_retries < CarefulRetries ? CarefulStep : BoldStep;
        ++m_retries;
        return SendSeek();
    }
    m_seeking = false;
    m_lastSound = Clock::now();
    m_pauseDoubted = true;
    Pump();
}

void MpvEngine::ReadMedia() {
    MpvMedia media = AskMedia();
    const PicturePace pace = media.picture ? AskPace() : PicturePace();
    const double first = Number("time-pos", 0);
    const double origin = first > LooseStart ? first : 0;
    media.ready = true;
    media.length = std::max(0.0, Number("duration", 0) - origin);
    const std::lock_guard lock(m_lock);
    if (m_loading != Loading::Loaded)
        return;
    m_media = std::move(media);
    m_pace = pace;
    m_origin = origin;
    Answer(true);
}

PicturePace MpvEngine::AskPace() {
    const double rate = Number("container-fps", 0);
    const bool usual = std::any_of(std::begin(UsualRates), std::end(UsualRates), [&](double one) {
        return std::abs(rate - one) < one * UsualRateSlack;
    });
    // Some containers count in whole milliseconds.
    const std::string format = Text("file-format");
    const bool coarse = format == "asf" || format == "flv" || format == "mkv";
    return {rate > 1 ? (usual ? 1 : UnequalShare) / rate : 0.02, coarse ? 0.0005 : 0.00001};
}

MpvMedia MpvEngine::AskMedia() {
    MpvMedia media;
    mpv_node list;
    if (m_mpv.get_property(m_player, "track-list", MPV_FORMAT_NODE, &list) < 0)
        return media;
    for (int i = 0; list.format == MPV_FORMAT_NODE_ARRAY && i < list.u.list->num; ++i) {
        const mpv_node& track = list.u.list->values[i];
        const std::string type = String(track, "type");
        if (type == "video" && Flag(track, "selected"))
            media.picture = true;
        if (type == "audio")
            media.sound.push_back({Integer(track, "id", 0), String(track, "title"),
                                   String(track, "lang"), Flag(track, "selected")});
    }
    m_mpv.free_node_contents(&list);
    return media;
}

std::string MpvEngine::Text(const char* property) {
    mpv_node node;
    if (m_mpv.get_property(m_player, property, MPV_FORMAT_NODE, &node) < 0)
        return {};
    std::string text = node.format == MPV_FORMAT_STRING ? node.u.string : "";
    m_mpv.free_node_contents(&node);
    return text;
}

double MpvEngine::Number(const char* property, double otherwise) {
    double value = 0;
    return m_mpv.get_property(m_player, property, MPV_FORMAT_DOUBLE, &value) < 0 ? otherwise
                                                                                 : value;
}

/// The time of the picture that a seek ended on; 0 when there is none to tell.
double MpvEngine::PictureShown() {
    // At the end of the file libmpv tells the time of the sound.
    int end = 0;
    const bool known = m_mpv.get_property(m_player, "eof-reached", MPV_FORMAT_FLAG, &end) >= 0;
    return known && end == 0 ? Number("time-pos", 0) : 0;
}

void MpvEngine::Answer(bool ready) {
    m_loading = Loading::Done;
    m_media.ready = ready;
    if (!ready)
        m_entry = -1;
    m_news.answered = true;
    m_answered.notify_all();
}

void MpvEngine::Tell() {
    {
        const std::lock_guard lock(m_lock);
        if (!(m_news.answered || m_news.limitReached || m_news.fileEnded || m_news.lost ||
              m_news.properties))
            return;
        if (std::exchange(m_told, true))
            return;
    }
    m_wake();
}

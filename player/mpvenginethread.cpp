#include "player/mpvengine.h"

#include <algorithm>
#include <string_view>
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
/// Streams of one file that begin this far apart are meant to begin together (in seconds).
constexpr double LooseStart = 0.15;

double Seconds(std::chrono::steady_clock::duration span) {
    return std::chrono::duration<double>(span).count();
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
    const auto wakeAt = [&](Clock::time_point moment) {
        timeout = std::min(timeout, Seconds(moment - now));
    };
    if (m_loading.Pending())
        wakeAt(m_loading.Deadline());
    if (m_seeking.UnderWay())
        wakeAt(m_seeking.Deadline());
    if (m_burst.Sounding())
        wakeAt(m_burst.End());
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
        return m_loading.Started(static_cast<mpv_event_start_file*>(event.data)->playlist_entry_id);
    case MPV_EVENT_FILE_LOADED:
        return m_loading.Loaded();
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
    std::optional<std::int64_t> entry;
    if (event.error >= 0)
        entry = MpvInteger(static_cast<mpv_event_command*>(event.data)->result, "playlist_entry_id",
                           -1);
    if (m_loading.Replied(event.reply_userdata, entry))
        Answer(false);
}

void MpvEngine::HandleEndOfFile(const mpv_event_end_file& end) {
    switch (m_loading.Ended(end.playlist_entry_id)) {
    case Loading::End::OfAnother:
        return;
    case Loading::End::BeforeItWasOpen:
        return Answer(false);
    case Loading::End::WhileOpen:
        m_media = {};
        m_playing = false;
        m_burst.Cancel();
        m_clock.Hold(Clock::now());
        m_news.lost = true;
    }
}

void MpvEngine::HandleProperty(const mpv_event_property& property, Clock::time_point now) {
    const std::string_view name = property.name;
    const bool flag = property.format == MPV_FORMAT_FLAG && *static_cast<int*>(property.data) != 0;
    const double number =
        property.format == MPV_FORMAT_DOUBLE ? *static_cast<double*>(property.data) : -1;
    const std::int64_t count =
        property.format == MPV_FORMAT_INT64 ? *static_cast<std::int64_t*>(property.data) : 0;
    if (name == "time-pos") {
        if (number >= 0 && Moving() && m_media.picture && now - m_lastSound >= SoundSilence)
            m_clock.Picture(number - m_origin, now);
    } else if (name == "pause") {
        m_pause.Reported(flag);
    } else if (name == "eof-reached") {
        m_pause.Doubt();
    } else if (name == "duration") {
        if (m_media.ready && number > 0) {
            m_media.length = std::max(0.0, number - m_origin);
            m_news.properties = true;
        }
    } else if (name == "aid") {
        m_tracksChanged = true;
    } else if (name == "frame-drop-count") {
        CountDropped(m_droppedByOutput, count);
    } else if (name == "decoder-frame-drop-count") {
        CountDropped(m_droppedByDecoder, count);
    }
}

void MpvEngine::CountDropped(std::int64_t& counter, std::int64_t count) {
    m_dropped += std::max<std::int64_t>(0, count - counter);
    counter = count;
}

/// libmpv has paused though it was told to play: at the end of the file, or it
/// was overtaken by a seek. The question stands behind everything sent before.
void MpvEngine::DoubtPause() {
    if (!m_pause.Ask(Moving()))
        return;
    m_mpv.get_property_async(m_player, m_epoch, "eof-reached", MPV_FORMAT_FLAG);
    m_mpv.get_property_async(m_player, m_epoch, "pause", MPV_FORMAT_FLAG);
}

void MpvEngine::HandlePauseReply(const mpv_event& event) {
    const auto& property = *static_cast<mpv_event_property*>(event.data);
    const bool flag = event.error >= 0 && property.format == MPV_FORMAT_FLAG &&
                      *static_cast<int*>(property.data) != 0;
    if (std::string_view(property.name) == "eof-reached")
        return m_pause.AnsweredEnd(flag);
    switch (m_pause.AnsweredPause(flag, Moving())) {
    case PauseWatch::Finding::AsWished:
        return;
    case PauseWatch::Finding::EndOfFile:
        return StopHere(m_news.fileEnded);
    case PauseWatch::Finding::Overtaken:
        Pump();
    }
}

void MpvEngine::StopHere(bool& reason) {
    ++m_epoch;
    m_playing = false;
    m_burst.Cancel();
    m_clock.Hold(Clock::now());
    Pump();
    reason = true;
}

/// What is due, whether libmpv said anything or not.
void MpvEngine::Mind() {
    std::unique_lock lock(m_lock);
    FollowReports(lock);
    const auto now = Clock::now();
    MindDeadlines(now);
    DoubtPause();
    if (!Moving())
        return;
    if (m_limit && m_clock.Position(now) >= *m_limit)
        return StopHere(m_news.limitReached);
    if (Seconds(now - m_lastSample) < SampleInterval())
        return;
    m_lastSample = now;
    if (!m_media.sound.empty() && !NearLimit(now))
        ListenToSound(lock);
}

void MpvEngine::FollowReports(std::unique_lock<std::mutex>& lock) {
    if (std::exchange(m_restarted, false)) {
        if (m_loading.IsLoaded()) {
            lock.unlock();
            ReadMedia();
            lock.lock();
        } else if (m_seeking.UnderWay()) {
            lock.unlock();
            const double shown = m_properties.PictureShown();
            lock.lock();
            HandleRestart(shown - m_origin);
        }
    }
    if (std::exchange(m_tracksChanged, false) && m_media.ready) {
        lock.unlock();
        MpvMedia media = m_properties.Media();
        lock.lock();
        m_media.sound = std::move(media.sound);
        m_news.properties = true;
    }
}

void MpvEngine::MindDeadlines(Clock::time_point now) {
    if (m_seeking.Expire(now))
        Pump();
    if (m_burst.Expire(now)) {
        if (!m_playing && !m_seeking.Wanted())
            m_seeking.Want(m_burst.Position());
        Pump();
    }
    if (m_loading.Overdue(now)) {
        Send({"stop"});
        Answer(false);
    }
}

bool MpvEngine::NearLimit(Clock::time_point now) const {
    return m_limit && m_clock.Running() && (*m_limit - m_clock.Position(now)) / m_rate < Vigilance;
}

void MpvEngine::ListenToSound(std::unique_lock<std::mutex>& lock) {
    const std::uint64_t epoch = m_epoch;
    lock.unlock();
    const double heard = m_properties.Number("audio-pts", -1);
    const auto now = Clock::now();
    lock.lock();
    if (heard >= 0 && epoch == m_epoch && Moving()) {
        m_lastSound = now;
        m_clock.Sound(heard - m_origin, now);
    }
}

void MpvEngine::HandleRestart(double shown) {
    if (!m_seeking.UnderWay())
        return;
    const auto now = Clock::now();
    if (const auto further = m_seeking.Restarted(shown, now))
        return SendSeek(*further);
    m_lastSound = now;
    m_pause.Doubt();
    m_burst.Restarted(now, m_seeking.Wanted());
    if (!m_burst.Sounding())
        return Pump();
    if (m_pause.Tell(false))
        SetFlag("pause", false);
}

void MpvEngine::ReadMedia() {
    MpvMedia media = m_properties.Media();
    const PicturePace pace = media.picture ? m_properties.Pace() : PicturePace();
    const double first = m_properties.Number("time-pos", 0);
    const double origin = first > LooseStart ? first : 0;
    media.ready = true;
    media.length = std::max(0.0, m_properties.Number("duration", 0) - origin);
    const std::lock_guard lock(m_lock);
    if (!m_loading.IsLoaded())
        return;
    m_media = std::move(media);
    m_seeking.Pace(pace);
    m_origin = origin;
    Answer(true);
}

void MpvEngine::Answer(bool ready) {
    m_loading.Answer(ready);
    m_media.ready = ready;
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

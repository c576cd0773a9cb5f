#pragma once

#include "player/loading.h"
#include "player/mediaclock.h"
#include "player/mpvlibrary.h"
#include "player/mpvproperties.h"
#include "player/pausewatch.h"
#include "player/seeking.h"
#include "player/soundburst.h"

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

/// libmpv on a thread of its own, and the clock that this thread keeps. The
/// window thread states what it wants; nothing it calls here waits for libmpv
/// but `WaitForAnswer` (the constructor and destructor aside). Because seeks, the
/// end of a selection and the clock are minded on this thread, they stay exact
/// while the window is busy.
class MpvEngine {
  public:
    /// What has happened since the window thread looked last.
    struct News {
        bool answered = false;
        /// Playback has ended by itself: at the limit, or at the end of the file.
        bool limitReached = false;
        bool fileEnded = false;
        bool lost = false;
        bool properties = false;
    };

    /// Null when libmpv refuses. `wake` is called on the engine's thread whenever there is news.
    static std::unique_ptr<MpvEngine> Make(const MpvLibrary& mpv, std::function<void()> wake);
    ~MpvEngine();
    MpvEngine(const MpvEngine&) = delete;
    MpvEngine& operator=(const MpvEngine&) = delete;

    /// Opens this file, paused at 0; the answer is in the news. What was open is closed.
    void Load(const std::string& path);
    void Unload();
    /// false: no answer yet.
    bool WaitForAnswer(std::chrono::milliseconds atMost);
    News TakeNews();
    MpvMedia Media() const;
    /// Pictures of the open file that were due and not shown.
    std::int64_t DroppedPictures() const;

    /// libmpv's time at position 0.
    double Origin() const;
    double Position() const;
    double PositionBefore(std::chrono::milliseconds age) const;
    bool Playing() const;

    /// Any number of seeks may follow each other; the last one is reached.
    void Seek(double position);
    /// The same, and a moment of sound from there.
    void Scrub(double position);
    void Play();
    void Pause();
    /// Playback pauses here; nothing: it goes on to the end of the file.
    void Limit(std::optional<double> position);
    void Rate(double rate);
    void Volume(int percent);
    void Mute(bool muted);
    void Sound(std::int64_t track);
    /// 0: as the film says.
    void Aspect(double ratio);

    mpv_handle* Handle() const { return m_player; }
    const MpvLibrary& Library() const { return m_mpv; }

  private:
    using Clock = std::chrono::steady_clock;

    MpvEngine(const MpvLibrary& mpv, mpv_handle* player, std::function<void()> wake);

    // On the engine's thread, without the lock:
    void Run();
    void Handle(const mpv_event& event);
    void Mind();
    void ReadMedia();
    void Tell();

    // On the engine's thread, with the lock held and given up meanwhile:
    void FollowReports(std::unique_lock<std::mutex>& lock);
    void ListenToSound(std::unique_lock<std::mutex>& lock);

    // With the lock held:
    void HandleCommandReply(const mpv_event& event);
    void HandleEndOfFile(const mpv_event_end_file& end);
    void HandleProperty(const mpv_event_property& property, Clock::time_point now);
    void HandlePauseReply(const mpv_event& event);
    void HandleRestart(double shown);
    void CountDropped(std::int64_t& counter, std::int64_t count);
    void MindDeadlines(Clock::time_point now);
    void DoubtPause();
    void StopHere(bool& reason);
    void Answer(bool ready);
    double NextTimeout() const;
    double SampleInterval() const;
    bool NearLimit(Clock::time_point now) const;
    void Forget();
    void Send(std::initializer_list<const char*> command, std::uint64_t request = 0);
    void SetFlag(const char* name, bool value);
    void SetDouble(const char* name, double value);
    void SendSeek(double position);
    void GoTo(double position);
    void Pump();
    /// Playback is wanted and nothing is in its way.
    bool Moving() const { return m_playing && !m_seeking.UnderWay() && !m_seeking.Wanted(); }

    const MpvLibrary& m_mpv;
    mpv_handle* const m_player;
    const MpvProperties m_properties;
    const std::function<void()> m_wake;

    mutable std::mutex m_lock;
    std::condition_variable m_answered;
    News m_news;
    MpvMedia m_media;
    MediaClock m_clock;
    Loading m_loading;
    Seeking m_seeking;
    SoundBurst m_burst;
    PauseWatch m_pause;
    bool m_quit = false;
    bool m_playing = false;
    std::optional<double> m_limit;
    double m_rate = 1;
    /// libmpv's time at the first picture or sample.
    double m_origin = 0;
    std::int64_t m_dropped = 0;
    /// libmpv's own counts, which may begin again at any time.
    std::int64_t m_droppedByOutput = 0;
    std::int64_t m_droppedByDecoder = 0;
    /// Changes with every wish, so that an answer to an older one is known as such.
    std::uint64_t m_epoch = 0;
    // Reports that are followed up outside the lock.
    bool m_restarted = false;
    bool m_tracksChanged = false;
    /// The window thread was woken and has not looked yet.
    bool m_told = false;
    Clock::time_point m_lastSample;
    Clock::time_point m_lastSound;

    std::thread m_thread;
};

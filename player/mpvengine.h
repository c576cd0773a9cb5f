#pragma once

#include "player/mediaclock.h"
#include "player/mpvlibrary.h"

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
    double length = 0;
    bool picture = false;
    std::vector<MpvTrack> sound;
};

/// What seeks need to know of a film's pictures.
struct PicturePace {
    /// The shortest time that a picture may be taken to last; 0 without pictures.
    double shortest = 0;
    /// By how much the times of the pictures may be rounded.
    double margin = 0;
};

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

    double Position() const;
    double PositionBefore(std::chrono::milliseconds age) const;
    bool Playing() const;

    /// Any number of seeks may follow each other; the last one is reached.
    void Seek(double position);
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
    enum class Loading { Idle, Asked, Started, Loaded, Done };

    MpvEngine(const MpvLibrary& mpv, mpv_handle* player, std::function<void()> wake);

    // On the engine's thread, without the lock:
    void Run();
    void Handle(const mpv_event& event);
    void Mind();
    void ReadMedia();
    MpvMedia AskMedia();
    std::string Text(const char* property);
    double Number(const char* property, double otherwise);
    double PictureShown();
    PicturePace AskPace();
    void Tell();

    // With the lock held:
    void HandleCommandReply(const mpv_event& event);
    void HandleEndOfFile(const mpv_event_end_file& end);
    void HandleProperty(const mpv_event_property& property, Clock::time_point now);
    void HandlePauseReply(const mpv_event& event);
    void HandleRestart(double shown);
    void DoubtPause();
    void StopHere(bool& reason);
    void Answer(bool ready);
    double NextTimeout() const;
    double SampleInterval() const;
    void Forget();
    void Send(std::initializer_list<const char*> command, std::uint64_t request = 0);
    void SetFlag(const char* name, bool value);
    void SetDouble(const char* name, double value);
    void SendSeek();
    void Pump();
    /// Playback is wanted and nothing is in its way.
    bool Moving() const { return m_playing && !m_seeking && !m_wanted; }

    const MpvLibrary& m_mpv;
    mpv_handle* const m_player;
    const std::function<void()> m_wake;

    mutable std::mutex m_lock;
    std::condition_variable m_answered;
    News m_news;
    MpvMedia m_media;
    MediaClock m_clock;
    bool m_quit = false;

    Loading m_loading = Loading::Idle;
    std::uint64_t m_load = 0;
    std::int64_t m_entry = -1;
    Clock::time_point m_loadDeadline;

    /// A seek was sent and playback has not restarted yet.
    bool m_seeking = false;
    Clock::time_point m_seekDeadline;
    double m_target = 0;
    /// How long the picture that covers the target is taken to last; 0 without one.
    double m_reach = 0;
    int m_retries = 0;
    /// The latest seek asked for meanwhile.
    std::optional<double> m_wanted;
    bool m_playing = false;
    /// What libmpv was told last.
    bool m_pauseSent = true;
    std::optional<double> m_limit;
    double m_rate = 1;
    PicturePace m_pace;
    /// libmpv's time at the first picture or sample.
    double m_origin = 0;
    /// Changes with every wish, so that an answer to an older one is known as such.
    std::uint64_t m_epoch = 0;
    bool m_pauseReported = true;
    bool m_endReported = false;
    bool m_endVerified = false;
    bool m_pauseDoubted = false;
    // Reports that are followed up outside the lock.
    bool m_restarted = false;
    bool m_tracksChanged = false;
    /// The window thread was woken and has not looked yet.
    bool m_told = false;
    Clock::time_point m_lastSample;
    Clock::time_point m_lastSound;

    std::thread m_thread;
};

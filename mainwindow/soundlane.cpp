#include "mainwindow/soundlane.h"

#include "platform/errorgate.h"
#include "platform/paths.h"
#include "platform/settings.h"
#include "player/mediaplayercontrol.h"
#include "sound/soundmapper.h"

#include <algorithm>
#include <chrono>
#include <future>
#include <system_error>
#include <thread>
#include <utility>

// The lane's place in the window, and the sound that it shows.

namespace {

constexpr int LowestPicture = 140;
/// How often the window is asked for the title at hand and the selection.
constexpr int PlayingMilliseconds = 50;
constexpr int RestingMilliseconds = 250;
/// How often a map that grows is painted.
constexpr int GrowMilliseconds = 100;
/// How long nobody minds a window that stands still.
constexpr auto Unfelt = std::chrono::milliseconds(250);

} // namespace

SoundLane::SoundLane(MainState& state, MediaPlayerControl& control, Host host, QWidget* window)
    : QObject(window)
    , m_state(state)
    , m_control(control)
    , m_host(std::move(host))
    , m_window(window) {
    m_ear->lane = this;
    const Settings settings;
    m_wanted = settings.Dword("Lane") != 0;
    m_height = std::clamp<int>(settings.Dword("LaneHeight"), Lane::LeastHeight, 4000);
    m_follow =
        settings.Dword("LaneFollow") == 0 ? LaneView::Follow::Smooth : LaneView::Follow::ByPage;
    Player& player = *m_state.player;
    connect(&player, &Player::ReadyStateChange, this, [this] { Guarded([this] { TakeFilm(); }); });
    connect(&player, &Player::PropertiesChanged, this, [this] { Guarded([this] { TakeFilm(); }); });
    connect(&player, &Player::PositionChange, this, [this](double /*from*/, double to) {
        if (m_mapper)
            m_mapper->LookAt(to);
        ShowCurrent();
    });
    connect(&player, &Player::PlayStateChange, this, [this](int /*from*/, int to) {
        m_current.setInterval(to == Player::Playing ? PlayingMilliseconds : RestingMilliseconds);
        ShowCurrent();
    });
    m_current.setInterval(RestingMilliseconds);
    connect(&m_current, &QTimer::timeout, this, &SoundLane::ShowCurrent);
    connect(&m_control, &MediaPlayerControl::LaneClicked, this, &SoundLane::Toggle);
    m_connection = m_state.document.Subscribe(
        [this](const Change& change) { Guarded([&] { Document_Change(change); }); });
}

SoundLane::~SoundLane() {
    {
        const std::lock_guard guard(m_ear->mutex);
        m_ear->lane = nullptr;
    }
    LetMapperGo();
    delete m_lane;
}

bool SoundLane::Offered() const {
    return m_state.player->ReadyState() != 0 && !m_silent;
}

int SoundLane::LayOut(int width, int room) {
    const int height = std::min(m_height, room - LowestPicture - m_control.BarHeight());
    const bool shown = m_lane && m_wanted && Offered() && height >= Lane::LeastHeight;
    if (m_lane) {
        if (shown)
            m_lane->setGeometry(0, room - height, width, height);
        m_lane->setVisible(shown);
    }
    return shown ? room - height : room;
}

void SoundLane::WriteSettings() const {
    Settings settings;
    settings.SetDword("Lane", m_wanted ? 1 : 0);
    settings.SetDword("LaneHeight", m_height);
    settings.SetDword("LaneFollow", m_follow == LaneView::Follow::Smooth ? 0 : 1);
}

void SoundLane::Toggle() {
    if (!Offered())
        return;
    m_wanted = !m_wanted;
    TakeFilm();
    if (m_wanted)
        MakeLane();
    ShowButton();
    emit RoomChanged();
}

void SoundLane::MapAlways() {
    m_alwaysMapped = true;
    TakeFilm();
}

void SoundLane::ShowButton() {
    m_control.LaneButton(Offered(), m_wanted);
}

void SoundLane::GrowBy(int pixels) {
    m_height = std::max(m_height + pixels, Lane::LeastHeight);
    emit RoomChanged();
    if (m_lane && m_lane->isVisible())
        m_height = m_lane->height();
}

/// Another film, another sound track, or none any more.
void SoundLane::TakeFilm() {
    Player& player = *m_state.player;
    const bool ready = player.ReadyState() != 0;
    const QString film = ready ? player.FileName() : QString();
    const int track = ready ? player.AudioTrack() : -1;
    const bool mapping = m_wanted || m_alwaysMapped;
    const bool same = film == m_film && track == m_track;
    if (same && (m_mapper || !mapping || m_silent))
        return;
    LetMapperGo();
    m_map.reset();
    m_mapped = false;
    m_film = film;
    m_track = track;
    m_silent = !ready || player.AudioTracks().isEmpty();
    if (m_lane)
        m_lane->Sound(nullptr);
    if (!m_silent && m_wanted)
        MakeLane();
    if (!m_silent && mapping)
        MapSound();
    ShowButton();
    emit RoomChanged();
    if (!same)
        emit FilmChanged();
}

void SoundLane::MapSound() {
    SoundMapper::Wish wish;
    wish.film = PathOf(m_film);
    wish.track = m_track + 1;
    wish.position = m_state.player->CurrentPosition();
    m_mapper = std::make_shared<SoundMapper>(std::move(wish), [ear = m_ear] {
        const std::lock_guard guard(ear->mutex);
        if (ear->lane != nullptr)
            ear->lane->SoundArrived();
    });
    SoundChanged();
}

/// It ends at once, but where its film is on a disk that no longer answers.
void SoundLane::LetMapperGo() {
    if (!m_mapper)
        return;
    std::packaged_task<void()> ending([mapper = std::move(m_mapper)]() mutable { mapper.reset(); });
    const std::future<void> ended = ending.get_future();
    try {
        std::thread(std::move(ending)).detach();
    } catch (const std::system_error&) {
        // Without a thread it has ended here.
        return;
    }
    ended.wait_for(Unfelt);
}

/// On the threads that make the map.
void SoundLane::SoundArrived() {
    if (m_soundPosted.exchange(true))
        return;
    QMetaObject::invokeMethod(
        this,
        [this] {
            // Soon, but not for each piece of the map.
            QTimer::singleShot(m_map ? GrowMilliseconds : 0, this, [this] {
                m_soundPosted = false;
                Guarded([this] { SoundChanged(); });
            });
        },
        Qt::QueuedConnection);
}

void SoundLane::SoundChanged() {
    if (!m_mapper)
        return;
    if (m_mapper->Now() == SoundMapper::State::NoSound && !m_mapper->Map()) {
        m_silent = true;
        ShowButton();
        emit RoomChanged();
        return;
    }
    const bool known = m_map == m_mapper->Map();
    m_map = m_mapper->Map();
    if (m_lane && known)
        m_lane->SoundGrew();
    else if (m_lane)
        m_lane->Sound(m_map);
    const bool complete = m_mapper->Now() == SoundMapper::State::Complete;
    if (complete && !std::exchange(m_mapped, true))
        emit SoundMapped();
}

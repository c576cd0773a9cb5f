#include "player/mpvplayer.h"
#include "platform/paths.h"

#include "player/mpvengine.h"
#include "player/mpvpicture.h"
#include "player/playselection.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QMetaObject>
#include <QScopedValueRollback>

#include <algorithm>
#include <atomic>

namespace {

constexpr auto AnswerPatience = std::chrono::seconds(1);
/// How long nobody minds a window that stands still.
constexpr auto Unfelt = std::chrono::milliseconds(250);
constexpr auto AnswerPoll = std::chrono::milliseconds(5);
constexpr int Ready = 4;
constexpr double SlowestRate = 0.5;
constexpr double FastestRate = 2;

std::string NameForMpv(const std::filesystem::path& file) {
#ifdef Q_OS_WIN
    const std::u8string name = file.u8string();
    return {name.begin(), name.end()};
#else
    return file.string();
#endif
}

class MpvPlayer final : public Player {
  public:
    ~MpvPlayer() override;

    void FileName(const QString& name) override;
    QString FileName() const override { return m_name; }
    int ReadyState() const override { return m_ready ? Ready : 0; }
    PlayState State() const override { return m_state; }
    double Length() const override { return m_media.length; }
    double PictureRate() const override { return m_media.pictureRate; }
    qint64 DroppedPictures() const override { return m_engine ? m_engine->DroppedPictures() : 0; }

    double CurrentPosition() const override { return m_engine ? m_engine->Position() : 0; }
    void CurrentPosition(double seconds) override;
    void Scrub(double seconds) override;
    double PositionBefore(std::chrono::milliseconds age) const override;

    double SelectionStart() const override { return m_selection.start; }
    void SelectionStart(double seconds) override;
    double SelectionEnd() const override;
    void SelectionEnd(double seconds) override;

    void Play() override;
    void Pause() override;
    void Stop() override;

    double Rate() const override { return m_rate; }
    void Rate(double rate) override;
    int Volume() const override { return m_volume; }
    void Volume(int percent) override;
    bool Muted() const override { return m_muted; }
    void Muted(bool muted) override;

    QStringList AudioTracks() const override;
    int AudioTrack() const override;
    void AudioTrack(int track) override;
    double Aspect() const override { return m_aspect; }
    void Aspect(double ratio) override;

    bool DrawPicture(QImage& image) override;
    void PictureShown() override;

  private:
    bool Start();
    void Open(const QString& name);
    bool WaitForAnswer();
    void Answered();
    void TellAnswer();
    void HearNews();
    void HearPicture();
    void ChangeState(PlayState state);
    void ShapePicture();
    void Jump(double position);
    double Clamped(double seconds) const;

    QString m_name;
    bool m_ready = false;
    /// The answer to `FileName` is still to come.
    bool m_waiting = false;
    /// It is waited for.
    bool m_opening = false;
    MpvMedia m_media;
    PlayState m_state = Stopped;
    PlaySelection m_selection;
    double m_rate = 1;
    int m_volume = 100;
    bool m_muted = false;
    double m_aspect = 0;
    bool m_drawn = false;
    std::atomic<bool> m_picturePosted = false;
    // libmpv demands that the picture is destroyed before the engine.
    std::unique_ptr<MpvEngine> m_engine;
    std::unique_ptr<MpvPicture> m_picture;
};

MpvPlayer::~MpvPlayer() {
    m_picture.reset();
    m_engine.reset();
}

/// false: there is no libmpv here, or none that can be used.
bool MpvPlayer::Start() {
    if (m_engine)
        return true;
    const MpvLibrary* mpv = MpvLibrary::Get();
    if (mpv == nullptr)
        return false;
    auto engine = MpvEngine::Make(*mpv, [this] {
        QMetaObject::invokeMethod(
            this, [this] { HearNews(); }, Qt::QueuedConnection);
    });
    if (!engine)
        return false;
    auto picture = MpvPicture::Make(*mpv, engine->Handle(), [this] {
        if (!m_picturePosted.exchange(true))
            QMetaObject::invokeMethod(
                this, [this] { HearPicture(); }, Qt::QueuedConnection);
    });
    if (!picture)
        return false;
    m_engine = std::move(engine);
    m_picture = std::move(picture);
    m_engine->Volume(m_volume);
    m_engine->Mute(m_muted);
    m_engine->Rate(m_rate);
    return true;
}

void MpvPlayer::FileName(const QString& name) {
    const bool wasReady = m_ready;
    m_name = name;
    m_ready = false;
    m_waiting = false;
    m_media = {};
    m_selection = {};
    Open(name);
    ChangeState(Stopped);
    if (m_ready || wasReady)
        TellAnswer();
}

void MpvPlayer::Open(const QString& name) {
    // Files alone: no addresses, folders or devices.
    const std::filesystem::path file = PathOf(name);
    std::error_code error;
    if (name.isEmpty() || !std::filesystem::is_regular_file(file, error)) {
        if (m_engine)
            m_engine->Unload();
        return;
    }
    if (!Start())
        return;
    m_engine->Load(NameForMpv(std::filesystem::absolute(file, error)));
    m_waiting = true;
    if (WaitForAnswer()) {
        m_engine->TakeNews();
        Answered();
    } else {
        QMetaObject::invokeMethod(
            this, [this] { HearNews(); }, Qt::QueuedConnection);
    }
}

/// The window is painted meanwhile, but what the user does waits.
bool MpvPlayer::WaitForAnswer() {
    const QScopedValueRollback opening(m_opening, true);
    const QDeadlineTimer unfelt(Unfelt);
    const QDeadlineTimer patience(AnswerPatience);
    while (!patience.hasExpired()) {
        if (m_engine->WaitForAnswer(AnswerPoll))
            return true;
        // libmpv stops and waits a while for each picture that nobody takes.
        if (m_picture->New())
            m_picture->Skip();
        if (unfelt.hasExpired())
            QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    }
    return false;
}

void MpvPlayer::Answered() {
    m_waiting = false;
    m_media = m_engine->Media();
    m_ready = m_media.ready;
    ShapePicture();
}

void MpvPlayer::TellAnswer() {
    emit ReadyStateChange(ReadyState());
    emit PropertiesChanged();
    if (m_media.picture)
        emit PictureDue();
}

void MpvPlayer::HearNews() {
    if (m_opening)
        return;
    const MpvEngine::News news = m_engine->TakeNews();
    if (news.answered && m_waiting) {
        Answered();
        TellAnswer();
    } else if (news.properties) {
        m_media = m_engine->Media();
        emit PropertiesChanged();
    }
    if (news.lost) {
        m_ready = false;
        m_media = {};
        ChangeState(Stopped);
        TellAnswer();
    } else if (news.fileEnded && m_state == Playing) {
        Stop();
    } else if (news.limitReached && m_state == Playing) {
        ChangeState(Paused);
    }
}

void MpvPlayer::HearPicture() {
    m_picturePosted = false;
    // A picture that libmpv no longer calls new may still be one that was not
    // drawn: it gives up waiting for a busy window.
    const bool isNew = m_picture->New();
    m_drawn = false;
    emit PictureDue();
    if (isNew && !m_drawn)
        m_picture->Skip();
}

double MpvPlayer::Clamped(double seconds) const {
    const double last = m_media.length > 0 ? m_media.length : seconds;
    return std::max(0.0, std::min(seconds, last));
}

void MpvPlayer::CurrentPosition(double seconds) {
    if (m_ready)
        Jump(Clamped(seconds));
}

void MpvPlayer::Scrub(double seconds) {
    if (!m_ready)
        return;
    const double old = CurrentPosition();
    const double position = Clamped(seconds);
    m_engine->Scrub(position);
    emit PositionChange(old, position);
}

void MpvPlayer::Jump(double position) {
    const double old = CurrentPosition();
    m_engine->Seek(position);
    emit PositionChange(old, position);
}

double MpvPlayer::PositionBefore(std::chrono::milliseconds age) const {
    return m_engine ? m_engine->PositionBefore(age) : 0;
}

void MpvPlayer::SelectionStart(double seconds) {
    m_selection.start = seconds;
    if (m_engine)
        m_engine->Limit(m_selection.Limit(Length()));
}

double MpvPlayer::SelectionEnd() const {
    return m_selection.end < 0 ? Length() : m_selection.end;
}

void MpvPlayer::SelectionEnd(double seconds) {
    m_selection.end = seconds;
    if (m_engine)
        m_engine->Limit(m_selection.Limit(Length()));
}

void MpvPlayer::Play() {
    if (!m_ready || m_state == Playing)
        return;
    if (const auto jump = m_selection.JumpBeforePlay(CurrentPosition(), Length()))
        Jump(*jump);
    m_engine->Play();
    ChangeState(Playing);
}

void MpvPlayer::Pause() {
    if (!m_ready)
        return;
    m_engine->Pause();
    ChangeState(Paused);
}

void MpvPlayer::Stop() {
    if (!m_ready)
        return;
    const double old = CurrentPosition();
    const double start = m_selection.Start();
    m_engine->Pause();
    m_engine->Seek(start);
    ChangeState(Stopped);
    emit PositionChange(old, start);
}

void MpvPlayer::ChangeState(PlayState state) {
    const PlayState old = std::exchange(m_state, state);
    if (old != state)
        emit PlayStateChange(old, state);
}

void MpvPlayer::Rate(double rate) {
    m_rate = std::clamp(rate, SlowestRate, FastestRate);
    if (m_engine)
        m_engine->Rate(m_rate);
    emit PropertiesChanged();
}

void MpvPlayer::Volume(int percent) {
    m_volume = std::clamp(percent, 0, 100);
    if (m_engine)
        m_engine->Volume(m_volume);
    emit PropertiesChanged();
}

void MpvPlayer::Muted(bool muted) {
    m_muted = muted;
    if (m_engine)
        m_engine->Mute(m_muted);
    emit PropertiesChanged();
}

QStringList MpvPlayer::AudioTracks() const {
    QStringList names;
    for (const MpvTrack& track : m_media.sound) {
        QString name = QString::fromStdString(track.title).trimmed();
        const QString language = QString::fromStdString(track.language).trimmed();
        if (name.isEmpty())
            name = tr("Track %1").arg(names.size() + 1);
        names << (language.isEmpty() ? name : QStringLiteral("%1 (%2)").arg(name, language));
    }
    return names;
}

int MpvPlayer::AudioTrack() const {
    const auto& tracks = m_media.sound;
    const auto selected = std::find_if(tracks.begin(), tracks.end(),
                                       [](const MpvTrack& track) { return track.selected; });
    return selected == tracks.end() ? -1 : static_cast<int>(selected - tracks.begin());
}

void MpvPlayer::AudioTrack(int track) {
    if (track < 0 || track >= static_cast<int>(m_media.sound.size()))
        return;
    for (MpvTrack& other : m_media.sound)
        other.selected = false;
    MpvTrack& chosen = m_media.sound[static_cast<std::size_t>(track)];
    chosen.selected = true;
    m_engine->Sound(chosen.id);
    emit PropertiesChanged();
}

void MpvPlayer::Aspect(double ratio) {
    m_aspect = std::max(0.0, ratio);
    if (m_engine)
        ShapePicture();
    emit PropertiesChanged();
}

/// The ratio is that of the picture as it is seen; a film that lies on its side is
/// drawn before it is turned.
void MpvPlayer::ShapePicture() {
    const bool sideways = m_media.rotation % 180 != 0;
    m_engine->Aspect(sideways && m_aspect > 0 ? 1 / m_aspect : m_aspect);
}

bool MpvPlayer::DrawPicture(QImage& image) {
    if (!m_picture || !m_media.picture)
        return false;
    m_drawn = m_picture->Draw(image, m_media.rotation);
    return m_drawn;
}

void MpvPlayer::PictureShown() {
    if (m_picture)
        m_picture->Shown();
}

} // namespace

std::unique_ptr<Player> MakeMpvPlayer() {
    return std::make_unique<MpvPlayer>();
}

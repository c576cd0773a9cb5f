#pragma once

#include "player/player.h"

#include <QString>
#include <QStringList>

#include <vector>

/// A player for tests: it plays nothing, and its clock stands until the test
/// moves it by `Advance`. Every existing file is taken unless the test says otherwise.
class FakePlayer : public Player {
    Q_OBJECT

  public:
    using Player::Player;

    /// Seconds of media time pass; playing ends at the selection's end or at the media's.
    void Advance(double seconds);
    /// The answer that `AnswersLater` held back.
    void AnswerNow();

    bool RefusesFiles = false;
    bool AnswersLater = false;
    double MediaLength = 600;
    double MediaRate = 25;
    /// Every name that was ever given, and every position asked for.
    QStringList Opened;
    std::vector<double> Seeks;
    /// Every position that was asked for with sound.
    std::vector<double> Scrubs;

    using Player::ReadyState;
    void FileName(const QString& name) override;
    QString FileName() const override { return m_name; }
    int ReadyState() const override { return m_ready; }
    PlayState State() const override { return m_state; }
    double Length() const override { return m_ready == 0 ? 0 : MediaLength; }
    double PictureRate() const override { return m_ready == 0 ? 0 : MediaRate; }
    qint64 DroppedPictures() const override { return 0; }

    double CurrentPosition() const override { return m_position; }
    void CurrentPosition(double seconds) override;
    void Scrub(double seconds) override;
    double PositionBefore(std::chrono::milliseconds age) const override;

    double SelectionStart() const override { return m_selectionStart; }
    void SelectionStart(double seconds) override { m_selectionStart = seconds; }
    double SelectionEnd() const override { return m_selectionEnd < 0 ? Length() : m_selectionEnd; }
    void SelectionEnd(double seconds) override { m_selectionEnd = seconds; }

    void Play() override;
    void Pause() override;
    void Stop() override;

    double Rate() const override { return m_rate; }
    void Rate(double rate) override;
    int Volume() const override { return m_volume; }
    void Volume(int percent) override;
    bool Muted() const override { return m_muted; }
    void Muted(bool muted) override;

    QStringList AudioTracks() const override { return Tracks; }
    int AudioTrack() const override { return m_track; }
    void AudioTrack(int track) override;
    double Aspect() const override { return m_aspect; }
    void Aspect(double ratio) override;

    /// A plain grey picture while a film is loaded.
    bool DrawPicture(QImage& image) override;

    QStringList Tracks;

  private:
    void ChangeState(PlayState state);
    void MoveTo(double position);

    QString m_name;
    int m_ready = 0;
    PlayState m_state = Stopped;
    double m_position = 0;
    double m_lastSeek = 0;
    double m_selectionStart = -1;
    double m_selectionEnd = -1;
    double m_rate = 1;
    int m_volume = 100;
    bool m_muted = false;
    int m_track = -1;
    double m_aspect = 0;
};

#pragma once

#include <QImage>
#include <QObject>
#include <QString>
#include <QStringList>

#include <chrono>

/// The media player as the windows know it. Times are seconds on the media's
/// clock. All members are called, and all signals arrive, on the window thread,
/// and none of them waits for the player (but `FileName(name)`, at most a second, while
/// everything but the user's input goes on).
class Player : public QObject {
    Q_OBJECT

  public:
    enum PlayState { Stopped = 0, Paused = 1, Playing = 2 };
    Q_ENUM(PlayState)

    explicit Player(QObject* parent = nullptr)
        : QObject(parent) {}

    /// Opens a media file, paused. On return `ReadyState` tells whether the player
    /// took it; where the answer takes longer than a second, `ReadyStateChange` follows.
    virtual void FileName(const QString& name) = 0;
    virtual QString FileName() const = 0;

    /// 0: no media, or none that can be played.
    virtual int ReadyState() const = 0;
    virtual PlayState State() const = 0;
    /// 0 when unknown.
    virtual double Length() const = 0;
    /// Pictures in a second, as the film itself says; 0 when unknown and without a picture.
    virtual double PictureRate() const = 0;
    /// Pictures of the open film that came too late to be shown.
    virtual qint64 DroppedPictures() const = 0;

    /// A continuous clock: never backward between seeks; right after a seek exactly
    /// the position asked for.
    virtual double CurrentPosition() const = 0;
    /// Clamped to the media.
    virtual void CurrentPosition(double seconds) = 0;
    /// The same with a moment of sound from there, for finding a place by ear. It
    /// changes nothing else: a paused player stands at the position afterwards. Bursts follow
    /// each other; of the positions asked for during one the last is heard next.
    virtual void Scrub(double seconds) = 0;
    /// The position at an earlier moment (the age of a key event, say), also from before a
    /// seek or a pause.
    virtual double PositionBefore(std::chrono::milliseconds age) const = 0;

    /// Playback is limited to the selection; a start below 0 means there is none, and
    /// the end limits nothing then. An end below 0 reads as the media's length.
    virtual double SelectionStart() const = 0;
    virtual void SelectionStart(double seconds) = 0;
    virtual double SelectionEnd() const = 0;
    virtual void SelectionEnd(double seconds) = 0;

    virtual void Play() = 0;
    virtual void Pause() = 0;
    /// Paused at the selection's start, or at 0.
    virtual void Stop() = 0;

    /// 0.5 to 2, the pitch kept.
    virtual double Rate() const = 0;
    virtual void Rate(double rate) = 0;
    /// 0 to 100.
    virtual int Volume() const = 0;
    virtual void Volume(int percent) = 0;
    virtual bool Muted() const = 0;
    virtual void Muted(bool muted) = 0;

    /// Names for people, and the number of the one in use (-1: none).
    virtual QStringList AudioTracks() const = 0;
    virtual int AudioTrack() const = 0;
    virtual void AudioTrack(int track) = 0;
    /// Width to height; 0: as the film says.
    virtual double Aspect() const = 0;
    virtual void Aspect(double ratio) = 0;

    /// Draws the picture due now into the whole image (Format_RGB32, every pixel
    /// opaque); false when there is no picture to draw.
    virtual bool DrawPicture(QImage& image) = 0;
    /// The picture is on the screen now (the player paces itself by it).
    virtual void PictureShown() {}

  signals:
    void PlayStateChange(int oldState, int newState);
    /// Any seek or jump, not the ordinary progress of playing.
    void PositionChange(double oldPosition, double newPosition);
    /// The player's own controls were used: the window takes the keyboard back.
    void Activated();
    void ReadyStateChange(int readyState);
    /// A new picture is due: draw it.
    void PictureDue();
    /// Length, tracks, volume, rate or aspect changed: the controls show them anew.
    void PropertiesChanged();
};

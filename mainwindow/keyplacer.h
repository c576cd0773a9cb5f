#pragma once

#include "mainwindow/mainstate.h"
#include "mainwindow/placing.h"
#include "platform/keyrepeat.h"

#include <QObject>

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

class DisplayPanel;
class QKeyEvent;
class QTimer;
class SoundMap;

/// Places titles by key: sees the main window's keys before its controls do, and gives
/// the title at hand the positions of the press and the release.
class KeyPlacer : public QObject {
    Q_OBJECT

  public:
    KeyPlacer(MainState& state, DisplayPanel& display, std::int16_t& actionKey, QWidget* window);
    ~KeyPlacer() override;

    /// Where speech begins and ends, for titles to be moved to as they are placed. The map may
    /// be null, and so may the function, when they are not to be moved.
    using Speech = std::function<std::shared_ptr<const SoundMap>()>;
    void SnapTo(Speech speech) { m_speech = std::move(speech); }

    /// The keyboard goes to another window: a key that is held will be released there.
    void KeyboardLost();
    /// Keys place titles now, and the panel shows which.
    bool Positioning() const;
    /// The title before, or the one after, is placed next.
    void PreviousTitle();
    void NextTitle();
    /// The title that was placed last gets its old times, and is placed next again.
    void TakeBack();

  signals:
    /// What was recorded, or taken back, for people.
    void Placed(const QString& text);
    /// A title is being placed since this time (seconds), or none is any more.
    void PlacingSince(std::optional<double> time);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void txtKey_Click();
    void MP_PlayStateChange(int oldState, int newState);
    void MP_PositionChange(double oldPosition, double newPosition);
    void DisplayStopping(std::int32_t title);
    bool HeldKeyElsewhere(QEvent& event);
    bool KeyPreview(QWidget& receiver, QEvent& event);
    bool Form_KeyDown(const QKeyEvent& event);
    bool Form_KeyUp(const QKeyEvent& event);
    bool Form_KeyPress(const QWidget& receiver, const QKeyEvent& event) const;
    /// The repeats of a held key are left out of these two.
    void ActionKeyPressed(double position);
    void ActionKeyReleased(double position);
    void Place(std::int32_t title);
    /// What is to be said of it.
    std::string Snap(std::int32_t title);
    void tmrRelease_Timer();
    bool IsActionKey(const QKeyEvent& event) const;
    double PositionOf(std::chrono::milliseconds age) const;

    MainState& m_state;
    DisplayPanel& m_display;
    std::int16_t& m_actionKey;
    QWidget* m_window;
    std::int32_t m_lagMilliseconds;
    Speech m_speech;
    Placing m_placing;
    PlacedTitles m_placed;
    Connection m_beforeOther;
    /// The title whose key was down when the player stopped.
    std::optional<std::int32_t> m_heldToTheStop;
    KeyRepeat m_keyRepeat;
    /// The key is still held, but the player stopped: its release places nothing.
    bool m_spent = false;
    /// The position of a release that may turn out to be a repeat's.
    std::optional<double> m_waitingRelease;
    QTimer* tmrRelease;
};

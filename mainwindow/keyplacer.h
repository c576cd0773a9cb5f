#pragma once

#include "mainwindow/mainstate.h"
#include "mainwindow/placing.h"
#include "platform/keyrepeat.h"

#include <QObject>

#include <chrono>
#include <cstdint>
#include <optional>

class DisplayPanel;
class QKeyEvent;
class QTimer;

/// Places titles by key: sees the main window's keys before its controls do, and gives
/// the title at hand the positions of the press and the release.
class KeyPlacer : public QObject {
    Q_OBJECT

  public:
    KeyPlacer(MainState& state, DisplayPanel& display, std::int16_t& actionKey, QWidget* window);
    ~KeyPlacer() override;

    /// The keyboard goes to another window: a key that is held will be released there.
    void KeyboardLost();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void txtKey_Click();
    bool KeyPreview(QWidget& receiver, QEvent& event);
    bool Form_KeyDown(const QKeyEvent& event);
    bool Form_KeyUp(const QKeyEvent& event);
    bool Form_KeyPress(const QWidget& receiver, const QKeyEvent& event) const;
    /// The repeats of a held key are left out of these two.
    void ActionKeyPressed(double position);
    void ActionKeyReleased(double position);
    void tmrRelease_Timer();
    bool IsActionKey(const QKeyEvent& event) const;
    double PositionOf(std::chrono::milliseconds age) const;

    MainState& m_state;
    DisplayPanel& m_display;
    std::int16_t& m_actionKey;
    QWidget* m_window;
    std::int32_t m_lagMilliseconds;
    Placing m_placing;
    KeyRepeat m_keyRepeat;
    /// The position of a release that may turn out to be a repeat's.
    std::optional<double> m_waitingRelease;
    QTimer* tmrRelease;
};

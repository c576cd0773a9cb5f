#include "mainwindow/keyplacer.h"

#include "mainwindow/displaypanel.h"
#include "mainwindow/frmPickKey.h"
#include "mainwindow/handlers.h"
#include "mainwindow/panelcontrols.h"
#include "model/step.h"
#include "platform/eventage.h"
#include "platform/keycodes.h"
#include "platform/settings.h"

#include <QApplication>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QTimer>

#include <utility>

namespace {

bool TakesText(const QWidget& control) {
    return qobject_cast<const QLineEdit*>(&control) != nullptr ||
           qobject_cast<const QPlainTextEdit*>(&control) != nullptr;
}

/// Tab and Delete carry a character too, but type none.
bool TypesCharacter(const QKeyEvent& event) {
    switch (event.key()) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
    case Qt::Key_Delete:
        return false;
    default:
        return !event.text().isEmpty();
    }
}

/// X11 alone sends repeats as releases and presses.
std::uint64_t RepeatStamp(const QKeyEvent& event) {
    static const bool x11 = QGuiApplication::platformName() == QLatin1String("xcb");
    return x11 ? TrueStamp(event) : 0;
}

} // namespace

KeyPlacer::KeyPlacer(MainState& state, DisplayPanel& display, std::int16_t& actionKey,
                     QWidget* window)
    : QObject(window)
    , m_state(state)
    , m_display(display)
    , m_actionKey(actionKey)
    , m_window(window)
    , m_lagMilliseconds(Settings().Dword("LagMs"))
    , tmrRelease(MakeTimer(this, "tmrRelease", 0)) {
    tmrRelease->setTimerType(Qt::PreciseTimer);
    tmrRelease->setSingleShot(true);
    On(tmrRelease, &QTimer::timeout, this, &KeyPlacer::tmrRelease_Timer);
    qApp->installEventFilter(this);
}

KeyPlacer::~KeyPlacer() {
    qApp->removeEventFilter(this);
}

void KeyPlacer::KeyboardLost() {
    if (!m_keyRepeat.Waiting())
        m_keyRepeat.Reset();
}

void KeyPlacer::txtKey_Click() {
    frmPickKey dialog(m_window, m_display.KeyBox(), m_actionKey);
    dialog.exec();
    m_keyRepeat.Reset();
    m_window->setFocus();
}

/// All keys of this window come by here before its controls get them.
bool KeyPlacer::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::InputMethod:
    case QEvent::MouseButtonRelease:
        break;
    default:
        return false;
    }
    auto* receiver = qobject_cast<QWidget*>(watched);
    if (receiver == nullptr || receiver->window() != m_window)
        return false;
    bool taken = false;
    Guarded([&] { taken = KeyPreview(*receiver, *event); });
    if (taken)
        event->accept();
    return taken;
}

bool KeyPlacer::KeyPreview(QWidget& receiver, QEvent& event) {
    switch (event.type()) {
    case QEvent::ShortcutOverride:
        return m_state.mediaActive && IsActionKey(static_cast<QKeyEvent&>(event));
    case QEvent::KeyPress: {
        const auto& key = static_cast<QKeyEvent&>(event);
        return Form_KeyDown(key) || Form_KeyPress(receiver, key);
    }
    case QEvent::KeyRelease: {
        const auto& key = static_cast<QKeyEvent&>(event);
        if (Form_KeyUp(key))
            return true;
        // The release, for the picker takes the first key that is released in it.
        if (&receiver == &m_display.KeyBox() && !key.isAutoRepeat() &&
            (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter)) {
            txtKey_Click();
            return true;
        }
        return false;
    }
    case QEvent::InputMethod:
        return m_state.player->State() == Player::Playing && TakesText(receiver) &&
               !static_cast<QInputMethodEvent&>(event).commitString().isEmpty();
    case QEvent::MouseButtonRelease:
        if (&receiver == &m_display.KeyBox() &&
            static_cast<QMouseEvent&>(event).button() == Qt::LeftButton)
            txtKey_Click();
        return false;
    default:
        return false;
    }
}

bool KeyPlacer::IsActionKey(const QKeyEvent& event) const {
    return VirtualKeyCode(event) == m_actionKey;
}

/// The media position that a key event of that age stands for.
double KeyPlacer::PositionOf(std::chrono::milliseconds age) const {
    const double position = m_state.player->PositionBefore(age);
    return m_display.Mode() == DisplayMode::Position ? WithoutLag(position, m_lagMilliseconds)
                                                     : position;
}

bool KeyPlacer::Form_KeyDown(const QKeyEvent& event) {
    if (!IsActionKey(event))
        return false;
    const KeyRepeat::Press press = m_keyRepeat.Pressed(RepeatStamp(event), event.isAutoRepeat());
    if (press == KeyRepeat::Press::Repeat)
        m_waitingRelease.reset();
    else if (press == KeyRepeat::Press::AfterRelease && m_waitingRelease)
        ActionKeyReleased(*std::exchange(m_waitingRelease, std::nullopt));
    if (!m_state.mediaActive)
        return false;
    if (press != KeyRepeat::Press::Repeat)
        ActionKeyPressed(PositionOf(EventAge(event)));
    return true;
}

bool KeyPlacer::Form_KeyUp(const QKeyEvent& event) {
    if (!IsActionKey(event))
        return false;
    const std::uint64_t stamp = RepeatStamp(event);
    const KeyRepeat::Release release =
        m_keyRepeat.Released(stamp, event.isAutoRepeat(), KeyRepeat::Moment::clock::now());
    if (!m_state.mediaActive)
        return false;
    const double position = PositionOf(EventAge(event));
    if (release == KeyRepeat::Release::Waits) {
        m_waitingRelease = position;
        tmrRelease->start(KeyRepeat::Wait);
    } else if (release == KeyRepeat::Release::Real || (stamp == 0 && !event.isAutoRepeat())) {
        // A release counts without its press, unless it may be a repeat's of a key
        // that was pressed in another window.
        ActionKeyReleased(position);
    }
    return true;
}

void KeyPlacer::tmrRelease_Timer() {
    if (!m_keyRepeat.Expire(KeyRepeat::Moment::clock::now())) {
        if (m_keyRepeat.Waiting())
            tmrRelease->start(std::chrono::milliseconds(1));
        return;
    }
    if (m_waitingRelease && m_state.mediaActive)
        ActionKeyReleased(*m_waitingRelease);
    m_waitingRelease.reset();
}

void KeyPlacer::ActionKeyPressed(double position) {
    if (!m_placing.Press(position))
        return;
    m_state.document.SubtitlesChanged = true;
}

void KeyPlacer::ActionKeyReleased(double position) {
    m_placing.Release(position);
    const std::int32_t placed = m_display.CurrentTitle();
    SUBTITLES& titles = m_state.document.Subt;
    {
        const Step step(titles, {"Placing by key", StepName::Series::OneAfterTheOther});
        titles.SetTimes(placed, m_placing.KeyDownTime(), m_placing.KeyUpTime());
    }
    m_display.Advance();
}

/// While playing, no typed character reaches a text box.
bool KeyPlacer::Form_KeyPress(const QWidget& receiver, const QKeyEvent& event) const {
    return m_state.player->State() == Player::Playing && TakesText(receiver) &&
           TypesCharacter(event);
}

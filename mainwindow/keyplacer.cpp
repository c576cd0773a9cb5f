#include "mainwindow/keyplacer.h"

#include "listeditor/frmList.h"
#include "mainwindow/displaypanel.h"
#include "mainwindow/frmPickKey.h"
#include "mainwindow/handlers.h"
#include "mainwindow/panelcontrols.h"
#include "model/step.h"
#include "platform/eventage.h"
#include "platform/keycodes.h"
#include "platform/settings.h"
#include "sound/speechedge.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPlainTextEdit>
#include <QTimer>

#include <utility>

namespace {

constexpr std::int16_t MenuKey = 93;
/// A film can end that much (in seconds) before its length.
constexpr double EndSlack = 0.5;

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
    m_beforeOther = state.document.BeforeOther([this] { m_placed.Clear(); });
    On(state.player.get(), &Player::PlayStateChange, this, &KeyPlacer::MP_PlayStateChange);
    On(state.player.get(), &Player::PositionChange, this, &KeyPlacer::MP_PositionChange);
    On(&display, &DisplayPanel::Stopping, this, &KeyPlacer::DisplayStopping);
    qApp->installEventFilter(this);
}

KeyPlacer::~KeyPlacer() {
    qApp->removeEventFilter(this);
}

void KeyPlacer::KeyboardLost() {
    if (m_keyRepeat.Waiting())
        return;
    m_keyRepeat.Reset();
    m_placing.Forget();
    emit PlacingSince({});
    m_spent = false;
}

bool KeyPlacer::Positioning() const {
    return m_state.mediaActive && m_display.Mode() == DisplayMode::Position;
}

void KeyPlacer::PreviousTitle() {
    m_display.Choose(m_display.CurrentTitle() - 1);
}

void KeyPlacer::NextTitle() {
    m_display.Choose(m_display.CurrentTitle() + 1);
}

// Undoes as the list editor does. A title whose placement that takes back is placed next.
void KeyPlacer::TakeBack() {
    SUBTITLES& titles = m_state.document.Subt;
    if (titles.UndoCount() == 0) {
        emit Placed(tr("No placement to take back"));
        return;
    }
    const std::int32_t title = titles.History().At(0).title;
    if (frmList* list = m_state.OpenList())
        list->DoCommand(QStringLiteral("Undo"));
    else
        titles.Undo();
    if (!m_placed.TakenBack(titles, title))
        return;
    m_display.Choose(title);
    emit Placed(tr("Taken back: %1")
                    .arg(QString::fromStdString(
                        PlacedText(title, titles.StartTime(title), titles.EndTime(title)))));
}

// A key that is held when the player stops is not held any more for what comes then.
void KeyPlacer::DisplayStopping(std::int32_t title) {
    if (!m_placing.KeyIsDown())
        return;
    m_heldToTheStop = title;
    m_spent = true;
    m_placing.Forget();
    emit PlacingSince({});
}

void KeyPlacer::MP_PlayStateChange(int /*oldState*/, int newState) {
    if (newState != Player::Stopped)
        m_heldToTheStop.reset();
}

// Right after a stop comes the way back to the start. It tells where the film was: at its
// end, the title that was being placed reaches to there.
void KeyPlacer::MP_PositionChange(double oldPosition, double /*newPosition*/) {
    const auto title = std::exchange(m_heldToTheStop, std::nullopt);
    const double end = m_state.player->Length();
    if (!title || end <= 0 || oldPosition < end - EndSlack)
        return;
    m_placing.Release(end);
    Place(*title);
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
    case QEvent::ContextMenu:
        break;
    default:
        return false;
    }
    auto* receiver = qobject_cast<QWidget*>(watched);
    if (receiver == nullptr)
        return false;
    if (receiver->window() != m_window)
        return HeldKeyElsewhere(*event);
    bool taken = false;
    Guarded([&] { taken = KeyPreview(*receiver, *event); });
    if (taken)
        event->accept();
    return taken;
}

/// A key that went down in this window and is held while a menu or another window has
/// the keyboard: it repeats and comes up there.
bool KeyPlacer::HeldKeyElsewhere(QEvent& event) {
    const bool press = event.type() == QEvent::KeyPress;
    if ((!press && event.type() != QEvent::KeyRelease) || !m_placing.KeyIsDown())
        return false;
    bool taken = false;
    Guarded([&] {
        const auto& key = static_cast<QKeyEvent&>(event);
        taken = press ? Form_KeyDown(key) : Form_KeyUp(key);
    });
    if (taken)
        event.accept();
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
    case QEvent::ContextMenu:
        // The menu key's own menu would take its release.
        return m_state.mediaActive && m_actionKey == MenuKey &&
               static_cast<QContextMenuEvent&>(event).reason() == QContextMenuEvent::Keyboard;
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
    if (press != KeyRepeat::Press::Repeat)
        m_spent = false;
    if (!m_state.mediaActive || m_spent)
        return m_spent;
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
    if (m_spent) {
        m_spent = release != KeyRepeat::Release::Real;
        return true;
    }
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
    emit PlacingSince(position);
}

void KeyPlacer::ActionKeyReleased(double position) {
    m_placing.Release(position);
    emit PlacingSince({});
    Place(m_display.CurrentTitle());
    m_display.Advance();
}

void KeyPlacer::Place(std::int32_t title) {
    const double start = m_placing.KeyDownTime();
    const double end = m_placing.KeyUpTime();
    SUBTITLES& titles = m_state.document.Subt;
    const Step step(titles, {"Placing by key", StepName::Series::OneAfterTheOther},
                    Step::Undo::Once);
    const double was = titles.StartTime(title);
    if (!m_placed.Place(titles, title, start, end))
        return;
    const std::string snapped = Snap(title);
    m_state.document.Placed(title, was);
    emit Placed(
        QString::fromStdString(PlacedText(title, titles.StartTime(title), titles.EndTime(title)) +
                               (snapped.empty() ? "" : "\n" + snapped)));
}

// The moments of the keys stay in a version: from them and from where the titles came a
// person's own lag can be told.
std::string KeyPlacer::Snap(std::int32_t title) {
    const std::shared_ptr<const SoundMap> map = m_speech ? m_speech() : nullptr;
    if (!map)
        return {};
    const SpeechSpan recorded{m_placing.KeyDownTime(), m_placing.KeyUpTime()};
    const SpeechSpan snapped = SnappedToSpeech(*map, recorded);
    m_state.document.KeepRecorded("Snapping to speech", title, recorded.start, recorded.end);
    std::string text = SnappedText(snapped.start - recorded.start, snapped.end - recorded.end);
    if (!text.empty())
        m_placed.Correct(m_state.document.Subt, snapped.start, snapped.end);
    return text;
}

/// While playing, no typed character reaches a text box.
bool KeyPlacer::Form_KeyPress(const QWidget& receiver, const QKeyEvent& event) const {
    return m_state.player->State() == Player::Playing && TakesText(receiver) &&
           TypesCharacter(event);
}

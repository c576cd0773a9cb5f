#include "mainwindow/mainactions.h"

#include "listeditor/frmList.h"
#include "mainwindow/displaypanel.h"
#include "mainwindow/handlers.h"
#include "mainwindow/keyplacer.h"
#include "mainwindow/titlestarts.h"
#include "mainwindow/transportbuttons.h"
#include "player/mediamenu.h"

#include <QAction>
#include <QKeySequence>
#include <QLineEdit>

#include <algorithm>

namespace {

constexpr int VolumeStep = 5;
constexpr double ShortStep = 0.5;
constexpr double LongStep = 5;

} // namespace

enum class MainActions::When : std::uint8_t {
    Always,
    Film,
    /// The film is paused or stopped.
    Resting,
    Positioning,
};

struct MainActions::Row {
    const char* name;
    const char* text;
    /// Split by "; ". The first ones are told to people, keys of media keyboards are not.
    const char* keys;
    const char* mediaKeys;
    When when;
    bool bothWindows;
    void (MainActions::*handler)();
};

const MainActions::Row MainActions::Rows[] = {
    {"actPlay", "Play or pause", "Ctrl+P", "Media Play; Media Pause; Toggle Media Play/Pause",
     When::Film, true, &MainActions::PlayOrPause},
    {"actStop", "Stop", "Ctrl+Shift+P", "Media Stop", When::Film, true, &MainActions::Stop},
    {"actHalfBack", "Half a second back", "Alt+Left", "", When::Film, true,
     &MainActions::HalfSecondBack},
    {"actHalfForward", "Half a second forward", "Alt+Right", "", When::Film, true,
     &MainActions::HalfSecondForward},
    {"actFiveBack", "Five seconds back", "Alt+PgUp", "", When::Film, true,
     &MainActions::FiveSecondsBack},
    {"actFiveForward", "Five seconds forward", "Alt+PgDown", "", When::Film, true,
     &MainActions::FiveSecondsForward},
    {"actPreviousTitle", "To the previous title", "Ctrl+PgUp", "Media Previous", When::Film, true,
     &MainActions::PreviousTitle},
    {"actNextTitle", "To the next title", "Ctrl+PgDown", "Media Next", When::Film, true,
     &MainActions::NextTitle},
    {"actStripStart", "To the start of the selection", "Alt+Home", "", When::Resting, true,
     &MainActions::StripStart},
    {"actStripBack", "Half a second back in the selection", "Alt+,", "", When::Resting, true,
     &MainActions::StripBack},
    {"actStripForward", "Half a second forward in the selection", "Alt+.", "", When::Resting, true,
     &MainActions::StripForward},
    {"actStripEnd", "To the end of the selection", "Alt+End", "", When::Resting, true,
     &MainActions::StripEnd},
    {"actLouder", "Louder", "Ctrl++; Ctrl+=", "Volume Up", When::Film, true, &MainActions::Louder},
    {"actQuieter", "Quieter", "Ctrl+-", "Volume Down", When::Film, true, &MainActions::Quieter},
    {"actMute", "Sound on or off", "Ctrl+M", "Volume Mute", When::Film, true, &MainActions::Mute},
    {"actFaster", "Play faster", "Alt++; Alt+=", "", When::Film, true, &MainActions::Faster},
    {"actSlower", "Play slower", "Alt+-", "", When::Film, true, &MainActions::Slower},
    {"actPreviousToPlace", "Place the previous title next", "PgUp", "", When::Positioning, false,
     &MainActions::PreviousToPlace},
    {"actNextToPlace", "Place the next title next", "PgDown", "", When::Positioning, false,
     &MainActions::NextToPlace},
    {"actTakeBack", "Undo, or take the last placement back", "Ctrl+Z", "", When::Always, false,
     &MainActions::TakeBack},
    {"actLane", "Show or hide the film's sound", "Ctrl+L", "", When::Film, true,
     &MainActions::LaneWanted},
    {"actGoBack", "Back to before the last large step, and forth", "Ctrl+Shift+Z", "", When::Always,
     false, &MainActions::GoBack},
    {"actFit", "Fit the titles to the sound", "Ctrl+Shift+F", "", When::Film, true,
     &MainActions::FitWanted},
    {"actOtherWindow", "The other window (film or list)", "F6", "", When::Always, true,
     &MainActions::OtherWindow},
    {"actKeys", "This list of keys", "F1", "", When::Always, true, &MainActions::ShowKeys},
};

MainActions::MainActions(MainState& state, DisplayPanel& display, KeyPlacer& keys,
                         TransportButtons& transport, QWidget* window)
    : QObject(window)
    , m_state(state)
    , m_display(display)
    , m_keys(keys)
    , m_transport(transport) {
    for (const Row& row : Rows) {
        auto* action = new QAction(QString::fromLatin1(row.text), this);
        action->setObjectName(QString::fromLatin1(row.name));
        QList<QKeySequence> shortcuts = QKeySequence::listFromString(QString::fromLatin1(row.keys));
        shortcuts += QKeySequence::listFromString(QString::fromLatin1(row.mediaKeys));
        shortcuts.removeAll(QKeySequence());
        action->setShortcuts(shortcuts);
        On(action, &QAction::triggered, this, row.handler);
        window->addAction(action);
        m_actions << action;
        if (row.bothWindows)
            m_both << action;
    }
    Refresh();
}

void MainActions::Refresh() {
    for (qsizetype i = 0; i < m_actions.size(); ++i)
        m_actions[i]->setEnabled(Holds(Rows[i].when));
}

bool MainActions::Holds(When when) const {
    const bool film = m_state.player->ReadyState() != 0;
    switch (when) {
    case When::Always:
        return true;
    case When::Film:
        return film;
    case When::Resting:
        return film && m_state.player->State() != Player::Playing;
    case When::Positioning:
        return m_keys.Positioning();
    }
    return false;
}

QString MainActions::Keys(const char* name) const {
    for (const Row& row : Rows)
        if (QLatin1String(row.name) == QLatin1String(name))
            return QKeySequence::listFromString(QString::fromLatin1(row.keys))
                .constFirst()
                .toString(QKeySequence::NativeText);
    return {};
}

std::vector<MainActions::Line> MainActions::Lines() const {
    std::vector<Line> lines{{m_display.KeyBox().text(), tr("Hold it: place the title")}};
    for (const Row& row : Rows)
        lines.push_back({Keys(row.name), QString::fromLatin1(row.text)});
    for (const ListCommand& command : frmList::Commands())
        AddListCommand(lines, command);
    return lines;
}

void MainActions::AddListCommand(std::vector<Line>& lines, const ListCommand& command) {
    const QKeySequence shortcut(QString::fromLatin1(command.shortcut));
    const QString keys = shortcut.toString(QKeySequence::NativeText);
    const bool told = std::any_of(lines.begin(), lines.end(),
                                  [&](const Line& line) { return line.keys == keys; });
    if (shortcut.isEmpty() || told)
        return;
    QString text = QString::fromLatin1(command.toolTip);
    if (text.isEmpty())
        text = QString::fromLatin1(command.entryCaption)
                   .remove(QLatin1Char('&'))
                   .remove(QStringLiteral("..."));
    const QString where =
        command.everywhere ? tr("%1 (while the list is open)") : tr("In the list: %1");
    lines.push_back({keys, where.arg(text)});
}

void MainActions::Move(double seconds) {
    Player& player = *m_state.player;
    player.CurrentPosition(std::max(0.0, player.CurrentPosition() + seconds));
}

void MainActions::PlayOrPause() {
    Player& player = *m_state.player;
    player.State() == Player::Playing ? player.Pause() : player.Play();
}

void MainActions::Stop() {
    m_state.player->Stop();
}

void MainActions::HalfSecondBack() {
    Move(-ShortStep);
}

void MainActions::HalfSecondForward() {
    Move(ShortStep);
}

void MainActions::FiveSecondsBack() {
    Move(-LongStep);
}

void MainActions::FiveSecondsForward() {
    Move(LongStep);
}

void MainActions::PreviousTitle() {
    Player& player = *m_state.player;
    if (const auto start = StartBefore(m_state.document.Subt, player.CurrentPosition()))
        player.CurrentPosition(*start);
}

void MainActions::NextTitle() {
    Player& player = *m_state.player;
    if (const auto start = StartAfter(m_state.document.Subt, player.CurrentPosition()))
        player.CurrentPosition(*start);
}

void MainActions::Louder() {
    m_state.player->Volume(m_state.player->Volume() + VolumeStep);
}

void MainActions::Quieter() {
    m_state.player->Volume(m_state.player->Volume() - VolumeStep);
}

void MainActions::Mute() {
    m_state.player->Muted(!m_state.player->Muted());
}

void MainActions::Faster() {
    m_state.player->Rate(FasterRate(m_state.player->Rate()));
}

void MainActions::Slower() {
    m_state.player->Rate(SlowerRate(m_state.player->Rate()));
}

void MainActions::StripStart() {
    m_transport.Step(1);
}

void MainActions::StripBack() {
    m_transport.Step(2);
}

void MainActions::StripForward() {
    m_transport.Step(3);
}

void MainActions::StripEnd() {
    m_transport.Step(4);
}

void MainActions::PreviousToPlace() {
    m_keys.PreviousTitle();
}

void MainActions::NextToPlace() {
    m_keys.NextTitle();
}

void MainActions::TakeBack() {
    m_keys.TakeBack();
}

void MainActions::GoBack() {
    m_state.document.GoBack(0);
}

#include "listeditor/listactions.h"

#include "listeditor/icons.h"
#include "platform/errorgate.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>
#include <QWidgetAction>

#include <algorithm>
#include <array>
#include <string_view>

namespace {

struct Command {
    /// Of the toolbar button; empty: it has none.
    const char* key;
    const char* caption;
    const char* toolTip;
    Sign sign;
    /// Of the menu entry; empty: it has none.
    const char* entry;
    const char* entryCaption;
    const char* shortcut;
    Needs needs;
};

// The buttons stand in this order. Some captions show what their command mends.
constexpr std::array<Command, 18> Commands{{
    {"Undo", "Undo", "Undo the last change", Sign::Undo, "mnuEditUndo", "&Undo", "Ctrl+Z",
     Needs::UndoSteps},
    {"Find", "Find", "", Sign::Find, "mnuEditFind", "&Find", "Ctrl+F", Needs::Nothing},
    {"Italic", "/I/t/a/l/i/c", "", Sign::Italic, "", "", "", Needs::Nothing},
    {"Spelling", "SpeIIlng", "", Sign::Spelling, "mnuEditSpell", "&Spelling correction", "",
     Needs::Nothing},
    {"Edit", "Edit", "Edit subtitle text, start time and duration", Sign::Edit, "mnuEditEdit",
     "&Open Title...", "Return", Needs::CurrentTitle},
    {"Insert", "Insert", "Insert a new title before the current one", Sign::Insert, "mnuEditInsert",
     "&Insert", "Ins", Needs::CurrentTitle},
    {"Delete", "Delete", "Delete the selected title(s)", Sign::Delete, "mnuEditDelete", "&Delete",
     "Del", Needs::TwoRows},
    {"Sooner", "Sooner", "Display subtitle sooner", Sign::Sooner, "mnuTimeSooner", "Show &Earlier",
     "Ctrl+Left", Needs::Nothing},
    {"Later", "Later", "Display subtitle later", Sign::Later, "mnuTimeLater", "Show &Later",
     "Ctrl+Right", Needs::Nothing},
    {"Shorter", "Shorter", "Make subtitle duration shorter", Sign::Shorter, "mnuTimeShorter",
     "Show &Shorter", "Ctrl+Shift+Left", Needs::CurrentTitle},
    {"Longer", "Longer", "Make subtitle duration longer", Sign::Longer, "mnuTimeLonger",
     "Show &Longer", "Ctrl+Shift+Right", Needs::CurrentTitle},
    {"Stretch", "Stretch", "Adjust (selected) subtitle times to movie length", Sign::Stretch,
     "mnuTimeStretch", "S&tretch...", "Ctrl+T", Needs::Nothing},
    {"Shift", "Shift", "Move all (selected) subtitles in time by the same amount", Sign::Shift,
     "mnuTimeShift", "S&hift...", "Ctrl+H", Needs::Nothing},
    {"Bye", "Bye", "Close this window", Sign::Bye, "", "", "", Needs::Nothing},
    {"", "", "", Sign::None, "mnuTimeFirst", "Mark as &first for stretch timing", "Ctrl+1",
     Needs::CurrentTitle},
    {"", "", "", Sign::None, "mnuTimeSecond", "Mark as s&econd for stretch timing", "Ctrl+2",
     Needs::CurrentTitle},
    {"", "", "", Sign::None, "mnuViewFont", "&Font...", "", Needs::Nothing},
    {"", "", "", Sign::None, "mnuViewToolbar", "&Toolbar", "", Needs::Nothing},
}};

struct Menu {
    const char* name;
    const char* caption;
    /// Names with "Sepa" are separators.
    std::array<const char*, 10> entries;
};

constexpr std::array<Menu, 3> Menus{{
    {"mnuView", "&View", {"mnuViewFont", "mnuViewToolbar"}},
    {"mnuEdit",
     "&Edit",
     {"mnuEditUndo", "mnuEditSepa1", "mnuEditEdit", "mnuEditSpell", "mnuEditSepa2", "mnuEditFind",
      "mnuTimeSepa3", "mnuEditInsert", "mnuEditDelete"}},
    {"mnuTiming",
     "&Timing",
     {"mnuTimeSooner", "mnuTimeLater", "mnuTimeShorter", "mnuTimeLonger", "mnuTimeSepa1",
      "mnuTimeFirst", "mnuTimeSecond", "mnuTimeStretch", "mnuTimeShift"}},
}};

constexpr int IconSide = 22;

} // namespace

ListActions::ListActions(QMainWindow& window, Handler toolbarKey, Handler menuEntry)
    : m_toolbarKey(std::move(toolbarKey))
    , m_menuEntry(std::move(menuEntry))
    , m_toolbar(window.addToolBar(QString())) {
    AddToolbar(window);
    AddMenus(window);
}

void ListActions::AddToolbar(QMainWindow& window) {
    m_toolbar->setObjectName("TB");
    m_toolbar->setWindowTitle(QMainWindow::tr("Toolbar"));
    m_toolbar->setMovable(false);
    window.setContextMenuPolicy(Qt::NoContextMenu);
    for (const Command& command : Commands) {
        if (*command.key == '\0')
            continue;
        const QString key = QString::fromLatin1(command.key);
        auto* button = new QToolButton(m_toolbar);
        button->setObjectName(key);
        button->setText(QString::fromLatin1(command.caption));
        button->setToolTip(QString::fromLatin1(command.toolTip));
        button->setIcon(DrawnIcon(command.sign));
        button->setIconSize({IconSide, IconSide});
        button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        button->setAutoRaise(true);
        button->setFocusPolicy(Qt::NoFocus);
        QAction* action = m_toolbar->addWidget(button);
        action->setObjectName(key);
        action->setText(button->text());
        const auto run = [this, key] {
            Guarded([&] { m_toolbarKey(key); });
        };
        QObject::connect(button, &QToolButton::clicked, m_toolbar, run);
        QObject::connect(action, &QAction::triggered, m_toolbar, run);
        m_controls.push_back({command.needs, action});
    }
}

QAction* ListActions::NewEntry(const QString& name, QMainWindow& window) {
    auto* entry = new QAction(&window);
    entry->setObjectName(name);
    if (name.contains("Sepa")) {
        entry->setSeparator(true);
        return entry;
    }
    const auto* command = std::find_if(Commands.begin(), Commands.end(), [&](const Command& c) {
        return name == QLatin1String(c.entry);
    });
    entry->setText(QString::fromLatin1(command->entryCaption));
    entry->setShortcut(QKeySequence(QString::fromLatin1(command->shortcut)));
    entry->setCheckable(name == "mnuViewToolbar");
    QObject::connect(entry, &QAction::triggered, &window,
                     [this, name] { Guarded([&] { m_menuEntry(name); }); });
    m_controls.push_back({command->needs, entry});
    return entry;
}

void ListActions::AddMenus(QMainWindow& window) {
    for (const Menu& menu : Menus) {
        QMenu* shown = window.menuBar()->addMenu(QString::fromLatin1(menu.caption));
        shown->setObjectName(QString::fromLatin1(menu.name));
        shown->menuAction()->setObjectName(shown->objectName());
        for (const char* name : menu.entries) {
            if (name == nullptr)
                break;
            QAction* entry = NewEntry(QString::fromLatin1(name), window);
            shown->addAction(entry);
            // Shortcuts hold while the menu bar is closed, too.
            window.addAction(entry);
            if (shown->objectName() != "mnuView")
                m_titleEntries.append(entry);
        }
    }
}

QAction* ListActions::Entry(const QString& name) const {
    const auto control = std::find_if(m_controls.begin(), m_controls.end(), [&](const Control& c) {
        return c.action->objectName() == name;
    });
    return control == m_controls.end() ? nullptr : control->action;
}

void ListActions::SetEnabled(Needs needs, bool enabled) {
    for (const Control& control : m_controls)
        if (control.needs == needs)
            control.action->setEnabled(enabled);
}

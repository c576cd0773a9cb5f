#include "listeditor/listactions.h"

#include "platform/errorgate.h"
#include "platform/icons.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>
#include <QToolButton>

#include <algorithm>
#include <array>
#include <map>

namespace {

struct Menu {
    ListMenu menu;
    /// Without a name it is not in the menu bar.
    const char* name;
    const char* caption;
};

constexpr std::array<Menu, 4> Menus{{{ListMenu::View, "mnuView", "&View"},
                                     {ListMenu::Edit, "mnuEdit", "&Edit"},
                                     {ListMenu::List, "", ""},
                                     {ListMenu::Timing, "mnuTiming", "&Timing"}}};

struct Separator {
    const char* name;
    ListMenu menu;
    int place;
};

constexpr std::array<Separator, 6> Separators{{{"mnuEditSepa1", ListMenu::Edit, 20},
                                               {"mnuEditSepa2", ListMenu::Edit, 50},
                                               {"mnuTimeSepa3", ListMenu::Edit, 70},
                                               {"mnuListSepa1", ListMenu::List, 90},
                                               {"mnuTimeSepa1", ListMenu::Timing, 50},
                                               {"mnuTimeSepa2", ListMenu::Timing, 100}}};

constexpr int LeastIconSide = 24;
constexpr double IconPerLine = 1.2;

} // namespace

ListActions::ListActions(QMainWindow& window, std::span<const ListCommand> commands,
                         const Handler& button, const Handler& entry)
    : m_toolbar(window.addToolBar(QString())) {
    m_toolbar->setObjectName("TB");
    m_toolbar->setWindowTitle(QMainWindow::tr("Toolbar"));
    m_toolbar->setMovable(false);
    window.setContextMenuPolicy(Qt::NoContextMenu);
    for (const ListCommand& command : commands)
        if (*command.caption != '\0')
            AddButton(command, button);
    FitIcons(window.fontMetrics());
    for (const Menu& menu : Menus)
        AddMenu(window, menu.menu, commands, entry);
}

void ListActions::AddButton(const ListCommand& command, const Handler& handler) {
    auto* button = new QToolButton(m_toolbar);
    button->setObjectName(QString::fromLatin1(command.key));
    button->setText(QString::fromLatin1(command.caption));
    button->setToolTip(QString::fromLatin1(command.toolTip));
    button->setIcon(DrawnIcon(command.sign));
    button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::NoFocus);
    QAction* action = m_toolbar->addWidget(button);
    action->setObjectName(button->objectName());
    action->setText(button->text());
    const auto run = [handler, &command] {
        Guarded([&] { handler(command); });
    };
    QObject::connect(button, &QToolButton::clicked, m_toolbar, run);
    QObject::connect(action, &QAction::triggered, m_toolbar, run);
    m_controls.push_back({command.needs, action});
}

QAction* ListActions::NewEntry(const ListCommand& command, QMainWindow& window,
                               const Handler& handler) {
    auto* entry = new QAction(QString::fromLatin1(command.entryCaption), &window);
    entry->setObjectName(QString::fromLatin1(command.entry));
    entry->setShortcut(QKeySequence(QString::fromLatin1(command.shortcut)));
    if (command.everywhere)
        entry->setShortcutContext(Qt::ApplicationShortcut);
    entry->setCheckable(command.checkable);
    QObject::connect(entry, &QAction::triggered, &window,
                     [handler, &command] { Guarded([&] { handler(command); }); });
    m_controls.push_back({command.needs, entry});
    return entry;
}

void ListActions::AddMenu(QMainWindow& window, ListMenu menu, std::span<const ListCommand> commands,
                          const Handler& handler) {
    std::map<int, QAction*> entries;
    for (const ListCommand& command : commands)
        if (command.menu == menu)
            entries[command.place] = NewEntry(command, window, handler);
    for (const Separator& separator : Separators) {
        if (separator.menu != menu)
            continue;
        auto* line = new QAction(&window);
        line->setObjectName(QString::fromLatin1(separator.name));
        line->setSeparator(true);
        entries[separator.place] = line;
    }
    const auto* row =
        std::find_if(Menus.begin(), Menus.end(), [&](const Menu& m) { return m.menu == menu; });
    QMenu* shown = nullptr;
    if (*row->name != '\0') {
        shown = window.menuBar()->addMenu(QString::fromLatin1(row->caption));
        shown->setObjectName(QString::fromLatin1(row->name));
        shown->menuAction()->setObjectName(shown->objectName());
    }
    for (const auto& [place, entry] : entries) {
        if (shown != nullptr)
            shown->addAction(entry);
        // Shortcuts hold while no menu is open, too.
        window.addAction(entry);
        if (menu != ListMenu::View)
            m_contextEntries.append(entry);
    }
}

QAction* ListActions::Entry(const QString& name) const {
    const auto control = std::find_if(m_controls.begin(), m_controls.end(), [&](const Control& c) {
        return c.action->objectName() == name;
    });
    return control == m_controls.end() ? nullptr : control->action;
}

void ListActions::FitIcons(const QFontMetrics& font) {
    const int side = qMax(LeastIconSide, qRound(font.height() * IconPerLine));
    // A button draws its icon in the toolbar's size, and measures it in its own.
    m_toolbar->setIconSize({side, side});
    for (auto* button : m_toolbar->findChildren<QToolButton*>())
        button->setIconSize({side, side});
}

void ListActions::SetEnabled(Needs needs, bool enabled) {
    for (const Control& control : m_controls)
        if (control.needs == needs)
            control.action->setEnabled(enabled);
}

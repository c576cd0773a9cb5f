#pragma once

#include "platform/icons.h"

#include <QFontMetrics>
#include <QList>
#include <QString>

#include <functional>
#include <span>
#include <vector>

class QAction;
class QMainWindow;
class QToolBar;
class frmList;

/// What a command of the list editor needs to make sense.
enum class Needs { Nothing, CurrentTitle, TwoRows, UndoSteps, EarlierVersions };

/// Where a command's entry stands. Those of `Edit`, `List` and `Timing` are also in the
/// menu beside the pointer, in this order; those of `List` are nowhere else.
enum class ListMenu { None, View, Edit, List, Timing };

/// A command of the list editor: all that buttons, menus, shortcuts and `DoCommand`
/// know of it. What stays empty, the command does not have.
struct ListCommand {
    /// For `DoCommand`; also the name of the button.
    const char* key = "";
    /// Of the toolbar's button. The buttons stand in the order of the rows.
    const char* caption = "";
    const char* toolTip = "";
    Sign sign = Sign::None;
    /// The menu entry's name, its caption, and its place among the menu's entries.
    const char* entry = "";
    const char* entryCaption = "";
    ListMenu menu = ListMenu::None;
    int place = 0;
    bool checkable = false;
    const char* shortcut = "";
    /// The shortcut works in the main window, too.
    bool everywhere = false;
    Needs needs = Needs::Nothing;
    void (*run)(frmList& list) = nullptr;
    /// By its key, the command always counts as a change of the titles; by its menu
    /// entry, only what it runs can say so.
    bool keyIsChange = false;
};

/// The toolbar and the menus of the list editor, made from the rows of its commands.
class ListActions {
  public:
    using Handler = std::function<void(const ListCommand&)>;

    /// The rows must live on.
    ListActions(QMainWindow& window, std::span<const ListCommand> commands, const Handler& button,
                const Handler& entry);

    QToolBar* TB() const { return m_toolbar; }
    /// The menu entry of that name; nullptr when there is none.
    QAction* Entry(const QString& name) const;
    /// Enables the commands with this need, everywhere at once.
    void SetEnabled(Needs needs, bool enabled);
    /// The buttons' icons grow with the font.
    void FitIcons(const QFontMetrics& font);
    /// The entries for a menu beside the pointer.
    QList<QAction*> ContextEntries() const { return m_contextEntries; }

  private:
    struct Control {
        Needs needs;
        QAction* action;
    };

    void AddButton(const ListCommand& command, const Handler& handler);
    void AddMenu(QMainWindow& window, ListMenu menu, std::span<const ListCommand> commands,
                 const Handler& handler);
    QAction* NewEntry(const ListCommand& command, QMainWindow& window, const Handler& handler);

    QToolBar* m_toolbar;
    std::vector<Control> m_controls;
    QList<QAction*> m_contextEntries;
};

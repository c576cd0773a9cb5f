#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <vector>

class QAction;
class QMainWindow;
class QToolBar;

/// What a command of the list editor needs to make sense.
enum class Needs { Nothing, CurrentTitle, TwoRows, UndoSteps };

/// Builds toolbar and menus of the list editor from one table of its commands,
/// and enables a command everywhere at once.
class ListActions {
  public:
    /// Gets the key of a toolbar button, or the name of a menu entry.
    using Handler = std::function<void(const QString&)>;

    ListActions(QMainWindow& window, Handler toolbarKey, Handler menuEntry);

    QToolBar* TB() const { return m_toolbar; }
    QAction* Entry(const QString& name) const;
    void SetEnabled(Needs needs, bool enabled);
    /// The entries that concern titles, for a menu beside the pointer.
    QList<QAction*> TitleEntries() const { return m_titleEntries; }

  private:
    struct Control {
        Needs needs;
        QAction* action;
    };

    void AddToolbar(QMainWindow& window);
    void AddMenus(QMainWindow& window);
    QAction* NewEntry(const QString& name, QMainWindow& window);

    Handler m_toolbarKey;
    Handler m_menuEntry;
    QToolBar* m_toolbar;
    std::vector<Control> m_controls;
    QList<QAction*> m_titleEntries;
};

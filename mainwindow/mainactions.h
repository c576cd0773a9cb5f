#pragma once

#include "mainwindow/mainstate.h"

#include <QList>
#include <QObject>
#include <QString>

#include <vector>

class DisplayPanel;
class KeyPlacer;
struct ListCommand;
class QAction;
class TransportButtons;

/// What the main window does by key: one table of names, texts, keys and conditions.
class MainActions : public QObject {
    Q_OBJECT

  public:
    MainActions(MainState& state, DisplayPanel& display, KeyPlacer& keys,
                TransportButtons& transport, QWidget* window);

    /// Enables each action by its condition; after whatever the conditions ask for.
    void Refresh();
    /// Those that the list editor's window takes too.
    const QList<QAction*>& ForBothWindows() const { return m_both; }
    /// "Ctrl+P"; of an unknown name, nothing.
    QString Keys(const char* name) const;

    struct Line {
        QString keys;
        QString text;
    };
    /// The whole table, for people.
    std::vector<Line> Lines() const;

  signals:
    void OtherWindow();
    void ShowKeys();
    void LaneWanted();
    void FitWanted();

  private:
    enum class When : std::uint8_t;
    struct Row;
    static const Row Rows[];

    bool Holds(When when) const;

    void PlayOrPause();
    void Stop();
    void HalfSecondBack();
    void HalfSecondForward();
    void FiveSecondsBack();
    void FiveSecondsForward();
    void PreviousTitle();
    void NextTitle();
    void Louder();
    void Quieter();
    void Mute();
    void Faster();
    void Slower();
    void StripStart();
    void StripBack();
    void StripForward();
    void StripEnd();
    void PreviousToPlace();
    void NextToPlace();
    void TakeBack();
    void GoBack();

    static void AddListCommand(std::vector<Line>& lines, const ListCommand& command);
    void Move(double seconds);

    MainState& m_state;
    DisplayPanel& m_display;
    KeyPlacer& m_keys;
    TransportButtons& m_transport;
    QList<QAction*> m_actions;
    QList<QAction*> m_both;
};

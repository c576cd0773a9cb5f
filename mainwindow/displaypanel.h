#pragma once

#include "mainwindow/displaywalker.h"
#include "mainwindow/mainstate.h"
#include "mainwindow/markbuttons.h"
#include "mainwindow/selectiongroup.h"
#include "mainwindow/timegroup.h"

#include <QElapsedTimer>
#include <QWidget>

#include <optional>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QTimer;

/// The panel at the bottom right (`PB2`): the titles in step with the film, and around
/// them the time, the playback selection, the marks and the positioning key's name.
class DisplayPanel : public QWidget {
    Q_OBJECT

  public:
    DisplayPanel(MainState& state, QWidget* parent);

    DisplayMode Mode() const { return m_mode; }
    void Mode(DisplayMode mode);
    /// The title that is on or comes next; at least 1.
    std::int32_t CurrentTitle() const { return m_walker.CurrentTitle(); }
    /// The current title has its times: on to the next.
    void Advance();
    /// The titles are others: finds the one at the film's position anew.
    void Refresh();
    /// Another title is placed next.
    void Choose(std::int32_t title);
    /// Names the positioning key.
    QLineEdit& KeyBox() { return *txtKey; }

    /// Shows these titles in place of the document's, as many, until `ShowOwn`.
    void ShowInstead(SUBTITLES titles);
    void ShowOwn();

    void MediaEnabled(bool enabled);
    MarkButtons& Marks() { return m_marks; }
    /// The size that its texts need.
    QSize NeededSize();

  signals:
    /// The player stops while this title is current.
    void Stopping(std::int32_t title);
    /// The text to show on the picture; empty: none.
    void TitleOnPicture(const QString& text);

  private:
    void LayOut();
    const SUBTITLES& Shown() const { return m_instead ? *m_instead : m_state.document.Subt; }
    void ShowOthers();
    /// Titles that stand in for the document's are shown in whichever mode.
    DisplayMode ShownMode() const { return m_instead ? DisplayMode::View : m_mode; }

    void MP_PlayStateChange(int oldState, int newState);
    void MP_ReadyStateChange(int readyState);
    void MP_PositionChange(double oldPosition, double newPosition);
    void Timer1_Timer();
    void LocateCurrentTitle(double position);
    /// false: nothing was left to do at the position.
    bool WalkOn(double position);
    void ShowTexts(const DisplayTexts& texts);
    /// View mode: a text that stands although its title is not on goes.
    void TakeDownStale(double position);
    void ShowOnPicture(bool on);

    MainState& m_state;
    DisplayMode m_mode = DisplayMode::View;
    std::optional<SUBTITLES> m_instead;
    DisplayWalker m_walker;
    QElapsedTimer m_sinceTick;
    QTimer* Timer1;

    QPlainTextEdit* txtSubtitle;
    QLabel* Label5;
    QPlainTextEdit* txtNextSubtitle;
    TimeGroup m_time;
    QLabel* Label4;
    QLineEdit* txtKey;
    MarkButtons m_marks;
    SelectionGroup m_selection;
};

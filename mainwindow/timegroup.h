#pragma once

#include "dialogs/typedbox.h"
#include "mainwindow/timespinner.h"
#include "player/player.h"

#include <QObject>

#include <optional>

class QHBoxLayout;
class QLabel;
class QLineEdit;
class QTimer;
class UpDown;

/// The time box and the spinner beside it: they show the position and move it.
class TimeGroup : public QObject {
    Q_OBJECT

  public:
    TimeGroup(Player& player, QWidget* panel);

    QLabel* Label1;
    QLineEdit* txtTime;
    UpDown* UDTime;

    QHBoxLayout* LayOut();
    void Enabled(bool enabled);
    /// A time that the user is typing is left alone.
    void ShowTime(double position);

  private:
    void txtTime_Change();
    void UDTime_MouseDown(int y);
    void UDTime_MouseUp();
    void UDTime_DownClick();
    void UDTime_UpClick();
    void tmrUDTime_Timer();
    TimeSpinner::Place SpinnerPlace() const;
    void JumpTo(std::optional<double> position);

    Player& m_player;
    TypedBox m_typed;
    QTimer* tmrUDTime;
    TimeSpinner m_spinner;
    bool m_timeBoxUpdating = false;
};

#pragma once

#include "mainwindow/mainstate.h"

#include <QObject>

class QPushButton;
class QVBoxLayout;

/// Mark and stretch: two buttons that mark the position as the new start of the first
/// and the second marked title, and one that stretches the titles to the marks.
class MarkButtons : public QObject {
    Q_OBJECT

  public:
    MarkButtons(MainState& state, QWidget* panel);

    QVBoxLayout* LayOut();
    void Enabled(bool enabled);

  private:
    void cmdBlue_Click();
    void cmdGreen_Click();
    void cmdAdjust_Click();

    MainState& m_state;
    QPushButton* cmdBlue;
    QPushButton* cmdGreen;
    QPushButton* cmdAdjust;
};

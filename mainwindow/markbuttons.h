#pragma once

#include "mainwindow/mainstate.h"

#include <QObject>
#include <QStringList>

class QPushButton;
class QVBoxLayout;

/// Mark and stretch: two buttons that mark the position as the new start of the first
/// and the second marked title, and one that stretches the titles to the marks. A mark
/// that somebody has set shows its time.
class MarkButtons : public QObject {
    Q_OBJECT

  public:
    MarkButtons(MainState& state, QWidget* panel);

    QVBoxLayout* LayOut();
    /// They are as large as the panel's texts.
    void FitFont();
    void Enabled(bool enabled);
    /// The tool tips say what the buttons do, by which keys too, and why they are off.
    void ShowTips();
    /// Of the three buttons, in their order.
    void NameKeys(const QStringList& keys) { m_keys = keys; }

  private:
    void cmdBlue_Click();
    void cmdGreen_Click();
    void cmdAdjust_Click();
    QString WhyOff() const;
    void Document_Change(const Change& change);

    MainState& m_state;
    QStringList m_keys;
    Connection m_connection;
    QPushButton* cmdBlue;
    QPushButton* cmdGreen;
    QPushButton* cmdAdjust;
};

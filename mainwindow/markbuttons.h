#pragma once

#include "mainwindow/mainstate.h"

#include <QObject>
#include <QStringList>

class QPushButton;
class QVBoxLayout;

/// Mark and stretch: two buttons that mark the position as the new start of the first
/// and the second marked title, and one that stretches the titles to the marks.
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
    /// The marks are others than those that were set here.
    void ForgetTimes();
    /// Of the three buttons, in their order.
    void NameKeys(const QStringList& keys) { m_keys = keys; }

  private:
    void cmdBlue_Click();
    void cmdGreen_Click();
    void cmdAdjust_Click();
    QString WhyOff() const;
    void Document_Change(const Change& change);
    static void ShowTime(QPushButton* button, const QString& name, double time);

    MainState& m_state;
    QStringList m_keys;
    Connection m_connection;
    double m_blue = 0;
    double m_green = 0;
    QPushButton* cmdBlue;
    QPushButton* cmdGreen;
    QPushButton* cmdAdjust;
};

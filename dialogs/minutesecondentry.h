#pragma once

#include "dialogs/typedbox.h"
#include "editing/minutesecond.h"
#include "editing/spinrepeat.h"

#include <QObject>

#include <functional>
#include <vector>

class QLineEdit;
class QTimer;
class QWidget;
class UpDown;

/// The two boxes for an amount of time with their spinners, and the repeat that
/// all spinners of a dialog share.
class MinuteSecondEntry : public QObject {
    Q_OBJECT

  public:
    /// The boxes and spinners become children of the panel.
    MinuteSecondEntry(QWidget* panel, SecondsRule rule);

    QLineEdit* txtMin;
    QLineEdit* txtSec;
    UpDown* UpDown1;
    UpDown* UpDown2;
    QTimer* Timer1;

    /// A further spinner, which steps a box with a time text.
    void AddTimeSpinner(UpDown* spinner, const TypedBox& time, QLineEdit* box);

    /// Minutes and seconds as one number of seconds; or nothing, after a message about the
    /// box that holds none.
    std::optional<double> Ask(QWidget* window) const;
    void SetBoxes(const MinutesSeconds& texts);

  private:
    using StepHandler = std::function<void(Spin)>;

    void txtMin_Change();
    void txtSec_Change();
    void Timer1_Timer();
    void Add(UpDown* spinner, StepHandler step);
    /// Assistive tools read the box as the spinner's value.
    static void Speak(UpDown* spinner, const TypedBox& typed, QLineEdit* box, double most,
                      std::string (*text)(double));
    void Click(std::size_t spinner, Spin step);
    void StepBox(QLineEdit& box, std::optional<std::string> text);

    TypedBox m_minutes;
    TypedBox m_seconds;
    SecondsRule m_rule;
    SpinRepeat m_repeat;
    /// In the order of the spinners' codes, which begin with 1.
    std::vector<StepHandler> m_steps;
};

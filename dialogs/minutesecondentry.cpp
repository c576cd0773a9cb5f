#include "dialogs/minutesecondentry.h"

#include "model/numbers.h"
#include "model/times.h"
#include "platform/errorgate.h"
#include "platform/updown.h"

#include <QLineEdit>
#include <QTimer>

namespace {

QLineEdit* NewBox(const QString& name, const QString& text, const QString& spokenName,
                  const QString& widest, QWidget* panel) {
    auto* box = new QLineEdit(text, panel);
    box->setObjectName(name);
    box->setAccessibleName(spokenName);
    box->setAlignment(Qt::AlignRight);
    box->setFixedWidth(box->fontMetrics().horizontalAdvance(widest) + 24);
    return box;
}

UpDown* NewSpinner(const QString& name, QWidget* panel) {
    auto* spinner = new UpDown(panel);
    spinner->setObjectName(name);
    return spinner;
}

} // namespace

MinuteSecondEntry::MinuteSecondEntry(QWidget* panel, SecondsRule rule)
    : QObject(panel)
    , txtMin(NewBox("txtMin", "0", tr("Minutes"), "0000", panel))
    , txtSec(NewBox("txtSec", QString::fromStdString(ThousandthsText(0)), tr("Seconds"), "00.000",
                    panel))
    , UpDown1(NewSpinner("UpDown1", panel))
    , UpDown2(NewSpinner("UpDown2", panel))
    , Timer1(new QTimer(this))
    , m_minutes(txtMin, TypedMinutes)
    , m_seconds(txtSec, TypedSeconds)
    , m_rule(rule) {
    Timer1->setObjectName("Timer1");
    Timer1->setInterval(SpinRepeat::FirstInterval);
    connect(txtMin, &QLineEdit::textChanged, this,
            [this] { Guarded([this] { txtMin_Change(); }); });
    connect(txtSec, &QLineEdit::textChanged, this,
            [this] { Guarded([this] { txtSec_Change(); }); });
    connect(Timer1, &QTimer::timeout, this, [this] { Guarded([this] { Timer1_Timer(); }); });
    constexpr double MostMinutes = 3600;
    constexpr double MostSeconds = 59.999;
    Speak(UpDown1, m_minutes, txtMin, MostMinutes, [](double value) { return NumberText(value); });
    Speak(UpDown2, m_seconds, txtSec, MostSeconds, ThousandthsText);
    Add(UpDown1,
        [this](Spin step) { StepBox(*txtMin, StepMinutes(m_minutes.LastGoodText(), step)); });
    Add(UpDown2,
        [this](Spin step) { StepBox(*txtSec, StepSeconds(m_seconds.LastGoodText(), step)); });
}

void MinuteSecondEntry::AddTimeSpinner(UpDown* spinner, const TypedBox& time, QLineEdit* box) {
    constexpr double MostTime = 100 * 3600 - 0.001;
    Speak(spinner, time, box, MostTime, FormatTime);
    Add(spinner,
        [this, &time, box](Spin step) { StepBox(*box, StepTime(time.LastGoodText(), step)); });
}

void MinuteSecondEntry::Speak(UpDown* spinner, const TypedBox& typed, QLineEdit* box, double most,
                              std::string (*text)(double)) {
    spinner->setAccessibleName(box->accessibleName());
    spinner->Speaks = {
        .value = [&typed] { return typed.Value().value_or(0); },
        .set = [box, text](double value) { box->setText(QString::fromStdString(text(value))); },
        .text = [box] { return box->text(); },
        .most = most};
}

void MinuteSecondEntry::Add(UpDown* spinner, StepHandler step) {
    const std::size_t number = m_steps.size();
    m_steps.push_back(std::move(step));
    connect(spinner, &UpDown::DownClick, this,
            [this, number] { Guarded([&] { Click(number, Spin::Down); }); });
    connect(spinner, &UpDown::UpClick, this,
            [this, number] { Guarded([&] { Click(number, Spin::Up); }); });
    connect(spinner, &UpDown::MouseDown, this, [this, number, spinner](int y) {
        // The middle row belongs to the arrow that is drawn there.
        const int end = spinner->IsUpper(y) ? 0 : spinner->height();
        m_repeat.MouseDown(static_cast<int>(number) + 1, end, spinner->height());
        Timer1->start(m_repeat.Interval());
    });
    connect(spinner, &UpDown::MouseUp, this, [this] {
        Timer1->stop();
        m_repeat.MouseUp();
        Timer1->setInterval(m_repeat.Interval());
    });
}

std::optional<double> MinuteSecondEntry::Ask(QWidget* window) const {
    if (!m_minutes.Ask(window) || !m_seconds.Ask(window))
        return std::nullopt;
    return AmountOf(txtMin->text().toStdString(), txtSec->text().toStdString());
}

void MinuteSecondEntry::SetBoxes(const MinutesSeconds& texts) {
    txtMin->setText(QString::fromStdString(texts.minutes));
    txtSec->setText(QString::fromStdString(texts.seconds));
}

void MinuteSecondEntry::txtMin_Change() {
    StepBox(*txtMin, MinutesInRange(txtMin->text().toStdString()));
}

void MinuteSecondEntry::txtSec_Change() {
    const auto texts =
        SecondsInRange(m_minutes.LastGoodText(), txtSec->text().toStdString(), m_rule);
    if (!texts)
        return;
    // Minutes that are no number stay to be seen.
    if (texts->minutes != m_minutes.LastGoodText())
        txtMin->setText(QString::fromStdString(texts->minutes));
    txtSec->setText(QString::fromStdString(texts->seconds));
}

void MinuteSecondEntry::Timer1_Timer() {
    if (const auto held = m_repeat.TimerStarts())
        m_steps[static_cast<std::size_t>(held->spinner - 1)](held->step);
    m_repeat.TimerDone();
    if (Timer1->interval() != m_repeat.Interval())
        Timer1->setInterval(m_repeat.Interval());
}

void MinuteSecondEntry::Click(std::size_t spinner, Spin step) {
    if (m_repeat.TakeClick())
        m_steps[spinner](step);
}

void MinuteSecondEntry::StepBox(QLineEdit& box, std::optional<std::string> text) {
    if (text)
        box.setText(QString::fromStdString(*text));
}

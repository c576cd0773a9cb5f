#include "mainwindow/timegroup.h"

#include "editing/typed.h"
#include "mainwindow/handlers.h"
#include "mainwindow/panelcontrols.h"
#include "model/times.h"
#include "platform/updown.h"

#include <QHBoxLayout>
#include <QScopedValueRollback>
#include <QTimer>

namespace {

/// An empty box waits for a time; there is nothing wrong with it.
std::optional<double> TimeOrNone(std::string_view text) {
    return text.empty() ? 0 : TypedTime(text);
}

const TypedText FilmTime{"a time", "A time, such as 00:01:02,300, 1:02.3 or 62.3", TimeOrNone};

} // namespace

TimeGroup::TimeGroup(Player& player, QWidget* panel)
    : QObject(panel)
    , Label1(MakeLabel(panel, "Label1", QStringLiteral("Time:")))
    , txtTime(Named(new QLineEdit(panel), "txtTime", tr("Time"),
                    QStringLiteral("Shows current playback position and allows jumping to an "
                                   "exact point in the media")))
    , UDTime(Named(new UpDown(panel), "UDTime", tr("Move in the media")))
    , m_player(player)
    , m_typed(txtTime, FilmTime)
    , tmrUDTime(MakeTimer(this, "tmrUDTime", TimeSpinner::NextInterval)) {
    Label1->setBuddy(txtTime);
    constexpr double ClickSeconds = 20;
    UDTime->Speaks = {
        .value = [this] { return m_player.CurrentPosition(); },
        .set = [this](double position) { m_player.CurrentPosition(position); },
        .text = [this] { return QString::fromStdString(FormatTime(m_player.CurrentPosition())); },
        .step = ClickSeconds};
    Enabled(false);
    On(txtTime, &QLineEdit::textChanged, this, &TimeGroup::txtTime_Change);
    On(UDTime, &UpDown::MouseDown, this, &TimeGroup::UDTime_MouseDown);
    On(UDTime, &UpDown::MouseUp, this, &TimeGroup::UDTime_MouseUp);
    On(UDTime, &UpDown::DownClick, this, &TimeGroup::UDTime_DownClick);
    On(UDTime, &UpDown::UpClick, this, &TimeGroup::UDTime_UpClick);
    On(tmrUDTime, &QTimer::timeout, this, &TimeGroup::tmrUDTime_Timer);
}

QHBoxLayout* TimeGroup::LayOut() {
    auto* row = new QHBoxLayout;
    row->setSpacing(0);
    row->addWidget(txtTime);
    row->addWidget(UDTime);
    return row;
}

void TimeGroup::Enabled(bool enabled) {
    txtTime->setEnabled(enabled);
    UDTime->setEnabled(enabled);
    UDTime->Speaks.most = m_player.Length();
}

void TimeGroup::ShowTime(double position) {
    const QScopedValueRollback updating(m_timeBoxUpdating, true);
    if (txtTime->window()->focusWidget() != txtTime)
        txtTime->setText(QString::fromStdString(FormatTime(position)));
}

void TimeGroup::txtTime_Change() {
    const Player::PlayState state = m_player.State();
    // The film is there already: jumping would only round its position.
    const std::string text = txtTime->text().toStdString();
    if (m_timeBoxUpdating && text == FormatTime(m_player.CurrentPosition()))
        return;
    const std::optional<double> time = m_typed.Value();
    if (time && !text.empty() &&
        ((state == Player::Paused && !m_timeBoxUpdating) || state == Player::Stopped))
        m_player.CurrentPosition(*time);
}

TimeSpinner::Place TimeGroup::SpinnerPlace() const {
    return {m_player.CurrentPosition(), m_player.SelectionStart(), m_player.SelectionEnd()};
}

void TimeGroup::JumpTo(std::optional<double> position) {
    if (position)
        m_player.CurrentPosition(*position);
}

void TimeGroup::UDTime_MouseDown(int y) {
    // The middle row belongs to the arrow that is drawn there.
    m_spinner.MouseDown(UDTime->IsUpper(y) ? 0 : UDTime->height(), UDTime->height());
    tmrUDTime->start(TimeSpinner::FirstInterval);
}

void TimeGroup::UDTime_MouseUp() {
    tmrUDTime->stop();
}

void TimeGroup::UDTime_DownClick() {
    JumpTo(m_spinner.DownClick(SpinnerPlace(), m_player.State() == Player::Playing));
}

void TimeGroup::UDTime_UpClick() {
    JumpTo(m_spinner.UpClick(SpinnerPlace()));
}

void TimeGroup::tmrUDTime_Timer() {
    tmrUDTime->setInterval(TimeSpinner::NextInterval);
    JumpTo(m_spinner.Tick(SpinnerPlace()));
}

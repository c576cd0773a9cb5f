#include "mainwindow/frmQuelmar.h"

#include "base/shorttext.h"
#include "listeditor/frmList.h"
#include "mainwindow/transportstrip.h"
#include "model/times.h"
#include "platform/updown.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QTimer>

DisplayMode frmQuelmar::Mode() const {
    return optPosition->isChecked() ? DisplayMode::Position : DisplayMode::View;
}

void frmQuelmar::LocateCurrentTitle(double position) {
    ShowTexts(m_walker.LocateCurrentTitle(position, Mode()));
}

void frmQuelmar::ShowTexts(const DisplayTexts& texts) {
    if (texts.subtitle)
        txtSubtitle->setPlainText(QString::fromStdString(ShortText(*texts.subtitle)));
    if (texts.next)
        txtNextSubtitle->setPlainText(QString::fromStdString(ShortText(*texts.next)));
}

/// A time that the user is typing is left alone.
void frmQuelmar::ShowTime(double position) {
    const QScopedValueRollback updating(m_timeBoxUpdating, true);
    if (focusWidget() != txtTime)
        txtTime->setText(QString::fromStdString(FormatTime(position)));
}

void frmQuelmar::MP_PlayStateChange(int newState) {
    m_mediaActive = newState != Player::Stopped;
    picButtons->setEnabled(newState != Player::Playing && m_player->ReadyState() != 0);
    LocateCurrentTitle(m_player->CurrentPosition());
    if (newState == Player::Playing) {
        m_sinceTick.start();
        Timer1->start();
    } else {
        Timer1->stop();
    }
    if (m_player->SelectionStart() > 0)
        ShowSelection();
    if (newState == Player::Stopped) {
        txtNextSubtitle->clear();
        txtSubtitle->clear();
    }
}

void frmQuelmar::MP_PositionChange(double newPosition) {
    if (m_walker.TakeDown())
        txtSubtitle->clear();
    ShowTime(newPosition);
    if (m_mediaActive)
        LocateCurrentTitle(newPosition);
}

void frmQuelmar::Timer1_Timer() {
    const std::int32_t ticks = TicksDue(m_sinceTick.restart(), Timer1->interval());
    // The player may have stopped already, with the report still on its way.
    if (m_player->State() != Player::Playing)
        return;
    const double position = m_player->CurrentPosition();
    ShowTime(position);
    if (Mode() != DisplayMode::View)
        return;
    for (std::int32_t i = 0; i < ticks && WalkOn(position); ++i) {
    }
}

bool frmQuelmar::WalkOn(double position) {
    switch (m_walker.Tick(position)) {
    case DisplayWalker::Step::Appeared:
        txtSubtitle->setPlainText(
            QString::fromStdString(ShortText(Subt.Text(m_walker.CurrentTitle()))));
        return true;
    case DisplayWalker::Step::Ended:
        txtSubtitle->clear();
        // Past the last title there is nothing to follow.
        if (frmList* list = OpenList();
            list != nullptr && m_walker.CurrentTitle() <= Subt.Count() + 1)
            list->FollowTitle(m_walker.CurrentTitle());
        return true;
    case DisplayWalker::Step::None:
        return false;
    }
    return false;
}

void frmQuelmar::txtTime_Change() {
    const Player::PlayState state = m_player->State();
    if ((state == Player::Paused && !m_timeBoxUpdating) || state == Player::Stopped)
        m_player->CurrentPosition(ParseTime(txtTime->text().toStdString()));
}

TimeSpinner::Place frmQuelmar::SpinnerPlace() const {
    return {m_player->CurrentPosition(), m_player->SelectionStart(), m_player->SelectionEnd()};
}

void frmQuelmar::JumpTo(std::optional<double> position) {
    if (position)
        m_player->CurrentPosition(*position);
}

void frmQuelmar::UDTime_MouseDown(int y) {
    m_spinner.MouseDown(y, UDTime->height());
    tmrUDTime->start(TimeSpinner::FirstInterval);
}

void frmQuelmar::UDTime_MouseUp() {
    tmrUDTime->stop();
}

void frmQuelmar::UDTime_DownClick() {
    JumpTo(m_spinner.DownClick(SpinnerPlace(), m_player->State() == Player::Playing));
}

void frmQuelmar::UDTime_UpClick() {
    JumpTo(m_spinner.UpClick(SpinnerPlace()));
}

void frmQuelmar::tmrUDTime_Timer() {
    tmrUDTime->setInterval(TimeSpinner::NextInterval);
    JumpTo(m_spinner.Tick(SpinnerPlace()));
}

#include "mainwindow/frmQuelmar.h"

#include "mainwindow/transportstrip.h"
#include "model/times.h"
#include "platform/twips.h"

#include <QCursor>
#include <QLineEdit>
#include <QTimer>

void frmQuelmar::picButtons_MouseMove(bool mouseHeld, double x, double y) {
    picButtons->Picture(m_strip.MouseMove(picButtons->isEnabled(), mouseHeld, x, y));
}

void frmQuelmar::picButtons_MouseDown() {
    if (const auto picture = m_strip.MouseDown(picButtons->isEnabled())) {
        picButtons->Picture(*picture);
        tmrPosButtons->start(FirstRepeatInterval);
    }
}

void frmQuelmar::picButtons_MouseUp() {
    tmrPosButtons->stop();
    JumpTo(m_strip.Target(m_player->CurrentPosition(), m_player->SelectionStart(),
                          m_player->SelectionEnd()));
}

void frmQuelmar::picButtons_EnabledChange() {
    if (!picButtons->isEnabled())
        tmrPosButtons->stop();
    const QPoint mouse = picButtons->mapFromGlobal(QCursor::pos());
    const bool over = picButtons->isVisible() && picButtons->rect().contains(mouse);
    picButtons_MouseMove(false, over ? ToTwips(mouse.x()) : -1, over ? ToTwips(mouse.y()) : -1);
}

void frmQuelmar::tmrPosButtons_Timer() {
    picButtons_MouseUp();
    tmrPosButtons->start(NextRepeatInterval);
}

void frmQuelmar::cmdSelStart_Click() {
    m_player->SelectionStart(m_player->CurrentPosition());
    ShowSelection();
}

void frmQuelmar::cmdSelEnd_Click() {
    m_player->SelectionEnd(m_player->CurrentPosition());
    ShowSelection();
}

void frmQuelmar::ShowSelection() {
    txtSelStart->setText(QString::fromStdString(FormatTime(m_player->SelectionStart())));
    txtSelEnd->setText(QString::fromStdString(FormatTime(m_player->SelectionEnd())));
}

void frmQuelmar::cmdBlue_Click() {
    m_document.BlueMark(m_player->CurrentPosition());
}

void frmQuelmar::cmdGreen_Click() {
    m_document.GreenMark(m_player->CurrentPosition());
}

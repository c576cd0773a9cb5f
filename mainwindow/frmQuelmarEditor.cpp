#include "mainwindow/frmQuelmar.h"

#include "listeditor/frmList.h"
#include "platform/messageboxes.h"
#include "player/mediaplayercontrol.h"

#include <QPushButton>
#include <QWindow>

void frmQuelmar::cmdEdit_Click() {
    if (frmList* list = OpenList()) {
        list->raise();
        list->activateWindow();
        return;
    }
    m_list = new frmList(*this, this);
    // A window of its own, which need not stay above this one and its film.
    m_list->winId();
    m_list->windowHandle()->setTransientParent(nullptr);
    m_list->show();
}

frmList* frmQuelmar::OpenList() const {
    return m_document.ListWindowOpen ? m_list.data() : nullptr;
}

void frmQuelmar::cmdAdjust_Click() {
    if (!(m_document.BlueMark() < m_document.GreenMark()))
        return ShowMessage(this, QStringLiteral("Title times have been set to an illegal order."));
    if (frmList* list = OpenList())
        list->StretchToMarks();
}

void frmQuelmar::Subt_UndoChangedListLength() {
    if (frmList* list = OpenList())
        list->LoadList();
}

void frmQuelmar::Subt_UndoPossible(bool possible) {
    if (frmList* list = OpenList())
        list->UndoPossible(possible);
}

void frmQuelmar::MediaPosition(double seconds) {
    if (m_player->ReadyState() != 0)
        m_player->CurrentPosition(seconds);
}

std::optional<double> frmQuelmar::FilmPosition() const {
    return m_player->ReadyState() != 0 ? std::optional(m_player->CurrentPosition()) : std::nullopt;
}

QRect frmQuelmar::FilmPlace() const {
    return {MP->mapToGlobal(QPoint()), MP->size()};
}

void frmQuelmar::EditButtonsEnabled(bool enabled) {
    for (QPushButton* button : {cmdEdit, cmdAdjust, cmdGreen, cmdBlue})
        button->setEnabled(enabled);
}

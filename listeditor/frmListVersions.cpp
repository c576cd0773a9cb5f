#include "dialogs/frmVersions.h"
#include "listeditor/frmList.h"
#include "listeditor/rowmodel.h"
#include "listeditor/titleview.h"
#include "model/versions.h"

#include <QAction>
#include <QItemSelectionModel>
#include <QScrollBar>

void frmList::UpdateVersions() {
    const Versions& earlier = document().Earlier();
    m_actions.SetEnabled(Needs::EarlierVersions, earlier.Count() > 0);
    m_actions.Entry("mnuEditBack")->setText(GoBackCaption(earlier));
}

void frmList::GoBack() {
    document().GoBack(0);
    LoadList();
}

void frmList::OpenVersions() {
    (new frmVersions(*this, this))->exec();
}

void frmList::ShowInstead(const SUBTITLES& titles) {
    if (!m_before)
        m_before = {SelectedRows(), LV->currentIndex().row() + 1, LV->verticalScrollBar()->value()};
    const int scrolled = LV->verticalScrollBar()->value();
    m_rows->ShowInstead(titles);
    LV->verticalScrollBar()->setValue(scrolled);
}

void frmList::ShowOwn() {
    if (!m_before)
        return;
    m_rows->ShowOwn();
    for (const std::int32_t row : m_before->selected)
        LV->selectionModel()->select(m_rows->index(row - 1, RowModel::Text),
                                     QItemSelectionModel::Select | QItemSelectionModel::Rows);
    LV->selectionModel()->setCurrentIndex(m_rows->index(m_before->current - 1, RowModel::Text),
                                          QItemSelectionModel::NoUpdate);
    LV->verticalScrollBar()->setValue(m_before->scrolled);
    m_before.reset();
}

QString GoBackCaption(const Versions& versions) {
    if (versions.Count() == 0)
        return frmList::tr("&Go back");
    return frmList::tr("&Go back to before “%1”").arg(QString::fromStdString(versions.At(0).step));
}

#include "mainwindow/frmQuelmar.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

#include <utility>

RecoveryNotes frmQuelmar::Notes() const {
    RecoveryNotes notes;
    notes.mediaFile = txtAVI->text().toStdString();
    notes.subtitleFile = txtSRT->text().toStdString();
    notes.frameRate = m_session.FrameRate;
    notes.style = m_fileStyle;
    return notes;
}

void frmQuelmar::RestoreDocument(RecoveredDocument document) {
    txtAVI->setText(QString::fromStdString(document.notes.mediaFile));
    {
        // The titles do not come from the file this time.
        const QSignalBlocker blocker(txtSRT);
        txtSRT->setText(QString::fromStdString(document.notes.subtitleFile));
    }
    document.titles.UndoChangedListLength = std::move(Subt.UndoChangedListLength);
    document.titles.UndoPossible = std::move(Subt.UndoPossible);
    Subt = std::move(document.titles);
    m_fileStyle = std::move(document.notes.style);
    if (document.notes.frameRate > 0)
        m_session.FrameRate = document.notes.frameRate;
    m_session.SubtitlesChanged = true;
    cmdEdit->setEnabled(true);
    cmdSave->setEnabled(true);
    TitlesChanged();
}

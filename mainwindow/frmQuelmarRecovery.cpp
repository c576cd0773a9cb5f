#include "mainwindow/frmQuelmar.h"

#include "model/step.h"
#include "model/versions.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSignalBlocker>

#include <utility>

RecoveryNotes frmQuelmar::Notes() const {
    RecoveryNotes notes;
    notes.mediaFile = m_document.MediaFile;
    notes.subtitleFile = m_document.SubtitleFile;
    notes.frameRate = m_document.FrameRate;
    notes.style = m_document.Style;
    notes.draft = m_document.Typed();
    return notes;
}

void frmQuelmar::RestoreDocument(RecoveredDocument document) {
    txtAVI->setText(QString::fromStdString(document.notes.mediaFile));
    {
        // The titles do not come from the file this time.
        const QSignalBlocker blocker(txtSRT);
        txtSRT->setText(QString::fromStdString(document.notes.subtitleFile));
    }
    const Step step(Subt);
    m_document.BeginOther();
    m_document.SubtitleFile = document.notes.subtitleFile;
    Subt.Replace(std::move(document.titles));
    for (Version& version : document.earlier)
        m_document.Earlier().Restore(std::move(version));
    m_document.LeftTyped(std::move(document.notes.draft));
    m_document.Style = std::move(document.notes.style);
    if (document.notes.frameRate > 0)
        m_document.FrameRate = document.notes.frameRate;
    m_document.SubtitlesChanged = true;
    cmdEdit->setEnabled(true);
    cmdSave->setEnabled(true);
}

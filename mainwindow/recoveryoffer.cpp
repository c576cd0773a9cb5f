#include "mainwindow/frmQuelmar.h"
#include "mainwindow/frmRecover.h"
#include "mainwindow/recovery.h"
#include "platform/beside.h"
#include "platform/messageboxes.h"
#include "platform/moment.h"

#include <QDateTime>
#include <QMessageBox>
#include <QPushButton>

#include <utility>

// What earlier runs left, at the start of the program.

namespace {

std::int64_t Now() {
    return QDateTime::currentSecsSinceEpoch();
}

enum class Choice { Restore, Keep, Discard };

Choice Ask(QWidget& parent, const RecoveryQuestion& question) {
    QMessageBox box(QMessageBox::Question, QStringLiteral("Quelmar"), question.text,
                    QMessageBox::NoButton, &parent);
    box.setObjectName("RecoveryQuestion");
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(question.details);
    const auto* restore = box.addButton(Recovery::tr("Restore"), QMessageBox::AcceptRole);
    auto* keep = box.addButton(Recovery::tr("Keep for later"), QMessageBox::RejectRole);
    const auto* discard = box.addButton(Recovery::tr("Discard"), QMessageBox::DestructiveRole);
    box.setEscapeButton(keep);
    box.exec();
    if (box.clickedButton() == restore)
        return Choice::Restore;
    return box.clickedButton() == discard ? Choice::Discard : Choice::Keep;
}

struct Found {
    std::vector<RecoverableWork> works;
    QStringList unreadable;
};

/// What is too old is tidied away, what cannot be read is kept.
Found FindWork(const QString& folder) {
    Found found;
    RemoveSetAside(folder, KeepDeclinedSeconds);
    for (OrphanCopy& orphan : ClaimOrphans(folder)) {
        auto document = SalvageRecoveryCopy(orphan.Bytes());
        if (document && document->stamp.declined) {
            if (Now() - document->stamp.time > KeepDeclinedSeconds)
                orphan.Discard();
        } else if (document) {
            found.works.push_back({std::move(orphan), std::move(*document)});
        } else if (!IsLaterRecoveryCopy(orphan.Bytes())) {
            found.unreadable << orphan.SetAside();
        }
    }
    return found;
}

QString TitlesLastChanged(const RecoveredDocument& document, std::int64_t now) {
    return Recovery::tr(document.titles.Count() == 1 ? "%1 title, last changed %2."
                                                     : "%1 titles, last changed %2.")
        .arg(document.titles.Count())
        .arg(MomentText(document.stamp.time, now));
}

} // namespace

QString DocumentName(const RecoveryNotes& notes) {
    const QString file = QString::fromStdString(notes.subtitleFile).trimmed();
    const qsizetype slash = std::max(file.lastIndexOf('/'), file.lastIndexOf('\\'));
    const QString name = file.mid(slash + 1);
    return name.isEmpty() ? Recovery::tr("a document without a file name") : name;
}

QString DamageText(const RecoveredDocument& document) {
    if (!document.damaged)
        return {};
    return document.lostTitles == 0
               ? Recovery::tr("the copy is damaged, but no title is lost")
               : Recovery::tr("the copy is damaged, titles lost: %1").arg(document.lostTitles);
}

RecoveryQuestion::RecoveryQuestion(const RecoveredDocument& document, std::int64_t now)
    : text(Recovery::tr("There is unsaved work from the last time: %1")
               .arg(DocumentName(document.notes)))
    , details(TitlesLastChanged(document, now)) {
    if (QString damage = DamageText(document); !damage.isEmpty()) {
        damage[0] = damage[0].toUpper();
        details += '\n' + damage + '.';
    }
}

std::vector<RecoverableWork> Recovery::TakeOffers() {
    const QString folder = m_store.Folder();
    auto found = AskBeside<Found>(&m_window, folder, folder, [folder] {
                     return FindWork(folder);
                 }).value_or(Found());
    if (!found.unreadable.isEmpty())
        ShowMessage(&m_window, tr("Unsaved work from the last time is damaged and cannot be read. "
                                  "It is kept for seven days:\n%1")
                                   .arg(found.unreadable.join('\n')));
    return std::move(found.works);
}

bool Recovery::OfferOrphans() {
    std::vector<RecoverableWork> works = TakeOffers();
    if (works.empty())
        return false;
    if (works.size() == 1)
        return OfferOne(works.front());
    frmRecover dialog(works, frmRecover::Discarding::KeepsAWhile, &m_window);
    if (dialog.exec() != QDialog::Accepted || !dialog.Chosen())
        return false;
    RecoverableWork& chosen = works[*dialog.Chosen()];
    Restore(chosen.orphan, std::move(chosen.document));
    return true;
}

bool Recovery::OfferOne(RecoverableWork& work) {
    switch (Ask(m_window, RecoveryQuestion(work.document, Now()))) {
    case Choice::Restore:
        Restore(work.orphan, std::move(work.document));
        return true;
    case Choice::Discard:
        Decline(work.orphan);
        return false;
    case Choice::Keep:
        return false;
    }
    return false;
}

void Decline(OrphanCopy& orphan) {
    if (const auto declined = RestampRecoveryCopy(orphan.Bytes(), {Now(), true}))
        orphan.Replace(*declined);
    else
        orphan.SetAside();
}

// The old copy goes only when the new one is on the disk; a damaged one may hold more
// than could be read of it.
void Recovery::Restore(OrphanCopy& orphan, RecoveredDocument document) {
    const bool damaged = document.damaged;
    m_window.RestoreDocument(std::move(document));
    m_replacing = false;
    m_declined = false;
    m_heldTitles.reset();
    Keep(Fate::Current);
    if (!Flush())
        return;
    if (damaged)
        orphan.SetAside();
    else
        orphan.Discard();
}

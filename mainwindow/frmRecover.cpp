#include "mainwindow/frmRecover.h"

#include "mainwindow/recovery.h"
#include "platform/errorgate.h"
#include "platform/messageboxes.h"
#include "platform/moment.h"

#include <QDateTime>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <utility>

namespace {

constexpr int ColumnGap = 16;

QString Note(const RecoveredDocument& document) {
    QStringList notes;
    if (document.stamp.declined)
        notes << frmRecover::tr("you chose not to save it");
    if (document.damaged)
        notes << DamageText(document);
    return notes.join(QLatin1String("; "));
}

} // namespace

std::vector<RecoverableWork> FindRecoverableWork(const QString& folder) {
    std::vector<RecoverableWork> works;
    for (OrphanCopy& orphan : ClaimOrphans(folder))
        if (auto document = SalvageRecoveryCopy(orphan.Bytes()))
            works.push_back({std::move(orphan), std::move(*document)});
    return works;
}

QString WorkText(const RecoverableWork& work, std::int64_t now) {
    const QString note = Note(work.document);
    return QStringLiteral("%1: %2 titles, %3%4")
        .arg(QString::fromStdString(work.document.notes.subtitleFile))
        .arg(work.document.titles.Count())
        .arg(MomentText(work.document.stamp.time, now), note.isEmpty() ? note : ", " + note);
}

frmRecover::frmRecover(std::vector<RecoverableWork>& works, Discarding discarding, QWidget* parent)
    : QDialog(parent)
    , m_works(works)
    , m_discarding(discarding)
    , lstWork(new QTreeWidget(this))
    , cmdRestore(new QPushButton(tr("Restore"), this))
    , cmdDiscard(new QPushButton(tr("Discard"), this))
    , cmdClose(new QPushButton(tr("Close"), this)) {
    setObjectName("frmRecover");
    setWindowTitle(tr("Unsaved work"));
    lstWork->setObjectName("lstWork");
    lstWork->setHeaderLabels({tr("Subtitles"), tr("Titles"), tr("Last changed"), tr("Note")});
    lstWork->setRootIsDecorated(false);
    cmdRestore->setObjectName("cmdRestore");
    cmdRestore->setDefault(true);
    cmdDiscard->setObjectName("cmdDiscard");
    cmdDiscard->setAutoDefault(false);
    cmdClose->setObjectName("cmdClose");
    cmdClose->setAutoDefault(false);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdDiscard);
    buttons->addStretch();
    buttons->addWidget(cmdClose);
    buttons->addWidget(cmdRestore);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(16, 16, 16, 16);
    layout->setSpacing(12);
    layout->addWidget(new QLabel(tr("Work that was not saved to a file:"), this));
    layout->addWidget(lstWork);
    layout->addLayout(buttons);
    resize(640, 320);

    connect(lstWork, &QTreeWidget::currentItemChanged, this,
            [this] { Guarded([this] { lstWork_Change(); }); });
    connect(lstWork, &QTreeWidget::itemActivated, this,
            [this] { Guarded([this] { cmdRestore_Click(); }); });
    connect(cmdRestore, &QPushButton::clicked, this,
            [this] { Guarded([this] { cmdRestore_Click(); }); });
    connect(cmdDiscard, &QPushButton::clicked, this,
            [this] { Guarded([this] { cmdDiscard_Click(); }); });
    connect(cmdClose, &QPushButton::clicked, this, &QDialog::reject);
    Form_Load();
}

void frmRecover::Form_Load() {
    const std::int64_t now = QDateTime::currentSecsSinceEpoch();
    lstWork->clear();
    for (const RecoverableWork& work : m_works) {
        auto* item = new QTreeWidgetItem(lstWork, {DocumentName(work.document.notes),
                                                   QString::number(work.document.titles.Count()),
                                                   MomentText(work.document.stamp.time, now),
                                                   Note(work.document)});
        item->setToolTip(0, QString::fromStdString(work.document.notes.subtitleFile));
        item->setTextAlignment(1, Qt::AlignRight | Qt::AlignVCenter);
    }
    lstWork->setCurrentItem(lstWork->topLevelItem(0));
    lstWork->header()->resizeSections(QHeaderView::ResizeToContents);
    for (int column = 0; column < lstWork->columnCount(); ++column)
        lstWork->setColumnWidth(column, lstWork->columnWidth(column) + ColumnGap);
    lstWork_Change();
}

std::optional<std::size_t> frmRecover::Current() const {
    const int row = lstWork->indexOfTopLevelItem(lstWork->currentItem());
    return row < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(row));
}

void frmRecover::lstWork_Change() {
    cmdRestore->setEnabled(Current().has_value());
    cmdDiscard->setEnabled(Current().has_value());
}

void frmRecover::cmdRestore_Click() {
    m_chosen = Current();
    if (m_chosen)
        accept();
}

void frmRecover::cmdDiscard_Click() {
    const auto row = Current();
    if (!row)
        return;
    OrphanCopy& orphan = m_works[*row].orphan;
    if (m_discarding == Discarding::KeepsAWhile)
        Decline(orphan);
    else if (AskYesNo(this, tr("Discard this work for good?"), MessageIcon::Question))
        orphan.Discard();
    else
        return;
    m_works.erase(m_works.begin() + static_cast<std::ptrdiff_t>(*row));
    Form_Load();
}

#include "dialogs/frmVersions.h"

#include "dialogs/placement.h"
#include "model/versions.h"
#include "platform/errorgate.h"
#include "platform/moment.h"

#include <QDateTime>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

constexpr QSize DesignSize(460, 320);
constexpr int ColumnGap = 16;

} // namespace

frmVersions::frmVersions(TitleList& list, QWidget* parent)
    : ListDialog(list, parent, "frmVersions", "Earlier versions")
    , lstVersions(Named<QTreeWidget>("lstVersions", this))
    , cmdOK(NewButton("cmdOK", "OK", this))
    , cmdCancel(NewButton("cmdCancel", "Cancel", this)) {
    LayOut();
    Form_Load();
    connect(lstVersions, &QTreeWidget::currentItemChanged, this,
            [this] { Guarded([this] { lstVersions_Change(); }); });
    connect(lstVersions, &QTreeWidget::itemActivated, this,
            [this] { Guarded([this] { cmdOK_Click(); }); });
    connect(cmdOK, &QPushButton::clicked, this, [this] { Guarded([this] { cmdOK_Click(); }); });
    connect(cmdCancel, &QPushButton::clicked, this, &frmVersions::cmdCancel_Click);
}

void frmVersions::LayOut() {
    lstVersions->setHeaderLabels({tr("When"), tr("Before"), tr("Titles that differ")});
    lstVersions->setRootIsDecorated(false);
    lstVersions->setUniformRowHeights(true);
    cmdOK->setToolTip("Go back to the chosen version");
    cmdCancel->setToolTip("Leave the titles as they are");
    cmdOK->setDefault(true);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(14, 14, 14, 12);
    layout->setSpacing(10);
    layout->addWidget(lstVersions);
    layout->addLayout(buttons);
    resize(DesignSize);
}

void frmVersions::Form_Load() {
    PlaceBeside(*this, *List().Window());
    KeepOnScreen(*this);
    const Versions& versions = document().Earlier();
    const Version present = versions.Present(Subt());
    const std::int64_t now = QDateTime::currentSecsSinceEpoch();
    for (std::size_t age = 0; age < versions.Count(); ++age) {
        const Version& version = versions.At(age);
        auto* line = new QTreeWidgetItem(
            lstVersions, {MomentText(version.time, now), QString::fromStdString(version.step),
                          QString::number(DifferingTitles(version, present))});
        line->setTextAlignment(2, Qt::AlignRight | Qt::AlignVCenter);
    }
    for (int column = 0; column < lstVersions->columnCount(); ++column) {
        lstVersions->resizeColumnToContents(column);
        lstVersions->setColumnWidth(column, lstVersions->columnWidth(column) + ColumnGap);
    }
    lstVersions->setCurrentItem(nullptr);
    lstVersions_Change();
    lstVersions->setFocus();
}

// Whatever closes the dialog, the list shows the document again.
void frmVersions::Form_Unload() {
    if (m_shown)
        List().ShowOwn();
}

std::optional<std::size_t> frmVersions::Current() const {
    const int line = lstVersions->indexOfTopLevelItem(lstVersions->currentItem());
    return line < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(line));
}

void frmVersions::lstVersions_Change() {
    const auto age = Current();
    cmdOK->setEnabled(age.has_value());
    if (!age)
        return;
    m_shown = true;
    List().ShowInstead(TitlesOf(document().Earlier().At(*age)));
}

void frmVersions::cmdOK_Click() {
    const auto age = Current();
    if (!age)
        return;
    Unload();
    document().GoBack(*age);
    List().LoadList();
}

void frmVersions::cmdCancel_Click() {
    Unload();
}

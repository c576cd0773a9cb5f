#include "mainwindow/frmKeys.h"

#include "mainwindow/handlers.h"

#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

/// The list is that many letters wide and lines high.
constexpr int Columns = 58;
constexpr int VisibleLines = 24;

} // namespace

frmKeys::frmKeys(const std::vector<MainActions::Line>& lines, QWidget* parent)
    : QDialog(parent)
    , lstKeys(new QTreeWidget(this))
    , cmdClose(new QPushButton(tr("Close"), this)) {
    setObjectName("frmKeys");
    setWindowTitle(tr("Keys"));
    setAttribute(Qt::WA_DeleteOnClose);
    lstKeys->setObjectName("lstKeys");
    lstKeys->setAccessibleName(tr("Keys"));
    lstKeys->setRootIsDecorated(false);
    lstKeys->setUniformRowHeights(true);
    lstKeys->setHeaderLabels({tr("Keys"), tr("What they do")});
    for (const MainActions::Line& line : lines)
        new QTreeWidgetItem(lstKeys, {line.keys, line.text});
    lstKeys->resizeColumnToContents(0);
    lstKeys->setCurrentItem(lstKeys->topLevelItem(0));
    cmdClose->setObjectName("cmdClose");
    cmdClose->setDefault(true);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lstKeys);
    layout->addWidget(cmdClose, 0, Qt::AlignRight);
    resize(fontMetrics().averageCharWidth() * Columns, fontMetrics().lineSpacing() * VisibleLines);
    On(cmdClose, &QPushButton::clicked, this, &frmKeys::cmdClose_Click);
}

void frmKeys::cmdClose_Click() {
    close();
}

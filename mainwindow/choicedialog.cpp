#include "mainwindow/choicedialog.h"

#include "mainwindow/handlers.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

constexpr int ColumnGap = 16;
/// The list is at least that many letters wide and lines high.
constexpr int Letters = 60;
constexpr int MostLetters = 120;
constexpr int VisibleLines = 8;

bool IsNumber(const QString& text) {
    bool is = false;
    text.toInt(&is);
    return is;
}

} // namespace

ChoiceDialog::ChoiceDialog(QWidget* parent, const QString& name, const QString& caption,
                           const QString& text, const QStringList& headers)
    : QDialog(parent)
    , Label1(new QLabel(text, this))
    , lstChoices(new QTreeWidget(this))
    , cmdOK(new QPushButton(tr("OK"), this))
    , cmdCancel(new QPushButton(tr("Cancel"), this)) {
    setObjectName(name);
    setWindowTitle(caption);
    lstChoices->setHeaderLabels(headers);
    LayOut();
    On(lstChoices, &QTreeWidget::currentItemChanged, this, &ChoiceDialog::lstChoices_Change);
    On(lstChoices, &QTreeWidget::itemActivated, this, &ChoiceDialog::cmdOK_Click);
    On(cmdOK, &QPushButton::clicked, this, &ChoiceDialog::cmdOK_Click);
    On(cmdCancel, &QPushButton::clicked, this, &ChoiceDialog::cmdCancel_Click);
}

void ChoiceDialog::LayOut() {
    Label1->setObjectName("Label1");
    Label1->setTextFormat(Qt::PlainText);
    Label1->setWordWrap(true);
    Label1->setBuddy(lstChoices);
    lstChoices->setObjectName("lstChoices");
    lstChoices->setAccessibleName(windowTitle());
    lstChoices->setRootIsDecorated(false);
    lstChoices->setUniformRowHeights(true);
    lstChoices->header()->setStretchLastSection(true);
    cmdOK->setObjectName("cmdOK");
    cmdOK->setDefault(true);
    cmdCancel->setObjectName("cmdCancel");
    cmdCancel->setAutoDefault(false);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdOK);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(14, 14, 14, 12);
    layout->setSpacing(10);
    layout->addWidget(Label1);
    layout->addWidget(lstChoices, 1);
    layout->addLayout(buttons);
    lstChoices->setMinimumSize(fontMetrics().averageCharWidth() * Letters,
                               fontMetrics().lineSpacing() * VisibleLines);
}

void ChoiceDialog::AddLine(const QStringList& texts, bool enabled) {
    auto* line = new QTreeWidgetItem(lstChoices);
    line->setDisabled(!enabled);
    for (int column = 0; column < texts.size(); ++column)
        SetLine(lstChoices->topLevelItemCount() - 1, column, texts[column]);
}

void ChoiceDialog::SetLine(int line, int column, const QString& text) {
    QTreeWidgetItem* item = lstChoices->topLevelItem(line);
    item->setText(column, text);
    item->setTextAlignment(column,
                           (IsNumber(text) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
}

void ChoiceDialog::LinesAdded() {
    int width = 2 * ColumnGap;
    for (int column = 0; column < lstChoices->columnCount(); ++column) {
        lstChoices->resizeColumnToContents(column);
        lstChoices->setColumnWidth(column, lstChoices->columnWidth(column) + ColumnGap);
        width += lstChoices->columnWidth(column);
    }
    // All columns show, unless their texts are longer than anybody reads.
    const int letter = fontMetrics().averageCharWidth();
    lstChoices->setMinimumWidth(qBound(letter * Letters, width, letter * MostLetters));
    lstChoices->setCurrentItem(nullptr);
    for (int line = lstChoices->topLevelItemCount() - 1; line >= 0; --line)
        if (!lstChoices->topLevelItem(line)->isDisabled())
            lstChoices->setCurrentItem(lstChoices->topLevelItem(line));
    lstChoices_Change();
    lstChoices->setFocus();
}

void ChoiceDialog::ChooseLine(int line) {
    lstChoices->setCurrentItem(lstChoices->topLevelItem(line));
}

std::optional<int> ChoiceDialog::Ask() {
    if (exec() != Accepted)
        return std::nullopt;
    return lstChoices->indexOfTopLevelItem(lstChoices->currentItem());
}

void ChoiceDialog::lstChoices_Change() {
    const QTreeWidgetItem* line = lstChoices->currentItem();
    cmdOK->setEnabled(line != nullptr && !line->isDisabled());
}

void ChoiceDialog::cmdOK_Click() {
    if (cmdOK->isEnabled())
        accept();
}

void ChoiceDialog::cmdCancel_Click() {
    reject();
}

#include "mainwindow/selectiongroup.h"

#include "mainwindow/handlers.h"
#include "mainwindow/panelcontrols.h"
#include "model/times.h"

#include <QGridLayout>

SelectionGroup::SelectionGroup(Player& player, QWidget* panel)
    : QObject(panel)
    , m_player(player)
    , cmdSelStart(MakeButton(panel, "cmdSelStart", QStringLiteral("Sel. Start"),
                             QStringLiteral("Set playback start to the current slider position")))
    , Label7(MakeLabel(panel, "Label7", QStringLiteral(">>")))
    , txtSelStart(Named(new QLineEdit(panel), "txtSelStart", tr("Selection start"),
                        QStringLiteral("Shows the current playback start point")))
    , cmdSelEnd(MakeButton(panel, "cmdSelEnd", QStringLiteral("Sel. End"),
                           QStringLiteral("Set playback end to the current slider position")))
    , Label8(MakeLabel(panel, "Label8", QStringLiteral(">>")))
    , txtSelEnd(Named(new QLineEdit(panel), "txtSelEnd", tr("Selection end"),
                      QStringLiteral("Shows the current playback end point"))) {
    txtSelStart->setReadOnly(true);
    txtSelEnd->setReadOnly(true);
    On(cmdSelStart, &QPushButton::clicked, this, &SelectionGroup::cmdSelStart_Click);
    On(cmdSelEnd, &QPushButton::clicked, this, &SelectionGroup::cmdSelEnd_Click);
}

void SelectionGroup::LayOut(QGridLayout& grid, int row, int column) {
    grid.addWidget(cmdSelStart, row, column);
    grid.addWidget(Label7, row, column + 1);
    grid.addWidget(txtSelStart, row, column + 2);
    grid.addWidget(cmdSelEnd, row + 1, column);
    grid.addWidget(Label8, row + 1, column + 1);
    grid.addWidget(txtSelEnd, row + 1, column + 2);
}

void SelectionGroup::FitTexts() {
    FitTime(txtSelStart);
    FitTime(txtSelEnd);
    const int width = qMax(CaptionWidth(cmdSelStart), CaptionWidth(cmdSelEnd));
    cmdSelStart->setFixedWidth(width);
    cmdSelEnd->setFixedWidth(width);
}

// A selection that starts at exactly 0 is not shown anew.
void SelectionGroup::Refresh() {
    if (m_player.SelectionStart() > 0)
        ShowSelection();
}

void SelectionGroup::cmdSelStart_Click() {
    m_player.SelectionStart(m_player.CurrentPosition());
    ShowSelection();
}

void SelectionGroup::cmdSelEnd_Click() {
    m_player.SelectionEnd(m_player.CurrentPosition());
    ShowSelection();
}

void SelectionGroup::ShowSelection() {
    txtSelStart->setText(QString::fromStdString(FormatTime(m_player.SelectionStart())));
    txtSelEnd->setText(QString::fromStdString(FormatTime(m_player.SelectionEnd())));
}

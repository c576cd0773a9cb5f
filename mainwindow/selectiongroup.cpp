#include "mainwindow/selectiongroup.h"

#include "mainwindow/handlers.h"
#include "mainwindow/panelcontrols.h"
#include "model/times.h"
#include "platform/fontscale.h"
#include "platform/icons.h"

#include <QAction>
#include <QGridLayout>

namespace {

constexpr int ClearButtonRoom = 20;

/// A button at the box's right end; the box's Delete key does the same.
QAction* ClearButton(QLineEdit* box, const char* name, const QString& text) {
    QAction* action = box->addAction(DrawnIcon(Sign::Clear), QLineEdit::TrailingPosition);
    action->setObjectName(QString::fromLatin1(name));
    action->setText(text);
    action->setToolTip(text);
    action->setShortcuts({QKeySequence(Qt::Key_Delete), QKeySequence(Qt::Key_Backspace)});
    action->setShortcutContext(Qt::WidgetShortcut);
    return action;
}

QString TimeText(double seconds) {
    return QString::fromStdString(FormatTime(seconds));
}

} // namespace

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
    On(ClearButton(txtSelStart, "clearSelStart", tr("Clear the selection start")),
       &QAction::triggered, this, &SelectionGroup::ClearStart);
    On(ClearButton(txtSelEnd, "clearSelEnd", tr("Clear the selection end")), &QAction::triggered,
       this, &SelectionGroup::ClearEnd);
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
    for (QLineEdit* box : {txtSelStart, txtSelEnd}) {
        FitTime(box);
        box->setMinimumWidth(box->minimumWidth() + Scaled(ClearButtonRoom, *box));
    }
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
    m_endCleared = false;
    ShowSelection();
}

void SelectionGroup::ShowSelection() {
    const double start = m_player.SelectionStart();
    txtSelStart->setText(start < 0 ? QString() : TimeText(start));
    txtSelEnd->setText(m_endCleared ? QString() : TimeText(m_player.SelectionEnd()));
}

void SelectionGroup::Clear() {
    m_endCleared = false;
    txtSelStart->clear();
    txtSelEnd->clear();
}

void SelectionGroup::ClearStart() {
    m_player.SelectionStart(-1);
    txtSelStart->clear();
}

void SelectionGroup::ClearEnd() {
    m_player.SelectionEnd(-1);
    m_endCleared = true;
    txtSelEnd->clear();
}

#include "mainwindow/markbuttons.h"

#include "listeditor/frmList.h"
#include "mainwindow/handlers.h"
#include "mainwindow/panelcontrols.h"
#include "platform/icons.h"
#include "platform/messageboxes.h"

#include <QVBoxLayout>

namespace {

constexpr int IconSide = 20;
constexpr QSize ButtonSize(30, 24);

QPushButton* ToolButton(QWidget* panel, const char* name, const QString& accessibleName,
                        const QString& toolTip) {
    QPushButton* button = MakeButton(panel, name, {}, toolTip);
    button->setAccessibleName(accessibleName);
    button->setIconSize({IconSide, IconSide});
    button->setFixedSize(ButtonSize);
    button->setEnabled(false);
    return button;
}

} // namespace

MarkButtons::MarkButtons(MainState& state, QWidget* panel)
    : QObject(panel)
    , m_state(state)
    , cmdBlue(
          ToolButton(panel, "cmdBlue", tr("Blue mark"),
                     tr("Mark the current position as the new start of the first marked title")))
    , cmdGreen(
          ToolButton(panel, "cmdGreen", tr("Green mark"),
                     tr("Mark the current position as the new start of the second marked title")))
    , cmdAdjust(ToolButton(panel, "cmdAdjust", tr("Adjust"),
                           tr("Stretch the selected titles between the blue and the green mark"))) {
    On(cmdBlue, &QPushButton::clicked, this, &MarkButtons::cmdBlue_Click);
    On(cmdGreen, &QPushButton::clicked, this, &MarkButtons::cmdGreen_Click);
    On(cmdAdjust, &QPushButton::clicked, this, &MarkButtons::cmdAdjust_Click);
    cmdBlue->setIcon(DrawnIcon(Sign::BlueFlag));
    cmdGreen->setIcon(DrawnIcon(Sign::GreenFlag));
    cmdAdjust->setIcon(DrawnIcon(Sign::StretchToMarks));
}

QVBoxLayout* MarkButtons::LayOut() {
    auto* column = new QVBoxLayout;
    column->setSpacing(2);
    for (QPushButton* button : {cmdBlue, cmdGreen, cmdAdjust})
        column->addWidget(button);
    column->addStretch();
    return column;
}

void MarkButtons::Enabled(bool enabled) {
    for (QPushButton* button : {cmdBlue, cmdGreen, cmdAdjust})
        button->setEnabled(enabled);
}

void MarkButtons::cmdBlue_Click() {
    m_state.document.BlueMark(m_state.player->CurrentPosition());
}

void MarkButtons::cmdGreen_Click() {
    m_state.document.GreenMark(m_state.player->CurrentPosition());
}

void MarkButtons::cmdAdjust_Click() {
    const Document& document = m_state.document;
    if (!(document.BlueMark() < document.GreenMark()))
        return ShowMessage(cmdAdjust->window(),
                           QStringLiteral("Title times have been set to an illegal order."));
    if (frmList* list = m_state.OpenList())
        list->StretchToMarks();
}

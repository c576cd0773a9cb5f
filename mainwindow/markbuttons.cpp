#include "mainwindow/markbuttons.h"

#include "listeditor/frmList.h"
#include "mainwindow/handlers.h"
#include "mainwindow/panelcontrols.h"
#include "model/times.h"
#include "platform/fontscale.h"
#include "platform/icons.h"
#include "platform/messageboxes.h"

#include <QVBoxLayout>

namespace {

constexpr int IconSide = 20;
constexpr int ButtonHeight = 24;
constexpr int ButtonWidth = 30;

QPushButton* ToolButton(QWidget* panel, const char* name, const QString& accessibleName) {
    QPushButton* button = MakeButton(panel, name, {}, {});
    button->setAccessibleName(accessibleName);
    button->setEnabled(false);
    return button;
}

} // namespace

MarkButtons::MarkButtons(MainState& state, QWidget* panel)
    : QObject(panel)
    , m_state(state)
    , cmdBlue(ToolButton(panel, "cmdBlue", tr("Blue mark")))
    , cmdGreen(ToolButton(panel, "cmdGreen", tr("Green mark")))
    , cmdAdjust(ToolButton(panel, "cmdAdjust", tr("Adjust"))) {
    m_connection = state.document.Subscribe(
        [this](const Change& change) { Guarded([&] { Document_Change(change); }); });
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

void MarkButtons::FitFont() {
    for (QPushButton* button : {cmdBlue, cmdGreen, cmdAdjust}) {
        button->setIconSize(Scaled(QSize(IconSide, IconSide), *button));
        button->setMinimumWidth(Scaled(ButtonWidth, *button));
        button->setFixedHeight(Scaled(ButtonHeight, *button));
    }
}

void MarkButtons::Enabled(bool enabled) {
    for (QPushButton* button : {cmdBlue, cmdGreen, cmdAdjust})
        button->setEnabled(enabled);
    ShowTips();
}

QString MarkButtons::WhyOff() const {
    if (m_state.player->ReadyState() == 0)
        return tr("Off until a film is open.");
    if (!m_state.document.ListWindowOpen)
        return tr("Off until a film is opened beside the list editor.");
    return tr("Off because the list editor was opened after the film. The keys work.");
}

void MarkButtons::ShowTips() {
    const struct {
        QPushButton* button;
        QString text;
    } tips[] = {
        {cmdBlue, tr("Mark the current position as the new start of the first marked title")},
        {cmdGreen, tr("Mark the current position as the new start of the second marked title")},
        {cmdAdjust, tr("Stretch the selected titles between the blue and the green mark")}};
    for (qsizetype i = 0; const auto& tip : tips) {
        QString text = tip.text;
        if (i < m_keys.size())
            text += QStringLiteral(" (%1)").arg(m_keys[i++]);
        if (!tip.button->isEnabled())
            text += QLatin1Char('\n') + WhyOff();
        tip.button->setToolTip(text);
    }
}

void MarkButtons::Document_Change(const Change& change) {
    if (change.kind != Change::Kind::Marks)
        return;
    const Document& document = m_state.document;
    const auto show = [](QPushButton* button, const QString& name, bool set, double time) {
        button->setText(set ? QString::fromStdString(FormatTime(time)) : QString());
        button->setAccessibleName(set ? name + QLatin1Char(' ') + button->text() : name);
    };
    show(cmdBlue, tr("Blue mark"), document.BlueMarkSet(), document.BlueMark());
    show(cmdGreen, tr("Green mark"), document.GreenMarkSet(), document.GreenMark());
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

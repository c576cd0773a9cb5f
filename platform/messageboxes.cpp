#include "platform/messageboxes.h"

#include <QMessageBox>
#include <QPushButton>

namespace {

QMessageBox::Icon IconOf(MessageIcon icon) {
    switch (icon) {
    case MessageIcon::None:
        return QMessageBox::NoIcon;
    case MessageIcon::Exclamation:
        return QMessageBox::Warning;
    case MessageIcon::Question:
        return QMessageBox::Question;
    case MessageIcon::Critical:
        return QMessageBox::Critical;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButton Ask(QWidget* parent, const QString& text, MessageIcon icon,
                                QMessageBox::StandardButtons buttons, const QString& details = {}) {
    QMessageBox box(IconOf(icon), QStringLiteral("Quelmar"), text, buttons, parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(details);
    return static_cast<QMessageBox::StandardButton>(box.exec());
}

} // namespace

void ShowMessage(QWidget* parent, const QString& text, MessageIcon icon, const QString& details) {
    Ask(parent, text, icon, QMessageBox::Ok, details);
}

int AskChoice(QWidget* parent, const QString& text, const QStringList& choices) {
    QMessageBox box(QMessageBox::Question, QStringLiteral("Quelmar"), text, QMessageBox::NoButton,
                    parent);
    box.setTextFormat(Qt::PlainText);
    QList<QPushButton*> buttons;
    for (const QString& choice : choices)
        buttons << box.addButton(choice, choice == choices.constLast() ? QMessageBox::RejectRole
                                                                       : QMessageBox::AcceptRole);
    box.setDefaultButton(buttons.constFirst());
    box.setEscapeButton(buttons.constLast());
    box.exec();
    for (qsizetype i = 0; i < buttons.size(); ++i)
        if (box.clickedButton() == buttons[i])
            return static_cast<int>(i);
    return static_cast<int>(choices.size()) - 1;
}

bool AskYesNo(QWidget* parent, const QString& text, MessageIcon icon) {
    return Ask(parent, text, icon, QMessageBox::Yes | QMessageBox::No) == QMessageBox::Yes;
}

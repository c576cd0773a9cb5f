#include "platform/messageboxes.h"

#include <QCloseEvent>
#include <QKeyEvent>
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

/// Where there is a No, the toolkit takes Escape and the close box for it; here they leave
/// the box without any button.
class Question : public QMessageBox {
  public:
    using QMessageBox::QMessageBox;

  protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->matches(QKeySequence::Cancel))
            reject();
        else
            QMessageBox::keyPressEvent(event);
    }
    void closeEvent(QCloseEvent* event) override { QDialog::closeEvent(event); }
};

Decision Decide(QWidget* parent, const QString& text, MessageIcon icon) {
    Question box(IconOf(icon), QStringLiteral("Quelmar"), text, QMessageBox::Yes | QMessageBox::No,
                 parent);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::Yes);
    box.exec();
    if (box.clickedButton() == nullptr)
        return Decision::None;
    return box.clickedButton() == box.button(QMessageBox::Yes) ? Decision::Yes : Decision::No;
}

} // namespace

void ShowMessage(QWidget* parent, const QString& text, MessageIcon icon, const QString& details) {
    QMessageBox box(IconOf(icon), QStringLiteral("Quelmar"), text, QMessageBox::Ok, parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(details);
    box.exec();
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

Decision AskDecision(QWidget* parent, const QString& text) {
    return Decide(parent, text, MessageIcon::Question);
}

bool AskYesNo(QWidget* parent, const QString& text, MessageIcon icon) {
    return Decide(parent, text, icon) == Decision::Yes;
}

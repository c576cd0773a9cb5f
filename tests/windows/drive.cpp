#include "tests/windows/drive.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <utility>

namespace {

constexpr int PollMilliseconds = 20;

QString Describe(const QWidget& window) {
    const auto* box = qobject_cast<const QMessageBox*>(&window);
    return QStringLiteral("%1 '%2' %3")
        .arg(QString::fromLatin1(window.metaObject()->className()), window.objectName(),
             box != nullptr ? box->text() : window.windowTitle());
}

void Dismiss(QWidget& window) {
    if (auto* dialog = qobject_cast<QDialog*>(&window))
        dialog->reject();
    else
        window.close();
}

} // namespace

Answer AnswerMessage(const QString& text, QMessageBox::StandardButton button) {
    return [=](QWidget& modal) {
        auto* box = qobject_cast<QMessageBox*>(&modal);
        QAbstractButton* choice = box == nullptr ? nullptr : box->button(button);
        if (choice == nullptr) {
            ADD_FAILURE() << "expected the message '" << text.toStdString() << "', not "
                          << Describe(modal).toStdString();
            return Dismiss(modal);
        }
        EXPECT_EQ(box->text().toStdString(), text.toStdString());
        choice->click();
    };
}

Answer LeaveMessage(const QString& text) {
    return [=](QWidget& modal) {
        const auto* box = qobject_cast<const QMessageBox*>(&modal);
        EXPECT_EQ(box == nullptr ? "" : box->text().toStdString(), text.toStdString());
        QTest::keyClick(&modal, Qt::Key_Escape);
    };
}

Answer AnswerFileDialog(const QString& name) {
    return AnswerFileDialog(name, {});
}

Answer AnswerFileDialog(const QString& name, std::function<void(QWidget&)> look) {
    return [=](QWidget& modal) {
        auto* edit = modal.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        auto* buttons = modal.findChild<QDialogButtonBox*>();
        if (qobject_cast<QFileDialog*>(&modal) == nullptr || edit == nullptr ||
            buttons == nullptr) {
            ADD_FAILURE() << "expected a file dialog, not " << Describe(modal).toStdString();
            return Dismiss(modal);
        }
        if (look)
            look(modal);
        // The box gives up the file selected in the list only while it has the focus, which
        // comes late on a busy machine.
        if (auto* list = modal.findChild<QListView*>(QStringLiteral("listView")))
            list->clearSelection();
        edit->setText(name);
        for (QAbstractButton* button : buttons->buttons())
            if (buttons->buttonRole(button) == QDialogButtonBox::AcceptRole)
                return button->click();
    };
}

Answer CancelFileDialog(std::function<void(QWidget&)> look) {
    return [=](QWidget& modal) {
        EXPECT_NE(qobject_cast<QFileDialog*>(&modal), nullptr)
            << "expected a file dialog, not " << Describe(modal).toStdString();
        if (look)
            look(modal);
        Dismiss(modal);
    };
}

Answer AnswerWindow(const QString& objectName, std::function<void(QWidget&)> act) {
    return [=](QWidget& modal) {
        EXPECT_EQ(modal.objectName().toStdString(), objectName.toStdString());
        if (modal.objectName() == objectName)
            act(modal);
        else
            Dismiss(modal);
    };
}

Modals::Modals(std::vector<Answer> answers)
    : m_answers(std::move(answers)) {
    QTimer::singleShot(PollMilliseconds, this, [this] { Poll(); });
}

Modals::~Modals() {
    EXPECT_EQ(Left(), 0U) << "expected modal windows did not appear";
}

void Modals::Poll() {
    // Armed before the answer, which may open a further modal window in its own event loop.
    QTimer::singleShot(PollMilliseconds, this, [this] { Poll(); });
    QWidget* modal = QApplication::activeModalWidget();
    if (modal == nullptr) {
        m_answered = nullptr;
        return;
    }
    // A busy machine may be as slow as a dead share.
    if (modal == m_answered || modal->objectName() == "frmWaiting")
        return;
    m_answered = modal;
    if (m_next == m_answers.size()) {
        ADD_FAILURE() << "unexpected window: " << Describe(*modal).toStdString();
        return Dismiss(*modal);
    }
    m_answers[m_next++](*modal);
}

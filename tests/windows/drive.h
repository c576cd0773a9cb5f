#pragma once

#include <QMessageBox>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

/// Answering modal windows as a person would: they are awaited by a 20 ms timer
/// inside their own event loops, in the order in which they are expected to appear.

/// Does what the person does to the modal window that has appeared.
using Answer = std::function<void(QWidget& modal)>;

/// A message box with exactly this text (line breaks are line feeds); clicks the button.
Answer AnswerMessage(const QString& text, QMessageBox::StandardButton button = QMessageBox::Ok);
/// The same, left by Escape.
Answer LeaveMessage(const QString& text);
/// A file dialog; types the name and confirms.
Answer AnswerFileDialog(const QString& name);
/// The same, after a look at the dialog.
Answer AnswerFileDialog(const QString& name, std::function<void(QWidget& dialog)> look);
Answer CancelFileDialog(std::function<void(QWidget& dialog)> look = {});
/// A window of this object name; `act` ends it.
Answer AnswerWindow(const QString& objectName, std::function<void(QWidget& window)> act);

/// Expects exactly these modal windows between its construction and its
/// destruction; any other one is closed and fails the test, and so does one that
/// did not appear.
class Modals : public QObject {
  public:
    explicit Modals(std::vector<Answer> answers = {});
    ~Modals() override;

    /// Expected windows that have not appeared yet.
    std::size_t Left() const { return m_answers.size() - m_next; }

  private:
    void Poll();

    std::vector<Answer> m_answers;
    std::size_t m_next = 0;
    QPointer<QWidget> m_answered;
};

/// The child of that object name; fails the test and throws when there is none.
template <typename T>
T& Child(const QObject& parent, const char* name) {
    T* child = parent.findChild<T*>(QString::fromLatin1(name));
    if (child == nullptr)
        throw std::runtime_error(std::string("no control named ") + name);
    return *child;
}

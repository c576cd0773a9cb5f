#pragma once

#include "platform/errorgate.h"
#include "tests/windows/listtest.h"

#include <QLineEdit>
#include <QPointer>

#include <string>

/// A dialog of the list editor on five titles, opened as the editor opens it but
/// not modal, so that a test can use it step by step. Errors that end the program
/// are kept.
template <typename DIALOG>
class DialogTest : public ListTest {
  protected:
    DialogTest() {
        m_before = InstallErrorReporter([this](const std::string& report) { error = report; });
    }
    ~DialogTest() override {
        delete m_dialog;
        InstallErrorReporter(m_before);
    }

    DIALOG& OpenDialog() {
        if (host.list == nullptr)
            Open();
        m_dialog = new DIALOG(List(), &List());
        m_dialog->show();
        return *m_dialog;
    }
    bool Closed() {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return m_dialog == nullptr;
    }
    static void Type(QLineEdit* box, const char* text) {
        box->selectAll();
        if (*text == '\0')
            QTest::keyClick(box, Qt::Key_Delete);
        QTest::keyClicks(box, text);
    }

    std::string error;

  private:
    ErrorReporter m_before;
    QPointer<DIALOG> m_dialog;
};

inline const std::string TypeMismatch = "Run-time error '13':\n\nType mismatch";
inline const std::string Overflow = "Run-time error '6':\n\nOverflow";
inline const std::string DivisionByZero = "Run-time error '11':\n\nDivision by zero";

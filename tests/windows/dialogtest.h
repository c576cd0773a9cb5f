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

    /// From the box that has the focus at first, Tab goes down and to the right, through
    /// all controls that take it, and comes back.
    static void ExpectTabFollowsTheEye(QWidget& dialog, const char* first) {
        dialog.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
        const QWidget* begin = dialog.focusWidget();
        ASSERT_NE(begin, nullptr);
        EXPECT_EQ(begin->objectName(), first);
        QPoint before;
        int rises = 0;
        int visited = 0;
        do {
            const QWidget* now = dialog.focusWidget();
            const QRect place(now->mapTo(&dialog, QPoint()), now->size());
            const bool sameLine = place.top() <= before.y() && place.bottom() >= before.y();
            if (sameLine ? place.center().x() <= before.x() : place.center().y() <= before.y())
                ++rises;
            before = place.center();
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
        } while (dialog.focusWidget() != begin && ++visited < 40);
        EXPECT_GE(visited, 5);
        EXPECT_LT(visited, 40);
        // Up again once, from the last control to the first.
        EXPECT_LE(rises, 1);
    }

    std::string error;

  private:
    ErrorReporter m_before;
    QPointer<DIALOG> m_dialog;
};

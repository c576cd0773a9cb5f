#include "mainwindow/frmFrameRate.h"
#include "mainwindow/frmLoading.h"
#include "mainwindow/frmPickKey.h"
#include "platform/settings.h"
#include "tests/windows/drive.h"

#include "model/numbers.h"
#include "model/times.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QThread>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

// QTest knows no event for some of the keys.
void Send(QWidget& window, QEvent::Type type, Qt::Key key, Qt::KeyboardModifiers modifiers = {},
          bool repeated = false) {
    QKeyEvent event(type, key, modifiers, QString(), repeated);
    QApplication::sendEvent(&window, &event);
}

class PickKey : public testing::Test {
  protected:
    PickKey() {
        main.setGeometry(400, 500, 700, 400);
        txtKey.setGeometry(300, 200, 80, 24);
        txtKey.setText("Space");
        main.show();
    }

    QWidget main;
    QLineEdit txtKey{&main};
    std::int16_t actionKey = 32;
};

TEST_F(PickKey, TakesTheKeyThatIsReleased) {
    const struct {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        const char* text;
        int code;
    } rows[] = {
        {Qt::Key_A, Qt::NoModifier, "[65]", 65},
        {Qt::Key_Space, Qt::NoModifier, "Space", 32},
        {Qt::Key_Shift, Qt::NoModifier, "Shift", 16},
        {Qt::Key_Control, Qt::NoModifier, "Control", 17},
        {Qt::Key_Alt, Qt::NoModifier, "Lt Alt", 18},
        {Qt::Key_AltGr, Qt::NoModifier, "Rt Alt", 93},
        {Qt::Key_Menu, Qt::NoModifier, "Rt Alt", 93},
        {Qt::Key_Tab, Qt::NoModifier, "[9]", 9},
        {Qt::Key_Escape, Qt::NoModifier, "[27]", 27},
        {Qt::Key_Return, Qt::NoModifier, "[13]", 13},
        {Qt::Key_F1, Qt::NoModifier, "[112]", 112},
        {Qt::Key_0, Qt::KeypadModifier, "[96]", 96},
    };
    for (const auto& row : rows) {
        const Modals modals({AnswerWindow("frmPickKey", [&](QWidget& window) {
            EXPECT_EQ(window.windowTitle().toStdString(), "Select key");
            EXPECT_EQ(Child<QLabel>(window, "Label1").text().toStdString(),
                      "Please press the key you want to use to synchronize titles.");
            Send(window, QEvent::KeyPress, row.key, row.modifiers);
            EXPECT_TRUE(window.isVisible()) << row.text;
            Send(window, QEvent::KeyRelease, row.key, row.modifiers);
        })});
        frmPickKey dialog(&main, txtKey, actionKey);
        dialog.exec();
        EXPECT_EQ(txtKey.text().toStdString(), row.text);
        EXPECT_EQ(actionKey, row.code);
    }
}

TEST_F(PickKey, TakesAKeyThatWasPressedBeforeItOpened) {
    const Modals modals({AnswerWindow(
        "frmPickKey", [&](QWidget& window) { Send(window, QEvent::KeyRelease, Qt::Key_B); })});
    frmPickKey(&main, txtKey, actionKey).exec();
    EXPECT_EQ(txtKey.text().toStdString(), "[66]");
    EXPECT_EQ(actionKey, 66);
}

TEST_F(PickKey, ItsCloseBoxChangesNothing) {
    const Modals modals({AnswerWindow("frmPickKey", [&](QWidget& window) { window.close(); })});
    frmPickKey(&main, txtKey, actionKey).exec();
    EXPECT_EQ(txtKey.text().toStdString(), "Space");
    EXPECT_EQ(actionKey, 32);
}

TEST_F(PickKey, RepeatedReleasesOfAHeldKeyDoNotCount) {
    frmPickKey dialog(&main, txtKey, actionKey);
    dialog.show();
    Send(dialog, QEvent::KeyRelease, Qt::Key_B, Qt::NoModifier, true);
    EXPECT_TRUE(dialog.isVisible());
    EXPECT_EQ(actionKey, 32);
}

TEST_F(PickKey, OpensBesideTheKeysBox) {
    const frmPickKey dialog(&main, txtKey, actionKey);
    const int offset = (dialog.width() - 80) / 2;
    EXPECT_GT(offset, 0);
    EXPECT_EQ(dialog.x(), main.x() + 300 - offset);
    EXPECT_EQ(dialog.y(), main.y() + 200 - offset);
}

TEST(PickKeyPlace, GoesByTheWidthsBothWays) {
    EXPECT_EQ(PickKeyPlace({100, 50}, {200, 300, 80, 24}, 280), QPoint(200, 250));
    EXPECT_EQ(PickKeyPlace({100, 50}, {200, 300, 280, 24}, 80), QPoint(400, 450));
}

class FrameRateDialog : public testing::Test {
  protected:
    /// Types the text, presses OK and, where the text is refused, answers the
    /// message and closes the dialog. Answers whether it was accepted.
    bool Enter(const QString& text) {
        bool accepted = false;
        frmFrameRate dialog(document, {}, nullptr);
        QTimer::singleShot(0, &dialog, [&] {
            Child<QComboBox>(dialog, "cboFramerate").setEditText(text);
            {
                QTimer answer;
                QObject::connect(&answer, &QTimer::timeout, &dialog, [&] {
                    if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
                        message = box->text();
                        icon = box->icon();
                        box->accept();
                    }
                });
                answer.start(5);
                Child<QPushButton>(dialog, "cmdOK").click();
            }
            accepted = !dialog.isVisible();
            dialog.close();
        });
        dialog.exec();
        return accepted;
    }

    Document document;
    QString message;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
};

TEST_F(FrameRateDialog, AcceptsRatesBetweenTenAndFifty) {
    for (const auto& [text, rate] : {std::pair{"10.001", 10.001},
                                     {"49.999", 49.999},
                                     {"23.976", 23.976},
                                     {" 29.97 ", 29.97},
                                     {"25,5", 25.5},
                                     {"12.3456789", 12.3456789}}) {
        EXPECT_TRUE(Enter(text)) << text;
        EXPECT_EQ(document.FrameRate, rate);
    }
    EXPECT_EQ(message.toStdString(), "");
}

TEST_F(FrameRateDialog, RefusesAllOthers) {
    document.FrameRate = 24;
    for (const char* text :
         {"10", "50", "0", "-25", "1000", "", "abc", "25 frames", "25..5", "25.5.", "nan", "inf"}) {
        message.clear();
        EXPECT_FALSE(Enter(text)) << text;
        EXPECT_EQ(message.toStdString(), "Illegal frame rate!") << text;
        EXPECT_EQ(icon, QMessageBox::Warning);
        EXPECT_EQ(document.FrameRate, 24) << text;
    }
}

TEST_F(FrameRateDialog, MarksWhatIsNoLegalRate) {
    frmFrameRate dialog(document, {}, nullptr);
    auto& box = Child<QComboBox>(dialog, "cboFramerate");
    const QColor usual = box.palette().color(QPalette::Base);
    for (const char* text : {"fast", "10", "50", "25..5", ""}) {
        box.setEditText(text);
        EXPECT_NE(box.palette().color(QPalette::Base), usual) << text;
        EXPECT_EQ(box.toolTip(), "A number of frames a second between 10 and 50, such as 23.976");
    }
    box.setEditText("23,976");
    EXPECT_EQ(box.palette().color(QPalette::Base), usual);
}

TEST_F(FrameRateDialog, AlwaysOffersTheFiveRates) {
    for (const double rate : {25.0, 17.5, 23.976}) {
        document.FrameRate = rate;
        frmFrameRate dialog(document, {}, nullptr);
        EXPECT_EQ(dialog.windowTitle().toStdString(), "Micro-DVD Frame Rate");
        const auto& cboFramerate = Child<QComboBox>(dialog, "cboFramerate");
        QStringList offered;
        for (int i = 0; i < cboFramerate.count(); ++i)
            offered << cboFramerate.itemText(i);
        EXPECT_EQ(offered.join(' ').toStdString(), "23.976 24 25 29.97 30");
        EXPECT_EQ(cboFramerate.currentText().toStdString(), NumberText(rate));
    }
}

TEST_F(FrameRateDialog, WhatIsTypedIsTakenAtTheFirstReturn) {
    frmFrameRate dialog(document, {}, nullptr);
    dialog.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    auto* box = Child<QComboBox>(dialog, "cboFramerate").lineEdit();
    box->setFocus();
    QTest::keyClicks(box, "2");
    EXPECT_EQ(box->text().toStdString(), "2");
    QTest::keyClicks(box, "4");
    box->selectAll();
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(document.FrameRate, 24);
}

TEST_F(FrameRateDialog, ARateSurvivesTheSettings) {
    EXPECT_TRUE(Enter("23.976"));
    Settings().SetString("LastFrameRate",
                         QString::fromStdString(NumberText(RoundTime(document.FrameRate))));
    EXPECT_EQ(RoundTime(ToNumber(Settings().String("LastFrameRate").toStdString())), 23.976);
}

TEST_F(FrameRateDialog, ItsCloseBoxKeepsTheRate) {
    document.FrameRate = 24;
    const Modals modals({AnswerWindow("frmFrameRate", [](QWidget& window) {
        Child<QComboBox>(window, "cboFramerate").setEditText("30");
        window.close();
    })});
    frmFrameRate(document, {}, nullptr).exec();
    EXPECT_EQ(document.FrameRate, 24);
}

TEST_F(FrameRateDialog, EnterIsOK) {
    const Modals modals({AnswerWindow("frmFrameRate", [](QWidget& window) {
        const auto& cmdOK = Child<QPushButton>(window, "cmdOK");
        EXPECT_TRUE(cmdOK.isDefault());
        EXPECT_EQ(cmdOK.toolTip().toStdString(), "Select the frame rate shown to the left");
        QTest::keyClicks(Child<QComboBox>(window, "cboFramerate").lineEdit(), "30");
        QTest::keyClick(&window, Qt::Key_Return);
    })});
    frmFrameRate(document, {}, nullptr).exec();
    EXPECT_EQ(document.FrameRate, 30);
}

class Loading : public testing::Test {
  protected:
    Loading() {
        main.setGeometry(100, 100, 800, 600);
        main.show();
    }

    QWidget main;
};

TEST_F(Loading, IsCentredOverTheMainWindow) {
    const frmLoading loading(&main);
    EXPECT_TRUE(loading.isVisible());
    EXPECT_EQ(Child<QLabel>(loading, "Label1").text().toStdString(), "Loading Subtitles");
    const QPoint off = loading.geometry().center() - main.frameGeometry().center();
    EXPECT_LE(off.manhattanLength(), 2);
    EXPECT_FALSE(Child<QProgressBar>(loading, "prgDone").isVisible());
}

TEST_F(Loading, ShowsItsProgressWhenReadingTakesLong) {
    frmLoading loading(&main);
    EXPECT_TRUE(loading.Progress(0.1));
    QThread::msleep(320);
    EXPECT_TRUE(loading.Progress(0.5));
    const auto& prgDone = Child<QProgressBar>(loading, "prgDone");
    EXPECT_TRUE(prgDone.isVisible());
    EXPECT_EQ(prgDone.value(), 500);
}

TEST_F(Loading, CancelEndsTheReading) {
    frmLoading loading(&main);
    QThread::msleep(320);
    EXPECT_TRUE(loading.Progress(0.2));
    QTest::mouseClick(&Child<QPushButton>(loading, "cmdCancel"), Qt::LeftButton);
    EXPECT_FALSE(loading.Progress(0.3));
    EXPECT_FALSE(loading.Progress(0.4));
}

TEST_F(Loading, OtherWindowsWait) {
    int ticks = 0;
    QTimer ticker;
    QObject::connect(&ticker, &QTimer::timeout, &main, [&] { ++ticks; });
    ticker.start(0);
    {
        frmLoading loading(&main);
        EXPECT_EQ(ticks, 0);
        QThread::msleep(320);
        loading.Progress(0.2);
        EXPECT_EQ(ticks, 0);
        QThread::msleep(50);
        loading.Progress(0.3);
        EXPECT_EQ(ticks, 0);
        EXPECT_EQ(QApplication::activeModalWidget(), &loading);
    }
    QApplication::processEvents();
    EXPECT_GT(ticks, 0);
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

} // namespace

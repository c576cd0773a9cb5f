#pragma once

#include "mainwindow/frmQuelmar.h"
#include "tests/windows/drive.h"
#include "tests/windows/fakeplayer.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QFile>
#include <QKeySequence>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

/// The main window with a player whose clock the test moves, and a folder with a
/// film and three subtitle files.
class MainWindowTest : public testing::Test {
  protected:
    MainWindowTest() {
        QSettings(QSettings::NativeFormat, QSettings::UserScope, "Tevo", "Quelmar").clear();
        WriteFile("film.avi", "no film, but the fake player takes it");
        WriteFile("other.avi", "another one");
        WriteFile("film.srt", "1\r\n00:00:01,000 --> 00:00:03,000\r\nfirst\r\n\r\n"
                              "2\r\n00:00:04,000 --> 00:00:06,000\r\nsecond\r\n\r\n"
                              "3\r\n00:00:06,000 --> 00:00:08,500\r\nthird\r\n\r\n");
        OpenWindow();
    }
    ~MainWindowTest() override { CloseWindow(); }

    static QSettings StoredSettings() {
        return QSettings(QSettings::NativeFormat, QSettings::UserScope, "Tevo", "Quelmar");
    }

    void OpenWindow() {
        auto fake = std::make_unique<FakePlayer>();
        player = fake.get();
        window = std::make_unique<frmQuelmar>(std::move(fake));
        window->show();
        // Keys of actions are heard in the active window alone.
        window->activateWindow();
        EXPECT_TRUE(QTest::qWaitFor([this] { return window->isActiveWindow(); }, 3000));
    }
    /// Without a question about changes.
    void CloseWindow() {
        if (window == nullptr)
            return;
        Forget();
        window->close();
        window.reset();
    }
    /// The changes need no question any more.
    void Forget() {
        Changed() = false;
        window->document().Saved();
    }
    void Reopen() {
        CloseWindow();
        OpenWindow();
    }

    QString In(const char* name) const { return folder.filePath(name); }
    void WriteFile(const char* name, const std::string& bytes) const {
        QFile file(In(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes.data(), static_cast<qint64>(bytes.size()));
    }
    std::optional<std::string> ReadFile(const char* name) const {
        QFile file(In(name));
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return file.readAll().toStdString();
    }

    template <typename T = QPushButton>
    T& The(const char* name) {
        return Child<T>(*window, name);
    }
    QLineEdit& Line(const char* name) { return The<QLineEdit>(name); }
    std::string Box(const char* name) {
        return The<QPlainTextEdit>(name).toPlainText().toStdString();
    }
    void Click(const char* name) { QTest::mouseClick(&The<QAbstractButton>(name), Qt::LeftButton); }
    /// Types the keys into the window, as the window system would hand them in.
    static void Type(QWidget& target, const QKeySequence& keys) {
        target.activateWindow();
        EXPECT_TRUE(QTest::qWaitFor([&] { return target.isActiveWindow(); }, 3000));
        const QKeyCombination first = keys[0];
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
            qt_handleKeyEvent(target.windowHandle(), type, first.key(), first.keyboardModifiers(),
                              {}, false, 1);
        QCoreApplication::processEvents();
    }
    void Tick() { QMetaObject::invokeMethod(&The<QTimer>("Timer1"), "timeout"); }

    void OpenFilm() { Line("txtAVI").setText(In("film.avi")); }
    void OpenTitles() { Line("txtSRT").setText(In("film.srt")); }
    void Open() {
        OpenFilm();
        OpenTitles();
    }
    SUBTITLES& Subt() { return window->Subt; }
    bool& Changed() { return window->document().SubtitlesChanged; }

    QTemporaryDir folder;
    FakePlayer* player = nullptr;
    std::unique_ptr<frmQuelmar> window;
};

#include "mainwindow/frmQuelmar.h"
#include "platform/settings.h"
#include "tests/windows/fakeplayer.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QGuiApplication>
#include <QScreen>
#include <QSettings>

#include <gtest/gtest.h>

#include <functional>

#ifndef Q_OS_WIN
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace {

/// The user's settings file, as somebody or something else might have left it.
class DamagedSettings : public testing::Test {
  protected:
    DamagedSettings() { Write({}); }
    ~DamagedSettings() override { Write({}); }

    static QString File() {
        return QSettings(QSettings::NativeFormat, QSettings::UserScope, "Tevo", "Quelmar")
            .fileName();
    }

    static void Write(const QByteArray& bytes) {
        QDir().mkpath(QFileInfo(File()).path());
        QFile file(File());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        file.close();
        QSettings(QSettings::NativeFormat, QSettings::UserScope, "Tevo", "Quelmar").sync();
    }

    /// Opens the window: it must be on a screen, in a size to work with, and hold the defaults.
    static void ExpectUsableWindow(const char* what) {
        frmQuelmar window(std::make_unique<FakePlayer>());
        window.show();
        const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
        const QRect seen = window.frameGeometry().intersected(screen);
        EXPECT_GT(seen.width(), 100) << what;
        EXPECT_GT(seen.height(), 100) << what;
        EXPECT_GE(window.width() * 15, 10000) << what;
        EXPECT_GE(window.height() * 15, 5000) << what;
        EXPECT_LE(window.width(), 20000) << what;
        EXPECT_GT(window.document().FrameRate, 0) << what;
    }
};

TEST_F(DamagedSettings, GarbageGivesTheDefaults) {
    for (const QByteArray& garbage :
         {QByteArray("\0\xFF\xFE[[[===", 9), QByteArray("[General\nLeft"), QByteArray(5000, '='),
          QByteArray("Left=@Variant(\\0\\0)\nTop=@Invalid()\nWidth=@Rect(1 2 3 4)")}) {
        Write(garbage);
        ExpectUsableWindow(garbage.left(20).toHex().constData());
    }
}

TEST_F(DamagedSettings, AbsurdPlacesGiveAVisibleWindow) {
    for (const char* value : {"1000000000", "-1000000000", "2147483647", "-2147483648",
                              "99999999999", "0", "abc", "", "1.5", "1, 2, 3"}) {
        QByteArray text("[General]\n");
        for (const char* name : {"Left", "Top", "Width", "Height"})
            text += QByteArray(name) + '=' + value + '\n';
        Write(text);
        ExpectUsableWindow(value);
    }
}

TEST_F(DamagedSettings, ARateThatIsNoneGivesTwentyFive) {
    for (const char* rate : {"abc", "0", "-24", "nan", "inf", "", "1e999", "25 frames"}) {
        Write(QByteArray("[General]\nLastFrameRate=") + rate + '\n');
        frmQuelmar window(std::make_unique<FakePlayer>());
        EXPECT_EQ(window.document().FrameRate, 25) << rate;
    }
}

TEST_F(DamagedSettings, ValuesOfAnotherTypeGiveTheirDefaults) {
    Write("[General]\nLeft=12\nTop=twelve\nWidth=4294967296\nHeight=a, b\nToolbar=on\n"
          "MRU=12\n");
    const Settings settings;
    EXPECT_EQ(settings.Dword("Left", 7), 12);
    EXPECT_EQ(settings.Dword("Top", 7), 7);
    EXPECT_EQ(settings.Dword("Width", 7), 7);
    EXPECT_EQ(settings.Dword("Height", 7), 7);
    EXPECT_EQ(settings.Dword("Toolbar"), 1);
    EXPECT_EQ(settings.Dword("LagMs"), 0);
    EXPECT_EQ(settings.String("ListFont", "default").toStdString(), "default");
    EXPECT_EQ(settings.String("CodePage").toStdString(), "guess");
    EXPECT_EQ(settings.String("MRU").toStdString(), "12");
}

#ifndef Q_OS_WIN
/// Reading what is no file, or waiting for a lock, could take for ever.
struct Obstacle {
    const char* what;
    std::function<void(const QByteArray& file)> put;
};

class ObstructedSettings : public DamagedSettings, public testing::WithParamInterface<Obstacle> {
  protected:
    ~ObstructedSettings() override {
        QDir(file).removeRecursively();
        QFile::remove(file);
        QFile::remove(file + ".lock");
    }

    const QString file = File();
};

TEST_P(ObstructedSettings, DoNotStopTheProgram) {
    QFile::remove(file);
    GetParam().put(QFile::encodeName(file));
    QElapsedTimer taken;
    taken.start();
    ExpectUsableWindow(GetParam().what);
    {
        frmQuelmar window(std::make_unique<FakePlayer>());
        window.show();
        EXPECT_TRUE(window.close());
    }
    EXPECT_LT(taken.elapsed(), 5000) << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(Files, ObstructedSettings,
                         testing::Values(Obstacle{"a named pipe",
                                                  [](const QByteArray& file) {
                                                      EXPECT_EQ(mkfifo(file.constData(), 0600), 0);
                                                  }},
                                         Obstacle{"a folder",
                                                  [](const QByteArray& file) {
                                                      QDir().mkpath(QFile::decodeName(file));
                                                  }},
                                         Obstacle{"a link to itself",
                                                  [](const QByteArray& file) {
                                                      EXPECT_EQ(symlink(file.constData(),
                                                                        file.constData()),
                                                                0);
                                                  }},
                                         Obstacle{"a lock of a program on another host",
                                                  [](const QByteArray& file) {
                                                      QFile lock(QFile::decodeName(file) + ".lock");
                                                      ASSERT_TRUE(lock.open(QIODevice::WriteOnly));
                                                      lock.write("1\nquelmar\nanother-host\n");
                                                  }}),
                         [](const auto& row) {
                             QString name = QString::fromLatin1(row.param.what);
                             return name.remove(' ').toStdString();
                         });
#endif

} // namespace

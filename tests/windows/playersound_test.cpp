#include "tests/windows/screening.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

constexpr int BeepSeconds = 2;
constexpr int Seconds = 60;
constexpr double Frequency = 44100;
constexpr double Tolerance = 0.01;

/// What went to the sound output: every sample in order, the time left out. libmpv
/// writes it into the folder that the process works in.
std::vector<double> SoundPut(const QString& folder) {
    QFile file(folder + "/audiodump.wav");
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    // In the "fmt " chunk; mp3 is decoded to floating point.
    constexpr qsizetype BitsOffset = 22;
    const auto bits =
        qFromLittleEndian<quint16>(bytes.constData() + bytes.indexOf("fmt ") + BitsOffset);
    std::vector<double> samples;
    const qsizetype width = bits / 8;
    for (qsizetype at = bytes.indexOf("data") + 8; at + width <= bytes.size(); at += width)
        samples.push_back(bits == 32 ? double{qFromLittleEndian<float>(bytes.constData() + at)}
                                     : qFromLittleEndian<qint16>(bytes.constData() + at) / 32768.0);
    return samples;
}

/// A beep begins every two seconds, and there is silence between them.
QString MakeBeeps(const QString& folder, const QString& name, const QStringList& coding) {
    const QString path = folder + "/" + name;
    const QString sound = QStringLiteral("aevalsrc=0.8*sin(2*PI*1000*t)*lt(mod(t\\,%1)\\,0.2):s=%2")
                              .arg(BeepSeconds)
                              .arg(Frequency);
    QStringList arguments{
        "-v", "error", "-y", "-f", "lavfi", "-i", sound, "-t", QString::number(Seconds)};
    EXPECT_EQ(QProcess::execute("ffmpeg", arguments + coding + QStringList{path}), 0);
    return path;
}

/// Where the first beep begins that has silence before it.
double FirstBeep(const std::vector<double>& samples) {
    constexpr double Loud = 0.2;
    constexpr int Silence = 4410;
    int silent = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        if (std::abs(samples[i]) < Loud)
            ++silent;
        else if (silent < Silence)
            silent = 0;
        else
            return static_cast<double>(i) / Frequency;
    }
    return -1;
}

struct SoundRow {
    const char* name;
    const char* file;
    QStringList coding;
    /// Seconds of silence that the encoder put in front and that no player can tell
    /// from the sound.
    double leadIn = 0;
};

class SoundSeek : public testing::TestWithParam<SoundRow> {};

TEST_P(SoundSeek, IsHeardFromWhereItWasAsked) {
    const QTemporaryDir folder;
    const QString path = MakeBeeps(folder.path(), GetParam().file, GetParam().coding);
    const QString before = QDir::currentPath();
    for (const double position : {0.3, 1.5, 12.345, 33.333, 52.75}) {
        ASSERT_TRUE(QDir::setCurrent(folder.path()));
        {
            Screening show;
            show.player->FileName(path);
            ASSERT_NE(show.player->ReadyState(), 0);
            show.player->CurrentPosition(position);
            EXPECT_EQ(show.player->CurrentPosition(), position);
            show.player->Play();
            ASSERT_TRUE(show.Reaches(Player::Stopped));
        }
        QDir::setCurrent(before);
        const double next = std::ceil(position / BeepSeconds) * BeepSeconds;
        const double heard = next + GetParam().leadIn - FirstBeep(SoundPut(folder.path()));
        EXPECT_NEAR(heard, position, Tolerance);
        RecordProperty(std::to_string(position), std::to_string(heard - position));
    }
}

INSTANTIATE_TEST_SUITE_P(Rows, SoundSeek,
                         testing::Values(SoundRow{"wav", "beeps.wav", {}},
                                         SoundRow{"mp3", "beeps.mp3", {"-b:a", "128k"}},
                                         SoundRow{
                                             "mp3_of_varying_rate", "varying.mp3", {"-q:a", "5"}},
                                         SoundRow{"mp3_without_a_table",
                                                  "bare.mp3",
                                                  {"-q:a", "5", "-write_xing", "0"},
                                                  1105 / Frequency}),
                         [](const auto& row) { return std::string(row.param.name); });

} // namespace

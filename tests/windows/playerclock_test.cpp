#include "tests/windows/screening.h"

#include <QElapsedTimer>
#include <QThread>

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

struct Row {
    const char* name;
    const char* container;
    double rate;
    bool sound;
};

class PlayerClock : public testing::TestWithParam<Row> {};

TEST_P(PlayerClock, NeverRunsBackwardAndKeepsPace) {
    Film film = FilmIn(GetParam().container);
    film.sound = GetParam().sound;
    Screening show(film);
    show.player->Rate(GetParam().rate);
    show.player->CurrentPosition(0.5);
    show.player->Play();
    ASSERT_TRUE(show.Passes(0.7));
    QElapsedTimer since;
    since.start();
    const double begin = show.player->CurrentPosition();
    double last = begin;
    double ended = 0;
    int steps = 0;
    while (since.elapsed() < 500) {
        const double position = show.player->CurrentPosition();
        ended = static_cast<double>(since.nsecsElapsed()) * 1e-9;
        ASSERT_GE(position, last);
        steps += position > last ? 1 : 0;
        last = position;
        QTest::qWait(1);
    }
    // A staircase of pictures would have a dozen steps, however slow the machine.
    EXPECT_GT(steps, 40);
    EXPECT_NEAR((last - begin) / ended, GetParam().rate, 0.1 * GetParam().rate);
}

const Row Rows[] = {
    {"Avi", "avi", 1, true},           {"AviHalf", "avi", 0.5, true},
    {"AviTwice", "avi", 2, true},      {"SilentAvi", "avi", 1, false},
    {"SilentHalf", "mov", 0.5, false}, {"SilentTwice", "mpg", 2, false},
    {"Mp3", "mp3", 1, true},           {"WavTwice", "wav", 2, true},
};

INSTANTIATE_TEST_SUITE_P(Films, PlayerClock, testing::ValuesIn(Rows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(PlayerClock, GoesOnWhileTheWindowIsBusy) {
    Screening show((Film()));
    show.player->Play();
    ASSERT_TRUE(show.Passes(0.3));
    QElapsedTimer since;
    since.start();
    const double begin = show.player->CurrentPosition();
    QThread::msleep(300);
    const double seconds = static_cast<double>(since.nsecsElapsed()) * 1e-9;
    const double end = show.player->CurrentPosition();
    EXPECT_NEAR(end - begin, seconds, 0.05);
    // A key of 300 ms ago.
    EXPECT_NEAR(show.player->PositionBefore(std::chrono::milliseconds(300)), end - 0.3, 0.005);
}

TEST(PlayerClock, StandsWhilePausedAndAfterASeek) {
    Screening show((Film()));
    for (const double position : {1.234567, 2.5, 0.0}) {
        show.player->CurrentPosition(position);
        for (int i = 0; i < 10; ++i) {
            EXPECT_EQ(show.player->CurrentPosition(), position);
            QTest::qWait(3);
        }
        EXPECT_EQ(show.player->PositionBefore(std::chrono::milliseconds(10)), position);
    }
}

} // namespace

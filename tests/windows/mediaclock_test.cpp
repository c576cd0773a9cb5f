#include "player/mediaclock.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace std::chrono_literals;

MediaClock::Moment At(double seconds) {
    return MediaClock::Moment(std::chrono::duration_cast<MediaClock::Moment::duration>(
        std::chrono::duration<double>(1000 + seconds)));
}

/// Sound that runs from `position` at moment `from`, looked at every 20 ms.
void Hear(MediaClock& clock, double from, double until, double position, double rate = 1) {
    for (int look = 0; from + look * 0.02 < until; ++look)
        clock.Sound(position + rate * look * 0.02, At(from + look * 0.02));
}

TEST(MediaClock, StandsWhereItWasPutUntilItHearsMore) {
    MediaClock clock;
    clock.Jump(12.345, At(0));
    EXPECT_EQ(clock.Position(At(0)), 12.345);
    EXPECT_EQ(clock.Position(At(1)), 12.345);
    EXPECT_FALSE(clock.Running());
}

TEST(MediaClock, OneSoundReportDoesNotStartIt) {
    MediaClock clock;
    clock.Jump(5, At(0));
    clock.Sound(5, At(0.1));
    EXPECT_EQ(clock.Position(At(0.2)), 5);
    clock.Sound(5, At(0.2));
    EXPECT_EQ(clock.Position(At(0.3)), 5);
}

TEST(MediaClock, RunsBetweenSoundReports) {
    MediaClock clock;
    clock.Jump(5, At(0));
    Hear(clock, 0, 1, 5);
    EXPECT_TRUE(clock.Running());
    EXPECT_NEAR(clock.Position(At(0.995)), 5.995, 1e-6);
    EXPECT_NEAR(clock.Position(At(1.05)), 6.05, 1e-6);
}

TEST(MediaClock, IsNotTrustedForLongWithoutReports) {
    MediaClock clock;
    Hear(clock, 0, 1, 0);
    EXPECT_NEAR(clock.Position(At(5)), 0.98 + 0.25, 1e-6);
}

TEST(MediaClock, ReportsBelowItDoNotMoveItBack) {
    MediaClock clock;
    clock.Jump(5, At(0));
    // After a seek the sound may first be told too low.
    clock.Sound(4.81, At(0.01));
    clock.Sound(4.812, At(0.012));
    EXPECT_EQ(clock.Position(At(0.012)), 5);
    double last = 5;
    for (int milliseconds = 20; milliseconds < 500; milliseconds += 4) {
        const double t = milliseconds / 1000.0;
        clock.Sound(4.99 + t, At(t));
        EXPECT_GE(clock.Position(At(t)), last);
        last = clock.Position(At(t));
    }
    EXPECT_NEAR(last, 4.99 + 0.496, 0.005);
}

TEST(MediaClock, StandsWhileTheSoundStalls) {
    MediaClock clock;
    Hear(clock, 0, 1, 0);
    for (int look = 0; look < 15; ++look)
        clock.Sound(0.98, At(1 + look * 0.02));
    EXPECT_FALSE(clock.Running());
    const double stalled = clock.Position(At(1.3));
    EXPECT_LT(stalled, 1.1);
    EXPECT_EQ(clock.Position(At(2)), stalled);
    // From where it stalled.
    Hear(clock, 2, 3, 0.98);
    EXPECT_NEAR(clock.Position(At(2.99)), 1.97, 0.001);
}

TEST(MediaClock, ASingleWrongReportChangesNothing) {
    MediaClock clock;
    Hear(clock, 0, 1, 0);
    clock.Sound(1.01 - 0.03, At(1.01));
    EXPECT_NEAR(clock.Position(At(1.02)), 1.02, 0.001);
    clock.Sound(1.03 + 0.03, At(1.03));
    EXPECT_NEAR(clock.Position(At(1.04)), 1.04, 0.001);
}

TEST(MediaClock, RunsAtTheRate) {
    MediaClock clock;
    clock.Rate(2, At(0));
    Hear(clock, 0, 1, 0, 2);
    EXPECT_NEAR(clock.Position(At(1.01)), 2.02, 1e-6);
    clock.Rate(0.5, At(1.01));
    EXPECT_NEAR(clock.Position(At(1.03)), 2.03, 1e-6);
    Hear(clock, 1.03, 2, 2.03, 0.5);
    EXPECT_NEAR(clock.Position(At(2)), 2.03 + 0.485, 1e-6);
}

TEST(MediaClock, PicturesAreLateButNeverEarly) {
    MediaClock clock;
    double worst = 0;
    for (int picture = 0; picture < 50; ++picture) {
        // A jitter of up to 2 ms, and one picture 40 ms late.
        const double late = picture == 30 ? 0.039 : 0.0005 * (picture % 5);
        const double shown = picture * 0.04 + late;
        clock.Picture(picture * 0.04, At(shown));
        const int looks = picture > 5 ? static_cast<int>(std::lround((0.04 - late) * 1000)) : 0;
        for (int look = 0; look < looks; ++look) {
            const double t = shown + look * 0.001;
            worst = std::max(worst, std::abs(clock.Position(At(t)) - t));
        }
    }
    EXPECT_LT(worst, 0.0021);
}

TEST(MediaClock, PicturesAreTrustedForOneAndAHalf) {
    MediaClock clock;
    for (int picture = 0; picture < 10; ++picture)
        clock.Picture(picture * 0.04, At(picture * 0.04));
    EXPECT_NEAR(clock.Position(At(0.41)), 0.41, 1e-6);
    EXPECT_NEAR(clock.Position(At(2)), 0.36 + 0.06, 1e-6);
}

TEST(MediaClock, AHoldStandsAtOnceAndNothingIsForgotten) {
    MediaClock clock;
    Hear(clock, 0, 1, 0);
    clock.Hold(At(1.005));
    EXPECT_NEAR(clock.Position(At(3)), 1.005, 1e-6);
    EXPECT_NEAR(clock.Position(At(0.9)), 0.9, 1e-6);
}

TEST(MediaClock, KnowsThePositionBeforeASeek) {
    MediaClock clock;
    Hear(clock, 0, 1, 0);
    clock.Jump(100, At(1));
    EXPECT_EQ(clock.Position(At(1)), 100);
    EXPECT_NEAR(clock.Position(At(0.95)), 0.95, 1e-6);
    EXPECT_EQ(clock.Position(At(1.2)), 100);
    Hear(clock, 1.2, 2, 100);
    EXPECT_NEAR(clock.Position(At(1.9)), 100.7, 1e-6);
    EXPECT_EQ(clock.Position(At(1.1)), 100);
    EXPECT_NEAR(clock.Position(At(0.5)), 0.5, 1e-6);
}

TEST(MediaClock, RemembersTwoSecondsAndNoMore) {
    MediaClock clock;
    Hear(clock, 0, 60, 0);
    EXPECT_NEAR(clock.Position(At(58.1)), 58.1, 1e-6);
    EXPECT_NEAR(clock.Position(At(10)), 57.98, 0.03);
}

TEST(MediaClock, NeverRunsBackwardWhateverItHears) {
    MediaClock clock;
    unsigned seed = 1;
    const auto random = [&] {
        return (seed = seed * 1664525U + 1013904223U) / 4294967296.0;
    };
    double t = 0;
    double last = 0;
    for (int i = 0; i < 20000; ++i) {
        t += random() * 0.03;
        if (random() < 0.5)
            clock.Sound(t + random() - 0.5, At(t));
        else if (random() < 0.5)
            clock.Picture(t + random() - 0.5, At(t));
        else if (random() < 0.1)
            clock.Hold(At(t));
        else if (random() < 0.1)
            clock.Rate(0.5 + random(), At(t));
        const double position = clock.Position(At(t));
        ASSERT_GE(position, last);
        last = position;
    }
}

} // namespace

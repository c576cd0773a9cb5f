#include "player/loading.h"
#include "player/pausewatch.h"
#include "player/seeking.h"
#include "player/soundburst.h"

#include <gtest/gtest.h>

namespace {

using namespace std::chrono_literals;
using Moment = std::chrono::steady_clock::time_point;

constexpr Moment Start{1000s};

TEST(LoadingAFile, GoesFromTheRequestToTheAnswer) {
    Loading loading;
    EXPECT_FALSE(loading.Pending());
    const auto request = loading.Ask(Start);
    EXPECT_TRUE(loading.Pending());
    EXPECT_FALSE(loading.Replied(request, 7));
    loading.Started(7);
    EXPECT_FALSE(loading.IsLoaded());
    loading.Loaded();
    EXPECT_TRUE(loading.IsLoaded());
    EXPECT_TRUE(loading.Pending());
    loading.Answer(true);
    EXPECT_FALSE(loading.Pending());
    EXPECT_FALSE(loading.IsLoaded());
    EXPECT_EQ(loading.Ended(7), Loading::End::WhileOpen);
}

TEST(LoadingAFile, HearsNothingOfTheFileBefore) {
    Loading loading;
    const auto first = loading.Ask(Start);
    EXPECT_FALSE(loading.Replied(first, 1));
    loading.Started(1);
    const auto second = loading.Ask(Start);
    EXPECT_NE(first, second);
    EXPECT_FALSE(loading.Replied(first, std::nullopt));
    loading.Started(1);
    loading.Loaded();
    EXPECT_FALSE(loading.IsLoaded());
    EXPECT_EQ(loading.Ended(1), Loading::End::OfAnother);
    EXPECT_FALSE(loading.Replied(second, 2));
    loading.Started(1);
    loading.Loaded();
    EXPECT_FALSE(loading.IsLoaded());
    EXPECT_EQ(loading.Ended(1), Loading::End::OfAnother);
    EXPECT_EQ(loading.Ended(2), Loading::End::BeforeItWasOpen);
}

TEST(LoadingAFile, FailsWhenItIsRefusedOrLate) {
    Loading loading;
    EXPECT_TRUE(loading.Replied(loading.Ask(Start), std::nullopt));
    loading.Answer(false);
    EXPECT_FALSE(loading.Overdue(Start + 1h));
    const auto request = loading.Ask(Start);
    EXPECT_FALSE(loading.Replied(request, 3));
    EXPECT_FALSE(loading.Overdue(loading.Deadline() - 1ms));
    EXPECT_TRUE(loading.Overdue(loading.Deadline()));
    loading.Answer(false);
    EXPECT_EQ(loading.Ended(3), Loading::End::OfAnother);
}

TEST(LoadingAFile, ADroppedOneIsNoLongerAwaited) {
    Loading loading;
    const auto request = loading.Ask(Start);
    loading.Drop();
    EXPECT_FALSE(loading.Pending());
    EXPECT_FALSE(loading.Replied(request, std::nullopt));
    EXPECT_FALSE(loading.Overdue(Start + 1h));
}

constexpr PicturePace TwentyFive{0.04, 0};

TEST(SeekingAPicture, AimsBeforeThePictureThatCoversThePosition) {
    struct Row {
        PicturePace pace;
        double wanted;
        double aimed;
    };
    for (const Row& row : {Row{{}, 3, 3}, Row{TwentyFive, 3, 2.965}, Row{TwentyFive, 0.01, 0},
                           Row{TwentyFive, 0, 0}, Row{{0.04, 0.0005}, 3, 2.9655}}) {
        Seeking seeking;
        seeking.Pace(row.pace);
        seeking.Want(row.wanted);
        const auto aimed = seeking.Next(Start);
        ASSERT_TRUE(aimed);
        EXPECT_NEAR(*aimed, row.aimed, 1e-9) << row.wanted;
    }
}

TEST(SeekingAPicture, OneIsUnderWayAndTheLastOneFollows) {
    Seeking seeking;
    EXPECT_FALSE(seeking.Next(Start));
    seeking.Want(1);
    EXPECT_EQ(seeking.Next(Start), 1);
    EXPECT_TRUE(seeking.UnderWay());
    for (const double position : {2, 3, 4})
        seeking.Want(position);
    EXPECT_FALSE(seeking.Next(Start));
    EXPECT_FALSE(seeking.Restarted(1, Start));
    EXPECT_FALSE(seeking.UnderWay());
    EXPECT_EQ(seeking.Next(Start), 4);
    EXPECT_FALSE(seeking.Restarted(4, Start));
    EXPECT_FALSE(seeking.Next(Start));
}

TEST(SeekingAPicture, AimsFurtherBackAsLongAsItComesOutLate) {
    Seeking seeking;
    seeking.Pace(TwentyFive);
    seeking.Want(3);
    double aimed = *seeking.Next(Start);
    for (int i = 0; i < 5; ++i) {
        const auto further = seeking.Restarted(3.02, Start);
        ASSERT_TRUE(further);
        EXPECT_LT(*further, aimed);
        aimed = *further;
    }
    EXPECT_FALSE(seeking.Restarted(2.9, Start));
    EXPECT_FALSE(seeking.UnderWay());
}

TEST(SeekingAPicture, GivesUpInTheEnd) {
    Seeking seeking;
    seeking.Pace(TwentyFive);
    seeking.Want(3000);
    (void)seeking.Next(Start);
    int tries = 0;
    while (seeking.Restarted(3001, Start))
        ASSERT_LT(++tries, 100);
    EXPECT_GT(tries, 5);
    EXPECT_FALSE(seeking.UnderWay());
}

TEST(SeekingAPicture, DoesNotAimAgainWhenAnotherPlaceIsWanted) {
    Seeking seeking;
    seeking.Pace(TwentyFive);
    seeking.Want(3);
    (void)seeking.Next(Start);
    seeking.Want(5);
    EXPECT_FALSE(seeking.Restarted(3.02, Start));
    EXPECT_TRUE(seeking.Next(Start));
}

TEST(SeekingAPicture, ExpiresWithoutARestart) {
    Seeking seeking;
    EXPECT_FALSE(seeking.Expire(Start + 1h));
    seeking.Want(1);
    (void)seeking.Next(Start);
    EXPECT_FALSE(seeking.Expire(Start));
    EXPECT_TRUE(seeking.Expire(seeking.Deadline()));
    EXPECT_FALSE(seeking.UnderWay());
    EXPECT_FALSE(seeking.Expire(seeking.Deadline()));
}

TEST(SeekingAPicture, AnotherFilmForgetsItAll) {
    Seeking seeking;
    seeking.Pace(TwentyFive);
    seeking.Want(1);
    (void)seeking.Next(Start);
    seeking.Want(2);
    seeking.Forget();
    EXPECT_FALSE(seeking.UnderWay());
    EXPECT_FALSE(seeking.Next(Start));
    EXPECT_FALSE(seeking.Restarted(9, Start));
    seeking.Want(3);
    EXPECT_EQ(seeking.Next(Start), 3);
}

TEST(WatchingThePause, TellsOnlyWhatIsNew) {
    PauseWatch watch;
    EXPECT_FALSE(watch.Tell(true));
    EXPECT_EQ(watch.Tell(false), false);
    EXPECT_FALSE(watch.Tell(false));
    EXPECT_EQ(watch.Tell(true), true);
    watch.Told(false);
    EXPECT_EQ(watch.Tell(true), true);
}

TEST(WatchingThePause, AsksOnceForEachReportWhilePlaybackIsWanted) {
    PauseWatch watch;
    watch.Reported(true);
    EXPECT_FALSE(watch.Ask(false));
    EXPECT_TRUE(watch.Ask(true));
    EXPECT_FALSE(watch.Ask(true));
    watch.Doubt();
    EXPECT_TRUE(watch.Ask(true));
    watch.Reported(false);
    EXPECT_FALSE(watch.Ask(true));
}

TEST(WatchingThePause, FindsWhyItPauses) {
    using Finding = PauseWatch::Finding;
    struct Row {
        bool ended;
        bool paused;
        bool moving;
        Finding finding;
    };
    for (const Row& row :
         {Row{false, false, true, Finding::AsWished}, Row{true, false, true, Finding::AsWished},
          Row{true, true, false, Finding::AsWished}, Row{true, true, true, Finding::EndOfFile},
          Row{false, true, true, Finding::Overtaken}}) {
        PauseWatch watch;
        (void)watch.Tell(false);
        watch.AnsweredEnd(row.ended);
        EXPECT_EQ(watch.AnsweredPause(row.paused, row.moving), row.finding);
        // After a pause of its own it is to be told again to play.
        EXPECT_EQ(watch.Tell(false).has_value(), row.finding != Finding::AsWished);
    }
}

TEST(ABurstOfSound, FollowsTheSeekAndEnds) {
    SoundBurst burst;
    burst.Restarted(Start, false);
    EXPECT_FALSE(burst.Sounding());
    burst.Ask(4);
    EXPECT_FALSE(burst.Sounding());
    burst.Restarted(Start, false);
    EXPECT_TRUE(burst.Sounding());
    EXPECT_FALSE(burst.Expire(burst.End() - 1ms));
    EXPECT_TRUE(burst.Expire(burst.End()));
    EXPECT_FALSE(burst.Sounding());
    EXPECT_FALSE(burst.Expire(burst.End()));
    EXPECT_EQ(burst.Position(), 4);
    // The seek back to the position is silent.
    burst.Restarted(burst.End(), false);
    EXPECT_FALSE(burst.Sounding());
}

TEST(ABurstOfSound, FollowsTheNextSeekToo) {
    SoundBurst burst;
    burst.Ask(4);
    burst.Ask(5);
    burst.Restarted(Start, true);
    EXPECT_TRUE(burst.Expire(burst.End()));
    EXPECT_EQ(burst.Position(), 5);
    burst.Restarted(Start + 1s, false);
    EXPECT_TRUE(burst.Sounding());
    burst.Cancel();
    EXPECT_FALSE(burst.Sounding());
    burst.Restarted(Start + 2s, false);
    EXPECT_FALSE(burst.Sounding());
}

} // namespace

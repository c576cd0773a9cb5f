#include "player/playselection.h"
#include "tests/windows/screening.h"

#include <QSignalSpy>
#include <QThread>

#include <gtest/gtest.h>

#include <string>

namespace {

/// A clock that has just stopped may be read as it was some moments before it stood.
constexpr double StopSlack = 0.25;

struct Limits {
    const char* name;
    double start;
    double end;
    double length;
    std::optional<double> limit;
    double position;
    std::optional<double> jump;
};

class Selection : public testing::TestWithParam<Limits> {};

TEST_P(Selection, Limits) {
    const Limits& row = GetParam();
    const PlaySelection selection{row.start, row.end};
    EXPECT_EQ(selection.Limit(row.length), row.limit);
    EXPECT_EQ(selection.JumpBeforePlay(row.position, row.length), row.jump);
}

const Limits SelectionRows[] = {
    {"None", -1, -1, 10, {}, 5, {}},
    {"NoneAtTheEnd", -1, -1, 10, {}, 10, 0},
    {"Inside", 2, 4, 10, 4, 3, {}},
    {"AtTheStart", 2, 4, 10, 4, 2, {}},
    {"BeforeTheStart", 2, 4, 10, 4, 1, 2},
    {"AtTheEnd", 2, 4, 10, 4, 4, 2},
    {"AfterTheEnd", 2, 4, 10, 4, 9, 2},
    {"EndAlone", -1, 4, 10, {}, 4, {}},
    {"FromTheBegin", 0, 4, 10, 4, 4, 0},
    {"StartAlone", 2, -1, 10, {}, 10, 2},
    {"EndBeforeTheStart", 6, 4, 10, {}, 7, {}},
    {"EmptySelection", 4, 4, 10, {}, 4, {}},
    {"EndOfTheMedia", 2, 10, 10, {}, 5, {}},
    {"EndBehindTheMedia", 2, 12, 10, {}, 10, 2},
    {"UnknownLength", -1, -1, 0, {}, 5, {}},
};

INSTANTIATE_TEST_SUITE_P(Rows, Selection, testing::ValuesIn(SelectionRows),
                         [](const auto& row) { return std::string(row.param.name); });

QString Heard(const QSignalSpy& states) {
    QStringList texts;
    for (const QVariantList& one : states)
        texts << one[0].toString() + ">" + one[1].toString();
    return texts.join(' ');
}

TEST(PlayerTransport, PlaysPausesAndStops) {
    Screening show((Film()));
    const QSignalSpy states(show.player.get(), &Player::PlayStateChange);
    show.player->Play();
    EXPECT_EQ(show.player->State(), Player::Playing);
    show.player->Play();
    ASSERT_TRUE(show.Passes(0.2));
    show.player->Pause();
    EXPECT_EQ(show.player->State(), Player::Paused);
    const double paused = show.player->CurrentPosition();
    QTest::qWait(50);
    EXPECT_EQ(show.player->CurrentPosition(), paused);
    show.player->Play();
    ASSERT_TRUE(show.Passes(paused + 0.1));
    QSignalSpy jumps(show.player.get(), &Player::PositionChange);
    show.player->Stop();
    EXPECT_EQ(show.player->State(), Player::Stopped);
    EXPECT_EQ(show.player->CurrentPosition(), 0);
    EXPECT_TRUE(show.Shows(0));
    ASSERT_EQ(jumps.count(), 1);
    EXPECT_GT(jumps[0][0].toDouble(), paused);
    EXPECT_EQ(jumps[0][1].toDouble(), 0);
    show.player->Pause();
    EXPECT_EQ(Heard(states).toStdString(), "0>2 2>1 1>2 2>0 0>1");
}

TEST(PlayerTransport, TheStateIsHeardWithThePositionThatGoesWithIt) {
    Screening show((Film()));
    show.player->SelectionStart(1);
    show.player->CurrentPosition(2);
    double heard = -1;
    QObject::connect(show.player.get(), &Player::PlayStateChange,
                     [&](int, int) { heard = show.player->CurrentPosition(); });
    show.player->Play();
    EXPECT_EQ(heard, 2);
    show.player->Stop();
    EXPECT_EQ(heard, 1);
}

class PlayerEnd : public testing::TestWithParam<const char*> {};

TEST_P(PlayerEnd, StopsAtTheEndOfTheFile) {
    Film film = FilmIn(GetParam());
    film.pictures = 50;
    Screening show(film);
    QSignalSpy states(show.player.get(), &Player::PlayStateChange);
    QSignalSpy jumps(show.player.get(), &Player::PositionChange);
    double last = 0;
    show.player->CurrentPosition(1.4);
    show.player->Play();
    QObject::connect(show.player.get(), &Player::PositionChange,
                     [&](double from, double) { last = from; });
    ASSERT_TRUE(show.Reaches(Player::Stopped));
    EXPECT_EQ(Heard(states).toStdString(), "0>2 2>0");
    EXPECT_EQ(show.player->CurrentPosition(), 0);
    // To its very end, as the ear hears it.
    EXPECT_NEAR(last, show.player->Length(), StopSlack);
    EXPECT_TRUE(!film.HasPicture() || show.Shows(0));
    // And once more.
    show.player->Play();
    EXPECT_TRUE(show.Passes(0.1));
    EXPECT_LT(show.player->CurrentPosition(), 1);
}

INSTANTIATE_TEST_SUITE_P(Containers, PlayerEnd, testing::Values("avi", "mov", "mp3", "wav"),
                         [](const auto& row) { return std::string(row.param); });

TEST(PlayerTransport, PlayAtTheVeryEndBeginsAgain) {
    Screening show((Film()));
    show.player->CurrentPosition(show.player->Length());
    EXPECT_TRUE(show.Shows(99));
    show.player->Play();
    EXPECT_TRUE(show.Passes(0.1));
    EXPECT_LT(show.player->CurrentPosition(), 1);
}

TEST(PlayerTransport, ASeekToTheEndWhilePlayingStops) {
    Screening show((Film()));
    show.player->Play();
    ASSERT_TRUE(show.Passes(0.1));
    show.player->CurrentPosition(show.player->Length());
    EXPECT_TRUE(show.Reaches(Player::Stopped));
    EXPECT_EQ(show.player->CurrentPosition(), 0);
}

TEST(PlayerTransport, PausesAtTheSelectionsEnd) {
    Screening show((Film()));
    show.player->SelectionStart(1);
    show.player->SelectionEnd(1.3);
    EXPECT_EQ(show.player->SelectionStart(), 1);
    EXPECT_EQ(show.player->SelectionEnd(), 1.3);
    const QSignalSpy states(show.player.get(), &Player::PlayStateChange);
    for (int round = 0; round < 2; ++round) {
        // From the start, also when it stands at the end.
        show.player->Play();
        EXPECT_GE(show.player->CurrentPosition(), 1);
        EXPECT_LT(show.player->CurrentPosition(), 1.1);
        ASSERT_TRUE(show.Reaches(Player::Paused));
        EXPECT_GE(show.player->CurrentPosition(), 1.3);
        EXPECT_LT(show.player->CurrentPosition(), 1.3 + StopSlack);
    }
    EXPECT_EQ(Heard(states).toStdString(), "0>2 2>1 1>2 2>1");
    show.player->Stop();
    EXPECT_EQ(show.player->CurrentPosition(), 1);
}

TEST(PlayerTransport, PausesAtTheSelectionsEndWhileTheWindowIsBusy) {
    Screening show((Film()));
    show.player->SelectionStart(0);
    show.player->SelectionEnd(0.5);
    show.player->Play();
    ASSERT_TRUE(show.Passes(0.1));
    QThread::msleep(900);
    EXPECT_GE(show.player->CurrentPosition(), 0.5);
    EXPECT_LT(show.player->CurrentPosition(), 0.5 + StopSlack);
    EXPECT_TRUE(show.Reaches(Player::Paused));
    EXPECT_LT(show.player->CurrentPosition(), 0.5 + StopSlack);
}

TEST(PlayerTransport, PicturesThatABusyWindowMissesAreCounted) {
    Screening show((Film()));
    show.player->Play();
    ASSERT_TRUE(show.Passes(0.5));
    QThread::msleep(1500);
    EXPECT_TRUE(QTest::qWaitFor([&] { return show.player->DroppedPictures() > 5; }, 30'000));
    show.player->FileName(MakeFilm(FilmIn("mov")));
    EXPECT_EQ(show.player->DroppedPictures(), 0);
}

TEST(PlayerTransport, ASeekBehindTheSelectionWhilePlayingPauses) {
    Screening show((Film()));
    show.player->SelectionStart(1);
    show.player->SelectionEnd(2);
    show.player->Play();
    ASSERT_TRUE(show.Passes(1.05));
    show.player->CurrentPosition(3);
    EXPECT_TRUE(show.Reaches(Player::Paused));
    EXPECT_EQ(show.player->CurrentPosition(), 3);
    EXPECT_TRUE(show.Shows(75));
}

TEST(PlayerTransport, ALiftedLimitIsNoLimit) {
    Screening show((Film()));
    show.player->SelectionStart(0);
    show.player->SelectionEnd(0.4);
    show.player->Play();
    show.player->SelectionEnd(-1);
    EXPECT_EQ(show.player->SelectionEnd(), show.player->Length());
    EXPECT_TRUE(show.Passes(0.6));
    EXPECT_EQ(show.player->State(), Player::Playing);
    // A limit that is already passed.
    show.player->SelectionEnd(0.3);
    EXPECT_TRUE(show.Reaches(Player::Paused));
}

TEST(PlayerTransport, KeepsRateVolumeAndAspectFromFilmToFilm) {
    Screening show;
    QSignalSpy changes(show.player.get(), &Player::PropertiesChanged);
    show.player->Rate(2);
    show.player->Volume(40);
    show.player->Muted(true);
    show.player->Aspect(1.5);
    EXPECT_EQ(changes.count(), 4);
    show.player->FileName(MakeFilm(Film()));
    EXPECT_EQ(show.player->Rate(), 2);
    EXPECT_EQ(show.player->Volume(), 40);
    EXPECT_TRUE(show.player->Muted());
    EXPECT_EQ(show.player->Aspect(), 1.5);
}

TEST(PlayerTransport, RateAndVolumeStayInTheirBounds) {
    const auto player = MakeMpvPlayer();
    EXPECT_EQ(player->Rate(), 1);
    EXPECT_EQ(player->Volume(), 100);
    EXPECT_FALSE(player->Muted());
    player->Rate(0.1);
    EXPECT_EQ(player->Rate(), 0.5);
    player->Rate(3);
    EXPECT_EQ(player->Rate(), 2);
    player->Volume(-5);
    EXPECT_EQ(player->Volume(), 0);
    player->Volume(120);
    EXPECT_EQ(player->Volume(), 100);
}

TEST(PlayerTransport, TheAspectShapesThePicture) {
    Screening show((Film()));
    ASSERT_TRUE(show.Shows(0));
    // 192:96 fills 320x160 of 320x200.
    EXPECT_LT(qGray(show.screen.pixel(160, 10)), 20);
    EXPECT_GT(qGray(show.screen.pixel(160, 170)), 200);
    show.player->Aspect(1);
    EXPECT_TRUE(QTest::qWaitFor([&] { return qGray(show.screen.pixel(30, 170)) < 20; }, 30'000));
    EXPECT_GT(qGray(show.screen.pixel(160, 190)), 200);
    show.player->Aspect(0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return qGray(show.screen.pixel(30, 170)) > 200; }, 30'000));
}

TEST(PlayerTransport, NothingIsDoneWithoutMedia) {
    const auto player = MakeMpvPlayer();
    const QSignalSpy states(player.get(), &Player::PlayStateChange);
    const QSignalSpy jumps(player.get(), &Player::PositionChange);
    player->Play();
    player->Pause();
    player->Stop();
    player->CurrentPosition(3);
    player->AudioTrack(0);
    EXPECT_EQ(player->State(), Player::Stopped);
    EXPECT_EQ(player->CurrentPosition(), 0);
    EXPECT_EQ(player->PositionBefore(std::chrono::milliseconds(50)), 0);
    EXPECT_EQ(states.count(), 0);
    EXPECT_EQ(jumps.count(), 0);
}

TEST(PlayerTransport, ChoosesAnAudioTrack) {
    Film film = FilmIn("mov");
    film.secondSound = true;
    Screening show(film);
    ASSERT_EQ(show.player->AudioTracks().size(), 2);
    EXPECT_EQ(show.player->AudioTrack(), 0);
    EXPECT_TRUE(show.player->AudioTracks()[1].contains("ger"))
        << show.player->AudioTracks()[1].toStdString();
    show.player->Play();
    ASSERT_TRUE(show.Passes(0.2));
    show.player->AudioTrack(1);
    EXPECT_EQ(show.player->AudioTrack(), 1);
    EXPECT_TRUE(show.Passes(0.8));
    EXPECT_EQ(show.player->AudioTrack(), 1);
    show.player->AudioTrack(7);
    EXPECT_EQ(show.player->AudioTrack(), 1);
}

} // namespace

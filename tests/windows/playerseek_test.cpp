#include "tests/windows/screening.h"

#include <QSignalSpy>
#include <QTransform>

#include <gtest/gtest.h>

#include <string>

namespace {

struct Row {
    const char* name;
    Film film;
};

Film Long() {
    Film film;
    film.pictures = 300;
    film.group = 250;
    return film;
}

Film Variable(const char* container) {
    Film film = FilmIn(container);
    film.variable = true;
    return film;
}

Film Silent(const char* container) {
    Film film = FilmIn(container);
    film.sound = false;
    return film;
}

Film Ntsc(const char* container) {
    Film film = FilmIn(container);
    film.rate = 24000.0 / 1001;
    return film;
}

Film TenBit(const char* container) {
    Film film = FilmIn(container);
    film.tenBit = true;
    return film;
}

Film Interlaced(const char* container) {
    Film film = FilmIn(container);
    film.interlaced = true;
    return film;
}

Film Started(const char* container) {
    Film film = FilmIn(container);
    film.start = 5;
    return film;
}

Film Delayed() {
    Film film = FilmIn("mov");
    film.soundDelay = 0.5;
    return film;
}

class PlayerSeek : public testing::TestWithParam<Row> {};

TEST_P(PlayerSeek, ShowsThePictureThatCoversThePosition) {
    const Film& film = GetParam().film;
    const PictureTimes times(film);
    Screening show(film);
    ASSERT_NE(show.player->ReadyState(), 0);
    const double begin = times.Begin(40);
    const double duration = 1 / film.rate;
    for (const double position :
         {begin, begin + 0.001, begin + duration / 2, begin + duration - 0.002, 0.0, 0.5,
          times.Begin(film.pictures - 10), times.Begin(film.pictures - 1) + duration / 4,
          begin - 0.002}) {
        show.player->CurrentPosition(position);
        EXPECT_EQ(show.player->CurrentPosition(), position);
        EXPECT_TRUE(show.Shows(times.NumberAt(position)))
            << "at " << position << " shows " << show.Number().value_or(-1) << ", not "
            << times.NumberAt(position);
        EXPECT_EQ(show.player->CurrentPosition(), position);
    }
}

TEST_P(PlayerSeek, PlaysFromThePosition) {
    const Film& film = GetParam().film;
    const PictureTimes times(film);
    Screening show(film);
    show.player->Play();
    show.player->CurrentPosition(2);
    EXPECT_GE(show.player->CurrentPosition(), 2);
    EXPECT_LT(show.player->CurrentPosition(), 2.01);
    ASSERT_TRUE(show.Passes(2.3));
    show.player->Pause();
    const double position = show.player->CurrentPosition();
    QTest::qWait(100);
    EXPECT_EQ(show.player->CurrentPosition(), position);
    // The screen may be one picture behind the clock when it stops.
    EXPECT_NEAR(show.Number().value_or(-1), times.NumberAt(position), film.variable ? 2 : 1);
}

const Row Rows[] = {
    {"Avi", FilmIn("avi")},
    {"Mpg", FilmIn("mpg")},
    {"Asf", FilmIn("asf")},
    {"Mov", FilmIn("mov")},
    {"Mp4", FilmIn("mp4")},
    {"Mkv", FilmIn("mkv")},
    {"Webm", FilmIn("webm")},
    {"Ts", FilmIn("ts")},
    {"M2ts", FilmIn("m2ts")},
    {"Vob", FilmIn("vob")},
    {"Ogm", FilmIn("ogm")},
    {"Flv", FilmIn("flv")},
    {"Wmv", FilmIn("wmv")},
    {"TenBitMkv", TenBit("mkv")},
    {"InterlacedTs", Interlaced("ts")},
    {"InterlacedVob", Interlaced("vob")},
    {"VariableMkv", Variable("mkv")},
    {"VariableMp4", Variable("mp4")},
    {"NtscMkv", Ntsc("mkv")},
    {"SilentMkv", Silent("mkv")},
    {"SilentTs", Silent("ts")},
    {"FewKeyPictures", Long()},
    {"VariableRate", Variable("mov")},
    {"NtscRate", Ntsc("mov")},
    {"SilentAvi", Silent("avi")},
    {"SilentMov", Silent("mov")},
    {"MpgThatStartsLate", Started("mpg")},
    {"MovThatStartsLate", Started("mov")},
    {"DelayedSound", Delayed()},
};

INSTANTIATE_TEST_SUITE_P(Films, PlayerSeek, testing::ValuesIn(Rows),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(PlayerSeek, StaysWithinTheMedia) {
    Screening show((Film()));
    QSignalSpy jumps(show.player.get(), &Player::PositionChange);
    show.player->CurrentPosition(-3);
    EXPECT_EQ(show.player->CurrentPosition(), 0);
    show.player->CurrentPosition(1000);
    EXPECT_EQ(show.player->CurrentPosition(), show.player->Length());
    EXPECT_TRUE(show.Shows(99));
    EXPECT_EQ(show.player->CurrentPosition(), show.player->Length());
    ASSERT_EQ(jumps.count(), 2);
    EXPECT_EQ(jumps[1], (QVariantList{0.0, show.player->Length()}));
}

TEST(PlayerSeek, ManyInARowEndOnTheLast) {
    Screening show(Long());
    QSignalSpy jumps(show.player.get(), &Player::PositionChange);
    for (int i = 0; i < 50; ++i) {
        const double target = i * 0.2371;
        show.player->CurrentPosition(target);
        ASSERT_EQ(show.player->CurrentPosition(), target);
        if (i % 7 == 0)
            QTest::qWait(3);
    }
    EXPECT_EQ(jumps.count(), 50);
    EXPECT_TRUE(show.Shows(PictureTimes(Long()).NumberAt(49 * 0.2371)));
    QTest::qWait(100);
    EXPECT_EQ(show.Number(), PictureTimes(Long()).NumberAt(49 * 0.2371));
    EXPECT_EQ(show.player->CurrentPosition(), 49 * 0.2371);
}

TEST(PlayerSeek, ManyWhilePlayingGoOnFromTheLast) {
    Screening show(Long());
    show.player->Play();
    for (int i = 0; i < 50; ++i) {
        show.player->CurrentPosition(i % 2 == 0 ? 9 : i * 0.01);
        QTest::qWait(2);
    }
    EXPECT_LT(show.player->CurrentPosition(), 1);
    ASSERT_TRUE(show.Passes(1));
    EXPECT_LT(show.player->CurrentPosition(), 2);
    EXPECT_EQ(show.player->State(), Player::Playing);
}

TEST(PlayerSeek, ATurnedFilmIsShownUprightAndExactly) {
    for (const int rotation : {90, 180, 270}) {
        Film film = FilmIn("mp4");
        film.rotation = rotation;
        Screening show;
        show.screen = QImage(200, 320, QImage::Format_RGB32);
        show.player->FileName(MakeFilm(film));
        ASSERT_NE(show.player->ReadyState(), 0);
        show.player->CurrentPosition(1.5);
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                const QImage level = show.screen.transformed(QTransform().rotate(rotation));
                return PictureNumber(level) == 37;
            },
            30'000))
            << rotation;
    }
}

TEST(PlayerSeek, AScrubStandsAtItsPositionAfterABurstOfSound) {
    Screening show((Film()));
    QSignalSpy jumps(show.player.get(), &Player::PositionChange);
    QSignalSpy states(show.player.get(), &Player::PlayStateChange);
    show.player->Scrub(2);
    EXPECT_EQ(show.player->CurrentPosition(), 2);
    // The burst plays on through pictures of its own.
    EXPECT_TRUE(QTest::qWaitFor([&] { return show.Number().value_or(0) > 50; }, 30'000));
    EXPECT_EQ(show.player->CurrentPosition(), 2);
    EXPECT_TRUE(show.Shows(50));
    QTest::qWait(200);
    EXPECT_EQ(show.Number(), 50);
    EXPECT_EQ(show.player->CurrentPosition(), 2);
    EXPECT_EQ(jumps.count(), 1);
    EXPECT_EQ(states.count(), 0);
}

TEST(PlayerSeek, ManyScrubsEndOnTheLast) {
    Screening show((Film()));
    for (int i = 0; i <= 40; ++i) {
        const double target = 1 + i * 0.05;
        show.player->Scrub(target);
        ASSERT_EQ(show.player->CurrentPosition(), target);
        QTest::qWait(10);
    }
    QTest::qWait(400);
    EXPECT_TRUE(show.Shows(75));
    EXPECT_EQ(show.player->CurrentPosition(), 3);
    EXPECT_NE(show.player->State(), Player::Playing);
}

TEST(PlayerSeek, PlayingAfterAScrubBeginsAtItsPosition) {
    Screening show((Film()));
    show.player->Scrub(2);
    ASSERT_TRUE(QTest::qWaitFor([&] { return show.Number().value_or(0) >= 50; }, 30'000));
    show.player->Play();
    EXPECT_GE(show.player->CurrentPosition(), 2);
    EXPECT_LT(show.player->CurrentPosition(), 2.02);
    ASSERT_TRUE(show.Passes(2.5));
    show.player->Scrub(1);
    EXPECT_LT(show.player->CurrentPosition(), 1.02);
    ASSERT_TRUE(show.Passes(1.5));
    EXPECT_EQ(show.player->State(), Player::Playing);
}

TEST(PlayerSeek, ReportsEachJumpAtOnce) {
    Screening show((Film()));
    double heard = -1;
    QObject::connect(show.player.get(), &Player::PositionChange, [&](double from, double to) {
        EXPECT_EQ(from, heard < 0 ? 0 : heard);
        EXPECT_EQ(show.player->CurrentPosition(), to);
        heard = to;
    });
    show.player->CurrentPosition(1.5);
    EXPECT_EQ(heard, 1.5);
    show.player->CurrentPosition(0.25);
    EXPECT_EQ(heard, 0.25);
}

TEST(PlayerSeek, ThePositionBeforeASeekIsRemembered) {
    using std::chrono::milliseconds;
    Screening show((Film()));
    show.player->Play();
    ASSERT_TRUE(show.Passes(0.5));
    const auto age = [&](std::chrono::steady_clock::time_point since) {
        return std::chrono::ceil<milliseconds>(std::chrono::steady_clock::now() - since);
    };
    const double heard = show.player->CurrentPosition();
    const auto moment = std::chrono::steady_clock::now();
    show.player->CurrentPosition(3);
    EXPECT_NEAR(show.player->PositionBefore(age(moment)), heard, 0.0025);
    QTest::qWait(60);
    show.player->Pause();
    EXPECT_NEAR(show.player->PositionBefore(age(moment)), heard, 0.0025);
    EXPECT_EQ(show.player->PositionBefore(milliseconds(0)), show.player->CurrentPosition());
}

} // namespace

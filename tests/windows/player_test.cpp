#include "platform/mpvplayer.h"
#include "tests/windows/films.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace {

constexpr int Patience = 10000;

/// A player with a screen of its own, on which every picture that is due is drawn.
class Screening {
  public:
    Screening() {
        QObject::connect(player.get(), &Player::PictureDue,
                         [this] { drawn = player->DrawPicture(screen) || drawn; });
    }

    std::optional<int> Number() const { return drawn ? PictureNumber(screen) : std::nullopt; }
    /// Waits for this picture.
    bool Shows(int number) {
        return QTest::qWaitFor([&] { return Number() == number; }, Patience);
    }
    bool Reaches(Player::PlayState state) {
        return QTest::qWaitFor([&] { return player->State() == state; }, Patience);
    }

    std::unique_ptr<Player> player = MakeMpvPlayer();
    QImage screen{320, 200, QImage::Format_RGB32};
    bool drawn = false;
};

Film In(const char* container) {
    Film film;
    film.container = QLatin1String(container);
    return film;
}

struct Place {
    const char* container;
    double position;
};

class PlayerSeek : public testing::TestWithParam<const char*> {};

TEST_P(PlayerSeek, ShowsThePictureThatCoversThePosition) {
    const Film film = In(GetParam());
    const PictureTimes times(film);
    Screening show;
    show.player->FileName(MakeFilm(film));
    ASSERT_NE(show.player->ReadyState(), 0);
    const double first = times.Begin(40);
    for (const double position : {0.0, first, first + 0.001, first + 0.02, first + 0.038, 0.5, 3.0,
                                  times.Begin(99) + 0.01}) {
        show.player->CurrentPosition(position);
        EXPECT_DOUBLE_EQ(show.player->CurrentPosition(), position);
        EXPECT_TRUE(show.Shows(times.NumberAt(position)))
            << "at " << position << " shows " << show.Number().value_or(-1) << ", not "
            << times.NumberAt(position);
        EXPECT_DOUBLE_EQ(show.player->CurrentPosition(), position);
    }
}

INSTANTIATE_TEST_SUITE_P(Containers, PlayerSeek, testing::Values("avi", "mpg", "asf", "mov"),
                         [](const auto& row) { return std::string(row.param); });

} // namespace

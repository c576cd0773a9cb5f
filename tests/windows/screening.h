#pragma once

#include "player/mpvplayer.h"
#include "tests/windows/films.h"

#include <QImage>
#include <QObject>
#include <QTest>

#include <memory>
#include <optional>

/// A player with a screen of its own, on which every picture that is due is drawn.
class Screening {
  public:
    static constexpr int Patience = 10000;

    Screening() {
        screen.fill(Qt::black);
        QObject::connect(player.get(), &Player::PictureDue,
                         [this] { drawn = player->DrawPicture(screen) || drawn; });
    }
    explicit Screening(const Film& film)
        : Screening() {
        player->FileName(MakeFilm(film));
    }

    std::optional<int> Number() const { return drawn ? PictureNumber(screen) : std::nullopt; }
    /// Waits for this picture.
    bool Shows(int number) {
        return QTest::qWaitFor([&] { return Number() == number; }, Patience);
    }
    bool Reaches(Player::PlayState state) {
        return QTest::qWaitFor([&] { return player->State() == state; }, Patience);
    }
    /// Waits for the clock to pass this position while playing.
    bool Passes(double position) {
        return QTest::qWaitFor([&] { return player->CurrentPosition() > position; }, Patience);
    }

    std::unique_ptr<Player> player = MakeMpvPlayer();
    QImage screen{320, 200, QImage::Format_RGB32};
    bool drawn = false;
};

inline Film FilmIn(const char* container) {
    Film film;
    film.container = QLatin1String(container);
    return film;
}

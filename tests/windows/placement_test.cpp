#include "dialogs/placement.h"

#include <gtest/gtest.h>

namespace {

struct PlaceRow {
    const char* what;
    QSize size;
    QRect film;
    QRect screen;
    QRect expected;
};

constexpr QSize Least(300, 200);

class FilmPlacement : public testing::TestWithParam<PlaceRow> {};

TEST_P(FilmPlacement, KeepsOffTheFilmAndOnTheScreen) {
    const PlaceRow& row = GetParam();
    const QRect place = BesideFilm(row.size, Least, row.film, row.screen);
    EXPECT_TRUE(place == row.expected) << row.what << ": " << place.x() << ',' << place.y() << ' '
                                       << place.width() << 'x' << place.height();
    EXPECT_TRUE(row.screen.contains(place)) << row.what;
}

INSTANTIATE_TEST_SUITE_P(
    Screens, FilmPlacement,
    testing::Values(
        PlaceRow{"right", {900, 600}, {0, 100, 900, 600}, {0, 0, 1920, 1080}, {900, 100, 900, 600}},
        PlaceRow{
            "left", {900, 600}, {1000, 100, 920, 600}, {0, 0, 1920, 1080}, {100, 100, 900, 600}},
        PlaceRow{"below", {900, 600}, {0, 0, 1000, 500}, {0, 0, 1080, 1920}, {0, 500, 900, 600}},
        PlaceRow{"above", {900, 600}, {0, 1400, 1080, 520}, {0, 0, 1080, 1920}, {0, 800, 900, 600}},
        PlaceRow{"smaller, where it keeps most",
                 {900, 600},
                 {0, 0, 1200, 800},
                 {0, 0, 1800, 1000},
                 {1200, 0, 600, 600}},
        PlaceRow{"a second screen",
                 {900, 600},
                 {1920, 0, 900, 700},
                 {1920, 0, 1920, 1080},
                 {2820, 0, 900, 600}},
        PlaceRow{"a film that fills the screen",
                 {900, 600},
                 {0, 0, 1024, 560},
                 {0, 0, 1024, 600},
                 {124, 300, 900, 300}},
        PlaceRow{
            "a tiny screen", {900, 600}, {0, 0, 250, 180}, {0, 0, 250, 180}, {0, 0, 250, 180}}));

} // namespace

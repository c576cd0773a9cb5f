#include "fit/fit.h"
#include "tests/core/fittingfilms.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>

namespace {

constexpr double Length = 600;

double WorstError(const std::vector<FitTitle>& right, std::span<const FitTitle> titles,
                  const Fit& fit) {
    const std::vector<FitTimes> times = ApplyFit(titles, fit);
    double worst = 0;
    for (std::size_t i = 0; i < times.size(); ++i)
        worst = std::max(worst, std::abs(times[i].start - right[i].start));
    return worst;
}

struct OneLine {
    const char* name;
    double offset;
    double rate;
};

std::ostream& operator<<(std::ostream& out, const OneLine& row) {
    return out << row.name;
}

class Fitting : public testing::TestWithParam<OneLine> {};

TEST_P(Fitting, FindsOffsetAndRate) {
    const OneLine& row = GetParam();
    const FittingFilm film = MakeFilm(1, Length);
    const std::vector<FitTitle> titles = Misplaced(film.titles, row.offset, row.rate);
    const Fit fit = FindFit(titles, SpeechOf(film, 0.6));
    EXPECT_EQ(fit.verdict, FitVerdict::Fitted);
    ASSERT_EQ(fit.pieces.size(), 1U);
    EXPECT_EQ(fit.pieces[0].first, 1);
    EXPECT_EQ(fit.pieces[0].last, static_cast<std::int32_t>(titles.size()));
    EXPECT_NEAR(fit.pieces[0].rate, row.rate, 1e-9);
    EXPECT_NEAR(fit.pieces[0].offset, row.offset, 0.03);
    EXPECT_GT(fit.pieces[0].confidence, 0.9);
    EXPECT_LT(WorstError(film.titles, titles, fit), 0.03);
    EXPECT_TRUE(fit.withoutPlace.empty());
}

INSTANTIATE_TEST_SUITE_P(Lines, Fitting,
                         testing::Values(OneLine{"late", -2.41, 1}, OneLine{"early", 17.3, 1},
                                         OneLine{"little", 0.26, 1}, OneLine{"far", -280, 1},
                                         OneLine{"pal", 0, 25.0 / 24},
                                         OneLine{"film", 3.2, 24.0 / 1.001 / 25},
                                         OneLine{"ntsc", -1.5, 1.001}));

TEST(Fit, LeavesRightTitles) {
    const FittingFilm film = MakeFilm(2, Length);
    const Fit fit = FindFit(film.titles, SpeechOf(film, 0.6));
    EXPECT_EQ(fit.verdict, FitVerdict::Right);
}

TEST(Fit, KnowsTitlesOfAnotherFilm) {
    const FittingFilm film = MakeFilm(3, Length);
    const Fit fit = FindFit(MakeFilm(4, Length).titles, SpeechOf(film, 0.6));
    EXPECT_EQ(fit.verdict, FitVerdict::Unsure);
}

} // namespace

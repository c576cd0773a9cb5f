#include "fit/fit.h"
#include "tests/core/fittingfilms.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>

namespace {

constexpr double Length = 600;
constexpr double Noise = 0.6;

const FittingFilm& TheFilm() {
    static const FittingFilm Film = MakeFilm(1, Length);
    return Film;
}

const SpeechCurve& TheSpeech() {
    static const SpeechCurve Speech = SpeechOf(TheFilm(), Noise);
    return Speech;
}

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
    const std::vector<FitTitle> titles = Misplaced(TheFilm().titles, row.offset, row.rate);
    const Fit fit = FindFit(titles, TheSpeech());
    EXPECT_EQ(fit.verdict, FitVerdict::Fitted);
    ASSERT_EQ(fit.pieces.size(), 1U);
    EXPECT_EQ(fit.pieces[0].first, 1);
    EXPECT_EQ(fit.pieces[0].last, static_cast<std::int32_t>(titles.size()));
    EXPECT_NEAR(fit.pieces[0].rate, row.rate, 1e-9);
    EXPECT_NEAR(fit.pieces[0].offset, row.offset, 0.03);
    EXPECT_GT(fit.pieces[0].confidence, 0.9);
    EXPECT_GT(fit.confidence, 0.9);
    EXPECT_LT(WorstError(TheFilm().titles, titles, fit), 0.03);
    EXPECT_TRUE(fit.withoutPlace.empty());
    const FittedTitle& middle = fit.titles[titles.size() / 2];
    EXPECT_NEAR(middle.ownOffset, row.offset, 0.15);
    EXPECT_NEAR(middle.residual, 0, 0.1);
}

INSTANTIATE_TEST_SUITE_P(Lines, Fitting,
                         testing::Values(OneLine{"late", -2.41, 1}, OneLine{"early", 17.3, 1},
                                         OneLine{"little", 0.26, 1}, OneLine{"far", -280, 1},
                                         OneLine{"pal", 0, 25.0 / 24},
                                         OneLine{"film", 3.2, 24.0 / 1.001 / 25},
                                         OneLine{"ntsc", -1.5, 1.001}));

// The verdicts.

TEST(FitVerdict, LeavesRightTitles) {
    const FittingFilm film = MakeFilm(2, Length);
    const Fit fit = FindFit(film.titles, SpeechOf(film, Noise));
    EXPECT_EQ(fit.verdict, FitVerdict::Right);
    EXPECT_GT(fit.confidence, 0.9);
}

TEST(FitVerdict, KnowsTitlesOfAnotherFilm) {
    const Fit fit = FindFit(MakeFilm(4, Length).titles, TheSpeech());
    EXPECT_EQ(fit.verdict, FitVerdict::Unsure);
    EXPECT_LT(fit.confidence, 0.9);
}

struct StrangersCase {
    const char* what;
    std::size_t titles;
    /// Of the detector.
    double noise;
    bool sameFilm;
    bool elsewhere;
};

std::ostream& operator<<(std::ostream& out, const StrangersCase& row) {
    return out << row.what;
}

class Strangers : public testing::TestWithParam<StrangersCase> {};

TEST_P(Strangers, AreNamedOnlyWhereThatIsSure) {
    const StrangersCase& row = GetParam();
    const FittingFilm film = MakeFilm(4, Length);
    std::vector<FitTitle> titles = film.titles;
    titles.resize(std::min(titles.size(), row.titles));
    const SpeechCurve speech = SpeechOf(row.sameFilm ? film : MakeFilm(5, Length), row.noise);
    EXPECT_EQ(FindFit(titles, speech).elsewhere, row.elsewhere);
}

INSTANTIATE_TEST_SUITE_P(
    Films, Strangers,
    testing::Values(StrangersCase{"many of another film", 5000, 0.1, false, true},
                    StrangersCase{"few of another film", 50, 0.1, false, false},
                    StrangersCase{"many of another film, in noise", 5000, 1, false, false},
                    StrangersCase{"many of this film", 5000, 0.1, true, false},
                    StrangersCase{"many of this film, in noise", 5000, 1, true, false}));

TEST(FitVerdict, HasNoneWhereNothingIsSaid) {
    std::vector<FitTitle> titles = TheFilm().titles;
    for (FitTitle& title : titles)
        title.text = "[music]";
    EXPECT_EQ(FindFit(titles, TheSpeech()).verdict, FitVerdict::Unsure);
}

TEST(FitVerdict, IsTheSameForAnyNumberOfThreads) {
    const std::vector<FitTitle> titles = Misplaced(TheFilm().titles, 31.7, 25.0 / 24);
    FitOptions options;
    options.threads = 1;
    const Fit one = FindFit(titles, TheSpeech(), {}, {}, options);
    options.threads = 5;
    const Fit five = FindFit(titles, TheSpeech(), {}, {}, options);
    EXPECT_EQ(one.verdict, five.verdict);
    EXPECT_EQ(one.confidence, five.confidence);
    ASSERT_EQ(one.pieces.size(), five.pieces.size());
    for (std::size_t i = 0; i < one.pieces.size(); ++i)
        EXPECT_EQ(one.pieces[i].offset, five.pieces[i].offset);
    for (std::size_t i = 0; i < one.titles.size(); ++i) {
        EXPECT_EQ(one.titles[i].confidence, five.titles[i].confidence);
        EXPECT_EQ(one.titles[i].residual, five.titles[i].residual);
        EXPECT_EQ(one.titles[i].ownOffset, five.titles[i].ownOffset);
    }
}

// Cuts.

/// Titles made with a version of the film that lacks [from, from + length).
std::vector<FitTitle> WithoutPiece(const FittingFilm& film, double from, double length,
                                   std::vector<FitTitle>& right) {
    std::vector<FitTitle> titles;
    for (FitTitle title : film.titles) {
        if (title.start >= from && title.start < from + length)
            continue;
        right.push_back(title);
        if (title.start >= from) {
            title.start -= length;
            title.end -= length;
        }
        titles.push_back(title);
    }
    return titles;
}

TEST(FitCuts, FindsWhatTheFilmHasMore) {
    const FittingFilm film = MakeFilm(5, 900);
    std::vector<FitTitle> right;
    const std::vector<FitTitle> titles = WithoutPiece(film, 400, 50, right);
    const Fit fit = FindFit(titles, SpeechOf(film, Noise));
    EXPECT_EQ(fit.verdict, FitVerdict::Fitted);
    ASSERT_EQ(fit.pieces.size(), 2U);
    EXPECT_NEAR(fit.pieces[0].offset, 0, 0.03);
    EXPECT_NEAR(fit.pieces[1].offset, 50, 0.03);
    EXPECT_EQ(fit.pieces[1].first, fit.pieces[0].last + 1);
    EXPECT_LT(WorstError(right, titles, fit), 0.03);
}

TEST(FitCuts, FindsBreaksBeyondTheWindow) {
    const FittingFilm film = MakeFilm(6, 1500);
    std::vector<FitTitle> right;
    const std::vector<FitTitle> titles = WithoutPiece(film, 600, 400, right);
    const Fit fit = FindFit(titles, SpeechOf(film, Noise));
    EXPECT_EQ(fit.verdict, FitVerdict::Fitted);
    EXPECT_LT(WorstError(right, titles, fit), 0.03);
}

struct CutFile {
    FittingFilm film;
    std::vector<FitTitle> titles;
    std::vector<std::int32_t> cutOut;
};

/// The film lacks 60 s that the titles were made with.
CutFile FileWithTooMuch() {
    const FittingFilm whole = MakeFilm(7, 960);
    CutFile file{{900, {}}, whole.titles, {}};
    std::int32_t number = 0;
    for (FitTitle title : whole.titles) {
        ++number;
        if (title.start >= 400 && title.start < 460) {
            file.cutOut.push_back(number);
            continue;
        }
        if (title.start >= 460) {
            title.start -= 60;
            title.end -= 60;
        }
        file.film.titles.push_back(title);
    }
    return file;
}

TEST(FitCuts, NamesTitlesWithoutAPlace) {
    const CutFile file = FileWithTooMuch();
    const Fit fit = FindFit(file.titles, SpeechOf(file.film, 0.4));
    EXPECT_EQ(fit.verdict, FitVerdict::Fitted);
    // One at the cut's edge may be heard in what follows.
    EXPECT_GE(fit.withoutPlace.size() + 1, file.cutOut.size());
    EXPECT_TRUE(std::includes(file.cutOut.begin(), file.cutOut.end(), fit.withoutPlace.begin(),
                              fit.withoutPlace.end()));
    for (const std::int32_t number : fit.withoutPlace)
        EXPECT_EQ(fit.titles[static_cast<std::size_t>(number - 1)].piece, FittedTitle::NoPiece);
    ASSERT_EQ(fit.pieces.size(), 2U);
    EXPECT_NEAR(fit.pieces[1].offset, -60, 0.03);
}

TEST(FitCuts, KeepOrderAndLengths) {
    const CutFile file = FileWithTooMuch();
    const Fit fit = FindFit(file.titles, SpeechOf(file.film, 0.4));
    const std::vector<FitTimes> times = ApplyFit(file.titles, fit);
    ASSERT_EQ(times.size(), file.titles.size());
    for (std::size_t i = 0; i < times.size(); ++i) {
        EXPECT_NEAR(times[i].end - times[i].start, file.titles[i].end - file.titles[i].start, 1e-9);
        EXPECT_GE(times[i].start, times[i > 0 ? i - 1 : 0].start) << "title " << i + 1;
    }
}

TEST(FitCuts, MovesOnlyThePiecesChosen) {
    const CutFile file = FileWithTooMuch();
    const Fit fit = FindFit(Misplaced(file.titles, 3), SpeechOf(file.film, 0.4));
    ASSERT_EQ(fit.pieces.size(), 2U);
    const std::vector<FitTitle> titles = Misplaced(file.titles, 3);
    const std::vector<FitTimes> times = ApplyFit(titles, fit, {false, true});
    EXPECT_EQ(times.front().start, titles.front().start);
    EXPECT_NEAR(times.back().start, titles.back().start - 57, 0.03);
}

TEST(FitCuts, TellWhatWouldStartBeforeZero) {
    FittingFilm film = MakeFilm(8, Length);
    std::vector<FitTitle> titles = film.titles;
    // A title that spans the film's beginning, and one that lies before it.
    titles.insert(titles.begin(), FitTitle{-1, 6, std::string(60, 'a')});
    titles.insert(titles.begin(), FitTitle{-9, -7, std::string(20, 'a')});
    titles = Misplaced(titles, -20);
    const Fit fit = FindFit(titles, SpeechOf(film, 0.4));
    EXPECT_EQ(fit.verdict, FitVerdict::Fitted);
    EXPECT_EQ(fit.withoutPlace, std::vector<std::int32_t>{1});
    EXPECT_EQ(fit.beforeZero, std::vector<std::int32_t>{2});
    const std::vector<FitTimes> times = ApplyFit(titles, fit);
    EXPECT_EQ(times[0].start, 0);
    EXPECT_EQ(times[1].start, 0);
    EXPECT_NEAR(times[1].end, 7, 1e-9);
}

// Anchors.

TEST(FitAnchors, AreMetExactly) {
    const std::vector<FitTitle> titles = Misplaced(TheFilm().titles, 12);
    const std::vector<FitAnchor> anchors{{40, TheFilm().titles[39].start + 0.11},
                                         {90, TheFilm().titles[89].start - 0.07}};
    const Fit fit = FindFit(titles, TheSpeech(), anchors);
    EXPECT_EQ(fit.verdict, FitVerdict::Fitted);
    const std::vector<FitTimes> times = ApplyFit(titles, fit);
    for (const FitAnchor& anchor : anchors)
        EXPECT_NEAR(times[static_cast<std::size_t>(anchor.title - 1)].start, anchor.start, 1e-9);
    EXPECT_LT(WorstError(TheFilm().titles, titles, fit), 0.15);
}

TEST(FitAnchors, ReachBeyondTheWindow) {
    const std::vector<FitTitle> titles = Misplaced(TheFilm().titles, 2000);
    const std::vector<FitAnchor> anchors{{1, TheFilm().titles[0].start}};
    const Fit fit = FindFit(titles, TheSpeech(), anchors);
    EXPECT_EQ(fit.verdict, FitVerdict::Fitted);
    EXPECT_LT(WorstError(TheFilm().titles, titles, fit), 0.1);
}

TEST(FitAnchors, HoldWhereThereIsNoSpeech) {
    const std::vector<FitTitle> titles = TheFilm().titles;
    const std::vector<FitAnchor> anchors{{1, titles[0].start + 2}, {100, titles[99].start + 3}};
    const Fit fit = FindFit(titles, SpeechCurve{}, anchors);
    EXPECT_EQ(fit.verdict, FitVerdict::Unsure);
    const std::vector<FitTimes> times = ApplyFit(titles, fit);
    EXPECT_NEAR(times[0].start, titles[0].start + 2, 1e-9);
    EXPECT_NEAR(times[99].start, titles[99].start + 3, 1e-9);
}

TEST(FitAnchors, OfTitlesThatAreNotThereAreLeftOut) {
    const std::vector<FitAnchor> anchors{{0, 5}, {-3, 5}, {100000, 5}, {7, std::nan("")}};
    const Fit fit = FindFit(TheFilm().titles, TheSpeech(), anchors);
    EXPECT_EQ(fit.verdict, FitVerdict::Right);
}

// Right titles.

TEST(FitToTitles, FindsCutsAndOffsets) {
    const FittingFilm film = MakeFilm(9, 900);
    std::vector<FitTitle> right;
    const std::vector<FitTitle> titles = Misplaced(WithoutPiece(film, 500, 7, right), -4.2);
    const Fit fit = FindFit(titles, RightTitles(film.titles));
    EXPECT_EQ(fit.verdict, FitVerdict::Fitted);
    ASSERT_EQ(fit.pieces.size(), 2U);
    EXPECT_LT(WorstError(right, titles, fit), 0.011);
}

TEST(FitToTitles, TakesLinesThatAreSplitOtherwise) {
    const FittingFilm film = MakeFilm(10, Length);
    RightTitles reference;
    for (std::size_t i = 0; i < film.titles.size(); ++i) {
        FitTitle title = film.titles[i];
        if (i % 7 == 3 && i + 1 < film.titles.size()) {
            title.end = film.titles[++i].end;
        } else if (i % 7 == 5) {
            FitTitle second = title;
            title.end = second.start = (title.start + title.end) / 2;
            reference.push_back(title);
            title = second;
        }
        reference.push_back(title);
    }
    const std::vector<FitTitle> titles = Misplaced(film.titles, 8.8, 25.0 / 24);
    const Fit fit = FindFit(titles, reference);
    EXPECT_EQ(fit.verdict, FitVerdict::Fitted);
    EXPECT_LT(WorstError(film.titles, titles, fit), 0.03);
    EXPECT_EQ(FindFit(MakeFilm(11, Length).titles, reference).verdict, FitVerdict::Unsure);
}

// Cancelling.

TEST(FitProgress, EndsWhenItIsCancelled) {
    for (const int after : {1, 2, 5}) {
        int calls = 0;
        const Fit fit = FindFit(TheFilm().titles, TheSpeech(), {}, [&](double done) {
            EXPECT_GE(done, 0);
            EXPECT_LE(done, 1);
            return ++calls < after;
        });
        EXPECT_TRUE(fit.cancelled);
        EXPECT_EQ(calls, after);
        EXPECT_EQ(fit.verdict, FitVerdict::Unsure);
        EXPECT_EQ(fit.titles.size(), TheFilm().titles.size());
    }
}

TEST(FitProgress, GoesUpToOne) {
    double last = 0;
    const Fit fit = FindFit(TheFilm().titles, TheSpeech(), {}, [&](double done) {
        EXPECT_GE(done, last);
        last = done;
        return true;
    });
    EXPECT_FALSE(fit.cancelled);
    EXPECT_NEAR(last, 1, 1e-6);
}

} // namespace

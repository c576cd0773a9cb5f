#include "fit/fit.h"
#include "fit/spoken.h"
#include "tests/core/fittingfilms.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <ostream>

namespace {

constexpr double NoNumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Infinite = std::numeric_limits<double>::infinity();

/// What holds of every answer, whatever was asked.
void ExpectSound(const std::vector<FitTitle>& titles, const Fit& fit) {
    ASSERT_EQ(fit.titles.size(), titles.size());
    EXPECT_GE(fit.confidence, 0);
    EXPECT_LE(fit.confidence, 1);
    const auto count = static_cast<std::int32_t>(titles.size());
    for (const FitPiece& piece : fit.pieces) {
        EXPECT_GE(piece.first, 1);
        EXPECT_LE(piece.last, count);
        EXPECT_LE(piece.first, piece.last);
        EXPECT_TRUE(std::isfinite(piece.offset) && piece.rate > 0);
        EXPECT_GE(piece.confidence, 0);
        EXPECT_LE(piece.confidence, 1);
    }
    std::size_t without = 0;
    for (const FittedTitle& title : fit.titles) {
        EXPECT_LT(title.piece, static_cast<std::int32_t>(fit.pieces.size()));
        EXPECT_TRUE(std::isfinite(title.ownOffset) && std::abs(title.residual) <= 1);
        without += title.piece == FittedTitle::NoPiece && !fit.pieces.empty() ? 1U : 0U;
    }
    EXPECT_EQ(fit.withoutPlace.size(), without);
    EXPECT_EQ(ApplyFit(titles, fit).size(), titles.size());
}

struct Damage {
    const char* name;
    std::function<void(std::vector<FitTitle>&, SpeechCurve&)> damage;
    /// Most is as it was, so the answer is too.
    bool stillFits = false;
};

std::ostream& operator<<(std::ostream& out, const Damage& row) {
    return out << row.name;
}

class Damaged : public testing::TestWithParam<Damage> {};

TEST_P(Damaged, InputIsAnsweredAllTheSame) {
    const FittingFilm film = MakeFilm(21, 500);
    std::vector<FitTitle> titles = Misplaced(film.titles, 5);
    SpeechCurve curve = SpeechOf(film, 0.5);
    GetParam().damage(titles, curve);
    const Fit fit = FindFit(titles, curve);
    ExpectSound(titles, fit);
    if (GetParam().stillFits) {
        EXPECT_EQ(fit.verdict, FitVerdict::Fitted);
        ASSERT_EQ(fit.pieces.size(), 1U);
        EXPECT_NEAR(fit.pieces[0].offset, 5, 0.05);
    } else {
        EXPECT_EQ(fit.verdict, FitVerdict::Unsure);
    }
}

using Titles = std::vector<FitTitle>;

INSTANTIATE_TEST_SUITE_P(
    Inputs, Damaged,
    testing::Values(
        Damage{"nothing",
               [](Titles& titles, SpeechCurve& curve) {
                   titles.clear(), curve.values.clear();
               }},
        Damage{"no titles",
               [](Titles& titles, SpeechCurve&) {
                   titles.clear();
               }},
        Damage{"one title",
               [](Titles& titles, SpeechCurve&) {
                   titles.resize(1);
               }},
        Damage{"no speech",
               [](Titles&, SpeechCurve& curve) {
                   curve.values.clear();
               }},
        Damage{"one moment",
               [](Titles&, SpeechCurve& curve) {
                   curve.values.resize(1);
               }},
        Damage{"all speech",
               [](Titles&, SpeechCurve& curve) {
                   curve.values.assign(50000, 1.0F);
               }},
        Damage{"speech that is no number",
               [](Titles&, SpeechCurve& curve) {
                   curve.values.assign(50000, std::nanf(""));
               }},
        Damage{"some speech that is none",
               [](Titles&, SpeechCurve& curve) {
                   for (std::size_t i = 0; i < curve.values.size(); i += 50)
                       curve.values[i] = i % 100 == 0 ? std::nanf("") : -1e30F;
               },
               true},
        Damage{"loud speech",
               [](Titles&, SpeechCurve& curve) {
                   for (float& value : curve.values)
                       value = value > 0.5F ? std::numeric_limits<float>::infinity() : value;
               },
               true},
        Damage{"starts that are no numbers",
               [](Titles& titles, SpeechCurve&) {
                   for (FitTitle& title : titles)
                       title.start = title.end = NoNumber;
               }},
        Damage{"one start that is no number",
               [](Titles& titles, SpeechCurve&) { titles[30].start = NoNumber; }, true},
        Damage{"ends that are no numbers",
               [](Titles& titles, SpeechCurve&) {
                   for (FitTitle& title : titles)
                       title.end = NoNumber;
               },
               true},
        Damage{"ends before starts",
               [](Titles& titles, SpeechCurve&) {
                   for (FitTitle& title : titles)
                       title.end = title.start - 10;
               },
               true},
        Damage{"a title far away",
               [](Titles& titles, SpeechCurve&) { titles[10].start = Infinite; }, true},
        Damage{"unsorted", [](Titles& titles, SpeechCurve&) { std::swap(titles[10], titles[40]); },
               true},
        Damage{"backwards",
               [](Titles& titles, SpeechCurve&) { std::reverse(titles.begin(), titles.end()); },
               true},
        Damage{"equal starts",
               [](Titles& titles, SpeechCurve&) {
                   for (FitTitle& title : titles)
                       title.start = 100;
               }},
        Damage{"each title twice",
               [](Titles& titles, SpeechCurve&) {
                   const Titles once = titles;
                   titles.insert(titles.end(), once.begin(), once.end());
               },
               true},
        Damage{"texts that are no texts",
               [](Titles& titles, SpeechCurve&) {
                   for (FitTitle& title : titles)
                       title.text = "\xFF"
                                    "said\xC0[<\r\n{and heard\xE2\x99";
               },
               true},
        Damage{"huge times", [](Titles& titles, SpeechCurve&) {
                   for (FitTitle& title : titles)
                       title.start *= 1e300;
               }}));

TEST(DamagedTitles, MayBeManyMoreThanAFilmHas) {
    Titles titles;
    for (int i = 0; i < 3100; ++i)
        titles.push_back({i * 0.04, i * 0.04 + 0.03, "word"});
    const Fit fit = FindFit(titles, SpeechOf(MakeFilm(22, 300)));
    ExpectSound(titles, fit);
    EXPECT_EQ(fit.verdict, FitVerdict::Unsure);
}

TEST(DamagedTitles, AsReferenceAreAnswered) {
    const FittingFilm film = MakeFilm(23, 300);
    for (const double start : {NoNumber, Infinite, -Infinite, 0.0}) {
        const RightTitles right(20, FitTitle{start, start, "word"});
        ExpectSound(film.titles, FindFit(film.titles, right));
    }
    ExpectSound(film.titles, FindFit(film.titles, RightTitles{}));
}

TEST(DamagedAnchors, ThatContradictEachOtherAreStillMet) {
    const FittingFilm film = MakeFilm(24, 300);
    const std::vector<FitAnchor> anchors{{10, 200}, {20, 100}, {20, 150}, {30, -50}, {31, 1e6}};
    const Fit fit = FindFit(film.titles, SpeechOf(film), anchors);
    ExpectSound(film.titles, fit);
    EXPECT_EQ(fit.verdict, FitVerdict::Unsure);
}

TEST(DamagedFit, IsAppliedAsFarAsItGoes) {
    const Titles titles{{1, 2, "a"}, {3, 4, "b"}};
    Fit fit;
    fit.pieces.push_back({1, 2, 10, 1, 1});
    fit.titles.resize(1);
    fit.titles[0].piece = 7;
    const std::vector<FitTimes> times = ApplyFit(titles, fit);
    EXPECT_EQ(times[0].start, 1);
    EXPECT_EQ(times[1].start, 3);
}

struct Line {
    const char* text;
    bool spoken;
};

class SpokenText : public testing::TestWithParam<Line> {};

TEST_P(SpokenText, IsToldFromSounds) {
    EXPECT_EQ(SpokenLength(GetParam().text) > 0, GetParam().spoken);
}

INSTANTIATE_TEST_SUITE_P(Lines, SpokenText,
                         testing::Values(Line{"Hello", true}, Line{"", false}, Line{"...", false},
                                         Line{"[music]", false}, Line{"(sighs)", false},
                                         Line{"(sighs) No.", true}, Line{"[open", true},
                                         Line{"\xE2\x99\xAA la la \xE2\x99\xAA", false},
                                         Line{"<i>[door]</i>", false}, Line{"JOHN:", true},
                                         Line{"JOHN: [laughs]", false}, Line{"JOHN: Yes", true},
                                         Line{"\xEC\x98\x88", true}, Line{"\xE2\x80\xA6", false},
                                         Line{"[a]\r\nyes", true}, Line{"{y:i}", false}));

TEST(SpokenText, TakesLongerTheMoreIsSaid) {
    EXPECT_NEAR(SpokenLength("I have not seen him since yesterday"), 2.6, 0.5);
    EXPECT_NEAR(SpokenLength("JOHN: I have not seen him since yesterday"), 2.6, 0.5);
    EXPECT_NEAR(SpokenLength("\xEC\x98\x88\xEC\x98\x88\xEC\x98\x88\xEC\x98\x88"), 0.9, 0.2);
}

} // namespace

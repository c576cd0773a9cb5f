#include "dialogs/fitplot.h"
#include "dialogs/fitwords.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

FittedTitle Found(std::int32_t piece, double ownOffset, double confidence) {
    FittedTitle title;
    title.piece = piece;
    title.ownOffset = ownOffset;
    title.confidence = confidence;
    return title;
}

Fit FitOf(FitVerdict verdict, double confidence, std::vector<FitPiece> pieces) {
    Fit fit;
    fit.verdict = verdict;
    fit.confidence = confidence;
    fit.pieces = std::move(pieces);
    return fit;
}

const std::vector<FitTitle> Titles{{10, 12, "a"}, {20, 22, "b"}, {1000, 1002, "c"}};

struct HintRow {
    Fit fit;
    double filmRate;
    const char* text;
};

TEST(FitHint, SaysWhatIsSureAndNothingElse) {
    Fit cancelled = FitOf(FitVerdict::Right, 1, {});
    cancelled.cancelled = true;
    Fit elsewhere = FitOf(FitVerdict::Unsure, 0.5, {});
    elsewhere.elsewhere = true;
    const std::vector<HintRow> rows{
        {cancelled, 25, ""},
        {FitOf(FitVerdict::Right, 0.95, {}), 25, "The titles fit the sound"},
        {FitOf(FitVerdict::Right, 0.5, {}), 25, ""},
        {FitOf(FitVerdict::Unsure, 0.4, {}), 25, ""},
        {FitOf(FitVerdict::Unsure, 0, {}), 25, ""},
        {elsewhere, 25, "These titles seem to belong to another film"},
        {FitOf(FitVerdict::Fitted, 0.5, {{1, 3, -2.41, 1, 0.5}}), 25, ""},
        {FitOf(FitVerdict::Fitted, 0.9, {{1, 3, -2.41, 1, 0.9}}), 25, "About 2.4 s late. Fit..."},
        {FitOf(FitVerdict::Fitted, 0.9, {{1, 3, 12, 1, 0.9}}), 0, "About 12.0 s early. Fit..."},
        {FitOf(FitVerdict::Fitted, 0.9, {{1, 3, 0, 25 / 23.976, 0.9}}), 23.976,
         "Made for 25 pictures a second, the film has 23.976. Fit..."},
        {FitOf(FitVerdict::Fitted, 0.9, {{1, 3, 0, 23.976 / 25, 0.9}}), 0,
         "Made for 23.976 pictures a second, the film has 25. Fit..."},
        {FitOf(FitVerdict::Fitted, 0.9, {{1, 3, 0, 1.3, 0.9}}), 25,
         "Made for another speed of the film. Fit..."},
        {FitOf(FitVerdict::Fitted, 0.9, {{1, 2, 0, 1, 0.9}, {3, 3, 8, 1, 0.9}}), 25,
         "Made for another version of the film. Fit..."}};
    for (const HintRow& row : rows)
        EXPECT_EQ(FitHintText(row.fit, Titles, row.filmRate), row.text);
    EXPECT_EQ(FitHintText(FitOf(FitVerdict::Right, 1, {}), {}, 25), "");
}

struct PieceRow {
    FitPiece piece;
    const char* titles;
    const char* move;
    const char* rate;
};

TEST(FitPieces, AreNamedForPeople) {
    for (const PieceRow& row :
         {PieceRow{{1, 3, -2.41, 1, 1}, "1 - 3", "2.41 s earlier", "as it was"},
          PieceRow{{2, 2, 0.005, 1, 1}, "2", "not moved", "as it was"},
          PieceRow{{1, 2, 0, 25 / 23.976, 1}, "1 - 2", "0.43 s later", "25 to 23.976"},
          PieceRow{{3, 3, 0, 1.3, 1}, "3", "300.00 s later", "x 1.3000"},
          PieceRow{{9, 9, 1, 1, 1}, "9", "1.00 s later", "as it was"}}) {
        EXPECT_EQ(PieceTitlesText(row.piece), row.titles);
        EXPECT_EQ(PieceMoveText(row.piece, Titles), row.move);
        EXPECT_EQ(PieceRateText(row.piece), row.rate);
    }
    EXPECT_EQ(PercentText(0.999), "99 %");
    EXPECT_EQ(PercentText(0), "0 %");
}

TEST(FitVerdictText, TellsWhatCannotBeMoved) {
    Fit fit = FitOf(FitVerdict::Fitted, 0.97, {{1, 3, 1, 1, 0.97}});
    EXPECT_EQ(FitVerdictText(fit), "A fit was found: 1 piece, 97 % sure.");
    fit.withoutPlace = {2};
    fit.beforeZero = {1, 3};
    EXPECT_EQ(FitVerdictText(fit),
              "A fit was found: 1 piece, 97 % sure. 1 title has no place in this film. 2 titles "
              "would come before the film begins and will start with it.");
    EXPECT_EQ(FitVerdictText(FitOf(FitVerdict::Right, 0.9, {})),
              "The titles fit as they are, 90 % sure. Nothing needs to be moved.");
}

TEST(LeastSureTitle, IsOneOfThePiece) {
    Fit fit;
    fit.titles = {Found(0, 0, 0.9), Found(0, 0, 0.4), Found(1, 0, 0.1), Found(-1, 0, 0)};
    EXPECT_EQ(LeastSureTitle(fit, 0), 2);
    EXPECT_EQ(LeastSureTitle(fit, 1), 3);
    EXPECT_EQ(LeastSureTitle(fit, 2), 0);
}

TEST(MovedTitles, AreThoseWithOtherTimes) {
    const std::vector<FitTimes> times{{10, 12}, {20, 22.5}, {999, 1002}};
    EXPECT_EQ(MovedTitles(Titles, times), (std::vector<std::int32_t>{2, 3}));
    EXPECT_TRUE(MovedTitles(Titles, {}).empty());
}

struct DistanceRow {
    double range;
    int most;
    double distance;
};

TEST(TickDistance, IsRound) {
    for (const DistanceRow& row :
         {DistanceRow{1, 10, 0.1}, DistanceRow{3, 5, 1}, DistanceRow{0.9, 2, 0.5},
          DistanceRow{100, 10, 10}, DistanceRow{7200, 8, 900}, DistanceRow{7200, 2, 3600},
          DistanceRow{1e6, 4, 252000}})
        EXPECT_DOUBLE_EQ(TickDistance(row.range, row.most), row.distance) << row.range;
}

TEST(FitPlot, PutsTitlesPiecesAndStepsIntoItsFrame) {
    Fit fit = FitOf(FitVerdict::Fitted, 1, {{1, 2, 5, 1, 0.5}, {3, 3, -5, 1, 2}});
    fit.titles = {Found(0, 5, 1), Found(0, 6, 1), Found(-1, -500, 1)};
    const FitPlot plot(fit, Titles, 5, 5);
    ASSERT_EQ(plot.dots.size(), 3U);
    EXPECT_DOUBLE_EQ(plot.dots[0].x, 0.01);
    EXPECT_EQ(plot.dots[2].piece, -1);
    EXPECT_EQ(plot.dots[2].y, 0);
    ASSERT_EQ(plot.pieces.size(), 2U);
    EXPECT_DOUBLE_EQ(plot.pieces[0].y1, plot.pieces[0].y2);
    EXPECT_GT(plot.pieces[0].y1, plot.zero);
    EXPECT_LT(plot.pieces[1].y1, plot.zero);
    EXPECT_EQ(plot.pieces[1].confidence, 1);
    ASSERT_EQ(plot.steps.size(), 1U);
    EXPECT_EQ(plot.steps[0].x1, plot.pieces[0].x2);
    EXPECT_EQ(plot.steps[0].y2, plot.pieces[1].y1);
    EXPECT_LE(plot.times.size(), 6U);
    EXPECT_LE(plot.moves.size(), 6U);
}

TEST(FitPlot, TakesAnything) {
    EXPECT_TRUE(FitPlot(Fit{}, {}, 5, 5).dots.empty());
    Fit fit = FitOf(FitVerdict::Unsure, 0, {{7, 9, 1, 1, 0}});
    fit.titles = {Found(4, 1, 0)};
    const std::vector<FitTitle> strange{{std::nan(""), 1, ""}};
    EXPECT_TRUE(FitPlot(fit, strange, 5, 5).dots.empty());
}

} // namespace

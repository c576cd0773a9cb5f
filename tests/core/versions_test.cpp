#include "editing/listcommands.h"
#include "editing/shift.h"
#include "editing/stretch.h"
#include "model/document.h"
#include "model/step.h"
#include "model/versions.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <limits>
#include <ostream>
#include <string>
#include <vector>

namespace {

constexpr std::int32_t Film = 8000;

SUBTITLES TitlesOf(std::int32_t count) {
    SUBTITLES titles;
    titles.Reserve(count);
    for (std::int32_t i = 1; i <= count; ++i)
        titles.Add(i, i + 0.5, "title " + std::to_string(i) + "\r\nand its second line");
    return titles;
}

void ExpectSame(const SUBTITLES& one, const SUBTITLES& other) {
    ASSERT_EQ(one.Count(), other.Count());
    for (std::int32_t i = 1; i <= one.Count(); ++i) {
        ASSERT_EQ(one.Text(i), other.Text(i)) << i;
        ASSERT_EQ(one.StartTime(i), other.StartTime(i)) << i;
        ASSERT_EQ(one.EndTime(i), other.EndTime(i)) << i;
    }
}

Version About(std::string step) {
    Version about;
    about.step = std::move(step);
    return about;
}

struct Edit {
    const char* what;
    void (*change)(SUBTITLES&);
    std::int32_t differ;
    /// What a version may cost beside its list of blocks, in bytes.
    std::size_t most;
};

std::ostream& operator<<(std::ostream& out, const Edit& edit) {
    return out << edit.what;
}

/// What the list of the blocks of such a film takes at most.
constexpr std::size_t BlockList = std::size_t{Film} / 16 * sizeof(TitleBlock) + 1000;
constexpr std::size_t Times = std::size_t{Film} * 2 * sizeof(double);

class VersionOf : public ::testing::TestWithParam<Edit> {};

TEST_P(VersionOf, CostsWhatChanged) {
    Versions versions;
    SUBTITLES titles = TitlesOf(Film);
    versions.Keep(titles, About("first"));
    const std::size_t before = versions.Bytes();
    const SUBTITLES first = titles;
    GetParam().change(titles);
    versions.Keep(titles, About("second"));
    EXPECT_LE(versions.Bytes() - before, BlockList + GetParam().most);
    EXPECT_EQ(DifferingTitles(versions.At(1), versions.At(0)), GetParam().differ);
    EXPECT_EQ(DifferingTitles(versions.At(0), versions.At(1)), GetParam().differ);
    EXPECT_EQ(DifferingTitles(versions.At(1), versions.Present(titles)), GetParam().differ);
    ExpectSame(TitlesOf(versions.At(0)), titles);
    ExpectSame(TitlesOf(versions.At(1)), first);
}

const Edit Edits[]{
    {"nothing", [](SUBTITLES&) {}, 0, 0},
    {"one text", [](SUBTITLES& t) { t.Text(5000, "other"); }, 1, 40000},
    {"one time", [](SUBTITLES& t) { t.StartTime(5000, 1); }, 1, 10000},
    {"first title inserted", [](SUBTITLES& t) { t.Insert(1, 0, 1, "new"); }, 1, 40000},
    {"title inserted", [](SUBTITLES& t) { t.Insert(6000, 0, 1, "new"); }, 1, 40000},
    {"first title deleted", [](SUBTITLES& t) { t.Delete(1); }, 1, 40000},
    {"three deleted",
     [](SUBTITLES& t) {
         t.DeleteAll({5, 6, 7000});
     },
     3, 80000},
    {"all shifted", [](SUBTITLES& t) { ShiftTitles(t, AllTitles(t), 1.5); }, Film,
     Times + BlockList},
    {"cleared", [](SUBTITLES& t) { t.Clear(); }, Film, 0},
};

INSTANTIATE_TEST_SUITE_P(All, VersionOf, ::testing::ValuesIn(Edits));

TEST(Versions, HoldAHundredAndTheNewestOfThem) {
    Versions versions;
    SUBTITLES titles = TitlesOf(3);
    for (int i = 1; i <= 150; ++i) {
        titles.Text(2, std::to_string(i));
        versions.Keep(titles, About(std::to_string(i)));
    }
    ASSERT_EQ(versions.Count(), Versions::Most);
    EXPECT_EQ(versions.At(0).step, "150");
    EXPECT_EQ(versions.At(99).step, "51");
    for (std::size_t age = 0; age < versions.Count(); ++age)
        EXPECT_EQ(TitlesOf(versions.At(age)).Text(2), versions.At(age).step);
}

TEST(Versions, StayWithinTheirMemory) {
    constexpr std::size_t Most = 2'000'000;
    Versions versions(Most);
    SUBTITLES titles = TitlesOf(5000);
    for (int i = 0; i < 60; ++i) {
        ShiftTitles(titles, AllTitles(titles), 1);
        versions.Keep(titles, About(std::to_string(i)));
        EXPECT_LE(versions.Bytes(), Most);
    }
    EXPECT_GT(versions.Count(), 5U);
    EXPECT_LT(versions.Count(), 60U);
    EXPECT_EQ(versions.At(0).step, "59");
    ExpectSame(TitlesOf(versions.At(0)), titles);
}

TEST(Versions, TheNewestStaysHoweverLargeItIs) {
    Versions versions(1000);
    versions.Keep(TitlesOf(5000), About("large"));
    ASSERT_EQ(versions.Count(), 1U);
    versions.Keep(TitlesOf(6000), About("larger"));
    ASSERT_EQ(versions.Count(), 1U);
    EXPECT_EQ(versions.At(0).step, "larger");
    EXPECT_EQ(versions.At(0).count, 6000);
}

TEST(Versions, TakeNoMemoryWhenTheyAreGone) {
    Versions versions;
    SUBTITLES titles;
    // The same block again and again, and titles without a text.
    for (int i = 0; i < 5000; ++i)
        titles.Add(1, 2, "");
    versions.Keep(titles, About("a"));
    versions.Keep(titles, About("b"));
    ExpectSame(TitlesOf(versions.At(1)), titles);
    versions.Clear();
    EXPECT_EQ(versions.Count(), 0U);
    EXPECT_EQ(versions.Bytes(), 0U);
}

TEST(Versions, KeepTimesThatAreNoNumbers) {
    Versions versions;
    SUBTITLES titles;
    titles.Add(std::nan(""), -std::numeric_limits<double>::infinity(), std::string("a\0b", 3));
    versions.Keep(titles, About("a"));
    versions.Keep(titles, About("b"));
    EXPECT_EQ(DifferingTitles(versions.At(0), versions.At(1)), 0);
    const SUBTITLES back = TitlesOf(versions.At(0));
    EXPECT_TRUE(std::isnan(back.StartTime(1)));
    EXPECT_EQ(back.EndTime(1), -std::numeric_limits<double>::infinity());
    EXPECT_EQ(back.Text(1), std::string("a\0b", 3));
}

TEST(Versions, KeepWhatTitlesCarry) {
    Versions versions;
    SUBTITLES titles = TitlesOf(40);
    titles.Extra(3, TitleExtra("italic"));
    titles.Extra(35, TitleExtra("red"));
    versions.Keep(titles, About("a"));
    titles.Extra(35, TitleExtra("blue"));
    EXPECT_EQ(DifferingTitles(versions.At(0), versions.Present(titles)), 1);
    const SUBTITLES back = TitlesOf(versions.At(0));
    EXPECT_EQ(back.Extra(3), TitleExtra("italic"));
    EXPECT_EQ(back.Extra(35), TitleExtra("red"));
    EXPECT_TRUE(back.Extra(4).Empty());
    EXPECT_TRUE(back.Extra(40).Empty());
}

TEST(Versions, OneOfOneLetterLinesIsNoLargerThanItsTitles) {
    Versions versions;
    SUBTITLES titles;
    for (int i = 0; i < 100000; ++i)
        titles.Add(i, i + 1, "a");
    versions.Keep(titles, About("a"));
    EXPECT_LT(versions.Bytes(), 100000U * 40);
}

/// What the document keeps of each kind of step.
class DocumentVersions : public ::testing::Test {
  protected:
    DocumentVersions() {
        for (int i = 1; i <= 6; ++i)
            titles.Add(i, i + 0.5, "title");
        titles.UndoEnabled(true);
    }

    void Shift(double seconds) {
        const Step step(titles, "Shift", Step::Undo::Emptied);
        ShiftTitles(titles, AllTitles(titles), seconds);
    }
    void Place(std::int32_t index) {
        const Step step(titles, {"Placing by key", StepName::Series::OneAfterTheOther});
        titles.SetTimes(index, 100 + index, 101 + index);
    }
    std::string Steps() const {
        std::string steps;
        for (std::size_t age = 0; age < document.Earlier().Count(); ++age)
            steps += document.Earlier().At(age).step + ';';
        return steps;
    }

    Document document;
    SUBTITLES& titles = document.Subt;
};

TEST_F(DocumentVersions, AreKeptBeforeStepsWithANameAlone) {
    titles.Text(1, "x");
    titles.Add(9, 10, "y");
    ShowLater(titles, 1);
    EXPECT_EQ(Steps(), "");
    Shift(1);
    DeleteTitles(titles, {2});
    EXPECT_EQ(Steps(), "Shift;");
    DeleteTitles(titles, {2, 3});
    EXPECT_EQ(Steps(), "Delete;Shift;");
    EXPECT_EQ(TitlesOf(document.Earlier().At(0)).Count(), 6);
    EXPECT_EQ(TitlesOf(document.Earlier().At(1)).Count(), 7);
    EXPECT_EQ(TitlesOf(document.Earlier().At(1)).StartTime(2), 2);
    EXPECT_EQ(TitlesOf(document.Earlier().At(0)).StartTime(2), 4);
    using std::chrono::system_clock;
    EXPECT_NEAR(static_cast<double>(document.Earlier().At(0).time),
                static_cast<double>(system_clock::to_time_t(system_clock::now())), 5);
}

TEST_F(DocumentVersions, AreNotKeptOfStepsThatChangeNothingOrOfAnEmptyDocument) {
    { const Step step(titles, "Stretch", Step::Undo::Emptied); }
    EXPECT_EQ(Steps(), "");
    Document empty;
    const Step step(empty.Subt, "Open");
    empty.Subt.Clear();
    empty.Subt.Add(1, 2, "a");
    EXPECT_EQ(empty.Earlier().Count(), 0U);
}

TEST_F(DocumentVersions, OfNestedStepsTheOutermostNameCounts) {
    {
        const Step outer(titles, "Fit");
        Shift(1);
        Shift(2);
    }
    EXPECT_EQ(Steps(), "Fit;");
    {
        const Step outer(titles);
        Shift(1);
    }
    EXPECT_EQ(Steps(), "Shift;Fit;");
}

TEST_F(DocumentVersions, ARunOfPlacementsIsOne) {
    Place(1);
    Place(2);
    Place(2);
    Place(3);
    EXPECT_EQ(Steps(), "Placing by key;");
    EXPECT_EQ(TitlesOf(document.Earlier().At(0)).StartTime(1), 1);
    titles.Text(6, "between");
    Place(4);
    EXPECT_EQ(Steps(), "Placing by key;Placing by key;");
    EXPECT_EQ(TitlesOf(document.Earlier().At(0)).StartTime(3), 103);
    Place(2);
    EXPECT_EQ(Steps(), "Placing by key;Placing by key;Placing by key;");
}

TEST_F(DocumentVersions, WhatWasRecordedInARunIsOne) {
    const auto snap = [this](std::int32_t title) {
        const Step step(titles, {"Placing by key", StepName::Series::OneAfterTheOther});
        titles.StartTime(title, title + 100);
        document.KeepRecorded("Snapping", title, title + 100, title + 101);
        titles.SetTimes(title, title + 100.2, title + 101.1);
    };
    snap(1);
    EXPECT_EQ(Steps(), "Snapping;Placing by key;");
    snap(2);
    snap(3);
    EXPECT_EQ(Steps(), "Snapping;Placing by key;");
    const SUBTITLES recorded = TitlesOf(document.Earlier().At(0));
    for (std::int32_t title = 1; title <= 3; ++title) {
        EXPECT_EQ(recorded.StartTime(title), title + 100);
        EXPECT_EQ(recorded.EndTime(title), title + 101);
        EXPECT_EQ(titles.StartTime(title), title + 100.2);
    }
    EXPECT_EQ(recorded.StartTime(4), titles.StartTime(4));
    EXPECT_EQ(TitlesOf(document.Earlier().At(1)).StartTime(1), 1);
    titles.Delete(6);
    snap(4);
    EXPECT_EQ(Steps(), "Snapping;Placing by key;Snapping;Placing by key;");
    EXPECT_EQ(TitlesOf(document.Earlier().At(0)).StartTime(3), 103.2);
    EXPECT_EQ(TitlesOf(document.Earlier().At(0)).StartTime(4), 104);
}

TEST_F(DocumentVersions, GoingBackIsItselfAStep) {
    {
        const Step step(titles);
        document.BeginOther();
        document.SubtitleFile = "a.srt";
        document.Style.byteOrderMark = true;
        titles.Text(2, "x");
    }
    Shift(1);
    // The box names the next file before that is opened.
    document.SubtitleFile = "b.srt";
    {
        const Step step(titles, "Open");
        document.BeginOther();
        document.Style = {};
        titles.Text(1, "other");
    }
    document.SubtitlesChanged = false;
    titles.Text(3, "y");
    std::vector<Change> heard;
    const Connection connection =
        document.Subscribe([&](const Change& change) { heard.push_back(change); });
    document.GoBack(1);
    EXPECT_EQ(heard, (std::vector<Change>{{Change::Kind::Replaced, 1, 6}}));
    EXPECT_EQ(titles.StartTime(1), 1);
    EXPECT_EQ(titles.Text(2), "x");
    EXPECT_EQ(titles.Text(3), "title");
    EXPECT_EQ(titles.UndoCount(), 0);
    EXPECT_TRUE(titles.UndoEnabled());
    EXPECT_TRUE(document.SubtitlesChanged);
    EXPECT_EQ(document.SubtitleFile, "a.srt");
    EXPECT_TRUE(document.Style.byteOrderMark);
    EXPECT_EQ(Steps(), "Going back;Open;Shift;");
    document.GoBack(0);
    EXPECT_EQ(titles.StartTime(1), 2);
    EXPECT_EQ(titles.Text(3), "y");
    EXPECT_EQ(document.SubtitleFile, "b.srt");
    EXPECT_EQ(Steps(), "Going back;Going back;Open;Shift;");
}

TEST_F(DocumentVersions, GoingBackFurtherThanThereAreVersionsDoesNothing) {
    document.GoBack(0);
    Shift(1);
    document.GoBack(1);
    EXPECT_EQ(titles.StartTime(1), 2);
    EXPECT_EQ(Steps(), "Shift;");
}

TEST_F(DocumentVersions, TheOldestOfAHundredCanBeGoneBackTo) {
    for (int i = 0; i < 120; ++i)
        Shift(1);
    document.GoBack(99);
    EXPECT_EQ(titles.StartTime(1), 21);
}

} // namespace

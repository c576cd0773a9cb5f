#include "model/subtitles.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <utility>

namespace {

SUBTITLES Titles(std::initializer_list<std::pair<double, double>> times) {
    SUBTITLES titles;
    for (const auto& [start, end] : times)
        titles.Add(start, end, std::to_string(titles.Count() + 1));
    return titles;
}

TEST(List, EmptyAnswersNothing) {
    const SUBTITLES titles;
    EXPECT_EQ(titles.Count(), 0);
    EXPECT_EQ(titles.Locate(0), 0);
    EXPECT_EQ(titles.Text(1), "");
    EXPECT_EQ(titles.StartTime(1), 0);
    EXPECT_EQ(titles.UndoCount(), 0);
    EXPECT_FALSE(titles.UndoEnabled());
}

TEST(List, LocatesByStart) {
    const SUBTITLES titles = Titles({{1, 4}, {5, 8}, {9, 12}});
    EXPECT_EQ(titles.Locate(0), 1);
    EXPECT_EQ(titles.Locate(1), 1);
    EXPECT_EQ(titles.Locate(3), 2);
    EXPECT_EQ(titles.Locate(5), 2);
    EXPECT_EQ(titles.Locate(7.9), 3);
    EXPECT_EQ(titles.Locate(8), 3);
    EXPECT_EQ(titles.Locate(20), 3);
}

TEST(List, LocateAnswersOneForOneTitle) {
    const SUBTITLES titles = Titles({{5, 6}});
    for (const double time : {-10.0, 0.0, 5.0, 5.5, 100.0})
        EXPECT_EQ(titles.Locate(time), 1) << time;
    EXPECT_EQ(Titles({{-5, -4}}).Locate(-2), 1);
}

TEST(List, LocateAnswersWhereTheLastTitlesOverlap) {
    EXPECT_EQ(Titles({{1, 10}, {2, 11}}).Locate(5), 2);
    EXPECT_EQ(Titles({{1, 10}, {2, 11}, {3, 12}}).Locate(7), 3);
}

TEST(List, LocateFindsTheFirstStartAtOrAfterTheTime) {
    for (std::int32_t count = 2; count < 400; ++count) {
        SUBTITLES titles;
        for (std::int32_t i = 1; i <= count; ++i)
            titles.Add(i, i + 0.5, "");
        for (std::int32_t i = 1; i < count - 1; ++i) {
            EXPECT_EQ(titles.Locate(i + 0.25), i + 1) << count;
            EXPECT_EQ(titles.Locate(i), i) << count;
        }
    }
}

TEST(List, LocateAtAStartAnswersThatTitle) {
    SUBTITLES titles;
    for (int i = 1; i <= 1200; ++i)
        titles.Add(i * 2.317, i * 2.317 + 1.9, "");
    for (std::int32_t i = 1; i <= 1200; ++i)
        EXPECT_EQ(titles.Locate(titles.StartTime(i)), i);
}

TEST(List, LocateAnswersTheFirstOfThoseThatStartTogether) {
    const SUBTITLES titles = Titles({{1, 2}, {3, 4}, {3, 5}, {3, 6}, {7, 8}, {9, 10}});
    EXPECT_EQ(titles.Locate(3), 2);
    EXPECT_EQ(titles.Locate(2.9), 2);
    EXPECT_EQ(titles.Locate(3.1), 5);
}

TEST(List, LocateEndsOnAnyList) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> time(-100, 100);
    for (int round = 0; round < 3000; ++round) {
        SUBTITLES titles;
        const std::int32_t count = static_cast<std::int32_t>(random() % 60) + 1;
        for (std::int32_t i = 0; i < count; ++i)
            titles.Add(time(random), time(random), "");
        for (const double t :
             {time(random), time(random), std::nan(""), std::numeric_limits<double>::infinity()}) {
            const std::int32_t found = titles.Locate(t);
            EXPECT_GE(found, 1);
            EXPECT_LE(found, count);
        }
    }
}

TEST(List, InsertsFromOneToPastTheEnd) {
    SUBTITLES titles = Titles({{1, 2}, {3, 4}});
    titles.Insert(3, 5, 6, "last");
    EXPECT_EQ(titles.Text(3), "last");
    titles.Insert(1, 0, 1, "first");
    EXPECT_EQ(titles.Text(1), "first");
    EXPECT_EQ(titles.Text(2), "1");
    titles.Insert(0, 0, 0, "x");
    titles.Insert(6, 0, 0, "x");
    EXPECT_EQ(titles.Count(), 4);
}

TEST(List, DeletedLastTitleIsOverwrittenByTheNextAdd) {
    SUBTITLES titles = Titles({{1, 2}, {3, 4}});
    titles.Delete(2);
    EXPECT_EQ(titles.Count(), 1);
    EXPECT_EQ(titles.Text(2), "");
    titles.Add(7, 8, "new");
    EXPECT_EQ(titles.Text(2), "new");
    titles.Delete(0);
    titles.Delete(3);
    EXPECT_EQ(titles.Count(), 2);
}

TEST(List, MakesRoomAHundredTitlesAtATime) {
    SUBTITLES titles;
    for (int i = 0; i < 100; ++i)
        titles.Add(i, i + 1, "");
    EXPECT_EQ(titles.UpperBound(), 100);
    titles.Add(100, 101, "");
    EXPECT_EQ(titles.UpperBound(), 200);
}

TEST(List, HoldsTwoMillionTitles) {
    SUBTITLES titles;
    for (int i = 0; i < 2'000'000; ++i)
        titles.Add(i, i + 0.5, "");
    EXPECT_EQ(titles.Count(), 2'000'000);
    EXPECT_EQ(titles.Locate(1'234'567.25), 1'234'569);
}

TEST(List, OutsideIndexesChangeAndRecordNothing) {
    SUBTITLES titles = Titles({{1, 2}});
    titles.UndoEnabled(true);
    for (const std::int32_t index : {0, 2, -1, std::numeric_limits<std::int32_t>::max()}) {
        titles.StartTime(index, 9);
        titles.EndTime(index, 9);
        titles.Text(index, "x");
        titles.SetTimes(index, 9, 9);
    }
    EXPECT_EQ(titles.UndoCount(), 0);
    EXPECT_EQ(titles.StartTime(1), 1);
    EXPECT_EQ(titles.Text(1), "1");
}

TEST(List, ClearLeavesTheHistory) {
    SUBTITLES titles = Titles({{1, 2}});
    titles.UndoEnabled(true);
    titles.Text(1, "x");
    titles.Clear();
    EXPECT_EQ(titles.Count(), 0);
    EXPECT_EQ(titles.UndoCount(), 1);
    EXPECT_EQ(titles.Undo(), 1);
}

TEST(List, DeletesManyAsOneByOne) {
    const auto filled = [] {
        SUBTITLES titles;
        for (int i = 1; i <= 300; ++i)
            titles.Add(i, i + 0.5, std::to_string(i));
        titles.UndoEnabled(true);
        return titles;
    };
    std::vector<std::int32_t> indexes;
    for (std::int32_t i = 2; i <= 300; i += 2)
        indexes.push_back(i);
    SUBTITLES together = filled();
    together.DeleteAll(indexes);
    SUBTITLES single = filled();
    for (std::size_t i = 0; i < indexes.size(); ++i)
        single.Delete(indexes[i] - static_cast<std::int32_t>(i));

    ASSERT_EQ(together.Count(), single.Count());
    ASSERT_EQ(together.UndoCount(), single.UndoCount());
    while (single.UndoCount() > 0) {
        EXPECT_EQ(together.Undo(), single.Undo());
    }
    ASSERT_EQ(together.Count(), single.Count());
    for (std::int32_t i = 1; i <= single.Count(); ++i) {
        EXPECT_EQ(together.Text(i), single.Text(i));
        EXPECT_EQ(together.StartTime(i), single.StartTime(i));
    }
}

/// The extras of all titles, "-" where there is none.
std::string Extras(const SUBTITLES& titles) {
    std::string extras;
    for (std::int32_t i = 1; i <= titles.Count(); ++i)
        extras += titles.Extra(i).Empty() ? "-" : titles.Extra(i).Bytes();
    return extras;
}

/// "ab-d--"
SUBTITLES WithExtras() {
    SUBTITLES titles;
    for (const char* extra : {"a", "b", "", "d", "", ""})
        titles.Add(1, 2, extra, TitleExtra(extra));
    titles.UndoEnabled(true);
    return titles;
}

struct ExtraRow {
    const char* what;
    void (*change)(SUBTITLES& titles);
    const char* after;
};

class TitleExtras : public testing::TestWithParam<ExtraRow> {};

TEST_P(TitleExtras, GoWithTheirTitles) {
    SUBTITLES titles = WithExtras();
    GetParam().change(titles);
    EXPECT_EQ(Extras(titles), GetParam().after) << GetParam().what;
    while (titles.UndoCount() > 0)
        titles.Undo();
    EXPECT_EQ(Extras(titles), "ab-d--") << GetParam().what;
}

INSTANTIATE_TEST_SUITE_P(
    Rows, TitleExtras,
    testing::Values(
        ExtraRow{"times and text",
                 [](SUBTITLES& list) { list.SetTimes(1, 5, 6), list.Text(2, "x"); }, "ab-d--"},
        ExtraRow{"set", [](SUBTITLES& list) { list.Extra(5, TitleExtra("e")), list.Extra(1, {}); },
                 "-b-de-"},
        ExtraRow{
            "set out of range",
            [](SUBTITLES& list) { list.Extra(0, TitleExtra("e")), list.Extra(7, TitleExtra("e")); },
            "ab-d--"},
        ExtraRow{"delete the first", [](SUBTITLES& list) { list.Delete(1); }, "b-d--"},
        ExtraRow{"delete the last", [](SUBTITLES& list) { list.Delete(6); }, "ab-d-"},
        ExtraRow{"insert one with none", [](SUBTITLES& list) { list.Insert(2, 1, 2, "x"); },
                 "a-b-d--"},
        ExtraRow{"insert one with its own",
                 [](SUBTITLES& list) { list.Insert(7, 1, 2, "x", TitleExtra("x")); }, "ab-d--x"},
        ExtraRow{"delete many",
                 [](SUBTITLES& list) {
                     list.DeleteAll({1, 3, 5});
                 },
                 "bd-"},
        ExtraRow{"delete those in front of many with none",
                 [](SUBTITLES& list) {
                     list.DeleteAll({1, 2, 3, 4});
                 },
                 "--"},
        ExtraRow{"delete all",
                 [](SUBTITLES& list) {
                     list.DeleteAll({1, 2, 3, 4, 5, 6});
                 },
                 ""}));

TEST(TitleExtras, TakeNothingWhereThereAreNone) {
    SUBTITLES titles;
    titles.Add(1, 2, "a");
    titles.Insert(1, 1, 2, "b");
    titles.Extra(1, {});
    EXPECT_FALSE(titles.HasExtras());
    titles.Extra(2, TitleExtra("x"));
    EXPECT_TRUE(titles.HasExtras());
    EXPECT_EQ(titles.Extra(3), TitleExtra());
    titles.Clear();
    EXPECT_FALSE(titles.HasExtras());
}

TEST(TitleExtras, OfCopiesAreShared) {
    const SUBTITLES titles = WithExtras();
    const SUBTITLES copy = titles;
    EXPECT_EQ(copy.Extra(1).Bytes().data(), titles.Extra(1).Bytes().data());
    EXPECT_EQ(TitleExtra("same"), TitleExtra("same"));
    EXPECT_EQ(TitleExtra(""), TitleExtra());
}

TEST(List, CountsEveryChange) {
    SUBTITLES titles;
    std::uint64_t before = titles.Changes();
    const auto changed = [&] {
        return std::exchange(before, titles.Changes()) != before;
    };
    for (int i = 1; i <= 5; ++i)
        titles.Add(i, i + 1, "");
    EXPECT_TRUE(changed());
    titles.SetTimes(1, 0, 1);
    EXPECT_TRUE(changed());
    titles.StartTime(1, 0.5);
    EXPECT_TRUE(changed());
    titles.EndTime(1, 0.7);
    EXPECT_TRUE(changed());
    titles.UndoEnabled(true);
    titles.Text(1, "text");
    EXPECT_TRUE(changed());
    titles.Undo();
    EXPECT_TRUE(changed());
    titles.Delete(1);
    EXPECT_TRUE(changed());
    titles.Insert(1, 0, 1, "");
    EXPECT_TRUE(changed());
    titles.DeleteAll({1, 2});
    EXPECT_TRUE(changed());
    titles.ClearUndo();
    EXPECT_TRUE(changed());
    titles.RestoreHistory({{}});
    EXPECT_TRUE(changed());
    titles.Text(99, "no such title");
    titles.Locate(2);
    titles.Reserve(100);
    EXPECT_FALSE(changed());
    titles.Clear();
    EXPECT_TRUE(changed());
}

} // namespace

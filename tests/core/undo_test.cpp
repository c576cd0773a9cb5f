#include "model/subtitles.h"

#include <gtest/gtest.h>

namespace {

class Undo : public testing::Test {
  protected:
    Undo() {
        for (int i = 1; i <= 3; ++i)
            titles.Add(i, i + 0.5, std::to_string(i));
        titles.UndoEnabled(true);
        titles.UndoPossible = [this](bool possible) {
            events += possible ? "possible " : "impossible ";
        };
        titles.UndoChangedListLength = [this] {
            events += "length ";
        };
    }

    SUBTITLES titles;
    std::string events;
};

TEST_F(Undo, KeepsTheLatestHundredSteps) {
    for (int i = 1; i <= 150; ++i)
        titles.Text(1, "change " + std::to_string(i));
    EXPECT_EQ(titles.UndoCount(), 100);
    EXPECT_EQ(events, "possible ");
    for (int i = 150; i > 50; --i) {
        EXPECT_EQ(titles.Text(1), "change " + std::to_string(i));
        EXPECT_EQ(titles.Undo(), 1);
    }
    EXPECT_EQ(titles.Text(1), "change 50");
    EXPECT_EQ(events, "possible impossible ");
    EXPECT_EQ(titles.Undo(), 0);
    EXPECT_EQ(events, "possible impossible ");
}

TEST_F(Undo, PutsADeletedTitleBack) {
    titles.Delete(3);
    EXPECT_EQ(titles.UndoCount(), 1);
    EXPECT_EQ(titles.Undo(), 3);
    EXPECT_EQ(titles.Count(), 3);
    EXPECT_EQ(titles.Text(3), "3");
    EXPECT_EQ(titles.StartTime(3), 3);
    EXPECT_EQ(titles.EndTime(3), 3.5);
    EXPECT_EQ(titles.UndoCount(), 0);
    EXPECT_EQ(events, "possible length impossible ");
}

TEST_F(Undo, TakesAnInsertionBack) {
    titles.Insert(2, 1.5, 1.7, "new");
    EXPECT_EQ(titles.Undo(), 2);
    EXPECT_EQ(titles.Count(), 3);
    EXPECT_EQ(titles.Text(2), "2");
    EXPECT_EQ(titles.UndoCount(), 0);
}

TEST_F(Undo, CountsOneStepForBothTimesTogether) {
    titles.SetTimes(1, 7, 8);
    EXPECT_EQ(titles.UndoCount(), 1);
    titles.StartTime(1, 9);
    titles.EndTime(1, 10);
    EXPECT_EQ(titles.UndoCount(), 3);
    titles.Undo();
    titles.Undo();
    EXPECT_EQ(titles.StartTime(1), 7);
    EXPECT_EQ(titles.EndTime(1), 8);
}

TEST_F(Undo, KeepsItsStepsWhileRecordingIsOff) {
    titles.Text(1, "a");
    titles.UndoEnabled(false);
    titles.Text(2, "b");
    EXPECT_EQ(titles.UndoCount(), 1);
    EXPECT_EQ(titles.Undo(), 1);
    EXPECT_EQ(titles.Text(1), "1");
    EXPECT_EQ(titles.Text(2), "b");
}

TEST_F(Undo, ClearingAnEmptyHistoryRaisesNothing) {
    titles.ClearUndo();
    EXPECT_EQ(events, "");
    titles.Text(1, "a");
    titles.ClearUndo();
    EXPECT_EQ(events, "possible impossible ");
    EXPECT_EQ(titles.Undo(), 0);
}

TEST_F(Undo, AnnouncesTheFirstStepBeforeItIsRecorded) {
    std::int16_t seen = -1;
    titles.UndoPossible = [&](bool) {
        seen = titles.UndoCount();
    };
    titles.Text(1, "a");
    EXPECT_EQ(seen, 0);
}

TEST_F(Undo, WorksWithoutObservers) {
    titles.UndoPossible = nullptr;
    titles.UndoChangedListLength = nullptr;
    titles.Delete(1);
    EXPECT_EQ(titles.Undo(), 1);
    titles.Text(1, "a");
    titles.ClearUndo();
    EXPECT_EQ(titles.UndoCount(), 0);
}

TEST_F(Undo, StoredHistoryComesBackInOrder) {
    for (int i = 1; i <= 120; ++i)
        titles.Text(1, std::to_string(i));
    std::vector<UndoHistory::Record> stored;
    for (auto age = static_cast<std::int16_t>(titles.UndoCount() - 1); age >= 0; --age)
        stored.push_back(titles.History().At(age));
    SUBTITLES other;
    other.Add(1, 2, "120");
    other.RestoreHistory(stored);
    EXPECT_EQ(other.UndoCount(), 100);
    for (int i = 119; i >= 20; --i) {
        EXPECT_EQ(other.Undo(), 1);
        EXPECT_EQ(other.Text(1), std::to_string(i));
    }
}

} // namespace

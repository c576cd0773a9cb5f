#include "editing/corrections.h"
#include "editing/edittitle.h"
#include "editing/listcommands.h"
#include "model/document.h"
#include "model/step.h"

#include <gtest/gtest.h>

#include <optional>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace {

using Kind = Change::Kind;

/// A document of titles 1 s apart, and what its observer heard.
class ObservedDocument : public ::testing::Test {
  protected:
    ObservedDocument() {
        for (int i = 1; i <= 6; ++i)
            document.Subt.Add(i, i + 0.5, "lt");
        document.Subt.UndoEnabled(true);
        connection = document.Subscribe([this](const Change& change) { heard.push_back(change); });
    }

    Document document;
    SUBTITLES& titles = document.Subt;
    std::vector<Change> heard;
    Connection connection;
};

struct OneStep {
    const char* what;
    void (*change)(SUBTITLES&);
    std::vector<Change> heard;
    std::int16_t undoSteps;
};

std::ostream& operator<<(std::ostream& out, const OneStep& step) {
    return out << step.what;
}

class DocumentStep : public ObservedDocument, public ::testing::WithParamInterface<OneStep> {};

TEST_P(DocumentStep, IsHeardOnceWhenItIsOver) {
    GetParam().change(titles);
    EXPECT_EQ(heard, GetParam().heard);
    EXPECT_EQ(titles.UndoCount(), GetParam().undoSteps);
}

const OneStep Steps[]{
    {"both times", [](SUBTITLES& t) { t.SetTimes(2, 7, 8); }, {{Kind::Times, 2, 2}}, 1},
    {"start", [](SUBTITLES& t) { t.StartTime(1, 7); }, {{Kind::Times, 1, 1}}, 1},
    {"end", [](SUBTITLES& t) { t.EndTime(6, 7); }, {{Kind::Times, 6, 6}}, 1},
    {"text", [](SUBTITLES& t) { t.Text(3, "x"); }, {{Kind::Text, 3, 3}}, 1},
    {"what a title carries",
     [](SUBTITLES& t) { t.Extra(3, TitleExtra("x")); },
     {{Kind::Text, 3, 3}},
     1},
    {"a title out of range", [](SUBTITLES& t) { t.Text(7, "x"); }, {}, 0},
    {"appended", [](SUBTITLES& t) { t.Add(9, 10, "x"); }, {{Kind::Inserted, 7, 7}}, 0},
    {"inserted", [](SUBTITLES& t) { t.Insert(3, 1, 2, "x"); }, {{Kind::Inserted, 3, 3}}, 1},
    {"inserted out of range", [](SUBTITLES& t) { t.Insert(8, 1, 2, "x"); }, {}, 0},
    {"deleted", [](SUBTITLES& t) { t.Delete(6); }, {{Kind::Deleted, 6, 6}}, 1},
    {"an unbroken run deleted",
     [](SUBTITLES& t) {
         t.DeleteAll({2, 3, 4});
     },
     {{Kind::Deleted, 2, 4}},
     3},
    {"a broken run deleted",
     [](SUBTITLES& t) {
         t.DeleteAll({2, 4});
     },
     {{Kind::Replaced, 2, 4}},
     2},
    {"only titles out of range deleted",
     [](SUBTITLES& t) {
         t.DeleteAll({-1, 0, 7});
     },
     {},
     0},
    {"nothing deleted", [](SUBTITLES& t) { t.DeleteAll({}); }, {}, 0},
    {"cleared", [](SUBTITLES& t) { t.Clear(); }, {{Kind::Replaced, 1, 0}}, 0},
    {"replaced by an empty list",
     [](SUBTITLES& t) { t.Replace(SUBTITLES()); },
     {{Kind::Replaced, 1, 0}},
     0},
    {"undone",
     [](SUBTITLES& t) {
         const Step step(t);
         t.Insert(2, 1, 2, "x");
         t.Undo();
     },
     {{Kind::Replaced, 2, 6}},
     0},
    {"nothing to undo", [](SUBTITLES& t) { t.Undo(); }, {}, 0},
    {"an empty step", [](SUBTITLES& t) { const Step step(t, "Stretch"); }, {}, 0},
    {"times of several titles",
     [](SUBTITLES& t) {
         const Step step(t);
         t.StartTime(5, 1);
         t.EndTime(2, 1);
     },
     {{Kind::Times, 2, 5}},
     2},
    {"times and a text",
     [](SUBTITLES& t) {
         const Step step(t);
         t.StartTime(5, 1);
         t.Text(4, "x");
         t.StartTime(1, 1);
     },
     {{Kind::Text, 1, 5}},
     3},
    {"nested steps",
     [](SUBTITLES& t) {
         const Step outer(t);
         {
             const Step inner(t);
             t.StartTime(1, 1);
         }
         t.StartTime(2, 1);
     },
     {{Kind::Times, 1, 2}},
     2},
    {"inserted one behind the other and edited",
     [](SUBTITLES& t) {
         const Step step(t);
         t.Insert(3, 1, 2, "x");
         t.Insert(4, 1, 2, "x");
         t.Text(4, "y");
     },
     {{Kind::Inserted, 3, 4}},
     3},
    {"inserted, and another one edited",
     [](SUBTITLES& t) {
         const Step step(t);
         t.Insert(3, 1, 2, "x");
         t.Text(2, "y");
     },
     {{Kind::Replaced, 2, 7}},
     2},
    {"deleted from behind",
     [](SUBTITLES& t) {
         const Step step(t);
         t.Delete(4);
         t.Delete(3);
     },
     {{Kind::Deleted, 3, 4}},
     2},
    {"deleted around what is gone",
     [](SUBTITLES& t) {
         const Step step(t);
         t.Delete(3);
         t.DeleteAll({2, 3});
     },
     {{Kind::Deleted, 2, 4}},
     3},
    {"deleted apart",
     [](SUBTITLES& t) {
         const Step step(t);
         t.Delete(4);
         t.Delete(2);
     },
     {{Kind::Replaced, 2, 4}},
     2},
    {"first change recorded only",
     [](SUBTITLES& t) {
         const Step step(t, Step::Undo::Once);
         t.StartTime(1, 1);
         t.EndTime(1, 1);
     },
     {{Kind::Times, 1, 1}},
     1},
    {"one record for each of two",
     [](SUBTITLES& t) {
         const Step step(t);
         ShowLater(t, 1);
         ShowLater(t, 2);
     },
     {{Kind::Times, 1, 2}},
     2},
    {"a step within one record",
     [](SUBTITLES& t) {
         const Step step(t, Step::Undo::Once);
         t.Text(1, "x");
         ShowLater(t, 1);
     },
     {{Kind::Text, 1, 1}},
     1},
    {"history emptied",
     [](SUBTITLES& t) {
         const Step step(t, "Shift", Step::Undo::Emptied);
         t.StartTime(1, 1);
         ShowLater(t, 1);
     },
     {{Kind::Times, 1, 1}},
     0},
    {"title edited", [](SUBTITLES& t) { StoreTitle(t, 2, "x", 1, 2); }, {{Kind::Text, 2, 2}}, 1},
    {"spelling", [](SUBTITLES& t) { CorrectSpelling(t); }, {{Kind::Text, 1, 6}}, 0},
};

INSTANTIATE_TEST_SUITE_P(All, DocumentStep, ::testing::ValuesIn(Steps));

TEST_F(ObservedDocument, RecordsAgainAfterASteps) {
    { const Step step(titles, "Stretch", Step::Undo::Emptied); }
    { const Step step(titles, Step::Undo::Once); }
    titles.Text(1, "x");
    EXPECT_EQ(titles.UndoCount(), 1);
}

TEST_F(ObservedDocument, AStepThatEmptiesTheHistoryTakesEarlierRecordsToo) {
    std::vector<bool> possible;
    titles.UndoPossible = [&](bool now) {
        possible.push_back(now);
    };
    titles.Text(1, "x");
    CorrectSpelling(titles);
    EXPECT_EQ(titles.UndoCount(), 0);
    EXPECT_EQ(possible, (std::vector<bool>{true, false}));
}

TEST_F(ObservedDocument, TellsOfUndoneSteps) {
    titles.Text(2, "x");
    titles.Insert(3, 1, 2, "y");
    titles.Delete(1);
    heard.clear();
    EXPECT_EQ(titles.Undo(), 1);
    EXPECT_EQ(titles.Undo(), 3);
    EXPECT_EQ(titles.Undo(), 2);
    EXPECT_EQ(heard, (std::vector<Change>{
                         {Kind::Inserted, 1, 1}, {Kind::Deleted, 3, 3}, {Kind::Text, 2, 2}}));
}

TEST_F(ObservedDocument, TellsOfMarksAndSavesAtOnceOutsideOfSteps) {
    document.BlueMark(3);
    document.GreenMark(4);
    document.Saved();
    EXPECT_EQ(heard,
              (std::vector<Change>{{Kind::Marks, 0, 0}, {Kind::Marks, 0, 0}, {Kind::Saved, 0, 0}}));
    EXPECT_EQ(document.BlueMark(), 3);
    EXPECT_EQ(document.GreenMark(), 4);
}

TEST_F(ObservedDocument, TellsOfMarksAndSavesOnceAfterAStep) {
    {
        const Step step(titles);
        document.Saved();
        document.Marks(1, 2);
        document.BlueMark(3);
        titles.Text(1, "x");
        EXPECT_TRUE(heard.empty());
    }
    EXPECT_EQ(heard,
              (std::vector<Change>{{Kind::Text, 1, 1}, {Kind::Marks, 0, 0}, {Kind::Saved, 0, 0}}));
}

TEST_F(ObservedDocument, KeepsItsObserversAndEventsWhenTheTitlesAreReplaced) {
    std::vector<bool> possible;
    titles.UndoPossible = [&](bool now) {
        possible.push_back(now);
    };
    SUBTITLES others;
    others.UndoEnabled(true);
    others.Add(1, 2, "a");
    others.Add(3, 4, "b", TitleExtra("red"));
    others.Text(2, "c");
    const std::uint64_t before = titles.Changes();
    titles.Replace(std::move(others));
    EXPECT_EQ(heard, (std::vector<Change>{{Kind::Replaced, 1, 2}}));
    EXPECT_NE(titles.Changes(), before);
    EXPECT_EQ(possible, std::vector<bool>{true});
    EXPECT_EQ(titles.Undo(), 2);
    EXPECT_EQ(titles.Text(2), "b");
    EXPECT_EQ(titles.Extra(2), TitleExtra("red"));
    titles.Text(1, "x");
    EXPECT_EQ(heard.size(), 3U);
}

TEST_F(ObservedDocument, ACopyOfTheTitlesIsNotObserved) {
    SUBTITLES copy = titles;
    copy.Text(1, "x");
    SUBTITLES assigned;
    assigned = titles;
    assigned.Text(1, "x");
    EXPECT_TRUE(heard.empty());
}

TEST_F(ObservedDocument, AnyNumberOfObserversMayComeAndGo) {
    int second = 0;
    int third = 0;
    Connection late;
    auto another = std::make_optional(document.Subscribe([&](const Change&) {
        ++second;
        late = document.Subscribe([&](const Change&) { ++third; });
    }));
    titles.Text(1, "x");
    EXPECT_EQ(std::pair(second, third), std::pair(1, 0)) << "who comes meanwhile hears the next";
    another.reset();
    titles.Text(1, "y");
    EXPECT_EQ(std::pair(second, third), std::pair(1, 1));
    connection = {};
    titles.Text(1, "z");
    EXPECT_EQ(heard.size(), 2U);
    EXPECT_EQ(third, 2);
}

TEST_F(ObservedDocument, AnObserverMayTakeItselfAway) {
    int times = 0;
    Connection once;
    once = document.Subscribe([&](const Change&) {
        ++times;
        once = {};
    });
    titles.Text(1, "x");
    titles.Text(1, "y");
    EXPECT_EQ(times, 1);
}

TEST_F(ObservedDocument, AnObserverMayChangeTheTitles) {
    const Connection answering = document.Subscribe([&](const Change& change) {
        if (change.kind == Kind::Text)
            titles.StartTime(2, 1);
    });
    titles.Text(1, "x");
    EXPECT_EQ(heard, (std::vector<Change>{{Kind::Text, 1, 1}, {Kind::Times, 2, 2}}));
}

TEST(DocumentConnection, MayOutliveTheDocument) {
    Connection connection;
    {
        Document document;
        connection = document.Subscribe([](const Change&) {});
    }
    connection = {};
}

TEST_F(ObservedDocument, TellsBeforeAnotherOneTakesItsPlace) {
    std::vector<std::int32_t> counts;
    Connection before = document.BeforeOther([&] { counts.push_back(titles.Count()); });
    {
        const Step step(titles, "Open");
        document.BeginOther();
        titles.Clear();
        titles.Add(1, 2, "other");
        document.Saved();
        EXPECT_TRUE(heard.empty());
    }
    EXPECT_EQ(counts, std::vector<std::int32_t>{6});
    EXPECT_EQ(document.Number(), 1U);
    EXPECT_EQ(heard, (std::vector<Change>{{Kind::Replaced, 1, 1}, {Kind::Saved, 0, 0}}));
    before = {};
    document.BeginOther();
    EXPECT_EQ(counts.size(), 1U);
}

struct PlacedCase {
    const char* what;
    void (*change)(Document&);
    /// Of titles 2, 4 and 5, which were placed.
    std::vector<std::int32_t> placed;
};

std::ostream& operator<<(std::ostream& out, const PlacedCase& placed) {
    return out << placed.what;
}

class PlacedTitlesOf : public ObservedDocument, public ::testing::WithParamInterface<PlacedCase> {};

TEST_P(PlacedTitlesOf, StayRightOrAreLeftOut) {
    for (const std::int32_t title : {4, 2, 5, 4})
        document.Placed(title, title - 0.5);
    GetParam().change(document);
    std::vector<std::int32_t> placed;
    for (const KnownStarts::Known& known : document.PlacedTitles()) {
        placed.push_back(known.title);
        EXPECT_EQ(known.start, titles.StartTime(known.title));
        EXPECT_EQ(known.text, titles.Text(known.title));
    }
    EXPECT_EQ(placed, GetParam().placed);
}

const PlacedCase PlacedCases[]{
    {"nothing", [](Document&) {}, {2, 4, 5}},
    {"another start", [](Document& d) { d.Subt.StartTime(4, 4.2); }, {2, 5}},
    {"the start of another title", [](Document& d) { d.Subt.StartTime(3, 3.2); }, {2, 4, 5}},
    {"another end", [](Document& d) { d.Subt.EndTime(4, 4.2); }, {2, 4, 5}},
    {"another text", [](Document& d) { d.Subt.Text(4, "x"); }, {2, 4, 5}},
    {"placed again",
     [](Document& d) {
         d.Subt.StartTime(4, 4.2);
         d.Placed(4, 4 - 0.5);
     },
     {2, 4, 5}},
    {"placed within a step",
     [](Document& d) {
         const Step step(d.Subt);
         d.Subt.StartTime(3, 3.2);
         d.Placed(3, 3 - 0.5);
     },
     {2, 3, 4, 5}},
    {"moved after it was placed within a step",
     [](Document& d) {
         const Step step(d.Subt);
         d.Placed(3, 3 - 0.5);
         d.Subt.StartTime(3, 3.2);
     },
     {2, 4, 5}},
    {"no such title",
     [](Document& d) {
         d.Placed(0, 0 - 0.5);
         d.Placed(7, 7 - 0.5);
     },
     {2, 4, 5}},
    {"undone",
     [](Document& d) {
         d.Subt.StartTime(4, 4.2);
         d.Placed(4, 4 - 0.5);
         d.Subt.Undo();
     },
     {2, 5}},
    {"one inserted before", [](Document& d) { d.Subt.Insert(1, 0, 0.5, "x"); }, {3, 5, 6}},
    {"one inserted between", [](Document& d) { d.Subt.Insert(4, 3, 4, "x"); }, {2, 5, 6}},
    {"an insertion undone",
     [](Document& d) {
         d.Subt.Insert(4, 3, 4, "x");
         d.Subt.Undo();
     },
     {2, 4, 5}},
    {"one deleted", [](Document& d) { d.Subt.Delete(4); }, {2, 4}},
    {"a deletion undone",
     [](Document& d) {
         d.Subt.Delete(4);
         d.Subt.Undo();
     },
     {2, 5}},
    {"some deleted in a row",
     [](Document& d) {
         d.Subt.DeleteAll({1, 2, 3});
     },
     {1, 2}},
    {"some deleted here and there",
     [](Document& d) {
         d.Subt.DeleteAll({3, 6});
     },
     {2}},
    {"a file of the same titles",
     [](Document& d) {
         SUBTITLES same = d.Subt;
         d.Subt.Replace(std::move(same));
     },
     {2, 4, 5}},
    {"titles that start there but are others",
     [](Document& d) {
         SUBTITLES others;
         for (int i = 1; i <= 6; ++i)
             others.Add(i, i + 0.5, i == 4 ? "lt" : "x");
         d.Subt.Replace(std::move(others));
     },
     {4}},
    {"fewer titles",
     [](Document& d) {
         SUBTITLES fewer;
         fewer.Add(1, 2, "lt");
         d.Subt.Replace(std::move(fewer));
     },
     {}},
    {"another document", [](Document& d) { d.BeginOther(); }, {}},
};

INSTANTIATE_TEST_SUITE_P(Known, PlacedTitlesOf, ::testing::ValuesIn(PlacedCases));

TEST_F(ObservedDocument, KnowsWhereAPlacedTitleWasUntilOthersMove) {
    titles.StartTime(2, 2.3);
    document.Placed(2, 2);
    titles.StartTime(2, 2.4);
    EXPECT_TRUE(document.PlacedTitles().empty());
    document.Placed(2, 2.3);
    {
        const Step step(titles);
        titles.StartTime(2, 2.5);
        document.Placed(2, 2.4);
    }
    titles.StartTime(5, 5.1);
    titles.Text(4, "x");
    ASSERT_EQ(document.PlacedTitles().size(), 1U);
    EXPECT_EQ(document.PlacedTitles()[0].was, 2.3);
    {
        const Step step(titles);
        titles.StartTime(5, 5.2);
        titles.StartTime(6, 6.2);
    }
    ASSERT_EQ(document.PlacedTitles().size(), 1U);
    EXPECT_EQ(document.PlacedTitles()[0].was, 2.5);
}

TEST_F(ObservedDocument, IsInAStepWhileOneIsOpen) {
    EXPECT_FALSE(titles.InStep());
    {
        const Step step(titles);
        EXPECT_TRUE(titles.InStep());
    }
    EXPECT_FALSE(titles.InStep());
}

TEST(StepWithoutADocument, LeavesTheHistoryRulesAsTheyAre) {
    SUBTITLES titles;
    titles.Add(1, 2, "lt");
    CorrectSpelling(titles);
    EXPECT_FALSE(titles.UndoEnabled());
    titles.UndoEnabled(true);
    ShowLater(titles, 1);
    EXPECT_EQ(titles.UndoCount(), 1);
    EXPECT_EQ(titles.Undo(), 1);
    EXPECT_EQ(titles.StartTime(1), 1);
    EXPECT_EQ(titles.EndTime(1), 2);
}

} // namespace

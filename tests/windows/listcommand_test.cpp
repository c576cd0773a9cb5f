#include "tests/windows/listtest.h"

#include <QAction>

#include <algorithm>
#include <functional>
#include <set>
#include <string>
#include <string_view>

namespace {

class ListCommands : public ListTest {
  protected:
    void Do(std::int32_t row, const char* key) {
        Select({row});
        List().DoCommand(key);
    }
};

TEST_F(ListCommands, SoonerPassesJustBelowZero) {
    Open({{0, 2, "a"}, {-0.45, 2, "b"}});
    Do(1, "Sooner");
    EXPECT_NEAR(Subt().StartTime(1), -0.1, 1e-9);
    EXPECT_NEAR(Subt().EndTime(1), 1.9, 1e-9);
    EXPECT_EQ(Cell(1, 1), "-00:00:00,100");
    EXPECT_EQ(Cell(1, 2), "2");
    EXPECT_TRUE(document().SubtitlesChanged);
    EXPECT_EQ(Subt().UndoCount(), 1);
    document().SubtitlesChanged = false;
    host.positions.clear();
    Do(2, "Sooner");
    EXPECT_EQ(Subt().StartTime(2), -0.45);
    EXPECT_FALSE(document().SubtitlesChanged);
    EXPECT_TRUE(host.positions.empty());
}

TEST_F(ListCommands, LaterMovesAllSelectedAndThePlayerOnce) {
    Open();
    Select({2, 4});
    host.positions.clear();
    host.changes = 0;
    List().DoCommand("Later");
    EXPECT_NEAR(Subt().StartTime(2), 20.1, 1e-9);
    EXPECT_EQ(Subt().StartTime(3), 30);
    EXPECT_NEAR(Subt().EndTime(4), 42.1, 1e-9);
    EXPECT_EQ(Cell(4, 1), "00:00:40,100");
    EXPECT_EQ(Colour(2), Edited);
    EXPECT_EQ(Colour(3), Plain);
    EXPECT_EQ(host.positions, std::vector<double>{40.1});
    EXPECT_EQ(host.changes, 1);
    EXPECT_EQ(Subt().UndoCount(), 2);
    EXPECT_EQ(List().SelectedRows(), (std::vector<std::int32_t>{2, 4}));
}

TEST_F(ListCommands, MarkedRowsKeepTheirColour) {
    Open();
    Do(1, "Later");
    EXPECT_EQ(Colour(1), First);
}

TEST_F(ListCommands, ShorterSetsTheFlagAtItsLimitOnly) {
    Open({{1, 1.1, "a"}, {10, 13, "b"}});
    Do(1, "Shorter");
    EXPECT_EQ(Cell(1, 2), "0.25");
    EXPECT_TRUE(document().SubtitlesChanged);
    document().SubtitlesChanged = false;
    Do(2, "Shorter");
    EXPECT_EQ(Cell(2, 2), "2.95");
    EXPECT_NEAR(Subt().EndTime(2), 12.95, 1e-9);
    EXPECT_FALSE(document().SubtitlesChanged);
}

TEST_F(ListCommands, LongerStopsAQuarterSecondBeforeTheNext) {
    Open({{1, 4.73, "a"}, {5, 6, "b"}});
    Do(1, "Longer");
    EXPECT_EQ(Subt().EndTime(1), 4.75);
    EXPECT_EQ(Cell(1, 2), "3.75");
    EXPECT_TRUE(document().SubtitlesChanged);
    document().SubtitlesChanged = false;
    Do(2, "Longer");
    EXPECT_EQ(Cell(2, 2), "1.05");
    EXPECT_FALSE(document().SubtitlesChanged);
}

TEST_F(ListCommands, CommandsOnTheCurrentTitleDoNothingWithoutOne) {
    Open();
    host.changes = 0;
    List().LV->clearSelection();
    for (const char* key : {"Shorter", "Longer", "Insert", "Edit"})
        List().DoCommand(key);
    for (const char* entry : {"mnuTimeFirst", "mnuTimeSecond", "mnuEditInsert", "mnuEditEdit"})
        Child<QAction>(List(), entry).trigger();
    EXPECT_EQ(Subt().Count(), 5);
    EXPECT_EQ(Subt().UndoCount(), 0);
    EXPECT_EQ(host.changes, 0);
}

TEST_F(ListCommands, InsertBetweenTwoTitles) {
    Open({{10, 12, "a"}, {20, 22, "b"}, {20.2, 23, "c"}});
    Do(2, "Insert");
    ASSERT_EQ(Subt().Count(), 4);
    EXPECT_EQ(Subt().StartTime(2), 15);
    EXPECT_EQ(Subt().EndTime(2), 17);
    EXPECT_EQ(Subt().Text(2), "New title");
    EXPECT_EQ(Cell(2, 0), "New Title");
    EXPECT_EQ(Cell(2, 1), "00:00:15,000");
    EXPECT_EQ(Cell(2, 2), "2");
    EXPECT_EQ(Cell(3, 0), "b");
    EXPECT_EQ(Colour(2), Edited);
    EXPECT_EQ(Colour(4), Second);
    EXPECT_EQ(List().SecondMark, 4);
    EXPECT_TRUE(document().SubtitlesChanged);
    EXPECT_EQ(List().SelectedRows(), std::vector<std::int32_t>{3});
    Do(4, "Insert");
    EXPECT_NEAR(Subt().StartTime(4), 20.1, 1e-9);
    EXPECT_NEAR(Subt().EndTime(4), 20.35, 1e-9);
    EXPECT_EQ(Cell(4, 2), "0.25");
}

TEST_F(ListCommands, InsertBeforeTheFirstTakesItsMark) {
    Open();
    Do(1, "Insert");
    EXPECT_EQ(Subt().StartTime(1), 5);
    EXPECT_EQ(Colour(1), First);
    EXPECT_EQ(Colour(2), Plain);
}

TEST_F(ListCommands, DeleteAllLeavesTheLast) {
    Open();
    QTest::keyClick(List().LV, Qt::Key_A, Qt::ControlModifier);
    List().DoCommand("Delete");
    ASSERT_EQ(Subt().Count(), 1);
    EXPECT_EQ(Subt().Text(1), "title 5");
    EXPECT_EQ(Cell(1, 0), "title 5");
    EXPECT_EQ(List().RowCount(), 1);
    EXPECT_FALSE(ButtonEnabled("Delete"));
    EXPECT_EQ(List().FirstMark, 1);
    EXPECT_EQ(List().SecondMark, 1);
    EXPECT_EQ(Subt().UndoCount(), 4);
}

TEST_F(ListCommands, DeleteTakesTheSelectedAndResetsTheMarks) {
    Open();
    Select({2, 3});
    Child<QAction>(List(), "mnuTimeFirst").trigger();
    Select({1, 4});
    List().DoCommand("Delete");
    EXPECT_EQ(Cell(1, 0), "title 2");
    EXPECT_EQ(Cell(3, 0), "title 5");
    EXPECT_EQ(Colour(1), First);
    EXPECT_EQ(Colour(2), Plain);
    EXPECT_EQ(Colour(3), Second);
    EXPECT_TRUE(ButtonEnabled("Delete"));
    EXPECT_TRUE(document().SubtitlesChanged);
    EXPECT_EQ(List().SelectedItem(), 0);
}

TEST_F(ListCommands, UndoGoesBackToTheStart) {
    Open();
    Do(2, "Later");
    Do(3, "Insert");
    Select({1, 2});
    List().DoCommand("Delete");
    while (Subt().UndoCount() > 0)
        List().DoCommand("Undo");
    ASSERT_EQ(Subt().Count(), 5);
    for (std::int32_t i = 1; i <= 5; ++i) {
        EXPECT_EQ(Cell(i, 0), QString("title %1").arg(i));
        EXPECT_EQ(Subt().StartTime(i), i * 10.0);
        EXPECT_EQ(Cell(i, 1), QString("00:00:%1,000").arg(i * 10));
        EXPECT_EQ(Cell(i, 2), "2");
    }
    EXPECT_FALSE(ButtonEnabled("Undo"));
}

TEST_F(ListCommands, UndoShowsAndSelectsItsRow) {
    Open();
    Do(3, "Later");
    document().SubtitlesChanged = false;
    host.positions.clear();
    Select({5});
    List().DoCommand("Undo");
    EXPECT_EQ(Colour(3), Plain);
    EXPECT_EQ(Cell(3, 1), "00:00:30,000");
    EXPECT_EQ(List().SelectedRows(), std::vector<std::int32_t>{3});
    EXPECT_FALSE(document().SubtitlesChanged);
    EXPECT_TRUE(host.positions.empty());
    List().DoCommand("Undo");
    EXPECT_EQ(List().SelectedRows(), std::vector<std::int32_t>{1}) << "there was nothing left";
}

TEST_F(ListCommands, UndoSelectsItsRowAlone) {
    Open();
    Do(3, "Later");
    Select({1, 2, 4});
    List().DoCommand("Undo");
    EXPECT_EQ(List().SelectedRows(), std::vector<std::int32_t>{3});
}

TEST_F(ListCommands, UndoLeavesTheColourOfMarks) {
    Open();
    Do(5, "Later");
    List().DoCommand("Undo");
    EXPECT_EQ(Colour(5), Second);
}

TEST_F(ListCommands, SpellingGoesOverAllTitles) {
    Open({{1, 2, "x"}, {3, 4, "lt was I."}, {5, 6, "Hello. lt"}, {7, 8, "x"}});
    Subt().Text(1, "y");
    List().DoCommand("Spelling");
    EXPECT_EQ(Cell(2, 0), "It was l.");
    EXPECT_EQ(Subt().Text(3), "Hello. It");
    EXPECT_EQ(Colour(2), Edited);
    EXPECT_TRUE(document().SubtitlesChanged);
    EXPECT_EQ(Subt().UndoCount(), 0);
    EXPECT_FALSE(ButtonEnabled("Undo"));
}

TEST_F(ListCommands, TheSpellingEntryDoesNotSetTheFlag) {
    Open({{1, 2, "lt"}});
    Child<QAction>(List(), "mnuEditSpell").trigger();
    EXPECT_EQ(Subt().Text(1), "It");
    EXPECT_FALSE(document().SubtitlesChanged);
}

TEST_F(ListCommands, ItalicGoesOverAllTitles) {
    Open({{1, 2, "x"}, {3, 4, "/Hello /world again"}, {5, 6, "x"}});
    QTest::mouseClick(&Child<QToolButton>(List(), "Italic"), Qt::LeftButton);
    EXPECT_EQ(Cell(2, 0), "<i>Hello world</i> again");
    EXPECT_EQ(Colour(2), Edited);
    EXPECT_TRUE(document().SubtitlesChanged);
}

struct KeyRow {
    const char* key;
    const char* entry;
    const char* shortcut;
    Needs needs;
};

// What the table of commands must say; nothing else shows a command that got lost in it.
const std::vector<KeyRow> Keys{
    {"Undo", "mnuEditUndo", "Ctrl+Z", Needs::UndoSteps},
    {"Find", "mnuEditFind", "Ctrl+F", Needs::Nothing},
    {"Italic", "", "", Needs::Nothing},
    {"Spelling", "mnuEditSpell", "", Needs::Nothing},
    {"Edit", "mnuEditEdit", "Return", Needs::CurrentTitle},
    {"Insert", "mnuEditInsert", "Ins", Needs::CurrentTitle},
    {"Delete", "mnuEditDelete", "Del", Needs::TwoRows},
    {"Sooner", "mnuTimeSooner", "Ctrl+Left", Needs::Nothing},
    {"Later", "mnuTimeLater", "Ctrl+Right", Needs::Nothing},
    {"Shorter", "mnuTimeShorter", "Ctrl+Shift+Left", Needs::CurrentTitle},
    {"Longer", "mnuTimeLonger", "Ctrl+Shift+Right", Needs::CurrentTitle},
    {"Stretch", "mnuTimeStretch", "Ctrl+T", Needs::Nothing},
    {"Shift", "mnuTimeShift", "Ctrl+H", Needs::Nothing},
    {"Bye", "", "", Needs::Nothing},
    {"FindNext", "mnuListFindNext", "F3", Needs::Nothing},
    {"SelectAll", "mnuListSelectAll", "Ctrl+A", Needs::Nothing},
    {"", "mnuEditBack", "Ctrl+Shift+Z", Needs::EarlierVersions},
    {"", "mnuEditVersions", "", Needs::EarlierVersions},
    {"", "mnuTimeFirst", "Ctrl+1", Needs::CurrentTitle},
    {"", "mnuTimeSecond", "Ctrl+2", Needs::CurrentTitle},
    {"", "mnuTimeFirstHere", "Ctrl+B", Needs::Nothing},
    {"", "mnuTimeSecondHere", "Ctrl+G", Needs::Nothing},
    {"", "mnuTimeStretchBoth", "Ctrl+J", Needs::Nothing},
    {"", "mnuViewFont", "", Needs::Nothing},
    {"", "mnuViewToolbar", "", Needs::Nothing},
};

TEST(ListTable, HasTheseCommands) {
    for (const KeyRow& expected : Keys) {
        const auto rows = frmList::Commands();
        const auto row = std::find_if(rows.begin(), rows.end(), [&](const ListCommand& command) {
            return std::string_view(command.key) == expected.key &&
                   std::string_view(command.entry) == expected.entry;
        });
        ASSERT_NE(row, rows.end()) << expected.key << expected.entry;
        EXPECT_STREQ(row->shortcut, expected.shortcut) << expected.key << expected.entry;
        EXPECT_EQ(row->needs, expected.needs) << expected.key << expected.entry;
    }
}

TEST(ListTable, NoTwoRowsShareAnything) {
    std::set<std::string> seen;
    for (const ListCommand& command : frmList::Commands()) {
        EXPECT_NE(command.run, nullptr);
        EXPECT_TRUE(*command.caption == '\0' || command.sign != Sign::None) << command.key;
        EXPECT_EQ(*command.entry == '\0', command.menu == ListMenu::None) << command.key;
        for (const std::string& text : {std::string(command.key), std::string(command.entry),
                                        QKeySequence(command.shortcut).toString().toStdString()})
            EXPECT_TRUE(text.empty() || seen.insert(text).second) << text;
        const std::string place =
            std::to_string(static_cast<int>(command.menu)) + ':' + std::to_string(command.place);
        EXPECT_TRUE(command.menu == ListMenu::None || seen.insert(place).second) << place;
    }
}

TEST_F(ListCommands, EveryRowIsInTheWindow) {
    Open();
    const QList<QAction*> beside = List().LV->actions();
    for (const ListCommand& command : frmList::Commands()) {
        if (*command.caption != '\0') {
            EXPECT_EQ(Child<QToolButton>(List(), command.key).text(), command.caption);
        }
        if (*command.entry == '\0')
            continue;
        QAction& entry = Child<QAction>(List(), command.entry);
        EXPECT_EQ(entry.text(), command.entryCaption);
        EXPECT_EQ(entry.shortcut(), QKeySequence(command.shortcut)) << command.entry;
        EXPECT_TRUE(List().actions().contains(&entry)) << command.entry;
        EXPECT_EQ(beside.contains(&entry), command.menu != ListMenu::View) << command.entry;
    }
}

struct NeedRow {
    const char* name;
    Needs needs;
    std::function<void(frmList&, SUBTITLES&)> meet;
};

class ListNeed : public ListCommands, public testing::WithParamInterface<NeedRow> {
  protected:
    void ExpectEnabled(bool enabled) {
        for (const ListCommand& command : frmList::Commands()) {
            if (command.needs != GetParam().needs)
                continue;
            if (*command.caption != '\0') {
                EXPECT_EQ(ButtonEnabled(command.key), enabled) << command.key;
            }
            if (*command.entry != '\0') {
                EXPECT_EQ(Child<QAction>(List(), command.entry).isEnabled(), enabled)
                    << command.entry;
            }
        }
    }
};

TEST_P(ListNeed, EnablesButtonsAndEntriesTogether) {
    Open({{1, 2, "only"}});
    ExpectEnabled(GetParam().needs == Needs::Nothing);
    GetParam().meet(List(), Subt());
    ExpectEnabled(true);
}

INSTANTIATE_TEST_SUITE_P(Rows, ListNeed,
                         testing::Values(NeedRow{"Nothing", Needs::Nothing,
                                                 [](frmList&, SUBTITLES&) {
                                                 }},
                                         NeedRow{"CurrentTitle", Needs::CurrentTitle,
                                                 [](frmList& list, SUBTITLES&) {
                                                     list.LV->selectAll();
                                                 }},
                                         NeedRow{"TwoRows", Needs::TwoRows,
                                                 [](frmList& list, SUBTITLES& titles) {
                                                     titles.Add(3, 4, "second");
                                                     list.LoadList();
                                                 }},
                                         NeedRow{"UndoSteps", Needs::UndoSteps,
                                                 [](frmList&, SUBTITLES& titles) {
                                                     titles.Text(1, "other");
                                                 }},
                                         NeedRow{"EarlierVersions", Needs::EarlierVersions,
                                                 [](frmList& list, SUBTITLES& titles) {
                                                     titles.Text(1, "lt");
                                                     list.DoCommand("Spelling");
                                                 }}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(ListCommands, SelectAllIsACommand) {
    Open();
    List().DoCommand("SelectAll");
    EXPECT_EQ(List().SelectedRows(), (std::vector<std::int32_t>{1, 2, 3, 4, 5}));
    EXPECT_FALSE(document().SubtitlesChanged);
}

TEST_F(ListCommands, KeysAreExact) {
    Open();
    for (const char* key : {"sooner", "SOONER", "Sooner ", "", "Font"})
        Do(2, key);
    EXPECT_EQ(Subt().StartTime(2), 20);
    EXPECT_FALSE(document().SubtitlesChanged);
}

struct ShortcutRow {
    Qt::Key key;
    Qt::KeyboardModifiers modifiers;
    double start;
    double end;
};

class ListShortcut : public ListCommands, public testing::WithParamInterface<ShortcutRow> {};

TEST_P(ListShortcut, ChangesTheCurrentTitle) {
    Open();
    Click(2);
    QTest::keyClick(List().LV, GetParam().key, GetParam().modifiers);
    EXPECT_NEAR(Subt().StartTime(2), GetParam().start, 1e-9);
    EXPECT_NEAR(Subt().EndTime(2), GetParam().end, 1e-9);
    QTest::keyClick(List().LV, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(Subt().StartTime(2), 20);
    EXPECT_EQ(Subt().EndTime(2), 22);
}

INSTANTIATE_TEST_SUITE_P(
    Keys, ListShortcut,
    testing::Values(ShortcutRow{Qt::Key_Left, Qt::ControlModifier, 19.9, 21.9},
                    ShortcutRow{Qt::Key_Right, Qt::ControlModifier, 20.1, 22.1},
                    ShortcutRow{Qt::Key_Left, Qt::ControlModifier | Qt::ShiftModifier, 20, 21.95},
                    ShortcutRow{Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier, 20, 22.05},
                    ShortcutRow{Qt::Key_Insert, Qt::NoModifier, 15, 17},
                    ShortcutRow{Qt::Key_Delete, Qt::NoModifier, 30, 32}));

TEST_F(ListCommands, ManyRowsAtOnce) {
    std::vector<TestTitle> titles;
    for (int i = 0; i < 20000; ++i)
        titles.push_back({i * 3.0 + 1, i * 3.0 + 2, "x"});
    Open(titles);
    QItemSelection odd;
    for (int row = 0; row < 20000; row += 2) {
        const QModelIndex index = List().LV->model()->index(row, 0);
        odd.append(QItemSelectionRange(index, index.siblingAtColumn(2)));
    }
    List().LV->selectionModel()->select(odd, QItemSelectionModel::ClearAndSelect);
    List().DoCommand("Delete");
    EXPECT_EQ(Subt().Count(), 10000);
    EXPECT_EQ(List().RowCount(), 10000);
    EXPECT_EQ(Cell(1, 1), "00:00:04,000");
    EXPECT_EQ(Subt().UndoCount(), 100);
    List().LV->selectAll();
    host.positions.clear();
    List().DoCommand("Later");
    EXPECT_EQ(host.positions.size(), 1U);
    EXPECT_EQ(Cell(10000, 1), "16:39:58,100");
}

} // namespace

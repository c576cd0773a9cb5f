#include "tests/windows/listtest.h"

#include "listeditor/rowdelegate.h"
#include "model/step.h"
#include "platform/twips.h"

#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QFontDialog>
#include <QHeaderView>
#include <QMenuBar>
#include <QScreen>
#include <QStyle>
#include <QStyleOptionHeader>
#include <QToolBar>

namespace {

using ListWindow = ListTest;

TEST_F(ListWindow, ShowsARowPerTitle) {
    Open({{1, 4.003, "Hello\r\nthere"}, {5, 5.5, "two"}});
    EXPECT_EQ(List().windowTitle(), "Subtitle Editor");
    EXPECT_EQ(List().RowCount(), 2);
    EXPECT_EQ(Cell(1, 0), "Hello\r\nthere");
    EXPECT_EQ(Cell(1, 1), "00:00:01,000");
    EXPECT_EQ(Cell(1, 2), "3.003");
    EXPECT_EQ(Cell(2, 2), "0.5");
    const QAbstractItemModel& model = *List().LV->model();
    EXPECT_EQ(model.headerData(0, Qt::Horizontal).toString(), "Text");
    EXPECT_EQ(model.headerData(1, Qt::Horizontal).toString(), "Start");
    EXPECT_EQ(model.headerData(2, Qt::Horizontal).toString(), "Duration");
}

TEST_F(ListWindow, OpeningTellsTheMainWindowAndClosingToo) {
    Open();
    EXPECT_EQ(host.editButtons, false);
    EXPECT_TRUE(document().ListWindowOpen);
    EXPECT_EQ(document().BlueMark(), 10);
    EXPECT_EQ(document().GreenMark(), 50);
    host.Close();
    EXPECT_EQ(host.editButtons, true);
    EXPECT_FALSE(document().ListWindowOpen);
    EXPECT_EQ(host.list, nullptr);
}

TEST_F(ListWindow, ByeClosesIt) {
    Open();
    List().DoCommand("Bye");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(host.list, nullptr);
    EXPECT_FALSE(document().ListWindowOpen);
}

TEST_F(ListWindow, MarksTheFirstAndTheLastRow) {
    Open();
    EXPECT_EQ(List().FirstMark, 1);
    EXPECT_EQ(List().SecondMark, 5);
    EXPECT_EQ(Colour(1), First);
    EXPECT_EQ(Colour(3), Plain);
    EXPECT_EQ(Colour(5), Second);
    const QAbstractItemModel& model = *List().LV->model();
    EXPECT_FALSE(model.index(0, 0).data(Qt::ToolTipRole).toString().isEmpty());
    EXPECT_NE(model.index(0, 0).data(Qt::ToolTipRole), model.index(4, 0).data(Qt::ToolTipRole));
    EXPECT_TRUE(model.index(2, 0).data(Qt::ToolTipRole).toString().isEmpty());
}

TEST_F(ListWindow, AnEmptyListIsNoReasonToFail) {
    Open({});
    for (const char* key : {"Undo", "Edit", "Sooner", "Later", "Shorter", "Longer", "Spelling",
                            "Italic", "Insert", "Delete"})
        List().DoCommand(key);
    EXPECT_EQ(List().RowCount(), 0);
    EXPECT_EQ(Subt().Count(), 0);
    EXPECT_FALSE(ButtonEnabled("Delete"));
    List().GoToTitle(1);
    List().FollowTitle(5);
    List().LoadList();
    List().mnuTimeFirst_Click();
    EXPECT_TRUE(host.positions.empty());
}

TEST_F(ListWindow, CaptionsStandAboveTheTexts) {
    const QHeaderView* header = Open().LV->horizontalHeader();
    QStyleOptionHeader option;
    option.initFrom(header);
    option.rect = QRect(100, 0, 200, 20);
    const QRect label = header->style()->subElementRect(QStyle::SE_HeaderLabel, &option, header);
    EXPECT_EQ(label.left(), 100 + RowDelegate::Padding);
    EXPECT_EQ(label.right(), 299 - RowDelegate::Padding);
}

TEST_F(ListWindow, FirstStartSplitsTheColumnsAndShowsTheToolbar) {
    Open();
    const int text = List().LV->columnWidth(0);
    EXPECT_NEAR(text, 2 * List().LV->columnWidth(1), 1);
    EXPECT_EQ(List().LV->columnWidth(1), List().LV->columnWidth(2));
    EXPECT_TRUE(List().TB->isVisible());
    EXPECT_TRUE(Child<QAction>(List(), "mnuViewToolbar").isChecked());
}

TEST_F(ListWindow, ColumnsFollowTheWindow) {
    Open();
    List().resize(600, 400);
    const int before[] = {List().LV->columnWidth(0), List().LV->columnWidth(1),
                          List().LV->columnWidth(2)};
    const double width = List().LV->viewport()->width();
    for (int pixels = 610; pixels <= 780; pixels += 10)
        List().resize(pixels, 400);
    const double wider = List().LV->viewport()->width() / width;
    EXPECT_GT(wider, 1.2);
    for (int column = 0; column < 3; ++column)
        EXPECT_NEAR(List().LV->columnWidth(column), before[column] * wider, 2) << column;
    List().LV->setColumnWidth(1, 222);
    List().resize(600, 400);
    List().resize(780, 400);
    EXPECT_NEAR(List().LV->columnWidth(1), 222, 2) << "as the user drew it";
}

TEST_F(ListWindow, TimesFitTheFontThatIsChosen) {
    Open();
    const Modals modals({[](QWidget& modal) {
        auto& dialog = dynamic_cast<QFontDialog&>(modal);
        QFont font = dialog.currentFont();
        font.setPointSize(24);
        dialog.setCurrentFont(font);
        dialog.accept();
    }});
    Child<QAction>(List(), "mnuViewFont").trigger();
    const QFontMetrics metrics(List().LV->font());
    for (int column = 1; column < 3; ++column)
        EXPECT_GE(List().LV->columnWidth(column), metrics.horizontalAdvance("-00:00:00,000"));
}

TEST_F(ListWindow, AFirstStartFitsItsFont) {
    const QFont usual = QApplication::font();
    QFont large = usual;
    large.setPointSize(24);
    QApplication::setFont(large);
    Open();
    const int least = QFontMetrics(large).horizontalAdvance("00:00:00,000");
    for (int column = 1; column < 3; ++column)
        EXPECT_GT(List().LV->columnWidth(column), least);
    EXPECT_LE(List().frameGeometry().width(), List().screen()->availableGeometry().width());
    host.Close();
    QApplication::setFont(usual);
}

TEST_F(ListWindow, IconsFollowTheFont) {
    Open();
    const auto side = [&] {
        const auto& button = Child<QToolButton>(List(), "Undo");
        EXPECT_EQ(button.iconSize(), List().TB->iconSize()) << "which is what is drawn";
        return button.iconSize().height();
    };
    const int before = side();
    QFont font = List().font();
    font.setPointSize(24);
    List().setFont(font);
    QCoreApplication::processEvents();
    EXPECT_GE(side(), QFontMetrics(font).height());
    EXPECT_GT(side(), before);
}

TEST_F(ListWindow, TheHeaderKeepsItsFontAfterReopening) {
    Open();
    QFont font = List().LV->font();
    font.setPointSize(15);
    font.setItalic(true);
    List().LV->SetListFont(font);
    EXPECT_EQ(List().LV->horizontalHeader()->font().pointSize(), 15);
    host.Close();
    host.Open();
    EXPECT_EQ(List().LV->horizontalHeader()->font().pointSize(), 15);
    EXPECT_TRUE(List().LV->horizontalHeader()->font().italic());
}

TEST_F(ListWindow, AScreenReaderHearsMarksAndEditedInWords) {
    Open();
    Click(3);
    List().DoCommand("Later");
    QAccessibleInterface* table = QAccessible::queryAccessibleInterface(List().LV);
    ASSERT_NE(table, nullptr);
    EXPECT_EQ(table->text(QAccessible::Name), "Titles");
    QAccessibleTableInterface* const cells = table->tableInterface();
    ASSERT_NE(cells, nullptr);
    const auto spoken = [cells](int row, int column) {
        return cells->cellAt(row - 1, column)->text(QAccessible::Name);
    };
    EXPECT_EQ(spoken(1, 0), "title 1, first mark");
    EXPECT_EQ(spoken(2, 0), "title 2");
    EXPECT_EQ(spoken(3, 0), "title 3, edited");
    EXPECT_EQ(spoken(3, 1), "00:00:30,100");
    EXPECT_EQ(spoken(5, 0), "title 5, second mark");
}

TEST_F(ListWindow, SnapsBackToItsSmallestSize) {
    Open();
    List().resize(50, 50);
    EXPECT_EQ(ToTwips(List().width()), 3000);
    EXPECT_EQ(List().height(), List().TB->sizeHint().height() + ToPixels(1000));
}

TEST_F(ListWindow, HidingTheToolbarMovesTheListUp) {
    Open();
    const int below = List().LV->mapTo(&List(), QPoint()).y();
    Child<QAction>(List(), "mnuViewToolbar").trigger();
    QTest::qWait(20);
    EXPECT_FALSE(List().TB->isVisible());
    EXPECT_EQ(List().LV->mapTo(&List(), QPoint()).y(), List().menuBar()->height());
    EXPECT_LT(List().LV->mapTo(&List(), QPoint()).y(), below);
    host.Close();
    EXPECT_EQ(Settings().Dword("Toolbar", 9), 0);
    host.Open();
    EXPECT_FALSE(List().TB->isVisible());
    EXPECT_FALSE(Child<QAction>(List(), "mnuViewToolbar").isChecked());
    Child<QAction>(List(), "mnuViewToolbar").trigger();
    EXPECT_TRUE(List().TB->isVisible());
    host.Close();
    EXPECT_EQ(Settings().Dword("Toolbar", 9), 1);
}

TEST_F(ListWindow, KeepsPlaceSizeColumnsAndFont) {
    Open();
    List().move(40, 50);
    List().resize(620, 410);
    for (int column = 0; column < 3; ++column)
        List().LV->setColumnWidth(column, 100 + 20 * column);
    QFont font = List().LV->font();
    font.setItalic(true);
    font.setBold(true);
    font.setPointSize(15);
    List().LV->SetListFont(font);
    host.Close();
    const Settings settings;
    EXPECT_EQ(settings.Dword("ListLeft", 0), 600);
    EXPECT_EQ(settings.Dword("ListTop", 0), 750);
    EXPECT_EQ(settings.Dword("ListWidth", 0), 9300);
    EXPECT_EQ(settings.Dword("ListHeight", 0), 6150);
    EXPECT_EQ(settings.Dword("ListCol1", 0), 1500);
    EXPECT_EQ(settings.Dword("ListCol2", 0), 1800);
    EXPECT_EQ(settings.Dword("ListCol3", 0), 2100);
    EXPECT_EQ(settings.String("ListFont", ""), font.family());
    EXPECT_EQ(settings.Dword("ListFontSize", 0), 15);
    EXPECT_EQ(settings.Dword("ListFontBold", 0), 1);
    EXPECT_EQ(settings.Dword("ListFontItalic", 0), 1);
    host.Open();
    EXPECT_EQ(List().pos(), QPoint(40, 50));
    EXPECT_EQ(List().size(), QSize(620, 410));
    EXPECT_EQ(List().LV->columnWidth(2), 140);
    EXPECT_EQ(List().ListFont().pointSize(), 15);
    EXPECT_TRUE(List().ListFont().italic());
}

TEST_F(ListWindow, ClosedMaximizedKeepsTheNormalSize) {
    Open();
    List().resize(620, 410);
    List().showMaximized();
    QTest::qWait(50);
    ASSERT_NE(List().size(), QSize(620, 410));
    host.Close();
    EXPECT_EQ(Settings().Dword("ListWidth", 0), 9300);
    EXPECT_EQ(Settings().Dword("ListHeight", 0), 6150);
}

TEST_F(ListWindow, APlaceThatNoScreenShowsIsGivenUp) {
    Settings().SetDword("ListLeft", 15 * 20000);
    Settings().SetDword("ListTop", 15 * 20000);
    Open();
    EXPECT_TRUE(List().screen()->availableGeometry().contains(List().pos()));
}

TEST_F(ListWindow, TheFontDialogSetsTheFontOfTheList) {
    Open();
    {
        const Modals modals({[](QWidget& modal) {
            auto* dialog = qobject_cast<QFontDialog*>(&modal);
            ASSERT_NE(dialog, nullptr);
            QFont font = dialog->currentFont();
            font.setPointSize(17);
            font.setUnderline(true);
            dialog->setCurrentFont(font);
            dialog->accept();
        }});
        Child<QAction>(List(), "mnuViewFont").trigger();
    }
    EXPECT_EQ(List().LV->font().pointSize(), 17);
    EXPECT_TRUE(List().LV->font().underline());
    const Modals modals({[](QWidget& modal) {
        modal.close();
    }});
    Child<QAction>(List(), "mnuViewFont").trigger();
    EXPECT_EQ(List().LV->font().pointSize(), 17);
}

TEST_F(ListWindow, OpensOnTheShownTitleWithNothingSelected) {
    std::vector<TestTitle> titles;
    for (int i = 0; i < 1000; ++i)
        titles.push_back({i * 3.0, i * 3.0 + 2, "x"});
    host.shownTitle = 700;
    Open(titles);
    EXPECT_EQ(List().SelectedItem(), 0);
    EXPECT_TRUE(List().SelectedRows().empty());
    const QRect row = List().LV->visualRect(List().LV->model()->index(699, 0));
    EXPECT_TRUE(List().LV->viewport()->rect().contains(row));
    EXPECT_TRUE(host.positions.empty());
}

struct ToolbarRow {
    const char* key;
    const char* caption;
    const char* toolTip;
};

TEST_F(ListWindow, TheToolbarAsItIsNamed) {
    Open();
    const std::vector<ToolbarRow> rows{
        {"Undo", "Undo", "Undo the last change"},
        {"Find", "Find", ""},
        {"Italic", "/I/t/a/l/i/c", ""},
        {"Spelling", "SpeIIlng", ""},
        {"Edit", "Edit", "Edit subtitle text, start time and duration"},
        {"Insert", "Insert", "Insert a new title before the current one"},
        {"Delete", "Delete", "Delete the selected title(s)"},
        {"Sooner", "Sooner", "Display subtitle sooner"},
        {"Later", "Later", "Display subtitle later"},
        {"Shorter", "Shorter", "Make subtitle duration shorter"},
        {"Longer", "Longer", "Make subtitle duration longer"},
        {"Stretch", "Stretch", "Adjust (selected) subtitle times to movie length"},
        {"Shift", "Shift", "Move all (selected) subtitles in time by the same amount"},
        {"Bye", "Bye", "Close this window"}};
    const QList<QAction*> actions = Child<QToolBar>(List(), "TB").actions();
    ASSERT_EQ(actions.size(), static_cast<qsizetype>(rows.size()));
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(actions[static_cast<qsizetype>(i)]->objectName(), rows[i].key);
        const auto& button = Child<QToolButton>(List(), rows[i].key);
        EXPECT_EQ(button.text(), rows[i].caption);
        EXPECT_EQ(button.toolTip(), rows[i].toolTip);
        EXPECT_FALSE(button.icon().pixmap(22, 22).toImage().isNull());
    }
}

TEST_F(ListWindow, TheMenusAsTheyAreNamed) {
    Open();
    const std::vector<std::pair<const char*, QStringList>> menus{
        {"mnuView", {"mnuViewFont &Font...", "mnuViewToolbar &Toolbar"}},
        {"mnuEdit",
         {"mnuEditUndo &Undo", "mnuEditBack &Go back", "mnuEditVersions Earlier &versions...",
          "mnuEditSepa1 ", "mnuEditEdit &Open Title...", "mnuEditSpell &Spelling correction",
          "mnuEditSepa2 ", "mnuEditFind &Find", "mnuTimeSepa3 ", "mnuEditInsert &Insert",
          "mnuEditDelete &Delete"}},
        {"mnuTiming",
         {"mnuTimeSooner Show &Earlier", "mnuTimeLater Show &Later", "mnuTimeShorter Show &Shorter",
          "mnuTimeLonger Show &Longer", "mnuTimeSepa1 ",
          "mnuTimeFirst Mark as &first for stretch timing",
          "mnuTimeSecond Mark as s&econd for stretch timing", "mnuTimeStretch S&tretch...",
          "mnuTimeShift S&hift...", "mnuTimeSepa2 ", "mnuTimeFirstHere First &mark starts here",
          "mnuTimeSecondHere Second ma&rk starts here", "mnuTimeStretchBoth Stretch to &both",
          "mnuTimeFitSound &Fit to sound...", "mnuTimeFitFile Fit to another file..."}}};
    for (const auto& [name, entries] : menus) {
        QStringList shown;
        for (const QAction* entry : Child<QMenu>(List(), name).actions()) {
            shown << entry->objectName() + " " + entry->text();
            EXPECT_EQ(entry->isSeparator(), entry->objectName().contains("Sepa"));
        }
        EXPECT_EQ(shown, entries);
    }
}

TEST_F(ListWindow, MenuEntriesFollowTheirButtons) {
    Open({{1, 2, "only"}});
    EXPECT_FALSE(Child<QAction>(List(), "mnuEditUndo").isEnabled());
    EXPECT_FALSE(Child<QAction>(List(), "mnuEditDelete").isEnabled());
    for (const char* entry : {"mnuEditEdit", "mnuEditInsert", "mnuTimeShorter", "mnuTimeLonger"})
        EXPECT_FALSE(Child<QAction>(List(), entry).isEnabled()) << entry;
    Click(1);
    for (const char* entry : {"mnuEditEdit", "mnuEditInsert", "mnuTimeShorter", "mnuTimeLonger"})
        EXPECT_TRUE(Child<QAction>(List(), entry).isEnabled()) << entry;
    List().DoCommand("Insert");
    EXPECT_TRUE(Child<QAction>(List(), "mnuEditUndo").isEnabled());
    EXPECT_TRUE(Child<QAction>(List(), "mnuEditDelete").isEnabled());
}

TEST_F(ListWindow, UndoIsPossibleWhenThereAreStepsAlready) {
    Fill(FiveTitles());
    Subt().Text(2, "changed");
    host.Open();
    EXPECT_TRUE(ButtonEnabled("Undo"));
    Subt().ClearUndo();
    EXPECT_FALSE(ButtonEnabled("Undo"));
}

TEST_F(ListWindow, LoadListKeepsTheColoursOfAsManyRows) {
    Open();
    Click(3);
    List().DoCommand("Later");
    Subt().Text(2, "other");
    host.positions.clear();
    List().LoadList();
    EXPECT_EQ(Cell(2, 0), "other");
    EXPECT_EQ(Colour(3), Edited);
    EXPECT_EQ(Colour(1), First);
    EXPECT_EQ(host.positions, std::vector<double>{Subt().StartTime(3)});
    Subt().Add(60, 61, "more");
    List().LoadList();
    EXPECT_EQ(List().RowCount(), 6);
    EXPECT_EQ(Colour(3), Plain);
    EXPECT_EQ(Colour(5), Plain);
    EXPECT_EQ(Colour(6), Second);
    EXPECT_EQ(List().SecondMark, 6);
}

TEST_F(ListWindow, AnotherDocumentStartsAfresh) {
    Open();
    Click(3);
    List().DoCommand("Later");
    host.positions.clear();
    {
        const Step step(Subt(), Step::Undo::Emptied);
        document().BeginOther();
        Subt().Clear();
        for (int i = 0; i < 5; ++i)
            Subt().Add(i * 3 + 2, i * 3 + 4, "new");
    }
    EXPECT_EQ(Cell(3, 0), "new");
    EXPECT_EQ(Colour(3), Plain);
    EXPECT_EQ(Colour(5), Second);
    EXPECT_EQ(document().BlueMark(), 2);
    EXPECT_EQ(document().GreenMark(), 14);
    EXPECT_EQ(List().SelectedItem(), 0);
    EXPECT_FALSE(ButtonEnabled("Undo"));
    EXPECT_FALSE(ButtonEnabled("Edit"));
    EXPECT_TRUE(host.positions.empty());
    {
        const Step step(Subt());
        document().BeginOther();
        Subt().Clear();
        Subt().Add(7, 8, "one");
    }
    EXPECT_EQ(List().RowCount(), 1);
    EXPECT_FALSE(ButtonEnabled("Delete"));
    EXPECT_EQ(document().GreenMark(), 7);
}

TEST_F(ListWindow, APlacementRefreshesItsRow) {
    Open();
    Subt().SetTimes(2, 21, 22.5);
    EXPECT_EQ(Cell(2, 1), "00:00:21,000");
    EXPECT_EQ(Cell(2, 2), "1.5");
    EXPECT_EQ(Cell(2, 0), "title 2");
}

TEST_F(ListWindow, FollowsChangesThatAreMadeElsewhere) {
    Open();
    Click(3);
    List().DoCommand("Later");
    Subt().Text(2, "other");
    EXPECT_EQ(Cell(2, 0), "other");
    EXPECT_EQ(Colour(3), Edited);
    {
        const Step step(Subt());
        Subt().Text(1, "a");
        Subt().SetTimes(5, 90, 92);
        EXPECT_EQ(Cell(1, 0), "title 1") << "the step is not over";
    }
    EXPECT_EQ(Cell(1, 0), "a");
    EXPECT_EQ(Cell(5, 1), "00:01:30,000");
    Subt().Insert(1, 0, 1, "first");
    EXPECT_EQ(List().RowCount(), 6);
    EXPECT_EQ(Cell(1, 0), "first");
    EXPECT_EQ(List().SecondMark, 6);
    Subt().Delete(1);
    EXPECT_EQ(List().RowCount(), 5);
}

TEST_F(ListWindow, FollowsThePlayer) {
    std::vector<TestTitle> titles;
    for (int i = 0; i < 200; ++i)
        titles.push_back({i * 3.0, i * 3.0 + 2, "x"});
    Open(titles);
    List().FollowTitle(100);
    EXPECT_EQ(List().SelectedItem(), 0) << "nothing was selected";
    const QRect inView = List().LV->viewport()->rect();
    EXPECT_TRUE(inView.contains(List().LV->visualRect(List().LV->model()->index(102, 0))));
    Click(100);
    List().FollowTitle(101);
    EXPECT_EQ(List().SelectedRows(), std::vector<std::int32_t>{101});
    List().FollowTitle(200);
    EXPECT_EQ(List().SelectedItem(), 200);
    List().FollowTitle(201);
    EXPECT_EQ(List().SelectedItem(), 200);
}

TEST_F(ListWindow, SeveralSelectedRowsStaySelectedWhileThePlayerGoesOn) {
    Open({{0, 1, "a"}, {2, 3, "b"}, {4, 5, "c"}});
    const QAbstractItemModel& model = *List().LV->model();
    for (const int row : {0, 2})
        List().LV->selectionModel()->select(model.index(row, 0), QItemSelectionModel::Select |
                                                                     QItemSelectionModel::Rows);
    List().FollowTitle(2);
    EXPECT_EQ(List().SelectedRows(), (std::vector<std::int32_t>{1, 3}));
}

TEST_F(ListWindow, TheTitleThatIsOnIsMarkedAtItsRowsEdge) {
    Open({{0, 1, "a"}, {2, 3, "b"}, {4, 5, "c"}});
    QCoreApplication::processEvents();
    const auto edge = [this](int row) {
        const QRect cell = List().LV->visualRect(List().LV->model()->index(row - 1, 0));
        return List()
            .LV->viewport()
            ->grab(QRect(cell.left() + 1, cell.center().y(), 1, 1))
            .toImage()
            .pixelColor(0, 0);
    };
    const QColor plain = edge(2);
    List().ShowPlaying(2);
    EXPECT_NE(edge(2), plain);
    List().ShowPlaying(3);
    EXPECT_EQ(edge(2), plain);
    EXPECT_NE(edge(3), plain);
    List().ShowPlaying(0);
    EXPECT_EQ(edge(3), plain);
}

} // namespace

#include "listeditor/frmList.h"
#include "mainwindow/titlestarts.h"
#include "tests/windows/mainwindowtest.h"

#include <QAction>
#include <QHelpEvent>
#include <QMenu>
#include <QSet>
#include <QSignalSpy>
#include <QToolTip>
#include <QTreeWidget>

#include <functional>

namespace {

class MainWindowActions : public MainWindowTest {
  protected:
    MainWindowActions() {
        Open();
        player->CurrentPosition(100);
        window->setFocus();
    }

    frmList& List() { return The<frmList>("frmList"); }
};

struct Case {
    const char* keys;
    std::function<bool(const FakePlayer&)> done;
};

const Case Cases[] = {
    {"Ctrl+P",
     [](const FakePlayer& p) {
         return p.State() == Player::Playing;
     }},
    {"Toggle Media Play/Pause",
     [](const FakePlayer& p) {
         return p.State() == Player::Playing;
     }},
    {"Ctrl+Shift+P",
     [](const FakePlayer& p) {
         return p.CurrentPosition() == 0;
     }},
    {"Media Stop",
     [](const FakePlayer& p) {
         return p.CurrentPosition() == 0;
     }},
    {"Alt+Left",
     [](const FakePlayer& p) {
         return p.CurrentPosition() == 99.5;
     }},
    {"Alt+Right",
     [](const FakePlayer& p) {
         return p.CurrentPosition() == 100.5;
     }},
    {"Alt+PgUp",
     [](const FakePlayer& p) {
         return p.CurrentPosition() == 95;
     }},
    {"Alt+PgDown",
     [](const FakePlayer& p) {
         return p.CurrentPosition() == 105;
     }},
    {"Ctrl+PgUp",
     [](const FakePlayer& p) {
         return p.CurrentPosition() == 6;
     }},
    {"Media Previous",
     [](const FakePlayer& p) {
         return p.CurrentPosition() == 6;
     }},
    {"Alt+Home",
     [](const FakePlayer& p) {
         return p.CurrentPosition() == 0;
     }},
    {"Alt+,",
     [](const FakePlayer& p) {
         return p.CurrentPosition() == 99.5;
     }},
    {"Alt+.",
     [](const FakePlayer& p) {
         return p.CurrentPosition() == 100.5;
     }},
    {"Alt+End",
     [](const FakePlayer& p) {
         return p.CurrentPosition() == 600;
     }},
    {"Ctrl+-",
     [](const FakePlayer& p) {
         return p.Volume() == 95;
     }},
    {"Ctrl+M",
     [](const FakePlayer& p) {
         return p.Muted();
     }},
    {"Alt++",
     [](const FakePlayer& p) {
         return p.Rate() == 1.25;
     }},
    {"Alt+-",
     [](const FakePlayer& p) {
         return p.Rate() == 0.75;
     }},
};

TEST_F(MainWindowActions, KeysDoWhatTheControlsDoInBothWindows) {
    Click("cmdEdit");
    for (const Case& one : Cases)
        for (QWidget* target :
             {static_cast<QWidget*>(window.get()), static_cast<QWidget*>(&List())}) {
            player->Pause();
            player->CurrentPosition(100);
            player->Rate(1);
            player->Volume(100);
            player->Muted(false);
            Type(*target, QKeySequence(one.keys));
            EXPECT_TRUE(one.done(*player))
                << one.keys << " in " << target->objectName().toStdString();
        }
}

TEST_F(MainWindowActions, TheNextTitleIsReachedAndTheLastOneStays) {
    player->CurrentPosition(0);
    for (const double start : {1.0, 4.0, 6.0, 6.0}) {
        Type(*window, QKeySequence("Ctrl+PgDown"));
        EXPECT_EQ(player->CurrentPosition(), start);
    }
    player->Volume(50);
    Type(*window, QKeySequence("Ctrl++"));
    EXPECT_EQ(player->Volume(), 55);
}

TEST_F(MainWindowActions, TheStripsKeysRestWhilePlaying) {
    player->Play();
    Type(*window, QKeySequence("Alt+End"));
    EXPECT_EQ(player->CurrentPosition(), 100);
}

TEST_F(MainWindowActions, WithoutAFilmTheKeysDoNothing) {
    Line("txtAVI").clear();
    CloseWindow();
    OpenWindow();
    const QStringList others{"actOtherWindow", "actKeys", "actTakeBack", "actGoBack"};
    for (const QAction* action : window->actions())
        EXPECT_EQ(action->isEnabled(), others.contains(action->objectName()))
            << action->objectName().toStdString();
}

TEST_F(MainWindowActions, TheOtherWindowIsOneKeyAway) {
    Type(*window, QKeySequence("F6"));
    ASSERT_TRUE(window->document().ListWindowOpen);
    EXPECT_TRUE(QTest::qWaitFor([this] { return List().isActiveWindow(); }, 3000));
    Type(List(), QKeySequence("F6"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return window->isActiveWindow(); }, 3000));
    Type(*window, QKeySequence("F6"));
    EXPECT_TRUE(QTest::qWaitFor([this] { return List().isActiveWindow(); }, 3000));
}

TEST_F(MainWindowActions, MarksThatWereSetShowTheirTimes) {
    Click("cmdEdit");
    ASSERT_FALSE(The("cmdBlue").isEnabled()) << "the list was opened after the film";
    player->CurrentPosition(2);
    Type(*window, QKeySequence("Ctrl+B"));
    EXPECT_EQ(The("cmdBlue").text(), "00:00:02,000");
    EXPECT_EQ(The("cmdGreen").text(), "");
    player->CurrentPosition(12);
    Type(*window, QKeySequence("Ctrl+G"));
    EXPECT_EQ(The("cmdGreen").text(), "00:00:12,000");
    EXPECT_EQ(The("cmdGreen").accessibleName(), "Green mark 00:00:12,000");
}

TEST_F(MainWindowActions, AMarkThatIsSetWhereItWasShowsItsTime) {
    Click("cmdEdit");
    player->CurrentPosition(Subt().StartTime(1));
    Type(*window, QKeySequence("Ctrl+B"));
    EXPECT_EQ(The("cmdBlue").text(), "00:00:01,000");
    EXPECT_EQ(The("cmdBlue").accessibleName(), "Blue mark 00:00:01,000");
    EXPECT_EQ(The("cmdGreen").text(), "") << "that one stays where the program put it";
    player->CurrentPosition(Subt().StartTime(3));
    Type(*window, QKeySequence("Ctrl+G"));
    EXPECT_EQ(The("cmdGreen").text(), "00:00:06,000");
}

TEST_F(MainWindowActions, AnotherFilesEndsAreNobodysMarks) {
    WriteFile("other.srt", "1\r\n00:00:02,500 --> 00:00:03,000\r\none\r\n\r\n"
                           "2\r\n00:00:07,000 --> 00:00:08,000\r\ntwo\r\n\r\n");
    Click("cmdEdit");
    Line("txtSRT").setText(In("other.srt"));
    ASSERT_EQ(window->document().BlueMark(), 2.5);
    EXPECT_EQ(The("cmdBlue").text(), "");
    EXPECT_EQ(The("cmdGreen").text(), "");
    Type(*window, QKeySequence("Ctrl+B"));
    ASSERT_EQ(The("cmdBlue").text(), "00:01:40,000");
    OpenTitles();
    ASSERT_EQ(window->document().BlueMark(), 1);
    EXPECT_EQ(The("cmdBlue").text(), "") << "it was set in a file that is no longer open";
    EXPECT_EQ(The("cmdBlue").accessibleName(), "Blue mark");
}

TEST_F(MainWindowActions, AReopenedListHasMarksOfItsOwn) {
    Click("cmdEdit");
    Type(*window, QKeySequence("Ctrl+B"));
    ASSERT_NE(The("cmdBlue").text(), "");
    List().close();
    Click("cmdEdit");
    EXPECT_EQ(The("cmdBlue").text(), "");
    EXPECT_EQ(The("cmdBlue").accessibleName(), "Blue mark");
}

TEST_F(MainWindowActions, TheMarksTipsSayWhyTheyAreOff) {
    const auto tip = [this] {
        return The("cmdBlue").toolTip().section('\n', 1).toStdString();
    };
    EXPECT_EQ(tip(), "Off until a film is opened beside the list editor.");
    Click("cmdEdit");
    EXPECT_EQ(tip(), "Off because the list editor was opened after the film. The keys work.");
    Line("txtAVI").setText(In("other.avi"));
    EXPECT_EQ(tip(), "");
    EXPECT_TRUE(The("cmdBlue").toolTip().endsWith("(Ctrl+B)"));
    player->RefusesFiles = true;
    Line("txtAVI").setText(In("film.avi"));
    EXPECT_EQ(tip(), "Off until a film is open.");
}

TEST_F(MainWindowActions, TipsNameTheKeys) {
    const struct {
        const char* control;
        const char* tip;
    } rows[] = {{"mpPlay", "Play (Ctrl+P)"},
                {"mpStop", "Stop (Ctrl+Shift+P)"},
                {"mpSlider", "Position (Alt+PgUp, Alt+PgDown)"},
                {"mpMute", "Mute (Ctrl+M)"},
                {"mpVolume", "Volume (Ctrl++, Ctrl+-)"},
                {"mpRate", "Playback rate (Alt++, Alt+-)"}};
    for (const auto& row : rows)
        EXPECT_EQ(The<QWidget>(row.control).toolTip(), row.tip);
    player->Play();
    EXPECT_EQ(The<QWidget>("mpPlay").toolTip(), "Pause (Ctrl+P)");
    player->Pause();
    auto& strip = The<QWidget>("picButtons");
    QHelpEvent help(QEvent::ToolTip, {18, 12}, strip.mapToGlobal(QPoint(18, 12)));
    QCoreApplication::sendEvent(&strip, &help);
    EXPECT_EQ(QToolTip::text(), "To the start of the selection (Alt+Home)");
}

TEST_F(MainWindowActions, F1ListsEveryKeyOnce) {
    Type(*window, QKeySequence("F1"));
    Type(*window, QKeySequence("F1"));
    EXPECT_EQ(window->findChildren<QDialog*>("frmKeys").size(), 1);
    const auto& list = The<QTreeWidget>("lstKeys");
    QStringList keys;
    for (int i = 0; i < list.topLevelItemCount(); ++i)
        keys << list.topLevelItem(i)->text(0);
    for (const QAction* action : window->actions())
        EXPECT_EQ(keys.count(action->shortcut().toString(QKeySequence::NativeText)), 1)
            << action->objectName().toStdString();
    for (const ListCommand& command : frmList::Commands())
        if (const QKeySequence key(QString::fromLatin1(command.shortcut)); !key.isEmpty()) {
            EXPECT_EQ(keys.count(key.toString(QKeySequence::NativeText)), 1) << command.shortcut;
        }
    EXPECT_EQ(keys.first(), "Space");
    EXPECT_LT(keys.indexOf("Ctrl+P"), keys.indexOf("PgDown"));
    Child<QPushButton>(list.window()[0], "cmdClose").click();
}

TEST_F(MainWindowActions, NoKeyHasTwoMeanings) {
    Click("cmdEdit");
    for (QWidget* target : {static_cast<QWidget*>(window.get()), static_cast<QWidget*>(&List())}) {
        QSet<QString> seen;
        QSet<const QAction*> counted;
        for (const QAction* action :
             target->actions() + target->findChildren<QAction*>(Qt::FindDirectChildrenOnly)) {
            if (counted.contains(action))
                continue;
            counted.insert(action);
            for (const QKeySequence& key : action->shortcuts()) {
                EXPECT_FALSE(seen.contains(key.toString()) && !key.isEmpty())
                    << key.toString().toStdString() << " in " << target->objectName().toStdString();
                seen.insert(key.toString());
            }
        }
    }
}

TEST(TitleStarts, AreFoundInAnyOrder) {
    SUBTITLES titles;
    for (const double start : {5.0, 1.0, 9.0})
        titles.Add(start, start + 1, "title");
    const struct {
        double position;
        std::optional<double> before;
        std::optional<double> after;
    } rows[] = {{0, {}, 1}, {1, {}, 5},  {1.4, {}, 5}, {1.6, 1, 5}, {4.97, 1, 9},
                {5, 1, 9},  {5.6, 5, 9}, {9.2, 5, {}}, {20, 9, {}}};
    for (const auto& row : rows) {
        EXPECT_EQ(StartBefore(titles, row.position), row.before) << row.position;
        EXPECT_EQ(StartAfter(titles, row.position), row.after) << row.position;
    }
    EXPECT_FALSE(StartAfter(SUBTITLES(), 0));
}

} // namespace

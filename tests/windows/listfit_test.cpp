#include "dialogs/frmFit.h"
#include "model/times.h"
#include "tests/windows/listtest.h"

#include <QAction>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTreeWidget>

#include <fstream>

namespace {

constexpr int Count = 50;
constexpr double Late = 3;

double StartOf(int i) {
    return 15 + i * 6 + (i * i) % 13 * 0.31;
}

/// The list editor on titles that come too early, beside a file of right ones.
class ListFitting : public ListTest {
  protected:
    ListFitting() {
        std::vector<TestTitle> titles;
        SUBTITLES right;
        for (int i = 0; i < Count; ++i) {
            titles.push_back({StartOf(i), StartOf(i) + 2, "some words to say"});
            right.Add(StartOf(i) + Late, StartOf(i) + Late + 2, "some words to say");
        }
        std::ofstream file(Name().toStdString(), std::ios::binary);
        for (int i = 1; i <= Count; ++i)
            file << i << "\r\n"
                 << FormatTime(right.StartTime(i)) << " --> " << FormatTime(right.EndTime(i))
                 << "\r\n"
                 << right.Text(i) << "\r\n\r\n";
        Open(titles);
    }

    QString Name() const { return folder.filePath("right.srt"); }
    void FitToFile(const std::function<void(frmFit&)>& act) {
        const Modals modals(
            {AnswerFileDialog(Name()), AnswerWindow("frmFit", [&](QWidget& window) {
                 auto& dialog = dynamic_cast<frmFit&>(window);
                 EXPECT_TRUE(QTest::qWaitFor([&] { return dialog.cmdFit->isEnabled(); }, 30'000));
                 act(dialog);
             })});
        Child<QAction>(List(), "mnuTimeFitFile").trigger();
    }

    QTemporaryDir folder;
};

TEST_F(ListFitting, MovesTheTitlesAsOneStep) {
    FitToFile([&](frmFit& dialog) {
        // The list shows what is proposed, and the titles still are what they were.
        EXPECT_EQ(Cell(1, 1), "00:00:18,000");
        EXPECT_EQ(Subt().StartTime(1), StartOf(0));
        // So do film and lane.
        ASSERT_TRUE(host.shownInstead);
        EXPECT_EQ(host.shownInstead->Count(), Count);
        EXPECT_NEAR(host.shownInstead->StartTime(1), StartOf(0) + Late, 0.02);
        dialog.cmdFit->click();
    });
    EXPECT_FALSE(host.shownInstead);
    EXPECT_NEAR(Subt().StartTime(1), StartOf(0) + Late, 0.02);
    EXPECT_NEAR(Subt().EndTime(Count), StartOf(Count - 1) + Late + 2, 0.02);
    EXPECT_EQ(Colour(2), Edited);
    EXPECT_TRUE(document().SubtitlesChanged);
    Child<QAction>(List(), "mnuEditBack").trigger();
    EXPECT_EQ(Subt().StartTime(1), StartOf(0));
}

TEST_F(ListFitting, ShowsTheTitlesAgainWhenCancelled) {
    FitToFile([](frmFit& dialog) { dialog.cmdCancel->click(); });
    EXPECT_FALSE(host.shownInstead);
    EXPECT_EQ(Cell(1, 1), "00:00:15,000");
    EXPECT_EQ(Subt().StartTime(1), StartOf(0));
    EXPECT_FALSE(document().SubtitlesChanged);
}

TEST_F(ListFitting, LeavesTitlesThatAPersonHasPlacedAndGoesByThem) {
    const double start = StartOf(19) + Late + 0.05;
    Subt().SetTimes(20, start, start + 1.5);
    document().Placed(20, StartOf(19));
    FitToFile([](frmFit& dialog) { dialog.cmdFit->click(); });
    EXPECT_EQ(Subt().StartTime(20), start);
    EXPECT_EQ(Subt().EndTime(20), start + 1.5);
    EXPECT_NEAR(Subt().StartTime(1), StartOf(0) + Late, 0.1);
    EXPECT_NEAR(Subt().StartTime(50), StartOf(49) + Late, 0.1);
    ASSERT_EQ(document().PlacedTitles().size(), 1U);
    EXPECT_EQ(document().PlacedTitles()[0].was, start);
}

TEST_F(ListFitting, PlaysWhatIsToBeHeard) {
    FitToFile([](frmFit& dialog) {
        dialog.cmdListen->click();
        dialog.cmdCancel->click();
    });
    ASSERT_EQ(host.listened.size(), 1U);
    EXPECT_NEAR(host.listened[0].second - host.listened[0].first, 5, 1e-9);
}

TEST_F(ListFitting, AsksForAFilmFirst) {
    const Modals modals(
        {AnswerMessage("Open a film first: its sound tells where the titles belong.")});
    Child<QAction>(List(), "mnuTimeFitSound").trigger();
}

} // namespace

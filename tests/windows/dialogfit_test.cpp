#include "dialogs/fitgraph.h"
#include "dialogs/frmFit.h"
#include "model/subtitles.h"
#include "tests/windows/drive.h"

#include <QGuiApplication>
#include <QLabel>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSignalSpy>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

namespace {

constexpr int Count = 60;
constexpr double Late = 2.5;

/// Titles at uneven distances, so that there is only one way to lay them on each other.
double StartOf(int i) {
    return 20 + i * 7 + (i * i) % 11 * 0.37;
}

RightTitles Right(double later) {
    RightTitles titles;
    for (int i = 0; i < Count; ++i)
        titles.push_back({StartOf(i) + later, StartOf(i) + later + 2, "words to say here"});
    return titles;
}

/// Stands for the window that has the film.
class Host : public FitHost {
  public:
    Host() {
        for (const FitTitle& title : Right(0))
            Titles.Add(title.start, title.end, title.text);
        Titles.UndoEnabled(true);
    }

    SUBTITLES& FitTitles() override { return Titles; }
    std::vector<FitAnchor> FitAnchors() const override { return {}; }
    QRect FilmPlace() const override { return film; }
    void Listen(double from, double to) override { listened.emplace_back(from, to); }
    void ShowProposed(std::span<const FitTimes> times) override {
        proposed.assign(times.begin(), times.end());
    }
    void Fitted(std::span<const std::int32_t> rows) override {
        fitted.assign(rows.begin(), rows.end());
    }

    SUBTITLES Titles;
    QRect film;
    std::vector<std::pair<double, double>> listened;
    std::vector<FitTimes> proposed;
    std::vector<std::int32_t> fitted;
};

class DialogFit : public testing::Test {
  protected:
    ~DialogFit() override { delete m_dialog; }

    frmFit& Open(FitSource source) {
        m_dialog = new frmFit(host, std::move(source), nullptr);
        m_dialog->show();
        return *m_dialog;
    }
    frmFit& OpenOn(RightTitles right) {
        frmFit& dialog = Open({"right.srt", [right = std::move(right)](const auto& progress) {
                                   progress("Reading the titles", 0.5);
                                   return FitSource::Got{right, {}};
                               }});
        EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.prgFit->isVisible(); }, 30'000));
        return dialog;
    }
    bool Closed() {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return m_dialog == nullptr;
    }

    Host host;

  private:
    QPointer<frmFit> m_dialog;
};

TEST_F(DialogFit, ProposesAndFitsAsOneStep) {
    frmFit& dialog = OpenOn(Right(Late));
    EXPECT_EQ(dialog.windowTitle(), "Fit to right.srt");
    ASSERT_EQ(dialog.lstPieces->topLevelItemCount(), 1) << dialog.lblVerdict->text().toStdString();
    EXPECT_EQ(dialog.lstPieces->topLevelItem(0)->text(0), "1 - 60");
    EXPECT_EQ(dialog.lstPieces->topLevelItem(0)->text(1), "2.50 s later");
    EXPECT_TRUE(dialog.optAfter->isChecked());
    ASSERT_EQ(host.proposed.size(), static_cast<std::size_t>(Count));
    EXPECT_NEAR(host.proposed[0].start, StartOf(0) + Late, 0.02);
    EXPECT_EQ(host.Titles.StartTime(1), StartOf(0));

    dialog.cmdFit->click();
    EXPECT_TRUE(Closed());
    EXPECT_NEAR(host.Titles.StartTime(1), StartOf(0) + Late, 0.02);
    EXPECT_NEAR(host.Titles.EndTime(Count), StartOf(Count - 1) + Late + 2, 0.02);
    EXPECT_EQ(host.fitted.size(), static_cast<std::size_t>(Count));
    EXPECT_TRUE(host.proposed.empty());
    EXPECT_EQ(host.Titles.UndoCount(), 0);
}

TEST_F(DialogFit, ChangesNothingUnlessAsked) {
    frmFit& dialog = OpenOn(Right(Late));
    dialog.cmdCancel->click();
    EXPECT_TRUE(Closed());
    EXPECT_EQ(host.Titles.StartTime(1), StartOf(0));
    EXPECT_TRUE(host.fitted.empty());
    EXPECT_TRUE(host.proposed.empty());
}

TEST_F(DialogFit, LeavesPiecesThatAreNotTicked) {
    frmFit& dialog = OpenOn(Right(Late));
    dialog.lstPieces->topLevelItem(0)->setCheckState(0, Qt::Unchecked);
    EXPECT_FALSE(dialog.cmdFit->isEnabled());
    EXPECT_TRUE(host.proposed.empty());
    dialog.lstPieces->topLevelItem(0)->setCheckState(0, Qt::Checked);
    EXPECT_TRUE(dialog.cmdFit->isEnabled());
    EXPECT_FALSE(host.proposed.empty());
}

TEST_F(DialogFit, ShowsBeforeAndAfterAndLetsListen) {
    frmFit& dialog = OpenOn(Right(Late));
    dialog.optBefore->click();
    EXPECT_TRUE(host.proposed.empty());
    dialog.optAfter->click();
    EXPECT_FALSE(host.proposed.empty());
    dialog.cmdListen->click();
    ASSERT_EQ(host.listened.size(), 1U);
    EXPECT_NEAR(host.listened[0].second - host.listened[0].first, 5, 1e-9);
}

TEST_F(DialogFit, ShowsWhatIsListenedToEvenIfItIsNotTicked) {
    frmFit& dialog = OpenOn(Right(Late));
    dialog.lstPieces->topLevelItem(0)->setCheckState(0, Qt::Unchecked);
    ASSERT_TRUE(host.proposed.empty());
    dialog.cmdListen->click();
    ASSERT_EQ(host.proposed.size(), static_cast<std::size_t>(Count));
    EXPECT_NEAR(host.proposed[0].start, StartOf(0) + Late, 0.02);
    EXPECT_FALSE(dialog.cmdFit->isEnabled());
    dialog.optBefore->click();
    EXPECT_TRUE(host.proposed.empty());
}

TEST_F(DialogFit, KeepsOffTheFilm) {
    const QRect screen = QGuiApplication::primaryScreen()->availableGeometry();
    host.film = QRect(screen.topLeft(), QSize(screen.width() / 4, screen.height()));
    const frmFit& dialog = OpenOn(Right(Late));
    EXPECT_FALSE(dialog.geometry().intersects(host.film));
}

TEST_F(DialogFit, SaysThatRightTitlesAreRight) {
    frmFit& dialog = OpenOn(Right(0));
    EXPECT_TRUE(dialog.lblVerdict->text().startsWith("The titles fit as they are"))
        << dialog.lblVerdict->text().toStdString();
    EXPECT_FALSE(dialog.optAfter->isChecked());
}

TEST_F(DialogFit, SaysWhyThereIsNothingToFitTo) {
    frmFit& dialog = Open({"the sound", [](const auto&) {
                               return FitSource::Got{{}, "The film has no sound."};
                           }});
    EXPECT_TRUE(QTest::qWaitFor([&] { return !dialog.prgFit->isVisible(); }, 30'000));
    EXPECT_EQ(dialog.lblVerdict->text(), "The film has no sound.");
    EXPECT_FALSE(dialog.cmdFit->isEnabled());
    EXPECT_FALSE(dialog.cmdListen->isEnabled());
}

TEST_F(DialogFit, EndsItsWorkWhenItIsClosed) {
    std::atomic<bool> ended = false;
    frmFit& dialog = Open({"the sound", [&ended](const FitSource::Progress& progress) {
                               while (progress("Looking for speech", 0.1))
                                   std::this_thread::sleep_for(std::chrono::milliseconds(5));
                               ended = true;
                               return FitSource::Got{};
                           }});
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return dialog.prgFit->format().startsWith("Looking"); }, 30'000));
    dialog.reject();
    EXPECT_TRUE(ended);
    EXPECT_TRUE(Closed());
}

TEST_F(DialogFit, DrawsItsGraph) {
    frmFit& dialog = OpenOn(Right(Late));
    const QImage drawn = dialog.picGraph->grab().toImage();
    const QRgb ground = dialog.picGraph->palette().color(QPalette::Base).rgb();
    int others = 0;
    for (int y = 0; y < drawn.height(); ++y)
        for (int x = 0; x < drawn.width(); ++x)
            others += drawn.pixel(x, y) != ground ? 1 : 0;
    EXPECT_GT(others, 500);
}

} // namespace

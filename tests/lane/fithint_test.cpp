#include "dialogs/frmFit.h"
#include "mainwindow/frmQuelmar.h"
#include "model/versions.h"
#include "player/mediaplayercontrol.h"
#include "tests/sound/babble.h"
#include "tests/windows/drive.h"
#include "tests/windows/fakeplayer.h"

#include <QAction>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QTextDocumentFragment>
#include <QToolButton>

#include <gtest/gtest.h>

#include <memory>
#include <ostream>

namespace {

constexpr double Length = 300;
constexpr int Patience = 60000;

const FittingFilm& TheFilm() {
    static const FittingFilm Film = MakeFilm(31, Length);
    return Film;
}

QString FilmFile() {
    static const QTemporaryDir Folder;
    const QString name = Folder.filePath("film.wav");
    if (!QFile::exists(name)) {
        QFile file(name);
        const std::string bytes = Babble(TheFilm());
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes.data(), static_cast<qint64>(bytes.size()));
    }
    return name;
}

/// The main window with a film in which somebody speaks.
class Hinting : public testing::Test {
  protected:
    Hinting() {
        Stored().clear();
        OpenWindow();
    }
    ~Hinting() override { CloseWindow(); }

    static QSettings Stored() {
        return QSettings(QSettings::NativeFormat, QSettings::UserScope, "Tevo", "Quelmar");
    }
    void OpenWindow() {
        auto owned = std::make_unique<FakePlayer>();
        player = owned.get();
        player->MediaLength = Length;
        player->MediaRate = 24;
        player->Tracks << QStringLiteral("Track 1");
        window = std::make_unique<frmQuelmar>(std::move(owned));
        window->resize(1200, 700);
        window->show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    }
    void CloseWindow() {
        window->document().SubtitlesChanged = false;
        window->close();
        window.reset();
    }
    /// As if a file had been opened.
    void OpenTitles(const std::vector<FitTitle>& titles) {
        Document& document = window->document();
        document.BeginOther();
        SUBTITLES list;
        for (const FitTitle& title : titles)
            list.Add(title.start, title.end, title.text);
        list.UndoEnabled(true);
        document.Subt.Replace(std::move(list));
    }
    QLabel& Line() const { return Child<QLabel>(*window, "mpHint"); }
    QString Said() const { return QTextDocumentFragment::fromHtml(Line().text()).toPlainText(); }
    bool Says(const QString& text) const {
        return QTest::qWaitFor([&] { return Said() == text; }, Patience);
    }

    FakePlayer* player = nullptr;
    std::unique_ptr<frmQuelmar> window;
};

struct HintCase {
    const char* what;
    double offset;
    double rate;
    const char* says;
};

std::ostream& operator<<(std::ostream& out, const HintCase& row) {
    return out << row.what;
}

class HintOf : public Hinting, public testing::WithParamInterface<HintCase> {};

TEST_P(HintOf, SaysHowTheTitlesFit) {
    window->OpenFiles(FilmFile(), {});
    OpenTitles(Misplaced(TheFilm().titles, GetParam().offset, GetParam().rate));
    EXPECT_TRUE(Says(GetParam().says)) << Line().text().toStdString();
    EXPECT_TRUE(Line().isVisible());
    EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    Titles, HintOf,
    testing::Values(HintCase{"right", 0, 1, "The titles fit the sound"},
                    HintCase{"late", -2.4, 1, "About 2.4 s late. Fit..."},
                    HintCase{"early", 12.3, 1, "About 12.3 s early. Fit..."},
                    HintCase{"of another rate", 0, 25.0 / 24,
                             "Made for 25 pictures a second, the film has 24. Fit..."}));

TEST_F(Hinting, FollowsTheTitles) {
    window->OpenFiles(FilmFile(), {});
    OpenTitles(Misplaced(TheFilm().titles, -2.4));
    ASSERT_TRUE(Says("About 2.4 s late. Fit..."));
    OpenTitles(TheFilm().titles);
    EXPECT_EQ(Said(), "");
    EXPECT_FALSE(Line().isVisible());
    ASSERT_TRUE(Says("The titles fit the sound"));
    window->Subt.Text(1, "other words");
    EXPECT_EQ(Said(), "The titles fit the sound");
    window->Subt.StartTime(1, 0.1);
    EXPECT_EQ(Said(), "");
    EXPECT_TRUE(Says("The titles fit the sound"));
}

TEST_F(Hinting, GoesWithTheFilm) {
    window->OpenFiles(FilmFile(), {});
    OpenTitles(TheFilm().titles);
    ASSERT_TRUE(Says("The titles fit the sound"));
    QTemporaryDir folder;
    QFile other(folder.filePath("other.avi"));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    window->OpenFiles(other.fileName(), {});
    EXPECT_EQ(Said(), "");
}

TEST_F(Hinting, OpensTheFit) {
    window->OpenFiles(FilmFile(), {});
    OpenTitles(Misplaced(TheFilm().titles, -2.4));
    ASSERT_TRUE(Says("About 2.4 s late. Fit..."));
    bool opened = false;
    {
        const Modals modals({AnswerWindow("frmFit", [&opened](QWidget& dialog) {
            opened = true;
            auto& fit = dynamic_cast<frmFit&>(dialog);
            EXPECT_TRUE(QTest::qWaitFor([&] { return fit.cmdFit->isEnabled(); }, Patience));
            fit.cmdFit->click();
        })});
        emit Line().linkActivated("fit");
    }
    EXPECT_TRUE(opened);
    EXPECT_NEAR(window->Subt.StartTime(20), TheFilm().titles[19].start, 0.15);
    EXPECT_EQ(window->document().Earlier().At(0).step, "Fit");
}

TEST_F(Hinting, ANarrowWindowLeavesTheSliderItsRoom) {
    window->OpenFiles(FilmFile(), {});
    OpenTitles(Misplaced(TheFilm().titles, -2.4));
    ASSERT_TRUE(Says("About 2.4 s late. Fit..."));
    window->resize(window->minimumSize());
    EXPECT_FALSE(Line().isVisible());
    // What does not fit into the bar is told by the button.
    EXPECT_TRUE(Child<QToolButton>(*window, "mpFit").toolTip().contains("About 2.4 s late"));
    window->resize(1200, 700);
    EXPECT_TRUE(Line().isVisible());
}

TEST_F(Hinting, SaysNothingWhereItIsNotWanted) {
    CloseWindow();
    Stored().setValue("FitHint", 0);
    OpenWindow();
    window->OpenFiles(FilmFile(), {});
    OpenTitles(TheFilm().titles);
    EXPECT_EQ(window->findChild<QTimer*>("tmrHint"), nullptr);
    EXPECT_FALSE(Line().isVisible());
}

TEST_F(Hinting, ComesWithAHiddenLaneToo) {
    CloseWindow();
    Stored().setValue("Lane", 0);
    OpenWindow();
    window->OpenFiles(FilmFile(), {});
    OpenTitles(TheFilm().titles);
    EXPECT_TRUE(Says("The titles fit the sound"));
    EXPECT_EQ(window->findChild<QWidget*>("lane"), nullptr);
    Child<QToolButton>(*window, "mpLane").click();
    EXPECT_NE(window->findChild<QWidget*>("lane"), nullptr);
}

/// A title with silence around it.
std::int32_t LoneTitle() {
    const std::vector<FitTitle>& titles = TheFilm().titles;
    for (std::size_t i = 10; i + 1 < titles.size(); ++i)
        if (titles[i].start - titles[i - 1].end > 0.6 &&
            titles[i + 1].start - titles[i].end > 0.6 && titles[i].end - titles[i].start > 1)
            return static_cast<std::int32_t>(i + 1);
    return 0;
}

TEST_F(Hinting, PlacementsSnapToSpeechWhereThatIsWanted) {
    const std::int32_t title = LoneTitle();
    ASSERT_GT(title, 0);
    const FitTitle& spoken = TheFilm().titles[static_cast<std::size_t>(title - 1)];
    window->OpenFiles(FilmFile(), {});
    OpenTitles(TheFilm().titles);
    ASSERT_TRUE(Says("The titles fit the sound"));
    Child<QAbstractButton>(*window, "optPosition").click();
    window->setFocus();
    player->Play();
    const auto place = [&](double start, double end) {
        player->CurrentPosition(spoken.start - 0.3);
        for (const auto& [position, type] :
             {std::pair(start, QEvent::KeyPress), std::pair(end, QEvent::KeyRelease)}) {
            player->Advance(position - player->CurrentPosition());
            QKeyEvent event(type, Qt::Key_Space, {}, " ");
            QCoreApplication::sendEvent(window.get(), &event);
        }
    };
    const double start = spoken.start + 0.17;
    const double end = spoken.end + 0.12;
    place(start, end);
    EXPECT_DOUBLE_EQ(window->Subt.StartTime(title), start);
    auto& control = Child<MediaPlayerControl>(*window, "MP");
    control.SnapToSpeech(true);
    emit control.SnapChosen();
    place(start, end);
    EXPECT_NEAR(window->Subt.StartTime(title), spoken.start, 0.08);
    EXPECT_NEAR(window->Subt.EndTime(title), spoken.end, 0.15);
    EXPECT_NE(window->Subt.StartTime(title), start);
    const Document& document = window->document();
    ASSERT_EQ(document.PlacedTitles().size(), 1U);
    EXPECT_EQ(document.PlacedTitles()[0].title, title);
    EXPECT_EQ(document.Earlier().At(0).step, "Snapping to speech");
    EXPECT_DOUBLE_EQ(TitlesOf(document.Earlier().At(0)).StartTime(title), start);
    EXPECT_DOUBLE_EQ(TitlesOf(document.Earlier().At(0)).EndTime(title), end);
    EXPECT_TRUE(Child<QLabel>(*window, "mpNote").text().contains("start 0.")) << "what was moved";
    // Taken back by one key, to before it was recorded.
    Child<QAction>(*window, "actTakeBack").trigger();
    EXPECT_DOUBLE_EQ(window->Subt.StartTime(title), start);
    Child<QAction>(*window, "actTakeBack").trigger();
    EXPECT_DOUBLE_EQ(window->Subt.StartTime(title), spoken.start);
}

} // namespace

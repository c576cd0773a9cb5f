// One evening's work from end to end: a film, a badly timed file of 1,200 titles, and
// everything that a person does to it with mouse and keyboard, up to the three saved
// files that must say the same.

#include "formats/save.h"
#include "listeditor/frmList.h"
#include "listeditor/titleview.h"
#include "mainwindow/frmQuelmar.h"
#include "model/times.h"
#include "player/mpvplayer.h"
#include "tests/windows/drive.h"
#include "tests/windows/films.h"

#include <QAction>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

namespace {

constexpr int Patience = 10000;
constexpr std::int32_t Many = 1200;

struct Line {
    double start;
    double end;
    std::string text;
};

std::vector<Line> LinesOf(const SUBTITLES& titles) {
    std::vector<Line> lines;
    for (std::int32_t i = 1; i <= titles.Count(); ++i)
        lines.push_back({titles.StartTime(i), titles.EndTime(i), titles.Text(i)});
    return lines;
}

void ExpectSame(const std::vector<Line>& lines, const std::vector<Line>& wanted, double tolerance) {
    ASSERT_EQ(lines.size(), wanted.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_NEAR(lines[i].start, wanted[i].start, tolerance) << "title " << i + 1;
        EXPECT_NEAR(lines[i].end, wanted[i].end, tolerance) << "title " << i + 1;
        EXPECT_EQ(lines[i].text, wanted[i].text) << "title " << i + 1;
    }
}

class Evening : public testing::Test {
  protected:
    Evening() {
        SUBTITLES titles;
        for (int i = 0; i < Many; ++i)
            titles.Add(1 + i * 3, 3 + i * 3,
                       "Title number " + std::to_string(i + 1) +
                           (i % 3 == 0 ? "\r\nand its second line" : ""));
        m_file = m_folder.filePath("badly timed.srt");
        EXPECT_TRUE(SaveTitles(m_file.toStdString(), "windows-1252", titles, {}, {}).written);
        auto player = MakeMpvPlayer();
        m_player = player.get();
        m_window = std::make_unique<frmQuelmar>(std::move(player));
        m_window->show();
        m_film = MakeFilm({.container = "avi", .pictures = 500});
        The<QLineEdit>("txtAVI").setText(m_film);
        The<QLineEdit>("txtSRT").setText(m_file);
    }
    ~Evening() override {
        m_window->document().SubtitlesChanged = false;
        m_window->document().Saved();
        m_window->close();
    }

    SUBTITLES& Subt() { return m_window->Subt; }
    template <typename T = QPushButton>
    T& The(const char* name) {
        return Child<T>(*m_window, name);
    }
    frmList& List() {
        for (QWidget* top : QApplication::topLevelWidgets())
            if (auto* list = qobject_cast<frmList*>(top))
                return *list;
        throw std::runtime_error("the list editor is not open");
    }
    void Click(std::int32_t row, Qt::KeyboardModifiers modifiers = {}) {
        const QModelIndex index = List().LV->model()->index(row - 1, 0);
        List().LV->scrollTo(index);
        QTest::mouseClick(List().LV->viewport(), Qt::LeftButton, modifiers,
                          List().LV->visualRect(index).center());
    }
    void Press(const char* key) {
        QTest::mouseClick(&Child<QToolButton>(List(), key), Qt::LeftButton);
    }
    void Choose(const char* entry) { Child<QAction>(List(), entry).trigger(); }
    QString Cell(std::int32_t row, int column) {
        return List().LV->model()->index(row - 1, column).data().toString();
    }
    void OpenEditor() {
        The("cmdEdit").click();
        ASSERT_TRUE(m_window->document().ListWindowOpen);
    }

    void SaveAs(const QString& name, std::vector<Answer> more = {}) {
        std::vector<Answer> answers{AnswerFileDialog(name)};
        answers.insert(answers.end(), more.begin(), more.end());
        const Modals modals(std::move(answers));
        The("cmdSave").click();
        EXPECT_FALSE(m_window->document().SubtitlesChanged);
    }

    static Answer Rate25() {
        return AnswerWindow("frmFrameRate", [](QWidget& dialog) {
            QTest::mouseClick(&Child<QPushButton>(dialog, "cmdOK"), Qt::LeftButton);
        });
    }

    QTemporaryDir m_folder;
    QString m_file;
    QString m_film;
    Player* m_player = nullptr;
    std::unique_ptr<frmQuelmar> m_window;
};

TEST_F(Evening, PlacesByKeyWhileTheFilmPlays) {
    ASSERT_TRUE(m_window->AVIFileOK);
    ASSERT_EQ(Subt().Count(), Many);
    The<QRadioButton>("optPosition").click();
    QTest::mouseClick(&The<QToolButton>("mpPlay"), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([this] { return m_player->CurrentPosition() > 0.2; }, Patience));
    EXPECT_EQ(The<QPlainTextEdit>("txtSubtitle").toPlainText(),
              "Title number 1\nand its second line");
    for (std::int32_t title = 1; title <= 2; ++title) {
        const double before = m_player->CurrentPosition();
        QTest::keyPress(m_window.get(), Qt::Key_Space);
        const double pressed = m_player->CurrentPosition();
        QTest::qWait(200);
        const double released = m_player->CurrentPosition();
        QTest::keyRelease(m_window.get(), Qt::Key_Space);
        const double after = m_player->CurrentPosition();
        EXPECT_GE(Subt().StartTime(title), before);
        EXPECT_LE(Subt().StartTime(title), pressed);
        EXPECT_GE(Subt().EndTime(title), released);
        EXPECT_LE(Subt().EndTime(title), after);
        QTest::qWait(50);
    }
    EXPECT_EQ(The<QPlainTextEdit>("txtSubtitle").toPlainText(), "Title number 3");
    EXPECT_EQ(Subt().UndoCount(), 2);
    EXPECT_TRUE(m_window->document().SubtitlesChanged);
}

TEST_F(Evening, TakesEverySingleChangeBackToTheStart) {
    const std::vector<Line> loaded = LinesOf(Subt());
    OpenEditor();
    Click(3);
    EXPECT_DOUBLE_EQ(m_player->CurrentPosition(), 7);
    Press("Later");
    Press("Later");
    Press("Sooner");
    EXPECT_NEAR(Subt().StartTime(3), 7.1, 1e-9);
    EXPECT_EQ(Cell(3, 1), "00:00:07,100");
    Click(4);
    Press("Shorter");
    Press("Longer");
    {
        const Modals modals({AnswerWindow("frmEdit", [](QWidget& dialog) {
            Child<QPlainTextEdit>(dialog, "txtSubt").setPlainText("Written anew\n<i>in two lines");
            Child<QLineEdit>(dialog, "txtDuration").setText("1.5");
            Child<QPushButton>(dialog, "cmdOK").click();
        })});
        QTest::keyClick(List().LV, Qt::Key_Return);
    }
    EXPECT_EQ(Subt().Text(4), "Written anew\r\n<i>in two lines</i>");
    EXPECT_NEAR(Subt().EndTime(4) - Subt().StartTime(4), 1.5, 1e-9);
    EXPECT_EQ(Cell(4, 2), "1.5");
    Press("Insert");
    EXPECT_EQ(Subt().Count(), Many + 1);
    EXPECT_EQ(Cell(4, 0), "New Title");
    Click(10);
    Click(60, Qt::ShiftModifier);
    Press("Delete");
    EXPECT_EQ(Subt().Count(), Many + 1 - 51);

    while (Subt().UndoCount() > 0)
        Press("Undo");
    EXPECT_FALSE(Child<QToolButton>(List(), "Undo").isEnabled());
    ExpectSame(LinesOf(Subt()), loaded, 1e-9);
    for (std::int32_t row = 1; row <= Many; ++row)
        ASSERT_EQ(Cell(row, 1).toStdString(), FormatTime(Subt().StartTime(row)));
}

TEST_F(Evening, FindsWordsAndGoesThere) {
    OpenEditor();
    Press("Find");
    auto& find = Child<QWidget>(List(), "frmFind");
    QTest::keyClicks(&Child<QLineEdit>(find, "txtFind"), "second NUMBER");
    Child<QPushButton>(find, "cmdSearch").click();
    EXPECT_EQ(List().LV->currentIndex().row() + 1, 1);
    Child<QPushButton>(find, "cmdNext").click();
    EXPECT_EQ(List().LV->currentIndex().row() + 1, 4);
    EXPECT_DOUBLE_EQ(m_player->CurrentPosition(), 10);
    Child<QLineEdit>(find, "txtFind").setText("number 9999");
    const Modals modals({AnswerMessage("No match.")});
    Child<QPushButton>(find, "cmdSearch").click();
}

TEST_F(Evening, RetimesShiftsCorrectsAndSavesInThreeFormats) {
    OpenEditor();
    // The film was opened before the editor: named again, it lends its marks.
    The<QLineEdit>("txtAVI").clear();
    The<QLineEdit>("txtAVI").setText(m_film);
    ASSERT_TRUE(The("cmdBlue").isEnabled());

    Click(2);
    Choose("mnuTimeFirst");
    Click(5);
    Choose("mnuTimeSecond");
    QTest::keyClick(List().LV, Qt::Key_A, Qt::ControlModifier);
    {
        const Modals modals({AnswerWindow("frmStretch", [](QWidget& dialog) {
            Child<QLineEdit>(dialog, "txtFirstSubtitle").setText("00:00:05,000");
            Child<QLineEdit>(dialog, "txtLastSubtitle").setText("00:00:14,900");
            Child<QPushButton>(dialog, "cmdOK").click();
        })});
        Press("Stretch");
    }
    EXPECT_NEAR(Subt().StartTime(2), 5, 1e-9);
    EXPECT_NEAR(Subt().StartTime(5), 14.9, 1e-9);
    EXPECT_NEAR(Subt().EndTime(5) - Subt().StartTime(5), 2.2, 1e-9);

    Click(1001);
    Click(1100, Qt::ShiftModifier);
    const double behind = Subt().StartTime(1100);
    {
        const Modals modals({AnswerWindow("frmShift", [](QWidget& dialog) {
            Child<QRadioButton>(dialog, "optEnd").click();
            Child<QLineEdit>(dialog, "txtSec").setText("0.500");
            Child<QPushButton>(dialog, "cmdOK").click();
        })});
        Press("Shift");
    }
    EXPECT_NEAR(Subt().StartTime(1100), behind + 0.5, 1e-9);
    EXPECT_NEAR(Subt().StartTime(1101), 5 + 1099 * 3.3, 1e-6);
    EXPECT_EQ(Subt().UndoCount(), 0);

    Subt().Text(7, "lt is I who wrote this");
    Press("Spelling");
    EXPECT_EQ(Subt().Text(7), "It is l who wrote this");
    EXPECT_EQ(Cell(7, 0), "It is l who wrote this");

    // Blue and green while the film plays.
    QTest::keyClick(List().LV, Qt::Key_A, Qt::ControlModifier);
    m_player->CurrentPosition(5.2);
    QTest::mouseClick(&The<QToolButton>("mpPlay"), Qt::LeftButton);
    ASSERT_TRUE(QTest::qWaitFor([this] { return m_player->CurrentPosition() > 5.3; }, Patience));
    The("cmdBlue").click();
    m_player->CurrentPosition(15.1);
    ASSERT_TRUE(QTest::qWaitFor([this] { return m_player->CurrentPosition() > 15.2; }, Patience));
    The("cmdGreen").click();
    const double blue = ParseTime(FormatTime(m_window->document().BlueMark()));
    const double green = ParseTime(FormatTime(m_window->document().GreenMark()));
    The("cmdAdjust").click();
    EXPECT_NEAR(Subt().StartTime(2), blue, 1e-9);
    EXPECT_NEAR(Subt().StartTime(5), green, 1e-9);
    QTest::mouseClick(&The<QToolButton>("mpStop"), Qt::LeftButton);

    const std::vector<Line> finished = LinesOf(Subt());
    SaveAs(m_folder.filePath("finished.srt"));
    SaveAs(m_folder.filePath("finished.smi"));
    SaveAs(m_folder.filePath("finished.sub"), {Rate25()});
    List().close();

    The<QLineEdit>("txtSRT").setText(m_folder.filePath("finished.srt"));
    ExpectSame(LinesOf(Subt()), finished, 0.000501);
    {
        const Modals modals({Rate25()});
        The<QLineEdit>("txtSRT").setText(m_folder.filePath("finished.sub"));
    }
    ExpectSame(LinesOf(Subt()), finished, 0.0201);
    The<QLineEdit>("txtSRT").setText(m_folder.filePath("finished.smi"));
    ExpectSame(LinesOf(Subt()), finished, 0.000501);
}

TEST_F(Evening, WritesInPlaceAndStretchesByAmountAndRate) {
    OpenEditor();
    Click(2);
    QTest::keyClick(List().LV, Qt::Key_F2);
    auto* label = List().LV->findChild<QPlainTextEdit*>();
    ASSERT_NE(label, nullptr);
    QTest::keyClicks(label, "/Two words");
    QTest::keyClick(label, Qt::Key_Return, Qt::ShiftModifier);
    QTest::keyClicks(label, "two lines");
    QTest::keyClick(label, Qt::Key_Return);
    EXPECT_EQ(Subt().Text(2), "/Two words\r\ntwo lines");
    Press("Italic");
    EXPECT_EQ(Subt().Text(2), "<i>Two</i> words\r\ntwo lines");
    EXPECT_EQ(Cell(2, 0), "<i>Two</i> words\r\ntwo lines");

    QTest::keyClick(List().LV, Qt::Key_A, Qt::ControlModifier);
    const double last = Subt().StartTime(Many);
    {
        const Modals modals({AnswerWindow("frmStretch", [](QWidget& dialog) {
            Child<QTabWidget>(dialog, "TS").setCurrentIndex(1);
            Child<QRadioButton>(dialog, "optShrink").click();
            Child<QLineEdit>(dialog, "txtMin").setText("2");
            Child<QPushButton>(dialog, "cmdOK").click();
        })});
        Press("Stretch");
    }
    EXPECT_NEAR(Subt().StartTime(Many), last - 120, 1e-6);
    const double shrunk = Subt().StartTime(600);
    {
        // From 23.976 to 25, as the tab offers it.
        const Modals modals({AnswerWindow("frmStretch", [](QWidget& dialog) {
            Child<QTabWidget>(dialog, "TS").setCurrentIndex(2);
            Child<QPushButton>(dialog, "cmdOK").click();
        })});
        Press("Stretch");
    }
    EXPECT_NEAR(Subt().StartTime(600), shrunk * 23.976 / 25, 1e-6);
    EXPECT_EQ(Cell(600, 1).toStdString(), FormatTime(Subt().StartTime(600)));
}

} // namespace

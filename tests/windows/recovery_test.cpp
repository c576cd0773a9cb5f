#include "dialogs/frmEdit.h"
#include "formats/recoverycopy.h"
#include "listeditor/frmList.h"
#include "listeditor/titleview.h"
#include "mainwindow/frmQuelmar.h"
#include "mainwindow/frmRecover.h"
#include "mainwindow/recovery.h"
#include "model/step.h"
#include "platform/moment.h"
#include "platform/recoverystore.h"
#include "tests/windows/drive.h"
#include "tests/windows/fakeplayer.h"

#include <QAbstractButton>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace {

Answer SaveErrors() {
    return [](QWidget& window) {
        auto& box = dynamic_cast<QMessageBox&>(window);
        EXPECT_TRUE(box.text().startsWith("One or more errors occurred while saving."));
        box.accept();
    };
}

Answer AnswerOffer(const QString& button, QString* asked = nullptr) {
    return [=](QWidget& window) {
        auto* box = qobject_cast<QMessageBox*>(&window);
        ASSERT_NE(box, nullptr) << window.objectName().toStdString();
        if (asked != nullptr)
            *asked = box->text() + '\n' + box->informativeText();
        for (QAbstractButton* choice : box->buttons())
            if (choice->text() == button)
                return choice->click();
        FAIL() << "no button " << button.toStdString();
    };
}

/// The save dialog's own question.
Answer Overwrite() {
    return [](QWidget& window) {
        dynamic_cast<QMessageBox&>(window).button(QMessageBox::Yes)->click();
    };
}

class RecoveryTest : public testing::Test {
  protected:
    /// One run of the program.
    struct Run {
        explicit Run(const QString& folder)
            : store(folder) {
            window.show();
        }

        void Type(const QString& subtitles) {
            Child<QLineEdit>(window, "txtSRT").setText(subtitles);
        }
        /// As the list editor does it: the window's own mark of changes is set apart.
        void Edit(const std::string& text, bool marked = true) {
            window.Subt.Text(1, text);
            window.document().SubtitlesChanged = marked;
        }
        bool Save(const QString& name, std::vector<Answer> more = {}) {
            more.insert(more.begin(), AnswerFileDialog(name));
            const Modals modals(std::move(more));
            Child<QPushButton>(window, "cmdSave").click();
            return modals.Left() == 0;
        }

        frmQuelmar window{std::make_unique<FakePlayer>()};
        RecoveryStore store;
        Recovery recovery{window, store};
    };

    RecoveryTest() {
        Write(source, "1\n00:00:01,000 --> 00:00:02,000\nOne\n\n"
                      "2\n00:00:03,000 --> 00:00:04,000\nTwo\n\n");
    }

    static void Write(const QString& name, const char* text) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    static std::int64_t Now() { return QDateTime::currentSecsSinceEpoch(); }

    /// As a run that is over left it.
    void KeepCopy(const std::string& copy) const {
        RecoveryStore(folder).Post([&]() -> std::optional<std::string> { return copy; });
    }
    static frmList& OpenList(Run& run) {
        Child<QPushButton>(run.window, "cmdEdit").click();
        return Child<frmList>(run.window, "frmList");
    }
    /// Until `Thaw`, the copies stay as they are: so a killed program would leave them.
    void Freeze() {
        QDir().mkpath(frozen);
        for (const QString& name : QDir(folder).entryList({"*.recovery"}, QDir::Files))
            QFile::copy(folder + '/' + name, frozen + '/' + name);
    }
    void Thaw() {
        QDir(folder).removeRecursively();
        QDir().rename(frozen, folder);
    }

    /// First texts of what the next start would offer, and (in brackets) of what was declined.
    std::string Kept() const {
        std::string result;
        for (const RecoverableWork& work : FindRecoverableWork(folder))
            result += work.document.stamp.declined ? '(' + work.document.titles.Text(1) + ')'
                                                   : work.document.titles.Text(1) + ';';
        return result;
    }

    QTemporaryDir home;
    QString folder = home.path() + "/state";
    QString source = home.path() + "/film.srt";
    QString frozen = home.path() + "/frozen";
};

TEST_F(RecoveryTest, NothingIsKeptOfWhatTheFileHolds) {
    {
        Run run(folder);
        run.Type(source);
        EXPECT_FALSE(run.recovery.Flush());
        run.Edit("changed");
        EXPECT_TRUE(run.recovery.Flush());
        run.window.Subt.Undo();
        EXPECT_FALSE(run.recovery.Flush());
    }
    EXPECT_EQ(Kept(), "");
}

TEST_F(RecoveryTest, AChangeIsOnTheDiskSoon) {
    Run run(folder);
    run.Type(source);
    run.window.Subt.Text(1, "not even announced");
    EXPECT_TRUE(QTest::qWaitFor([&] { return run.store.HasCopy(); }, 30'000));
}

TEST_F(RecoveryTest, UnmarkedChangesAreKeptAndOffered) {
    {
        Run run(folder);
        run.Type(source);
        run.Edit("shifted", false);
    }
    EXPECT_EQ(Kept(), "shifted;");
}

TEST_F(RecoveryTest, WorkComesBackExactly) {
    {
        Run run(folder);
        run.Type(source);
        run.Edit("first");
        run.window.Subt.SetTimes(2, 0.1 + 0.2, 1.0 / 3);
        run.window.document().FrameRate = 23.976;
        run.recovery.Flush();
        run.window.document().SubtitlesChanged = false;
    }
    Run run(folder);
    QString question;
    {
        const Modals modals({AnswerOffer("Restore", &question)});
        EXPECT_TRUE(run.recovery.OfferOrphans());
    }
    EXPECT_TRUE(question.contains("film.srt")) << question.toStdString();
    EXPECT_TRUE(question.contains("2 titles, last changed today at")) << question.toStdString();
    EXPECT_TRUE(run.window.document().SubtitlesChanged);
    EXPECT_EQ(run.window.document().FrameRate, 23.976);
    EXPECT_EQ(Child<QLineEdit>(run.window, "txtSRT").text(), source);
    EXPECT_TRUE(Child<QPushButton>(run.window, "cmdEdit").isEnabled());
    EXPECT_TRUE(Child<QPushButton>(run.window, "cmdSave").isEnabled());
    EXPECT_EQ(run.window.Subt.Text(1), "first");
    EXPECT_EQ(run.window.Subt.StartTime(2), 0.1 + 0.2);
    EXPECT_EQ(run.window.Subt.EndTime(2), 1.0 / 3);
    EXPECT_EQ(run.window.Subt.Undo(), 2);
    EXPECT_EQ(run.window.Subt.Undo(), 1);
    EXPECT_EQ(run.window.Subt.Text(1), "One");
    EXPECT_EQ(run.window.Subt.UndoCount(), 0);
    // It is this run's work now: kept, and nobody else's.
    EXPECT_EQ(Kept(), "");
    EXPECT_TRUE(run.recovery.Flush());
    run.window.document().SubtitlesChanged = false;
}

TEST_F(RecoveryTest, WorkCanWaitOrBeDiscarded) {
    {
        Run run(folder);
        run.Type(source);
        run.Edit("work", false);
    }
    Run run(folder);
    {
        const Modals modals({AnswerOffer("Keep for later")});
        EXPECT_FALSE(run.recovery.OfferOrphans());
    }
    EXPECT_EQ(Kept(), "work;");
    {
        const Modals modals({[](QWidget& box) {
            box.close();
        }});
        EXPECT_FALSE(run.recovery.OfferOrphans());
    }
    EXPECT_EQ(Kept(), "work;");
    {
        const Modals modals({AnswerOffer("Discard")});
        EXPECT_FALSE(run.recovery.OfferOrphans());
    }
    EXPECT_EQ(Kept(), "(work)") << "kept like work that nobody saved";
    const Modals modals;
    EXPECT_FALSE(run.recovery.OfferOrphans());
}

TEST_F(RecoveryTest, ManyPiecesOfWorkAreOneList) {
    for (int i = 1; i <= 50; ++i) {
        SUBTITLES titles;
        titles.Add(1, 2, "work " + std::to_string(i));
        KeepCopy(SealRecoveryCopy({titles, {}}, {Now() - i, false}));
    }
    Run run(folder);
    {
        const Modals modals({AnswerWindow("frmRecover", [](QWidget& window) {
            auto& lstWork = Child<QTreeWidget>(window, "lstWork");
            ASSERT_EQ(lstWork.topLevelItemCount(), 50);
            lstWork.setCurrentItem(lstWork.topLevelItem(3));
            Child<QPushButton>(window, "cmdDiscard").click();
            EXPECT_EQ(lstWork.topLevelItemCount(), 49);
            window.close();
        })});
        EXPECT_FALSE(run.recovery.OfferOrphans());
    }
    EXPECT_EQ(FindRecoverableWork(folder).size(), 50U) << "what was discarded is kept a while";
    std::string chosen;
    {
        const Modals modals({AnswerWindow("frmRecover", [&](QWidget& window) {
            auto& lstWork = Child<QTreeWidget>(window, "lstWork");
            ASSERT_EQ(lstWork.topLevelItemCount(), 49);
            lstWork.setCurrentItem(lstWork.topLevelItem(7));
            Child<QPushButton>(window, "cmdRestore").click();
        })});
        EXPECT_TRUE(run.recovery.OfferOrphans());
    }
    EXPECT_TRUE(run.window.Subt.Text(1).starts_with("work "));
    EXPECT_EQ(FindRecoverableWork(folder).size(), 49U) << "one is this run's own now";
    run.window.document().SubtitlesChanged = false;
}

TEST_F(RecoveryTest, OfADamagedCopyComesBackWhatCanBeRead) {
    SUBTITLES titles;
    for (int i = 1; i <= 2000; ++i)
        titles.Add(i, i + 0.5, "title " + std::to_string(i));
    RecoveryNotes notes;
    notes.subtitleFile = "/films/film.srt";
    std::string copy = SealRecoveryCopy({titles, notes}, {Now(), false});
    copy.replace(copy.size() / 2, 10, "0123456789");
    KeepCopy(copy);
    Run run(folder);
    QString question;
    {
        const Modals modals({AnswerOffer("Restore", &question)});
        EXPECT_TRUE(run.recovery.OfferOrphans());
    }
    EXPECT_TRUE(question.contains("film.srt")) << question.toStdString();
    EXPECT_TRUE(question.contains("The copy is damaged, titles lost: 512."))
        << question.toStdString();
    EXPECT_EQ(run.window.Subt.Count(), 2000 - 512);
    EXPECT_EQ(run.window.Subt.Text(1), "title 1");
    EXPECT_EQ(run.window.Subt.Text(2000 - 512), "title 2000");
    const QStringList aside = QDir(folder).entryList({"*.damaged"}, QDir::Files);
    EXPECT_EQ(aside.size(), 1) << "more may be in it";
    run.window.document().SubtitlesChanged = false;
}

TEST_F(RecoveryTest, ACopyThatCannotBeReadIsNamedOnceAndKept) {
    KeepCopy("damaged");
    QString told;
    {
        Run run(folder);
        const Modals modals({[&](QWidget& window) {
            auto& box = dynamic_cast<QMessageBox&>(window);
            told = box.text();
            box.accept();
        }});
        EXPECT_FALSE(run.recovery.OfferOrphans());
    }
    const QStringList aside = QDir(folder).entryList(QDir::Files);
    ASSERT_EQ(aside.size(), 1);
    EXPECT_TRUE(told.contains(aside[0])) << told.toStdString();
    EXPECT_TRUE(told.startsWith("Unsaved work from the last time is damaged and cannot be read."));
    Run run(folder);
    const Modals modals;
    EXPECT_FALSE(run.recovery.OfferOrphans());
    EXPECT_EQ(QDir(folder).entryList(QDir::Files), aside);
}

TEST_F(RecoveryTest, ACopyOfALaterReleaseIsLeftAlone) {
    std::string copy = SealRecoveryCopy({SUBTITLES(), {}}, {Now(), false});
    copy[8] = 99;
    KeepCopy(copy);
    const QStringList before = QDir(folder).entryList(QDir::Files);
    Run run(folder);
    const Modals modals;
    EXPECT_FALSE(run.recovery.OfferOrphans());
    EXPECT_EQ(QDir(folder).entryList(QDir::Files), before);
}

TEST_F(RecoveryTest, ACopyOfAbsurdSizeIsNotEvenRead) {
    KeepCopy("damaged");
    QFile file(folder + '/' + QDir(folder).entryList({"*.recovery"}, QDir::Files).at(0));
    // It takes no room on the disk.
    ASSERT_TRUE(file.resize(OrphanCopy::MostBytes + 1));
    for (const OrphanCopy& orphan : ClaimOrphans(folder))
        EXPECT_TRUE(orphan.Bytes().empty());
    Run run(folder);
    const Modals modals({[](QWidget& window) {
        dynamic_cast<QMessageBox&>(window).accept();
    }});
    EXPECT_FALSE(run.recovery.OfferOrphans());
    QFile::remove(folder + '/' + QDir(folder).entryList({"*.damaged"}, QDir::Files).at(0));
}

TEST_F(RecoveryTest, VersionsComeBackToo) {
    {
        Run run(folder);
        run.Type(source);
        {
            const Step step(run.window.Subt, "Shift", Step::Undo::Emptied);
            run.window.Subt.StartTime(2, 9);
        }
        run.Edit("on", false);
    }
    Run run(folder);
    const Modals modals({AnswerOffer("Restore")});
    EXPECT_TRUE(run.recovery.OfferOrphans());
    ASSERT_EQ(run.window.document().Earlier().Count(), 1U);
    EXPECT_EQ(run.window.document().Earlier().At(0).step, "Shift");
    run.window.document().GoBack(0);
    EXPECT_EQ(run.window.Subt.StartTime(2), 3);
    EXPECT_EQ(run.window.Subt.Text(1), "One");
    run.window.document().SubtitlesChanged = false;
}

TEST_F(RecoveryTest, TextInAnOpenDialogIsKeptAndOfferedAgain) {
    for (const bool inRow : {false, true}) {
        QDir(folder).removeRecursively();
        {
            Run run(folder);
            run.Type(source);
            frmList& list = OpenList(run);
            list.LV->selectRow(1);
            if (inRow) {
                QTest::keyClick(list.LV, Qt::Key_F2);
                auto* editor = list.LV->findChild<QPlainTextEdit*>();
                ASSERT_NE(editor, nullptr);
                editor->setPlainText("typed");
                EXPECT_TRUE(run.recovery.Flush());
            } else {
                frmEdit dialog(list, &list);
                dialog.setAttribute(Qt::WA_DeleteOnClose, false);
                dialog.show();
                dialog.txtSubt->setPlainText("typed");
                dialog.txtDuration->setText("0.75");
                EXPECT_TRUE(QTest::qWaitFor([&] { return run.store.HasCopy(); }, 30'000));
                EXPECT_TRUE(run.recovery.Flush());
            }
            // Killed here: what is on the disk stays.
            Freeze();
        }
        Thaw();
        Run run(folder);
        {
            const Modals modals({AnswerOffer("Restore")});
            EXPECT_TRUE(run.recovery.OfferOrphans());
        }
        EXPECT_EQ(run.window.Subt.Text(2), "Two");
        frmList& list = OpenList(run);
        list.LV->selectRow(0);
        {
            frmEdit dialog(list, &list);
            dialog.setAttribute(Qt::WA_DeleteOnClose, false);
            EXPECT_EQ(dialog.txtSubt->toPlainText(), "One");
        }
        list.LV->selectRow(1);
        const Modals modals({AnswerMessage("You were changing this title when the program ended.\n"
                                           "Go on with what you had typed?",
                                           QMessageBox::Yes)});
        frmEdit dialog(list, &list);
        dialog.setAttribute(Qt::WA_DeleteOnClose, false);
        EXPECT_EQ(dialog.txtSubt->toPlainText(), "typed");
        EXPECT_EQ(dialog.txtDuration->text(), inRow ? "1" : "0.75");
        dialog.cmdCancel->click();
        EXPECT_FALSE(run.window.document().Typed());
        run.window.document().SubtitlesChanged = false;
        list.close();
    }
}

TEST_F(RecoveryTest, DeclinedWorkIsKeptButNotOffered) {
    {
        Run run(folder);
        run.Type(source);
        run.Edit("declined");
        EXPECT_TRUE(run.recovery.Flush());
        const Modals modals({AnswerMessage("Save subtitles?", QMessageBox::No)});
        EXPECT_TRUE(run.window.close());
        // There is a copy, but nothing that will be offered.
        EXPECT_FALSE(run.recovery.Flush());
        EXPECT_TRUE(run.store.HasCopy());
    }
    EXPECT_EQ(Kept(), "(declined)");
    Run run(folder);
    const Modals modals;
    EXPECT_FALSE(run.recovery.OfferOrphans());
    EXPECT_EQ(Kept(), "(declined)");
}

TEST_F(RecoveryTest, DeclinedAndDamagedCopiesGoAfterSevenDays) {
    SUBTITLES titles;
    titles.Add(1, 2, "old");
    for (const std::int64_t age : {KeepDeclinedSeconds + 100, KeepDeclinedSeconds - 100})
        KeepCopy(SealRecoveryCopy({titles, {}}, {Now() - age, true}));
    KeepCopy("damaged");
    {
        Run run(folder);
        const Modals modals({[](QWidget& window) {
            dynamic_cast<QMessageBox&>(window).accept();
        }});
        EXPECT_FALSE(run.recovery.OfferOrphans());
    }
    EXPECT_EQ(QDir(folder).entryList(QDir::Files).size(), 2);
    EXPECT_EQ(Kept(), "(old)");
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files)) {
        QFile copy(file.filePath());
        ASSERT_TRUE(copy.open(QIODevice::ReadWrite));
        copy.setFileTime(QDateTime::fromSecsSinceEpoch(Now() - KeepDeclinedSeconds - 100),
                         QFile::FileModificationTime);
    }
    Run run(folder);
    EXPECT_FALSE(run.recovery.OfferOrphans());
    EXPECT_EQ(QDir(folder).entryList(QDir::Files).size(), 1);
    EXPECT_EQ(Kept(), "(old)");
}

TEST_F(RecoveryTest, ASaveThatWroteAllTitlesRemovesTheCopy) {
    for (const char* name : {"out.srt", "out.smi", "OUT.SRT"}) {
        Run run(folder);
        run.Type(source);
        run.Edit("saved");
        EXPECT_TRUE(run.recovery.Flush());
        EXPECT_TRUE(run.Save(home.filePath(name)));
        EXPECT_FALSE(run.recovery.Flush()) << name;
    }
    EXPECT_EQ(Kept(), "");
}

TEST_F(RecoveryTest, ASaveThatIsRefusedKeepsTheCopy) {
    {
        Run run(folder);
        run.Type(source);
        run.Edit("written nowhere");
        EXPECT_TRUE(run.Save(
            home.filePath("out"),
            {[](QWidget& box) { dynamic_cast<QMessageBox&>(box).reject(); }, CancelFileDialog()}));
        EXPECT_TRUE(run.window.document().SubtitlesChanged);
    }
    EXPECT_EQ(Kept(), "written nowhere;");
}

TEST_F(RecoveryTest, ASaveThatDoesNotGiveTheTitlesBackKeepsTheCopy) {
    {
        Run run(folder);
        run.Type(source);
        run.Edit("of another day");
        run.window.Subt.SetTimes(2, 360'000, 360'001);
        EXPECT_TRUE(run.Save(home.filePath("out.srt"), {[](QWidget& window) {
                                 auto& box = dynamic_cast<QMessageBox&>(window);
                                 EXPECT_TRUE(box.text().contains("title 2"))
                                     << box.text().toStdString();
                                 box.accept();
                             }}));
        EXPECT_TRUE(run.recovery.Flush());
    }
    EXPECT_EQ(Kept(), "of another day;");
}

TEST_F(RecoveryTest, FailedSavesKeepTheCopyAndTheProgramGoesOn) {
    QDir(home.path()).mkdir("folder.srt");
    QFile::link("/dev/full", home.filePath("full.srt"));
    Run run(folder);
    run.Type(source);
    run.Edit("not written");
#ifdef Q_OS_LINUX
    EXPECT_TRUE(run.Save(home.filePath("full.srt"), {Overwrite(), SaveErrors()}));
    EXPECT_TRUE(run.recovery.Flush());
#endif
    {
        // The folder vanishes while the dialog is open.
        const QString gone = home.filePath("gone");
        QDir().mkdir(gone);
        const Modals modals({[&](QWidget& dialog) {
                                 QTest::qWait(50);
                                 QDir(gone).removeRecursively();
                                 AnswerFileDialog(gone + "/out.srt")(dialog);
                             },
                             SaveErrors()});
        Child<QPushButton>(run.window, "cmdSave").click();
    }
    EXPECT_TRUE(run.recovery.Flush());
    EXPECT_EQ(run.window.Subt.Text(1), "not written");
    run.Edit("and on");
    EXPECT_TRUE(run.Save(home.filePath("out.srt")));
    EXPECT_FALSE(run.recovery.Flush());
}

TEST_F(RecoveryTest, TheCopyIsOnTheDiskBeforeAFileIsEmptied) {
    Run run(folder);
    run.Type(source);
    run.Edit("about to be saved");
    run.recovery.Flush();
    bool copied = false;
    QObject::connect(&run.window, &frmQuelmar::FileEmptying, &run.window, [&] {
        copied = run.store.HasCopy();
        EXPECT_GT(QFileInfo(source).size(), 0);
    });
    EXPECT_TRUE(run.Save(source, {Overwrite()}));
    EXPECT_TRUE(copied);
}

TEST_F(RecoveryTest, AReplacedDocumentIsKeptBesideTheNext) {
    const QString other = home.filePath("other.srt");
    Write(other, "1\n00:00:01,000 --> 00:00:02,000\nOther\n\n");
    {
        Run run(folder);
        run.Type(source);
        run.Edit("shifted", false);
        {
            const Modals modals(
                {AnswerMessage("You have changed subtitles.\nSave them first?", QMessageBox::No)});
            run.Type(other);
        }
        EXPECT_EQ(run.window.Subt.Text(1), "Other");
        EXPECT_FALSE(run.recovery.Flush());
        run.Edit("declined");
        {
            const Modals modals(
                {AnswerMessage("You have changed subtitles.\nSave them first?", QMessageBox::No)});
            run.Type(source);
        }
        run.Type("");
        run.Type(source);
    }
    const std::string kept = Kept();
    EXPECT_TRUE(kept == "(shifted)(declined)" || kept == "(declined)(shifted)") << kept;
}

TEST_F(RecoveryTest, WorkThatGoesOnAfterNoIsOfferedAgain) {
    {
        Run run(folder);
        run.Type(source);
        run.Edit("declined");
        {
            const Modals modals(
                {AnswerMessage("You have changed subtitles.\nSave them first?", QMessageBox::No),
                 CancelFileDialog()});
            Child<QPushButton>(run.window, "cmdBrowseSRT").click();
        }
        run.recovery.Flush();
        run.Edit("went on", false);
    }
    EXPECT_EQ(Kept(), "went on;");
}

TEST_F(RecoveryTest, TwoProgramsKeepTheirOwn) {
    Run one(folder);
    Run two(folder);
    one.Type(source);
    two.Type(source);
    one.Edit("one", false);
    two.Edit("two", false);
    one.recovery.Flush();
    two.recovery.Flush();
    const Modals modals;
    EXPECT_FALSE(two.recovery.OfferOrphans());
    EXPECT_EQ(one.window.Subt.Text(1), "one");
}

TEST_F(RecoveryTest, WithoutAStateFolderTheProgramGoesOn) {
    Write(folder, "a file in the way");
    Run run(folder);
    auto& lblTrouble = Child<QLabel>(run.window, "lblTrouble");
    EXPECT_FALSE(lblTrouble.isVisible());
    run.Type(source);
    run.Edit("changed");
    EXPECT_FALSE(run.recovery.Flush());
    EXPECT_TRUE(QTest::qWaitFor([&] { return lblTrouble.isVisible(); }, 30'000));
    EXPECT_TRUE(lblTrouble.text().startsWith("Unsaved work cannot be kept: "));
    QFile::remove(folder);
    EXPECT_TRUE(QTest::qWaitFor([&] { return lblTrouble.isHidden(); }, 30'000));
    EXPECT_TRUE(run.recovery.Flush());
    run.window.document().SubtitlesChanged = false;
    const Modals modals;
    EXPECT_FALSE(run.recovery.OfferOrphans());
    EXPECT_EQ(run.window.Subt.Text(1), "changed");
}

TEST_F(RecoveryTest, TheListShowsDeclinedWorkToo) {
    for (const bool declined : {true, false}) {
        Run run(folder);
        run.Type(source);
        run.Edit(declined ? "declined" : "crashed", declined);
        if (declined) {
            const Modals modals({AnswerMessage("Save subtitles?", QMessageBox::No)});
            run.window.close();
        }
    }
    std::vector<RecoverableWork> works = FindRecoverableWork(folder);
    ASSERT_EQ(works.size(), 2U);
    frmRecover dialog(works);
    auto& lstWork = Child<QTreeWidget>(dialog, "lstWork");
    ASSERT_EQ(lstWork.topLevelItemCount(), 2);
    EXPECT_EQ(lstWork.topLevelItem(0)->text(0).toStdString(), "film.srt");
    EXPECT_EQ(lstWork.topLevelItem(0)->text(1).toStdString(), "2");
    const int declined = works[0].document.stamp.declined ? 0 : 1;
    EXPECT_EQ(lstWork.topLevelItem(declined)->text(3).toStdString(), "you chose not to save it");
    lstWork.setCurrentItem(lstWork.topLevelItem(declined));
    {
        const Modals modals({AnswerMessage("Discard this work for good?", QMessageBox::Yes)});
        dialog.show();
        Child<QPushButton>(dialog, "cmdDiscard").click();
    }
    ASSERT_EQ(lstWork.topLevelItemCount(), 1);
    Child<QPushButton>(dialog, "cmdRestore").click();
    ASSERT_EQ(dialog.Chosen(), std::optional<std::size_t>(0));
    Run run(folder);
    run.recovery.Restore(works[0].orphan, std::move(works[0].document));
    EXPECT_EQ(run.window.Subt.Text(1), "crashed");
    works.clear();
    EXPECT_EQ(Kept(), "");
    run.window.document().SubtitlesChanged = false;
}

TEST(RecoveryTexts, NameTheMoment) {
    const auto at = [](const char* text) {
        return QDateTime::fromString(QString::fromLatin1(text), Qt::ISODate).toSecsSinceEpoch();
    };
    const std::int64_t now = at("2026-03-01T12:00:00");
    EXPECT_EQ(MomentText(at("2026-03-01T09:05:00"), now).toStdString(), "today at 09:05");
    EXPECT_EQ(MomentText(at("2026-02-28T23:59:00"), now).toStdString(), "yesterday at 23:59");
    EXPECT_EQ(MomentText(at("2025-12-24T18:30:00"), now).toStdString(),
              "on 24 December 2025 at 18:30");
}

TEST(RecoveryTexts, NameTheDocument) {
    RecoveryNotes notes;
    EXPECT_EQ(DocumentName(notes).toStdString(), "a document without a file name");
    notes.subtitleFile = "/films/a b.srt";
    EXPECT_EQ(DocumentName(notes).toStdString(), "a b.srt");
    notes.subtitleFile = "C:\\films\\c.smi";
    EXPECT_EQ(DocumentName(notes).toStdString(), "c.smi");
    RecoveredDocument document;
    document.titles.Add(1, 2, "");
    EXPECT_TRUE(RecoveryQuestion(document, 0).details.startsWith("1 title,"));
}

} // namespace

#include "app/interrupted.h"
#include "formats/recoverycopy.h"
#include "mainwindow/frmQuelmar.h"
#include "mainwindow/frmRecover.h"
#include "mainwindow/recovery.h"
#include "platform/moment.h"
#include "platform/recoverystore.h"
#include "tests/windows/drive.h"
#include "tests/windows/fakeplayer.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>
#include <sys/stat.h>

// What the program finds around it that it did not leave so: files that are gone, clocks that
// were set, and a state folder with things of others in it.

namespace {

Answer Press(const QString& button) {
    return [=](QWidget& window) {
        for (auto* choice : window.findChildren<QAbstractButton*>())
            if (choice->text() == button)
                return choice->click();
        ADD_FAILURE() << "no button " << button.toStdString();
        window.close();
    };
}

class StrangeState : public testing::Test {
  protected:
    /// One run of the program.
    struct Run {
        explicit Run(const QString& folder)
            : store(folder) {
            window.show();
        }
        ~Run() {
            recovery.Flush();
            window.document().SubtitlesChanged = false;
            window.document().Saved();
        }

        frmQuelmar window{std::make_unique<FakePlayer>()};
        RecoveryStore store;
        Recovery recovery{window, store};
    };

    StrangeState() { QDir().mkpath(films); }

    static void Write(const QString& name, const std::string& bytes) {
        QFile file(name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << name.toStdString();
        file.write(bytes.data(), static_cast<qint64>(bytes.size()));
    }
    QString InState(const char* name) const { return state + '/' + name; }

    /// As a run that was ended left it.
    void KeepCopy(const std::string& text, std::int64_t time) const {
        SUBTITLES titles;
        titles.Add(1, 2, text);
        RecoveryNotes notes;
        notes.mediaFile = (films + "/film.avi").toStdString();
        notes.subtitleFile = (films + "/film.srt").toStdString();
        RecoveryStore(state).Post([copy = SealRecoveryCopy({titles, notes}, {time, false})]() {
            return std::optional(copy);
        });
    }

    const QTemporaryDir home;
    const QString state = home.filePath("state");
    const QString films = home.filePath("films");
    const std::int64_t now = QDateTime::currentSecsSinceEpoch();
};

TEST_F(StrangeState, WorkComesBackWhenItsFilesAreGone) {
    KeepCopy("work", now);
    QDir(films).removeRecursively();
    Run run(state);
    {
        const Modals modals({Press("Restore")});
        EXPECT_TRUE(run.recovery.OfferOrphans());
    }
    EXPECT_EQ(run.window.Subt.Text(1), "work");
    EXPECT_FALSE(run.window.AVIFileOK);
    EXPECT_EQ(Child<QLineEdit>(run.window, "txtSRT").text(), films + "/film.srt");
    // The dialog opens where there still is a folder.
    const Modals modals({AnswerFileDialog(home.filePath("saved.srt"))});
    Child<QPushButton>(run.window, "cmdSave").click();
    EXPECT_TRUE(QFile::exists(home.filePath("saved.srt")));
}

TEST_F(StrangeState, AFileThatIsDeletedWhileItIsOpenCanBeSavedAndOpenedAgain) {
    const QString file = films + "/film.srt";
    Write(file, "1\r\n00:00:01,000 --> 00:00:02,000\r\nOne\r\n\r\n");
    Run run(state);
    auto& txtSRT = Child<QLineEdit>(run.window, "txtSRT");
    txtSRT.setText(file);
    run.window.Subt.Text(1, "edited");
    QDir(films).removeRecursively();
    EXPECT_TRUE(run.recovery.Flush());
    {
        const Modals modals({AnswerFileDialog(home.filePath("other.srt"))});
        Child<QPushButton>(run.window, "cmdSave").click();
    }
    EXPECT_FALSE(run.window.document().SubtitlesChanged);
    const Modals none;
    txtSRT.clear();
    txtSRT.setText(file);
    EXPECT_EQ(run.window.Subt.Text(1), "edited");
}

TEST_F(StrangeState, CopiesOfAnotherTimeAreOffered) {
    for (const std::int64_t time :
         {std::int64_t{0}, std::int64_t{-1'000'000}, now + std::int64_t{100} * 365 * 24 * 3600,
          std::numeric_limits<std::int64_t>::max(), std::numeric_limits<std::int64_t>::min()}) {
        KeepCopy("work", time);
        Run run(state);
        const Modals modals({Press("Restore")});
        EXPECT_TRUE(run.recovery.OfferOrphans()) << time;
        EXPECT_EQ(run.window.Subt.Text(1), "work");
        run.window.document().Saved();
        run.recovery.Flush();
    }
}

TEST_F(StrangeState, AClockThatWasSetBackTakesNothingAway) {
    KeepCopy("work", now + 1'000'000);
    {
        Run run(state);
        const Modals modals({Press("Discard")});
        EXPECT_FALSE(run.recovery.OfferOrphans());
    }
    EXPECT_EQ(FindRecoverableWork(state).size(), 1U);
    Run run(state);
    const Modals none;
    EXPECT_FALSE(run.recovery.OfferOrphans());
    EXPECT_EQ(FindRecoverableWork(state).size(), 1U);
}

#ifdef Q_OS_LINUX

TEST_F(StrangeState, WhatIsNoCopyDoesNotHoldTheProgramUp) {
    KeepCopy("work", now);
    for (const char* name : {"a.recovery", "b.recovery.lock", "c.saving", "d.open", "e.damaged"})
        ASSERT_EQ(mkfifo(QFile::encodeName(InState(name)).constData(), 0600), 0) << name;
    for (const char* name : {"f.recovery", "g.recovery.lock", "h.saving", "i.open"})
        ASSERT_TRUE(QDir().mkpath(InState(name)));
    for (const char* name : {"j.recovery", "k.recovery.lock", "l.saving", "m.open"})
        ASSERT_TRUE(QFile::link(InState("a.recovery"), InState(name)));
    ASSERT_TRUE(QFile::link(InState("nowhere"), InState("n.recovery")));
    ASSERT_TRUE(QFile::link(InState("o.recovery"), InState("o.recovery")));
    // Locks that nobody here holds.
    Write(InState("p.recovery.lock"), "somebody on another host");
    Run run(state);
    {
        const Modals modals({Press("Restore")});
        OfferInterruptedSaves(run.window, state.toStdString());
        EXPECT_TRUE(run.recovery.OfferOrphans());
    }
    EXPECT_EQ(run.window.Subt.Text(1), "work");
    run.window.Subt.Text(1, "goes on");
    EXPECT_TRUE(run.recovery.Flush());
}

TEST_F(StrangeState, AFolderThatIsNotOursIsToldOf) {
    QDir().mkpath(state);
    ASSERT_EQ(chmod(QFile::encodeName(state).constData(), 0), 0);
    {
        Run run(state);
        const Modals none;
        EXPECT_FALSE(run.recovery.OfferOrphans());
        run.window.Subt.Add(1, 2, "title");
        run.recovery.Flush();
        EXPECT_EQ(run.window.Subt.Count(), 1);
    }
    ASSERT_EQ(chmod(QFile::encodeName(state).constData(), 0700), 0);
}

#endif

TEST(StrangeMoments, AreToldInWords) {
    const std::int64_t least = std::numeric_limits<std::int64_t>::min();
    const std::int64_t most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(MomentText(least, 0).toStdString(), "at an unknown time");
    EXPECT_EQ(MomentText(most, 0).toStdString(), "at an unknown time");
    EXPECT_NE(MomentText(0, most).toStdString(), "");
}

} // namespace

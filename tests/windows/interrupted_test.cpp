#include "app/interrupted.h"

#include "base/savejournal.h"
#include "base/wholefile.h"
#include "tests/windows/drive.h"

#include <QAbstractButton>
#include <QDir>
#include <QMessageBox>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

class InterruptedSaves : public testing::Test {
  protected:
    InterruptedSaves() {
        WriteWholeFile(File(), "old", false);
        SaveJournal().Write(State(), File(), "old", "new");
        WriteWholeFile(File(), "half of", false);
    }

    std::filesystem::path File() const { return folder.filePath("film.srt").toStdString(); }
    std::filesystem::path State() const { return folder.filePath("state").toStdString(); }
    std::string Bytes() const { return std::string(ReadWholeFile(File())->View()); }

    Answer Choose(const QString& button) const {
        return [=, this](QWidget& modal) {
            auto& box = dynamic_cast<QMessageBox&>(modal);
            EXPECT_TRUE(box.text().startsWith("The saving of “" + folder.filePath("film.srt") +
                                              "” was cut short"))
                << box.text().toStdString();
            for (QAbstractButton* choice : box.buttons())
                if (choice->text() == button)
                    return choice->click();
            ADD_FAILURE() << "no button";
            box.reject();
        };
    }

    QTemporaryDir folder;
    QWidget window;
};

TEST_F(InterruptedSaves, AreFinishedOrTakenBackOrAskedAboutAgain) {
    {
        const Modals modals({Choose("Later")});
        OfferInterruptedSaves(window, State());
    }
    EXPECT_EQ(Bytes(), "half of");
    {
        const Modals modals({Choose("Put back the old one")});
        OfferInterruptedSaves(window, State());
    }
    EXPECT_EQ(Bytes(), "old");
    const Modals modals;
    OfferInterruptedSaves(window, State());
}

TEST_F(InterruptedSaves, CanBeFinished) {
    {
        const Modals modals({Choose("Finish the saving")});
        OfferInterruptedSaves(window, State());
    }
    EXPECT_EQ(Bytes(), "new");
    EXPECT_TRUE(std::filesystem::is_empty(State()));
}

TEST_F(InterruptedSaves, OfFilesThatAreWholeAreNotAskedAbout) {
    WriteWholeFile(File(), "new", false);
    const Modals modals;
    OfferInterruptedSaves(window, State());
    OfferInterruptedSaves(window, {});
    EXPECT_EQ(Bytes(), "new");
}

} // namespace

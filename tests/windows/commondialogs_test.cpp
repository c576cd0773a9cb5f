#include "platform/commondialogs.h"
#include "tests/windows/drive.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFontDatabase>
#include <QFontDialog>
#include <QFontInfo>
#include <QLineEdit>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

const QString SubtitleFilter =
    QStringLiteral("SAMI files (*.smi)|*.smi|SubRip files (*.srt)|*.srt|All Files (*.*)|*.*");

class CommonDialogs : public testing::Test {
  protected:
    CommonDialogs() { dialog.Filter = SubtitleFilter; }

    QString Make(const QString& name) {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("something");
        return file.fileName();
    }

    QTemporaryDir folder;
    CommonDialog dialog;
};

TEST_F(CommonDialogs, OpenAnswersTheChosenName) {
    const QString name = Make("film.srt");
    dialog.FileName = folder.filePath("other");
    dialog.Title = "Select something";
    const Modals modals({AnswerFileDialog(name, [](QWidget& window) {
        EXPECT_EQ(window.windowTitle().toStdString(), "Select something");
        EXPECT_EQ(Child<QLineEdit>(window, "fileNameEdit").text().toStdString(), "other");
    })});
    EXPECT_TRUE(dialog.ShowOpen(nullptr));
    EXPECT_EQ(dialog.FileName.toStdString(), name.toStdString());
}

TEST_F(CommonDialogs, StartsInTheFolderOfItsName) {
    dialog.FileName = Make("film");
    const Modals modals({AnswerFileDialog("new.srt")});
    EXPECT_TRUE(dialog.ShowOpen(nullptr));
    EXPECT_EQ(dialog.FileName.toStdString(), folder.filePath("new.srt").toStdString());
}

TEST_F(CommonDialogs, AVanishedFolderGivesTheOneAboveIt) {
    dialog.FileName = folder.filePath("gone/deeper/film");
    const Modals modals({AnswerFileDialog("new.srt", [](QWidget& window) {
        EXPECT_EQ(Child<QLineEdit>(window, "fileNameEdit").text().toStdString(), "film");
    })});
    EXPECT_TRUE(dialog.ShowOpen(nullptr));
    EXPECT_EQ(dialog.FileName.toStdString(), folder.filePath("new.srt").toStdString());
}

TEST_F(CommonDialogs, ACancelledDialogKeepsTheName) {
    dialog.FileName = folder.filePath("film");
    const Modals modals({CancelFileDialog(), CancelFileDialog()});
    EXPECT_FALSE(dialog.ShowOpen(nullptr));
    EXPECT_FALSE(dialog.ShowSave(nullptr));
    EXPECT_EQ(dialog.FileName.toStdString(), folder.filePath("film").toStdString());
}

TEST_F(CommonDialogs, OffersTheFiltersByTheirTexts) {
    const Modals modals({CancelFileDialog([](QWidget& window) {
        const auto& types = Child<QComboBox>(window, "fileTypeCombo");
        ASSERT_EQ(types.count(), 3);
        EXPECT_EQ(types.itemText(0).toStdString(), "SAMI files (*.smi)");
        EXPECT_EQ(types.itemText(2).toStdString(), "All Files (*.*)");
        const auto& files = dynamic_cast<QFileDialog&>(window);
#ifndef Q_OS_WIN
        EXPECT_EQ(files.nameFilters().at(1).toStdString(), "SubRip files (*.srt) (*.srt *.SRT)");
        EXPECT_EQ(files.nameFilters().at(2).toStdString(), "All Files (*.*) (*)");
#endif
    })});
    EXPECT_FALSE(dialog.ShowOpen(nullptr));
}

TEST_F(CommonDialogs, AFileThatMustExistMust) {
    dialog.FileMustExist = true;
    dialog.FileName = folder.filePath("film");
    const QString missing = folder.filePath("missing.avi");
    const Modals modals({[&](QWidget& window) {
        AnswerFileDialog(missing)(window);
        EXPECT_TRUE(window.isVisible());
        CancelFileDialog()(window);
    }});
    EXPECT_FALSE(dialog.ShowOpen(nullptr));
}

TEST_F(CommonDialogs, SaveAsksBeforeItOverwrites) {
    const QString name = Make("film.srt");
    dialog.FileName = folder.filePath("film");
    const auto answer = [](QMessageBox::StandardButton button) {
        return [button](QWidget& box) {
            dynamic_cast<QMessageBox&>(box).button(button)->click();
        };
    };
    {
        const Modals modals({AnswerFileDialog(name), answer(QMessageBox::Yes)});
        EXPECT_TRUE(dialog.ShowSave(nullptr));
    }
    dialog.FileName = folder.filePath("film");
    const Modals modals({AnswerFileDialog(name), answer(QMessageBox::No), CancelFileDialog()});
    EXPECT_FALSE(dialog.ShowSave(nullptr));
}

TEST_F(CommonDialogs, SaveAddsNoExtension) {
    dialog.FileName = folder.filePath("film");
    const Modals modals({AnswerFileDialog("out")});
    EXPECT_TRUE(dialog.ShowSave(nullptr));
    EXPECT_EQ(dialog.FileName.toStdString(), folder.filePath("out").toStdString());
}

TEST(FontDialog, KeepsAllOfAFont) {
    const QString family = QFontInfo(QFont()).family();
    // A style that the family has, a slanted or bold one where there is one.
    QFont font = QFontDatabase::font(family, QFontDatabase::styles(family).constLast(), 11);
    font.setUnderline(true);
    font.setStrikeOut(true);
    const Modals modals({[](QWidget& window) {
        dynamic_cast<QFontDialog&>(window).accept();
    }});
    const auto chosen = ChooseFont(nullptr, font);
    ASSERT_TRUE(chosen.has_value());
    EXPECT_EQ(chosen->pointSize(), 11);
    EXPECT_EQ(chosen->bold(), font.bold());
    EXPECT_EQ(chosen->italic(), font.italic());
    EXPECT_TRUE(chosen->underline());
    EXPECT_TRUE(chosen->strikeOut());
}

TEST(FontDialog, CancelledAnswersNothing) {
    const Modals modals({[](QWidget& window) {
        dynamic_cast<QDialog&>(window).reject();
    }});
    EXPECT_FALSE(ChooseFont(nullptr, QFont()).has_value());
}

} // namespace

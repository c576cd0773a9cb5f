#include "listeditor/frmList.h"
#include "platform/twips.h"
#include "tests/windows/mainwindowtest.h"

#include <QScreen>
#include <QTimer>

namespace {

using MainWindow = MainWindowTest;

TEST_F(MainWindow, FirstRunHasTheDesignPlaceAndTheDefaults) {
    const QRect screen = window->screen()->availableGeometry();
    EXPECT_TRUE(screen.contains(window->frameGeometry()));
    EXPECT_LE((window->frameGeometry().center() - screen.center()).manhattanLength(), 40);
    EXPECT_GE(window->width(), qMin(1000, screen.width() - 20));
    EXPECT_GE(window->height(), qMin(680, screen.height() - 60));
    EXPECT_EQ(window->document().FrameRate, 25);
    CloseWindow();
    EXPECT_EQ(StoredSettings().value("MRU").toString(), "");
    EXPECT_EQ(StoredSettings().value("LastFrameRate").toString(), "25");
}

TEST_F(MainWindow, TheCaptionNamesTheVersion) {
    EXPECT_EQ(window->windowTitle(), "Quelmar V1.0.0");
    EXPECT_EQ(window->objectName(), "frmQuelmar");
}

TEST_F(MainWindow, HasItsControls) {
    const struct {
        const char* name;
        const char* caption;
        const char* toolTip;
    } buttons[] = {
        {"cmdSelStart", "Sel. Start", "Set playback start to the current slider position"},
        {"cmdSelEnd", "Sel. End", "Set playback end to the current slider position"},
        {"cmdEdit", "Edit Subtitles",
         "Open the subtitle list for editing individual titles or groups"},
        {"cmdSave", "Save Subtitles", "Save the current version of the subtitles to a file"},
        {"cmdExit", "Exit", "Exit Quelmar"},
    };
    for (const auto& button : buttons) {
        EXPECT_EQ(The(button.name).text(), button.caption);
        EXPECT_EQ(The(button.name).toolTip(), button.toolTip);
    }
    for (const char* name : {"MP",           "picButtons",      "PB",           "PB2",
                             "Label1",       "Label2",          "Label3",       "Label4",
                             "Label5",       "Label6",          "Label7",       "Label8",
                             "txtSubtitle",  "txtNextSubtitle", "txtTime",      "UDTime",
                             "txtKey",       "txtSelStart",     "txtSelEnd",    "txtAVI",
                             "cmdBrowseAVI", "txtSRT",          "cmdBrowseSRT", "optShow",
                             "optPosition",  "cmdBlue",         "cmdGreen",     "cmdAdjust"})
        The<QWidget>(name);
    EXPECT_NE(window->findChild<QObject*>("IMGL"), nullptr);
    EXPECT_EQ(The<QTimer>("Timer1").interval(), 50);
    EXPECT_EQ(The<QTimer>("tmrPosButtons").interval(), 750);
    EXPECT_EQ(The<QTimer>("tmrUDTime").interval(), 200);
    EXPECT_EQ(The<QWidget>("MP").toolTip(),
              "Right-click for a player options menu, or move the mouse out to get rid of this "
              "text");
}

TEST_F(MainWindow, StartsWithoutMediaAndInViewMode) {
    EXPECT_FALSE(window->AVIFileOK);
    for (const char* name : {"MP", "picButtons", "txtTime", "UDTime", "cmdEdit", "cmdSave",
                             "cmdBlue", "cmdGreen", "cmdAdjust"})
        EXPECT_FALSE(The<QWidget>(name).isEnabled()) << name;
    EXPECT_FALSE(The<QTimer>("Timer1").isActive());
    EXPECT_TRUE(The<QRadioButton>("optShow").isChecked());
}

TEST_F(MainWindow, AllControlsSpeakToAssistiveTools) {
    for (QWidget* control : window->findChildren<QWidget*>())
        if (control->focusPolicy() != Qt::NoFocus && !control->objectName().isEmpty() &&
            !control->objectName().startsWith("qt_")) {
            const auto* button = qobject_cast<const QAbstractButton*>(control);
            const bool hasCaption = button != nullptr && !button->text().isEmpty();
            EXPECT_TRUE(hasCaption || !control->accessibleName().isEmpty())
                << control->objectName().toStdString();
        }
}

TEST_F(MainWindow, TooSmallSizesSnapBack) {
    window->resize(200, 100);
    QCoreApplication::processEvents();
    EXPECT_GE(ToTwips(window->width()), 10000);
    EXPECT_LT(ToTwips(window->width() - 1), 10000);
    EXPECT_GE(ToTwips(window->height()), 5000);
    EXPECT_LT(ToTwips(window->height() - 1), 5000);
}

TEST_F(MainWindow, ThePanelsLieSideBySideAlongTheBottom) {
    const QWidget& files = The<QWidget>("PB");
    const QWidget& display = The<QWidget>("PB2");
    for (const QSize size : {QSize(667, 334), QSize(760, 500)}) {
        window->resize(size);
        QCoreApplication::processEvents();
        EXPECT_EQ(files.x(), 0);
        EXPECT_EQ(files.y(), size.height() - files.height());
        EXPECT_EQ(display.x(), files.width());
        EXPECT_EQ(display.y(), files.y());
        EXPECT_LE(display.geometry().right(), size.width());
    }
}

TEST_F(MainWindow, WhereTheyDoNotFitTheSecondPanelLiesOverTheFirst) {
    QFont large = window->font();
    large.setPointSize(16);
    window->setFont(large);
    window->resize(667, 500);
    QCoreApplication::processEvents();
    EXPECT_EQ(The<QWidget>("PB2").pos(), The<QWidget>("PB").pos());
}

TEST_F(MainWindow, ThePlayerFillsTheRestAndCarriesTheStrip) {
    window->resize(760, 500);
    QCoreApplication::processEvents();
    const QWidget& media = The<QWidget>("MP");
    const QWidget& strip = The<QWidget>("picButtons");
    EXPECT_EQ(media.geometry(), QRect(0, 0, 760, The<QWidget>("PB").y()));
    const int above = media.height() - strip.y();
    window->resize(700, 400);
    QCoreApplication::processEvents();
    EXPECT_EQ(media.height() - strip.y(), above);
    EXPECT_TRUE(media.geometry().contains(strip.geometry()));
    EXPECT_EQ(window->childAt(strip.geometry().center()), &strip);
}

TEST_F(MainWindow, PlaceAndSizeComeBack) {
    window->move(40, 30);
    window->resize(720, 480);
    Reopen();
    EXPECT_EQ(window->pos(), QPoint(40, 30));
    EXPECT_EQ(window->size(), QSize(720, 480));
    EXPECT_EQ(StoredSettings().value("Left").toInt(), 600);
    EXPECT_EQ(StoredSettings().value("Top").toInt(), 450);
    EXPECT_EQ(StoredSettings().value("Width").toInt(), 10800);
    EXPECT_EQ(StoredSettings().value("Height").toInt(), 7200);
}

TEST_F(MainWindow, AWindowThatCouldNotBeSeenComesBackToTheScreen) {
    CloseWindow();
    StoredSettings().setValue("Left", 2000000000);
    StoredSettings().setValue("Top", -2000000000);
    StoredSettings().setValue("Width", "wide");
    StoredSettings().setValue("Height", -1);
    OpenWindow();
    EXPECT_TRUE(window->screen()->availableGeometry().intersects(window->geometry()));
    EXPECT_GE(window->width(), 667);
}

TEST_F(MainWindow, MaximizedItKeepsTheStoredPlaceButStoresTheRest) {
    StoredSettings().setValue("Left", 300);
    StoredSettings().setValue("Width", 10500);
    window->document().FrameRate = 23.976;
    window->showMaximized();
    CloseWindow();
    EXPECT_EQ(StoredSettings().value("Left").toInt(), 300);
    EXPECT_EQ(StoredSettings().value("Width").toInt(), 10500);
    EXPECT_FALSE(StoredSettings().contains("Height"));
    EXPECT_EQ(StoredSettings().value("LastFrameRate").toString(), "23.976");
    EXPECT_TRUE(StoredSettings().contains("MRU"));
}

TEST_F(MainWindow, TheFrameRateComesBackRoundedToTheThousandth) {
    window->document().FrameRate = 23.97602;
    Reopen();
    EXPECT_EQ(window->document().FrameRate, 23.976);
}

TEST_F(MainWindow, AStoredFrameRateThatIsNoneGivesTheDefault) {
    for (const char* text : {"fast", "", "0", "-24", "0.0001"}) {
        CloseWindow();
        StoredSettings().setValue("LastFrameRate", text);
        OpenWindow();
        EXPECT_EQ(window->document().FrameRate, 25) << text;
    }
}

TEST_F(MainWindow, TheActionKeyIsTheSpaceBarAtEveryStart) {
    window->ActionKey = 65;
    Reopen();
    EXPECT_EQ(window->ActionKey, 32);
    EXPECT_EQ(Line("txtKey").text(), "Space");
}

TEST_F(MainWindow, ClosingWithoutChangesAsksNothing) {
    const Modals none;
    EXPECT_TRUE(window->close());
}

TEST_F(MainWindow, ChangesAnsweredNoAreGivenUp) {
    Changed() = true;
    const Modals modals({AnswerMessage("Save subtitles?", QMessageBox::No)});
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(StoredSettings().contains("LastFrameRate"));
}

TEST_F(MainWindow, AFailedSaveKeepsTheWindowOpen) {
    Changed() = true;
    {
        const Modals modals(
            {AnswerMessage("Save subtitles?", QMessageBox::Yes), CancelFileDialog()});
        EXPECT_FALSE(window->close());
    }
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(Changed());
    EXPECT_FALSE(StoredSettings().contains("LastFrameRate"));
}

TEST_F(MainWindow, ASavedDocumentLetsTheWindowClose) {
    OpenTitles();
    Changed() = true;
    const Modals modals(
        {AnswerMessage("Save subtitles?", QMessageBox::Yes), AnswerFileDialog(In("saved.srt"))});
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(ReadFile("saved.srt"));
}

TEST_F(MainWindow, ExitClosesAndEscapeDoesNot) {
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_TRUE(window->isVisible());
    Click("cmdExit");
    EXPECT_FALSE(window->isVisible());
}

TEST_F(MainWindow, ClosingClosesTheListEditorFirst) {
    OpenTitles();
    Click("cmdEdit");
    ASSERT_TRUE(window->document().ListWindowOpen);
    Changed() = true;
    {
        const Modals modals({AnswerWindow("", [this](QWidget& box) {
            EXPECT_FALSE(window->document().ListWindowOpen);
            dynamic_cast<QMessageBox&>(box).button(QMessageBox::No)->click();
        })});
        EXPECT_TRUE(window->close());
    }
}

TEST_F(MainWindow, ADefaultWindowHasAPlayerOfItsOwn) {
    frmQuelmar real;
    EXPECT_FALSE(real.AVIFileOK);
    EXPECT_EQ(real.ActionKey, 32);
    EXPECT_EQ(real.Subt.Count(), 0);
}

} // namespace

#include "platform/updown.h"
#include "tests/windows/mainwindowtest.h"

#include <QAccessible>
#include <QLabel>

namespace {

/// The main window as assistive tools see it.
class SpokenWindow : public MainWindowTest {
  protected:
    static QAccessibleInterface& Of(QObject& object) {
        QAccessibleInterface* spoken = QAccessible::queryAccessibleInterface(&object);
        if (spoken == nullptr)
            throw std::runtime_error("not known to assistive tools");
        return *spoken;
    }
    QAccessibleInterface& Of(const char* name) { return Of(The<QWidget>(name)); }
    QAccessibleInterface& StripButton(int button) { return *Of("picButtons").child(button - 1); }
    static void Do(QAccessibleInterface& spoken, const QString& action) {
        QAccessibleActionInterface* const actions = spoken.actionInterface();
        if (actions == nullptr)
            throw std::runtime_error("nothing to do with it");
        actions->doAction(action);
    }
    static QAccessibleValueInterface& Value(QAccessibleInterface& spoken) {
        QAccessibleValueInterface* const value = spoken.valueInterface();
        if (value == nullptr)
            throw std::runtime_error("no value");
        return *value;
    }
    static std::string Name(const QAccessibleInterface& spoken) {
        return spoken.text(QAccessible::Name).toStdString();
    }
};

TEST_F(SpokenWindow, IsAWindowWithItsCaption) {
    EXPECT_EQ(Of(*window).role(), QAccessible::Window);
    EXPECT_EQ(Name(Of(*window)), "Quelmar V1.0.0");
}

TEST_F(SpokenWindow, TheStripIsFourButtons) {
    OpenFilm();
    const struct {
        const char* name;
        double leadsTo;
    } buttons[] = {{"To the start of the selection", 10},
                   {"Half a second back", 14.5},
                   {"Half a second forward", 15.5},
                   {"To the end of the selection", 20}};
    ASSERT_EQ(Of("picButtons").childCount(), 4);
    player->SelectionStart(10);
    player->SelectionEnd(20);
    for (int number = 1; number <= 4; ++number) {
        QAccessibleInterface& button = StripButton(number);
        EXPECT_EQ(button.role(), QAccessible::Button);
        EXPECT_EQ(Name(button), buttons[number - 1].name);
        EXPECT_FALSE(button.text(QAccessible::Accelerator).isEmpty());
        EXPECT_FALSE(button.state().disabled);
        EXPECT_EQ(button.parent(), &Of("picButtons"));
        EXPECT_EQ(Of("picButtons").indexOfChild(&button), number - 1);
        const QPoint middle = button.rect().center();
        EXPECT_EQ(Of("picButtons").childAt(middle.x(), middle.y()), &button);
        player->CurrentPosition(15);
        Do(button, QAccessibleActionInterface::pressAction());
        EXPECT_EQ(player->CurrentPosition(), buttons[number - 1].leadsTo);
    }
}

TEST_F(SpokenWindow, TheStripsButtonsAreOffWhileTheFilmPlays) {
    OpenFilm();
    player->CurrentPosition(15);
    player->Play();
    EXPECT_TRUE(StripButton(3).state().disabled);
    Do(StripButton(3), QAccessibleActionInterface::pressAction());
    EXPECT_EQ(player->CurrentPosition(), 15);
    EXPECT_EQ(Of("picButtons").child(4), nullptr);
    EXPECT_EQ(Of("picButtons").child(-1), nullptr);
}

TEST_F(SpokenWindow, TheSpinnerHasAValue) {
    OpenFilm();
    player->CurrentPosition(65.25);
    QAccessibleInterface& spinner = Of("UDTime");
    EXPECT_EQ(spinner.role(), QAccessible::SpinBox);
    EXPECT_EQ(Name(spinner), "Move in the media");
    EXPECT_EQ(spinner.text(QAccessible::Value).toStdString(), "00:01:05,250");
    QAccessibleValueInterface& value = Value(spinner);
    EXPECT_EQ(value.currentValue().toDouble(), 65.25);
    EXPECT_EQ(value.minimumValue().toDouble(), 0);
    EXPECT_EQ(value.maximumValue().toDouble(), 600);
    value.setCurrentValue(30.5);
    EXPECT_EQ(player->CurrentPosition(), 30.5);
    value.setCurrentValue(99999);
    EXPECT_EQ(player->CurrentPosition(), 600);
    value.setCurrentValue(100);
    Do(spinner, QAccessibleActionInterface::increaseAction());
    EXPECT_EQ(player->CurrentPosition(), 120);
    Do(spinner, QAccessibleActionInterface::decreaseAction());
    EXPECT_EQ(player->CurrentPosition(), 100);
}

TEST_F(SpokenWindow, WithoutAFilmTheSpinnerSetsNothing) {
    Value(Of("UDTime")).setCurrentValue(30);
    EXPECT_TRUE(player->Seeks.empty());
    EXPECT_TRUE(Of("UDTime").state().disabled);
}

TEST_F(SpokenWindow, TheTimesAreTexts) {
    OpenFilm();
    player->CurrentPosition(65);
    EXPECT_EQ(Of("mpElapsed").role(), QAccessible::StaticText);
    EXPECT_EQ(Name(Of("mpElapsed")), "Elapsed time 1:05");
    EXPECT_EQ(Name(Of("mpTotal")), "Total time 10:00");
}

} // namespace

#include "tests/windows/listtest.h"

#include "listeditor/frmFind.h"

#include <QApplication>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace {

class ListFind : public ListTest {
  protected:
    frmFind& Find(const std::vector<const char*>& texts) {
        std::vector<TestTitle> titles;
        double start = 0;
        for (const char* text : texts) {
            titles.push_back({start, start + 2, text});
            start += 10;
        }
        Open(titles);
        List().DoCommand("Find");
        auto& find = Child<frmFind>(List(), "frmFind");
        WaitUntilActive(find);
        return find;
    }
    /// A window counts as active for Qt Test while a dialog of its own is.
    static void WaitUntilActive(const QWidget& window) {
        EXPECT_TRUE(
            QTest::qWaitFor([&] { return QApplication::activeWindow() == &window; }, 30'000));
    }
    std::vector<std::int32_t> Selected() { return List().SelectedRows(); }
    using Rows = std::vector<std::int32_t>;
};

TEST_F(ListFind, LoadsReadyToSearchForAllWords) {
    frmFind& find = Find({"one"});
    EXPECT_EQ(find.windowTitle(), "Find title");
    EXPECT_TRUE(document().FindOpen);
    EXPECT_TRUE(find.optAll->isChecked());
    EXPECT_TRUE(find.cmdSearch->isDefault());
    EXPECT_EQ(find.cmdExit->text(), "&Close");
    EXPECT_EQ(find.cmdNext->text(), "Find &Next");
    EXPECT_EQ(find.cmdSearch->text(), "Find &First");
    QTest::mouseClick(find.cmdExit, Qt::LeftButton);
    EXPECT_FALSE(document().FindOpen);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(List().findChild<frmFind*>(), nullptr);
}

TEST_F(ListFind, NextStartsTwoTitlesAfterTheMatch) {
    frmFind& find = Find({"one", "a word", "word", "four", "five"});
    QTest::keyClicks(find.txtFind, "Word");
    QTest::keyClick(find.txtFind, Qt::Key_Return);
    EXPECT_EQ(Selected(), Rows{2});
    EXPECT_EQ(host.positions, std::vector<double>{10});
    EXPECT_TRUE(find.cmdNext->isDefault());
    const Modals modals({AnswerMessage("No match.")});
    QTest::keyClick(find.txtFind, Qt::Key_Return);
    EXPECT_EQ(Selected(), Rows{2});
    EXPECT_TRUE(find.isVisible());
}

TEST_F(ListFind, SelectsTheTitleFoundAlone) {
    frmFind& find = Find({"one", "two", "three", "word"});
    Select({1, 2, 3});
    find.txtFind->setText("word");
    find.cmdSearch->click();
    EXPECT_EQ(Selected(), Rows{4});
}

TEST_F(ListFind, AnyWordAsksForTheFirstWord) {
    frmFind& find = Find({"only a dog", "a cat"});
    find.optAny->click();
    find.txtFind->setText("cat dog");
    find.cmdSearch->click();
    EXPECT_EQ(Selected(), Rows{2});
}

TEST_F(ListFind, AllWordsWithADoubleBlank) {
    frmFind& find = Find({"cat", "dog and cat"});
    find.txtFind->setText("cat  dog");
    find.cmdSearch->click();
    EXPECT_EQ(Selected(), Rows{2});
}

TEST_F(ListFind, ExactPhraseInAnyLetterCase) {
    frmFind& find = Find({"other", "say hello there", "\xC3\x84rger"});
    find.optExact->click();
    find.txtFind->setText("Hello");
    find.cmdSearch->click();
    EXPECT_EQ(Selected(), Rows{2});
    find.txtFind->setText(QString::fromUtf8("\xC3\xA4RG"));
    find.cmdSearch->click();
    EXPECT_EQ(Selected(), Rows{3});
}

TEST_F(ListFind, AfterNoMatchEnterCloses) {
    frmFind& find = Find({"one"});
    find.txtFind->setText("two");
    {
        const Modals modals({AnswerMessage("No match.")});
        QTest::keyClick(find.txtFind, Qt::Key_Return);
    }
    EXPECT_TRUE(find.cmdExit->isDefault());
    QTest::keyClick(find.txtFind, Qt::Key_Return);
    EXPECT_FALSE(document().FindOpen);
}

TEST_F(ListFind, TypingMakesFindFirstTheDefaultAgain) {
    frmFind& find = Find({"one"});
    find.txtFind->setText("one");
    find.cmdSearch->click();
    ASSERT_TRUE(find.cmdNext->isDefault());
    QTest::keyClicks(find.txtFind, "x");
    EXPECT_TRUE(find.cmdSearch->isDefault());
}

TEST_F(ListFind, NothingTypedSearchesNothing) {
    frmFind& find = Find({"one"});
    const Modals modals;
    find.cmdSearch->click();
    find.cmdNext->click();
    EXPECT_TRUE(Selected().empty());
}

TEST_F(ListFind, HidesWhenAnotherWindowIsUsedAndComesBack) {
    frmFind& find = Find({"one", "two", "three", "one"});
    find.txtFind->setText("one");
    find.cmdSearch->click();
    List().activateWindow();
    WaitUntilActive(List());
    EXPECT_FALSE(find.isVisible());
    EXPECT_TRUE(document().FindOpen);
    QTest::keyClick(List().LV, Qt::Key_F3);
    EXPECT_EQ(Selected(), Rows{4});
    EXPECT_FALSE(find.isVisible());
    QTest::keyClick(List().LV, Qt::Key_F, Qt::ControlModifier);
    EXPECT_TRUE(find.isVisible());
    EXPECT_EQ(find.txtFind->text(), "one");
}

TEST_F(ListFind, GoesWithTheList) {
    Find({"one"});
    host.Close();
    EXPECT_FALSE(document().FindOpen);
}

TEST_F(ListFind, EscapeClosesIt) {
    frmFind& find = Find({"one"});
    QTest::keyClick(find.txtFind, Qt::Key_Escape);
    EXPECT_FALSE(document().FindOpen);
}

} // namespace

#include "platform/updown.h"

#include <QSignalSpy>
#include <QStringList>
#include <QTest>

#include <gtest/gtest.h>

namespace {

class UpDownTest : public testing::Test {
  protected:
    UpDownTest() {
        control.resize(20, 30);
        QObject::connect(&control, &UpDown::MouseDown,
                         [this](int y) { heard << QStringLiteral("MouseDown %1").arg(y); });
        QObject::connect(&control, &UpDown::MouseUp, [this] { heard << "MouseUp"; });
        QObject::connect(&control, &UpDown::UpClick, [this] { heard << "UpClick"; });
        QObject::connect(&control, &UpDown::DownClick, [this] { heard << "DownClick"; });
        control.show();
    }

    UpDown control;
    QStringList heard;
};

TEST_F(UpDownTest, ClicksTheHalfThatIsPressed) {
    QTest::mouseClick(&control, Qt::LeftButton, {}, {10, 14});
    EXPECT_EQ(heard, (QStringList{"MouseDown 14", "MouseUp", "UpClick"}));
    heard.clear();
    QTest::mouseClick(&control, Qt::LeftButton, {}, {10, 15});
    EXPECT_EQ(heard, (QStringList{"MouseDown 15", "MouseUp", "DownClick"}));
}

TEST_F(UpDownTest, ThePressedHalfCountsWhereverTheButtonIsReleased) {
    QTest::mousePress(&control, Qt::LeftButton, {}, {10, 2});
    QTest::mouseRelease(&control, Qt::LeftButton, {}, {60, 28});
    EXPECT_EQ(heard, (QStringList{"MouseDown 2", "MouseUp", "UpClick"}));
}

TEST_F(UpDownTest, OtherButtonsDoNothing) {
    QTest::mouseClick(&control, Qt::RightButton, {}, {10, 2});
    EXPECT_TRUE(heard.isEmpty());
}

TEST_F(UpDownTest, ArrowKeysClick) {
    QTest::keyClick(&control, Qt::Key_Up);
    QTest::keyClick(&control, Qt::Key_Down);
    EXPECT_EQ(heard, (QStringList{"UpClick", "DownClick"}));
}

TEST_F(UpDownTest, DisablingEndsAHold) {
    QTest::mousePress(&control, Qt::LeftButton, {}, {10, 2});
    control.setEnabled(false);
    EXPECT_EQ(heard, (QStringList{"MouseDown 2", "MouseUp"}));
}

} // namespace

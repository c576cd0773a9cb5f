#include "platform/updown.h"

#include <QImage>
#include <QLineEdit>
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

TEST_F(UpDownTest, IsAsHighAsTheBoxBesideIt) {
    EXPECT_EQ(control.sizeHint().height(), QLineEdit().sizeHint().height());
}

TEST_F(UpDownTest, HasNoBrightEdgesInTheDark) {
    const QColor dark(49, 54, 59);
    QPalette palette(dark, dark);
    palette.setColor(QPalette::ButtonText, Qt::white);
    control.setPalette(palette);
    const QImage picture = control.grab().toImage();
    for (int x = 0; x < picture.width(); ++x)
        for (const int y : {0, picture.height() / 2 - 1, picture.height() - 1})
            EXPECT_LT(picture.pixelColor(x, y).lightness(), 128) << x << ", " << y;
    for (int y = 0; y < picture.height(); ++y)
        for (const int x : {0, picture.width() - 1})
            EXPECT_LT(picture.pixelColor(x, y).lightness(), 128) << x << ", " << y;
}

} // namespace

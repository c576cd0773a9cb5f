#include "player/titlepicture.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

namespace {

const QColor Film(64, 72, 84);

/// The title on a plain picture.
QImage Drawn(TitlePicture& title, QSize size = {640, 360}, qreal scale = 1) {
    QImage image((QSizeF(size) * scale).toSize(), QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    image.fill(Film);
    QPainter painter(&image);
    title.Draw(painter, size);
    return image;
}

QImage Drawn(const char* text, QSize size = {640, 360}, qreal scale = 1) {
    TitlePicture title;
    title.Text(QString::fromUtf8(text));
    return Drawn(title, size, scale);
}

/// What of the picture is not the film.
QRect Covered(const QImage& image) {
    QRect covered;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y) != Film)
                covered |= QRect(x, y, 1, 1);
    return covered;
}

int Count(const QImage& image, const QColor& colour) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) == colour ? 1 : 0;
    return count;
}

TEST(TitlePictureTest, WithoutATextNothingIsDrawn) {
    EXPECT_TRUE(Covered(Drawn("")).isNull());
}

TEST(TitlePictureTest, LiesAtTheBottomInTheMiddle) {
    for (const QSize size : {QSize(640, 360), QSize(320, 480), QSize(1920, 1080)}) {
        const QRect covered = Covered(Drawn("A title", size));
        EXPECT_GT(covered.top(), size.height() * 3 / 4);
        EXPECT_LT(covered.bottom(), size.height());
        EXPECT_NEAR(covered.center().x(), size.width() / 2, 4);
        EXPECT_LT(covered.width(), size.width());
    }
}

TEST(TitlePictureTest, IsWhiteWithABlackOutline) {
    const QImage image = Drawn("A title");
    EXPECT_GT(Count(image, Qt::white), 50);
    EXPECT_GT(Count(image, Qt::black), 50);
}

TEST(TitlePictureTest, LineBreaksAreLines) {
    const int one = Covered(Drawn("One")).height();
    for (const char* text : {"One\r\nOne", "One\nOne", "One\rOne"})
        EXPECT_GT(Covered(Drawn(text)).height(), one * 3 / 2) << text;
}

TEST(TitlePictureTest, LongLinesAreBrokenWithinThePicture) {
    const QRect covered = Covered(Drawn("A very long title that does not fit the width of the "
                                        "picture and so takes a second line of its own"));
    EXPECT_GT(covered.left(), 0);
    EXPECT_LT(covered.right(), 639);
    EXPECT_GT(covered.height(), 40);
}

TEST(TitlePictureTest, ManyLinesStayOnThePicture) {
    QString text;
    for (int i = 0; i < 12; ++i)
        text += QStringLiteral("Line %1\r\n").arg(i);
    EXPECT_GE(Covered(Drawn(text.toUtf8().constData())).top(), 1);
}

TEST(TitlePictureTest, TagsAreStylesAndNotShown) {
    const QImage plain = Drawn("word");
    for (const char* text : {"<i>word</i>", "<b>word</b>", "<I>word</I>"}) {
        const QImage styled = Drawn(text);
        EXPECT_NE(styled, plain) << text;
        EXPECT_NEAR(Covered(styled).width(), Covered(plain).width(), 20) << text;
    }
    EXPECT_EQ(Covered(Drawn("<i></i>word")), Covered(plain));
    EXPECT_GT(Covered(Drawn("<u>word")).width(), Covered(plain).width()) << "no tag of ours";
}

TEST(TitlePictureTest, ANewTextTakesThePlaceOfTheOld) {
    TitlePicture title;
    title.Text(QStringLiteral("One"));
    const QImage one = Drawn(title);
    title.Text(QStringLiteral("Another"));
    EXPECT_NE(Drawn(title), one);
    title.Text({});
    EXPECT_TRUE(Covered(Drawn(title)).isNull());
}

TEST(TitlePictureTest, IsSharpOnAFineScreen) {
    TitlePicture title;
    title.Text(QStringLiteral("A title"));
    const QRect coarse = Covered(Drawn(title));
    const QRect fine = Covered(Drawn(title, {640, 360}, 2));
    EXPECT_NEAR(fine.width(), 2 * coarse.width(), 6);
}

} // namespace

// ImageFormats: the formats offered are those Qt writes here, in their order, with their titles;
// a picture is told by its suffix and first bytes.

#include "TestPictures.h"
#include "images/ImageFormats.h"

#include <QImageWriter>
#include <gtest/gtest.h>

namespace orwick::test {
namespace {

TEST(ImageFormats, OffersOnlyWhatQtWritesInTheirOrderWithTitlesAndSuffixes)
{
    const QList<QByteArray> formats = writableImageFormats();
    ASSERT_GE(formats.size(), 2);
    EXPECT_EQ(formats[0], "png");
    EXPECT_EQ(formats[1], "jpeg");
    const QList<QByteArray> order{"png", "jpeg", "webp", "avif"};
    qsizetype last = -1;
    for (const QByteArray& format : formats) {
        EXPECT_TRUE(QImageWriter::supportedImageFormats().contains(format)) << format.constData();
        EXPECT_GT(order.indexOf(format), last) << format.constData();
        last = order.indexOf(format);
    }
    EXPECT_FALSE(isWritableImageFormat("gif"));
    EXPECT_EQ(formatTitle("png"), u"PNG");
    EXPECT_EQ(formatTitle("jpeg"), u"JPEG");
    EXPECT_EQ(formatTitle("webp"), u"WebP");
    EXPECT_EQ(formatTitle("avif"), u"AVIF");
    EXPECT_EQ(formatSuffix("jpeg"), "jpg");
    EXPECT_EQ(formatSuffix("webp"), "webp");
}

TEST(ImageFormats, APictureIsToldBySuffixAndFirstBytes)
{
    TempTree tree;
    const QByteArray png = encoded(halves({8, 8}, Qt::red, Qt::blue), "png");
    EXPECT_TRUE(isPicture(tree.file("a.png", png)));
    EXPECT_TRUE(isPicture(tree.file("b.JPG", encoded(halves({8, 8}, Qt::red, Qt::blue), "jpeg"))));
    EXPECT_TRUE(isPicture(tree.file("c.gif", twoFrameGif())));
    EXPECT_FALSE(isPicture(tree.file("notes.png", "just some words, not a picture")));
    EXPECT_FALSE(isPicture(tree.file("a.txt", png)));
    EXPECT_FALSE(isPicture(tree.path("missing.png")));
    EXPECT_FALSE(isPicture(tree.folder("folder.png")));
}

} // namespace
} // namespace orwick::test

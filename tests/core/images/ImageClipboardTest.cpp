// The picture Copy Image puts on the clipboard: upright, bounded in size, the first frame.

#include "TestPictures.h"
#include "images/ImageClipboard.h"

#include <gtest/gtest.h>

namespace orwick {
namespace {

using test::near;

TEST(ImageClipboard, APictureIsCopiedUprightAtItsOwnSize)
{
    // Stored wide, red on the left; orientation 6 turns it a quarter clockwise: red on top.
    test::TempTree tree;
    const QByteArray stored = test::encoded(test::halves({300, 200}, Qt::red, Qt::blue), "jpeg", 95);
    const auto image = clipboardImage(tree.file("turned.jpg", test::withExifOrientation(stored, 6)));
    ASSERT_TRUE(image.has_value()) << image.error().toStdString();
    EXPECT_EQ(image->size(), QSize(200, 300));
    EXPECT_TRUE(near(image->pixelColor(100, 50), Qt::red));
    EXPECT_TRUE(near(image->pixelColor(100, 250), Qt::blue));
}

TEST(ImageClipboard, ALargePictureIsScaledToTheBoundKeepingItsShapeAndAnAnimationGivesItsFirstFrame)
{
    test::TempTree tree;
    const auto image = clipboardImage(tree.file("wide.png", test::encoded(test::halves({6000, 1500}, Qt::red, Qt::blue), "png")));
    ASSERT_TRUE(image.has_value()) << image.error().toStdString();
    EXPECT_EQ(image->size(), QSize(kClipboardLongestSide, kClipboardLongestSide / 4));
    // An animation gives its first frame.
    const auto frame = clipboardImage(tree.file("moving.gif", test::twoFrameGif()));
    ASSERT_TRUE(frame.has_value()) << frame.error().toStdString();
    EXPECT_TRUE(near(frame->pixelColor(1, 1), Qt::red));
}

TEST(ImageClipboard, ADamagedPictureFailsWithItsName)
{
    test::TempTree tree;
    const QByteArray png = test::encoded(test::halves({300, 200}, Qt::red, Qt::blue), "png");
    const auto image = clipboardImage(tree.file("cut.png", png.left(png.size() / 2)));
    ASSERT_FALSE(image.has_value());
    EXPECT_TRUE(image.error().startsWith(QStringLiteral("“cut.png”"))) << image.error().toStdString();
}

} // namespace
} // namespace orwick

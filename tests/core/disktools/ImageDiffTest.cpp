#include "DiskTestSupport.h"
#include "disktools/ImageDiff.h"

#include <gtest/gtest.h>

using namespace orwick;
using namespace orwick::test;

namespace {

QImage filled(int w, int h, QColor color)
{
    QImage image(w, h, QImage::Format_RGBA8888);
    image.fill(color);
    return image;
}

} // namespace

TEST(ImageDiff, SameGreyFormulaAndRedForDifferences)
{
    QImage left = filled(2, 1, QColor(100, 150, 200));
    QImage right = left;
    right.setPixelColor(1, 0, QColor(100, 150, 250)); // blue differs by 50
    const auto result = ImageDiff::compare(left, right);
    ASSERT_TRUE(result);
    EXPECT_DOUBLE_EQ(result->changed, 0.5);
    EXPECT_TRUE(result->sameSize);
    const int g = ((3 * 100 + 6 * 150 + 200) * 8739 >> 18) + 40; // 86
    EXPECT_EQ(g, 86);
    EXPECT_EQ(result->image.pixelColor(0, 0), QColor(g, g, g, 255));
    EXPECT_EQ(result->image.pixelColor(1, 0), QColor(50 + 120, g / 3, g / 3, 255));
    EXPECT_EQ(ImageDiff::summary(*result), "50.0% of pixels differ · S switches view");
}

TEST(ImageDiff, SixteenIsTheSameSeventeenDiffers)
{
    const QImage base = filled(1, 1, QColor(100, 100, 100, 200));
    EXPECT_EQ(ImageDiff::compare(base, filled(1, 1, QColor(116, 84, 116, 216)))->changed, 0.0);
    EXPECT_EQ(ImageDiff::compare(base, filled(1, 1, QColor(117, 100, 100, 200)))->changed, 1.0);
    EXPECT_EQ(ImageDiff::compare(base, filled(1, 1, QColor(100, 100, 100, 183)))->changed, 1.0) << "alpha counts too";
    // The red is capped at 135 + 120.
    const auto far = ImageDiff::compare(filled(1, 1, Qt::black), filled(1, 1, Qt::white));
    EXPECT_EQ(far->image.pixelColor(0, 0).red(), 255);
}

TEST(ImageDiff, SummaryTexts)
{
    ImageDiff::Result result;
    result.changed = 0;
    EXPECT_EQ(ImageDiff::summary(result), "No pixels differ · S switches view");
    result.changed = 1.0 / 2'000'000;
    EXPECT_EQ(ImageDiff::summary(result), "Under 0.1% of pixels differ · S switches view");
    result.changed = 0.0423;
    result.sameSize = false;
    EXPECT_EQ(ImageDiff::summary(result), "4.2% of pixels differ · different shapes, compared at the left one's size · S switches view");
}

TEST(ImageDiff, OnePixelInTwoMillion)
{
    QImage left = filled(2000, 1000, QColor(10, 20, 30));
    QImage right = left;
    right.setPixelColor(1999, 999, QColor(200, 20, 30));
    const auto result = ImageDiff::compare(left, right);
    EXPECT_DOUBLE_EQ(result->changed, 1.0 / 2'000'000);
    EXPECT_TRUE(ImageDiff::summary(*result).startsWith("Under 0.1% of pixels differ"));
}

TEST(ImageDiff, DifferentShapesCompareAtTheLeftSize)
{
    const QImage big = filled(1000, 800, QColor(40, 80, 120));
    const QImage small = filled(500, 400, QColor(40, 80, 120));
    const auto result = ImageDiff::compare(big, small);
    ASSERT_TRUE(result);
    EXPECT_FALSE(result->sameSize);
    EXPECT_EQ(result->image.size(), QSize(1000, 800));
    EXPECT_EQ(result->changed, 0.0);
    EXPECT_EQ(ImageDiff::summary(*result), "No pixels differ · different shapes, compared at the left one's size · S switches view");
}

TEST(ImageDiff, LoadScalesAndUnreadableIsNull)
{
    TempTree tree;
    const FilePath png = tree.path("big.png");
    ASSERT_TRUE(filled(3200, 1000, Qt::red).save(png.text()));
    const QImage loaded = ImageDiff::load(png, 1600);
    EXPECT_EQ(loaded.size(), QSize(1600, 500));
    const FilePath junk = tree.file("junk.png", "not a picture");
    EXPECT_TRUE(ImageDiff::load(junk).isNull());
    EXPECT_FALSE(ImageDiff::compare(loaded, ImageDiff::load(junk)));
    EXPECT_EQ(ImageDiff::unreadableMessage(), "Couldn't read these pictures");
}

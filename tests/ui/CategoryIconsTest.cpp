// The file icons are drawn at the size a view asks for, in the category's tint, and dimmed by the
// style where a view shows an item disabled.

#include "ui/theme/Theme.h"
#include "ui/views/CategoryIcons.h"

#include <QImage>
#include <QPixmap>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

// How many pixels of `image` are not transparent.
int inked(const QImage& image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += qAlpha(image.pixel(x, y)) > 0 ? 1 : 0;
    return count;
}

} // namespace

TEST(CategoryIcons, EachSizeIsDrawnAsAskedInTheCategorysTint)
{
    const QIcon text = categoryIcon(FileCategory::text);
    for (int side : {16, 18, 24, 100, 256}) {
        const QImage drawn = text.pixmap(side, side).toImage();
        EXPECT_EQ(drawn.size(), QSize(side, side)) << side;
        EXPECT_GT(inked(drawn), side * side / 10) << "a page, not a blank, at " << side;
    }
    // A folder is the folder's tint, filled.
    const QImage folder = categoryIcon(FileCategory::folder).pixmap(32, 32).toImage();
    const QColor middle = folder.pixelColor(16, 18);
    const QColor tint = theme::categoryTint(FileCategory::folder);
    EXPECT_NEAR(middle.red(), tint.red(), 8);
    EXPECT_NEAR(middle.green(), tint.green(), 8);
    EXPECT_NEAR(middle.blue(), tint.blue(), 8);
    // The same icon asked again is the one drawn before.
    EXPECT_EQ(text.pixmap(24, 24).cacheKey(), text.pixmap(24, 24).cacheKey());
    // Disabled, the style dims it.
    EXPECT_NE(text.pixmap(24, 24, QIcon::Disabled).toImage(), text.pixmap(24, 24).toImage());
}

TEST(CategoryIcons, ALinkCarriesItsArrowAndABrokenOneIsFainter)
{
    FileItem plain;
    plain.category = FileCategory::text;
    plain.url = plain.destination = FilePath::fromNative("/here/plain.txt");
    FileItem link = plain;
    link.destination = FilePath::fromNative("/somewhere/else.txt");
    FileItem broken = plain;
    broken.brokenTarget = QStringLiteral("gone.txt");
    const QImage page = itemIcon(plain).pixmap(32, 32).toImage();
    const QImage linked = itemIcon(link).pixmap(32, 32).toImage();
    const QImage faint = itemIcon(broken).pixmap(32, 32).toImage();
    EXPECT_NE(page, linked);
    EXPECT_NE(linked, faint);
}

// ImageSets on pictures made here: exact sizes on odd dimensions, the scale a name says, never
// scaling up, the source's own scale as its bytes, SVG drawn at each scale.

#include "TestPictures.h"
#include "images/ImageSets.h"

#include <gtest/gtest.h>

namespace orwick::test {
namespace {

struct Made {
    QString name;
    QSize size;
};

QList<Made> madeOf(const QList<FileOperations::MadeFile>& files)
{
    QList<Made> made;
    for (const auto& file : files)
        made.append({file.wanted.fileName(), decoded(file.contents).size()});
    return made;
}

void expectMade(const Result<QList<FileOperations::MadeFile>>& result, const QList<Made>& expected)
{
    ASSERT_TRUE(result) << result.error().toStdString();
    const QList<Made> made = madeOf(*result);
    ASSERT_EQ(made.size(), expected.size());
    for (qsizetype i = 0; i < made.size(); ++i) {
        EXPECT_EQ(made[i].name, expected[i].name);
        EXPECT_EQ(made[i].size, expected[i].size) << made[i].name.toStdString();
    }
}

TEST(ImageSets, APlainNameIsTakenAsThreeTimesWithExactSizes)
{
    TempTree tree;
    const QByteArray png = encoded(halves({301, 199}, Qt::red, Qt::blue), "png");
    const FilePath source = tree.file("icon.png", png);
    CancelFlag cancel;
    const auto made = imageSet(source, cancel);
    // round(301/3) = 100, round(199/3) = 66; round(602/3) = 201, round(398/3) = 133.
    expectMade(made, {{"icon@1x.png", {100, 66}}, {"icon@2x.png", {201, 133}}, {"icon@3x.png", {301, 199}}});
    EXPECT_EQ(made->last().contents, png); // its own scale is the source's bytes
    EXPECT_EQ(made->first().wanted.parent(), tree.root());
}

TEST(ImageSets, ANameWithItsScaleMakesOnlyTheSmallerOnes)
{
    TempTree tree;
    CancelFlag cancel;
    const QImage picture = halves({301, 199}, Qt::red, Qt::blue);
    expectMade(imageSet(tree.file("logo@2x.png", encoded(picture, "png")), cancel), {{"logo@1x.png", {151, 100}}});
    expectMade(imageSet(tree.file("logo@3x.jpg", encoded(picture, "jpeg")), cancel),
               {{"logo@1x.jpg", {100, 66}}, {"logo@2x.jpg", {201, 133}}});
    auto smallest = imageSet(tree.file("logo@1x.png", encoded(picture, "png")), cancel);
    ASSERT_FALSE(smallest);
    EXPECT_EQ(smallest.error(), u"“logo@1x.png” is its smallest size already: there is nothing smaller to make.");
}

TEST(ImageSets, SizesAreUpright)
{
    TempTree tree;
    const QByteArray jpeg = withExifOrientation(encoded(halves({90, 30}, Qt::red, Qt::blue), "jpeg", 95), 6);
    CancelFlag cancel;
    expectMade(imageSet(tree.file("turned.jpg", jpeg), cancel),
               {{"turned@1x.jpg", {10, 30}}, {"turned@2x.jpg", {20, 60}}, {"turned@3x.jpg", {30, 90}}});
}

TEST(ImageSets, AnSvgIsDrawnAtEachScale)
{
    TempTree tree;
    const FilePath svg = tree.file("mark.svg", R"(<svg xmlns="http://www.w3.org/2000/svg" width="10" height="7">
        <rect width="10" height="7" fill="#ff0000"/></svg>)");
    CancelFlag cancel;
    const auto made = imageSet(svg, cancel);
    expectMade(made, {{"mark@1x.png", {10, 7}}, {"mark@2x.png", {20, 14}}, {"mark@3x.png", {30, 21}}});
    EXPECT_TRUE(near(decoded(made->last().contents).pixelColor(15, 10), Qt::red, 0));
}

TEST(ImageSets, AFormatQtCantWriteGivesPng)
{
    TempTree tree;
    CancelFlag cancel;
    expectMade(imageSet(tree.file("spin.gif", twoFrameGif()), cancel),
               {{"spin@1x.png", {1, 1}}, {"spin@2x.png", {3, 3}}, {"spin@3x.png", {4, 4}}});
}

TEST(ImageSets, ScaledSizesRoundHalfUpAndNeverVanish)
{
    EXPECT_EQ(scaledSetSize({3, 3}, 1, 3), QSize(1, 1));
    EXPECT_EQ(scaledSetSize({1, 1}, 1, 3), QSize(1, 1));
    EXPECT_EQ(scaledSetSize({5, 7}, 1, 2), QSize(3, 4));
    EXPECT_EQ(scaledSetSize({1000, 500}, 2, 3), QSize(667, 333));
}

} // namespace
} // namespace orwick::test

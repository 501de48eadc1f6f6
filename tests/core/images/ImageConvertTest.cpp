// ImageConvert on pictures made here: names, formats, sizes, EXIF orientation, first frames,
// and the pictures that can't be converted, each failing with its name.

#include "TestPictures.h"
#include "images/ImageConvert.h"
#include "images/ImageFormats.h"
#include "images/ImageMetadata.h"
#include "support/TaggedJpeg.h"

#include <gtest/gtest.h>

namespace orwick::test {
namespace {

ConvertOptions to(const QByteArray& format, int quality = -1) { return ConvertOptions{format, quality, {}}; }

ConvertOptions resizedTo(ImageResize resize, const QByteArray& format = {})
{
    ConvertOptions options;
    options.format = format;
    options.resize = resize;
    return options;
}

ImageResize longest(int pixels) { return {ImageResize::Kind::longest, pixels}; }

TEST(ImageConvert, VerbsSayWhatHappens)
{
    EXPECT_EQ(convertVerb(to("webp")), u"Convert to WebP");
    EXPECT_EQ(convertVerb(to("png")), u"Convert to PNG");
    EXPECT_EQ(convertVerb(resizedTo(longest(1600))), u"Resize");
}

TEST(ImageConvert, EveryWritableFormatGivesANewFileBesideTheSource)
{
    TempTree tree;
    const FilePath source = tree.file("photo.jpg", encoded(halves({64, 48}, Qt::red, Qt::blue), "jpeg", 95));
    CancelFlag cancel;
    for (const QByteArray& format : writableImageFormats()) {
        auto made = convertImage(source, to(format), cancel);
        ASSERT_TRUE(made) << made.error().toStdString();
        ASSERT_EQ(made->size(), 1);
        EXPECT_EQ(made->first().wanted, tree.path("photo." + QString::fromLatin1(formatSuffix(format))));
        const QImage image = decoded(made->first().contents);
        EXPECT_EQ(image.size(), QSize(64, 48)) << format.constData();
        EXPECT_TRUE(near(image.pixelColor(8, 24), Qt::red)) << format.constData();
        EXPECT_TRUE(near(image.pixelColor(56, 24), Qt::blue)) << format.constData();
    }
}

TEST(ImageConvert, ARotatedJpegKeepsItsLook)
{
    TempTree tree;
    // Stored 80 × 40, red left; orientation 6 shows it turned a quarter clockwise: red on top.
    const QByteArray jpeg = withExifOrientation(encoded(halves({80, 40}, Qt::red, Qt::blue), "jpeg", 95), 6);
    const FilePath source = tree.file("turned.jpg", jpeg);
    const QImage shown = decoded(jpeg);
    ASSERT_EQ(shown.size(), QSize(40, 80));
    ASSERT_TRUE(near(shown.pixelColor(20, 10), Qt::red));

    CancelFlag cancel;
    auto made = convertImage(source, to("png"), cancel);
    ASSERT_TRUE(made) << made.error().toStdString();
    const QImage image = decoded(made->first().contents);
    EXPECT_EQ(image.size(), QSize(40, 80));
    EXPECT_TRUE(near(image.pixelColor(20, 10), Qt::red));
    EXPECT_TRUE(near(image.pixelColor(20, 70), Qt::blue));

    // Resized, the upright picture's longer side is the one that fits.
    auto smaller = convertImage(source, resizedTo(longest(20)), cancel);
    ASSERT_TRUE(smaller) << smaller.error().toStdString();
    EXPECT_EQ(smaller->first().wanted, tree.path("turned (20 px).jpg"));
    const QImage small = decoded(smaller->first().contents);
    EXPECT_EQ(small.size(), QSize(10, 20));
    EXPECT_TRUE(near(small.pixelColor(5, 2), Qt::red, 40));
}

TEST(ImageConvert, AResizedOrConvertedPhotoKeepsItsCameraDateAndPlace)
{
    TempTree tree;
    // 32 × 24 stored, turned a quarter by its orientation: 24 × 32 upright.
    const FilePath photo = cameraPhoto(tree.path(QStringLiteral("pier.jpg")));
    const auto before = readPhotoFacts(photo);
    ASSERT_TRUE(before) << before.error().toStdString();
    ASSERT_TRUE(before->location.has_value());

    CancelFlag cancel;
    for (const ConvertOptions& options : {resizedTo(longest(16)), to("png"), to("webp")}) {
        auto made = convertImage(photo, options, cancel);
        ASSERT_TRUE(made) << made.error().toStdString();
        const auto facts = photoFactsOf(made->first().contents, QStringLiteral("made"));
        ASSERT_TRUE(facts) << facts.error().toStdString();
        const std::string name = made->first().wanted.fileName().toStdString();
        EXPECT_EQ(facts->camera, before->camera) << name;
        EXPECT_EQ(facts->taken, before->taken) << name;
        EXPECT_EQ(facts->location, before->location) << name;
        // Upright once: the kept metadata doesn't turn the new pixels a second time.
        const QImage shown = decoded(made->first().contents);
        EXPECT_GT(shown.height(), shown.width()) << name;
    }
}

TEST(ImageConvert, ResizesByLongestSidePercentOrExactSize)
{
    TempTree tree;
    const FilePath source = tree.file("wide.png", encoded(halves({301, 199}, Qt::red, Qt::blue), "png"));
    CancelFlag cancel;
    const struct {
        ImageResize resize;
        QSize size;
        QString name;
    } rows[] = {
        {longest(100), {100, 66}, "wide (100 px).png"},
        {longest(1000), {301, 199}, "wide (1000 px).png"}, // never enlarged
        {{ImageResize::Kind::percent, 0, 50}, {151, 100}, "wide (50%).png"},
        {{ImageResize::Kind::percent, 0, 200}, {602, 398}, "wide (200%).png"},
        {{ImageResize::Kind::exact, 0, 100, {40, 40}}, {40, 40}, "wide (40x40).png"},
    };
    for (const auto& row : rows) {
        auto made = convertImage(source, resizedTo(row.resize), cancel);
        ASSERT_TRUE(made) << made.error().toStdString();
        EXPECT_EQ(made->first().wanted, tree.path(row.name));
        EXPECT_EQ(decoded(made->first().contents).size(), row.size) << row.name.toStdString();
    }
    auto converted = convertImage(source, resizedTo(longest(100), "jpeg"), cancel);
    ASSERT_TRUE(converted);
    EXPECT_EQ(converted->first().wanted, tree.path("wide (100 px).jpg"));
}

// Qt's PNG reader, asked for a smaller size, turns a two-colour (1-bit) picture into noise; the
// reader decodes such a picture whole and scales it after.
TEST(ImageConvert, ATwoColourPngKeepsItsColoursWhenResized)
{
    TempTree tree;
    QImage mono(300, 300, QImage::Format_Mono);
    mono.setColorTable({qRgb(255, 0, 0), qRgb(255, 255, 255)});
    mono.fill(0);
    for (int y = 0; y < 300; ++y)
        for (int x = 250; x < 300; ++x)
            mono.setPixel(x, y, 1);
    const FilePath source = tree.file("label.png", encoded(mono, "png"));
    CancelFlag cancel;
    auto made = convertImage(source, resizedTo(longest(96)), cancel);
    ASSERT_TRUE(made) << made.error().toStdString();
    const QImage small = decoded(made->first().contents);
    ASSERT_EQ(small.size(), QSize(96, 96));
    for (int y = 0; y < 96; y += 5)
        for (int x = 0; x < 70; x += 5)
            ASSERT_EQ(QColor(small.pixel(x, y)), QColor(Qt::red)) << x << "," << y;
    EXPECT_EQ(QColor(small.pixel(94, 48)), QColor(Qt::white));
}

TEST(ImageConvert, QualityIsTheWritersQuality)
{
    TempTree tree;
    QImage noise(200, 200, QImage::Format_RGB32);
    for (int y = 0; y < 200; ++y)
        for (int x = 0; x < 200; ++x)
            noise.setPixel(x, y, qRgb((x * 37 + y * 11) % 256, (x * y) % 256, (x ^ y) % 256));
    const FilePath source = tree.file("noise.png", encoded(noise, "png"));
    CancelFlag cancel;
    auto low = convertImage(source, to("jpeg", 20), cancel);
    auto high = convertImage(source, to("jpeg", 95), cancel);
    ASSERT_TRUE(low && high);
    EXPECT_LT(low->first().contents.size(), high->first().contents.size());
}

TEST(ImageConvert, TransparencyBecomesWhiteInJpeg)
{
    TempTree tree;
    QImage clear(20, 20, QImage::Format_ARGB32);
    clear.fill(Qt::transparent);
    const FilePath source = tree.file("clear.png", encoded(clear, "png"));
    CancelFlag cancel;
    auto made = convertImage(source, to("jpeg"), cancel);
    ASSERT_TRUE(made) << made.error().toStdString();
    EXPECT_TRUE(near(decoded(made->first().contents).pixelColor(10, 10), Qt::white));
}

TEST(ImageConvert, AnAnimationGivesItsFirstFrameAndSaysSo)
{
    TempTree tree;
    const FilePath gif = tree.file("moving.gif", twoFrameGif());
    const FilePath still = tree.file("still.png", encoded(halves({4, 4}, Qt::red, Qt::red), "png"));
    EXPECT_TRUE(isAnimated(gif));
    EXPECT_TRUE(isAnimated(tree.file("moving.webp", twoFrameWebp())));
    EXPECT_FALSE(isAnimated(still));
    EXPECT_FALSE(isAnimated(tree.file("still.webp", encoded(halves({4, 4}, Qt::red, Qt::red), "webp"))));
    CancelFlag cancel;
    auto made = convertImage(gif, to("png"), cancel);
    ASSERT_TRUE(made) << made.error().toStdString();
    EXPECT_EQ(made->first().wanted, tree.path("moving.png"));
    EXPECT_TRUE(near(decoded(made->first().contents).pixelColor(1, 1), Qt::red, 0));
    auto webp = convertImage(tree.path("moving.webp"), to("png"), cancel);
    ASSERT_TRUE(webp) << webp.error().toStdString();
    EXPECT_TRUE(near(decoded(webp->first().contents).pixelColor(1, 1), Qt::red, 0));
    // Resizing a GIF keeps what Qt can write: PNG.
    auto resized = convertImage(gif, resizedTo(longest(2)), cancel);
    ASSERT_TRUE(resized);
    EXPECT_EQ(resized->first().wanted, tree.path("moving (2 px).png"));
}

TEST(ImageConvert, DamagedPicturesFailWithTheirNames)
{
    TempTree tree;
    const QByteArray jpeg = encoded(halves({300, 200}, Qt::red, Qt::blue), "jpeg", 90);
    const FilePath cut = tree.file("cut.jpg", jpeg.left(jpeg.size() * 2 / 3));
    const FilePath garbage = tree.file("garbage.png", QByteArray(500, 'x'));
    const QByteArray png = encoded(halves({300, 200}, Qt::red, Qt::blue), "png");
    const FilePath shortPng = tree.file("short.png", png.left(png.size() / 2));
    CancelFlag cancel;
    for (const FilePath& file : {cut, garbage, shortPng}) {
        auto made = convertImage(file, to("png"), cancel);
        ASSERT_FALSE(made) << file.fileName().toStdString();
        EXPECT_TRUE(made.error().startsWith("“" + file.fileName() + "” can’t be read: ")) << made.error().toStdString();
    }
    // A comment holding the end marker (as an EXIF thumbnail does) doesn't make a cut file whole.
    const QByteArray comment = QByteArray("\xFF\xFE\x00\x06\xFF\xD9\xFF\xD9", 8);
    const QByteArray commented = jpeg.left(2) + comment + jpeg.mid(2);
    auto cutWithComment = convertImage(tree.file("comment.jpg", commented.left(commented.size() * 2 / 3)), to("png"), cancel);
    ASSERT_FALSE(cutWithComment);
    EXPECT_EQ(cutWithComment.error(), u"“comment.jpg” can’t be read: the picture is cut short.");
    // The whole file still converts, and so does one with bytes after its end (some cameras').
    EXPECT_TRUE(convertImage(tree.file("whole.jpg", commented), to("png"), cancel));
    EXPECT_TRUE(convertImage(tree.file("trailing.jpg", jpeg + QByteArray(5000, 'z')), to("png"), cancel));
    auto missing = convertImage(tree.path("gone.png"), to("png"), cancel);
    ASSERT_FALSE(missing);
    EXPECT_EQ(missing.error(), u"“gone.png” can’t be read: it isn’t there any more.");
}

TEST(ImageConvert, AHugePictureIsRefusedBeforeDecoding)
{
    TempTree tree;
    const FilePath huge = tree.file("huge.png", pngClaiming({30000, 30000}));
    CancelFlag cancel;
    for (const ConvertOptions& options : {to("jpeg"), resizedTo(longest(1600))}) {
        auto made = convertImage(huge, options, cancel);
        ASSERT_FALSE(made);
        EXPECT_EQ(made.error(), u"“huge.png” is too large to work on: 30,000 × 30,000 pixels (Orwick decodes at most 67 megapixels at once).");
    }
}

TEST(ImageConvert, ALargeJpegResizesThroughAScaledRead)
{
    // 8,200 × 8,200 is more than one read decodes whole, but an eighth of it is little.
    TempTree tree;
    QImage gray(8200, 8200, QImage::Format_Grayscale8);
    gray.fill(128);
    const FilePath large = tree.file("large.jpg", encoded(gray, "jpeg", 50));
    gray = {};
    CancelFlag cancel;
    EXPECT_FALSE(convertImage(large, to("png"), cancel));
    auto resized = convertImage(large, resizedTo(longest(1000)), cancel);
    ASSERT_TRUE(resized) << resized.error().toStdString();
    EXPECT_EQ(decoded(resized->first().contents).size(), QSize(1000, 1000));
}

TEST(ImageConvert, InPlaceKeepsTheFormatTheNameSays)
{
    TempTree tree;
    const FilePath jpeg = tree.file("photo.jpg", encoded(halves({100, 50}, Qt::red, Qt::blue), "jpeg", 95));
    CancelFlag cancel;
    auto smaller = convertedBytes(jpeg, resizedTo(longest(50)), cancel);
    ASSERT_TRUE(smaller) << smaller.error().toStdString();
    EXPECT_EQ(decoded(*smaller).size(), QSize(50, 25));
    auto requality = convertedBytes(jpeg, to("jpeg", 30), cancel);
    ASSERT_TRUE(requality) << requality.error().toStdString();

    auto other = convertedBytes(jpeg, to("png"), cancel);
    ASSERT_FALSE(other);
    EXPECT_EQ(other.error(), u"“photo.jpg” can’t become PNG in place: its name says it is JPG. Convert it beside the original instead.");
    auto gif = convertedBytes(tree.file("moving.gif", twoFrameGif()), resizedTo(longest(2)), cancel);
    ASSERT_FALSE(gif);
    EXPECT_EQ(gif.error(), u"“moving.gif” can’t be resized in place: Orwick can’t write GIF pictures.");
}

TEST(ImageConvert, CancelledBeforeDecodingMakesNothing)
{
    TempTree tree;
    const FilePath source = tree.file("photo.png", encoded(halves({10, 10}, Qt::red, Qt::blue), "png"));
    CancelFlag cancel;
    cancel.cancel();
    auto made = convertImage(source, to("jpeg"), cancel);
    ASSERT_FALSE(made);
    EXPECT_TRUE(made.error().isEmpty());
}

} // namespace
} // namespace orwick::test

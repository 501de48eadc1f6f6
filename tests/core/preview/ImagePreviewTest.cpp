// Pictures: sizes, EXIF orientation, decoding to the shown size, huge and damaged files.

#include "preview/ImageDecode.h"
#include "preview/PreviewLoader.h"
#include "support/ExifPictures.h"
#include "support/TempHome.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <gtest/gtest.h>

using namespace orwick;
using Kind = PreviewContent::Kind;

namespace {

PreviewContent load(const FilePath& path, QSize box = {800, 800})
{
    CancelFlag cancel;
    return loadPreview({path, box, Qt::black, {}}, cancel);
}

FilePath savedImage(const test::TempTree& tree, const QString& name, QSize size, const char* format = nullptr)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::blue);
    const FilePath path = tree.path(name);
    EXPECT_TRUE(image.save(path.text(), format));
    return path;
}

quint32 crc32(QByteArrayView bytes)
{
    quint32 crc = 0xFFFFFFFF;
    for (const char byte : bytes) {
        crc ^= quint8(byte);
        for (int k = 0; k < 8; ++k)
            crc = (crc >> 1) ^ (0xEDB88320 & (0 - (crc & 1)));
    }
    return ~crc;
}

} // namespace

TEST(ImagePreview, DecodesToFitTheBoxTellsTheFullSizeAndNeverEnlarges)
{
    test::TempTree tree;
    const PreviewContent content = load(savedImage(tree, "wide.png", {1600, 400}), {800, 800});
    ASSERT_EQ(content.kind, Kind::image);
    EXPECT_EQ(content.image.size(), QSize(800, 200));
    EXPECT_EQ(content.pixelSize, QSize(1600, 400));
    EXPECT_EQ(content.details.first(), "1,600 × 400");
    // A small picture is not enlarged.
    const PreviewContent small = load(savedImage(tree, "icon.png", {32, 16}));
    EXPECT_EQ(small.image.size(), QSize(32, 16));
    // The header's size is read without decoding.
    const auto size = preview::imageSize(savedImage(tree, "a.png", {30, 20}));
    ASSERT_TRUE(size);
    EXPECT_EQ(size->first, QSize(30, 20));
    EXPECT_EQ(size->second, "png");
}

TEST(ImagePreview, ExifOrientationTurnsThePictureUpright)
{
    test::TempTree tree;
    QImage image(400, 200, QImage::Format_RGB32);
    image.fill(Qt::green);
    const FilePath path = tree.path("photo.jpg");
    QImageWriter writer(path.text(), "jpeg");
    writer.setTransformation(QImageIOHandler::TransformationRotate90);
    ASSERT_TRUE(writer.write(image)) << writer.errorString().toStdString();
    const PreviewContent content = load(path, {100, 100});
    ASSERT_EQ(content.kind, Kind::image);
    EXPECT_EQ(content.pixelSize, QSize(200, 400));
    EXPECT_EQ(content.image.size(), QSize(50, 100));
    EXPECT_EQ(content.details.first(), "200 × 400");
}

TEST(ImagePreview, APngOrWebpTurnedByItsExifShowsUprightWithItsUprightSize)
{
    test::TempTree tree;
    QImage image(400, 200, QImage::Format_RGB32);
    image.fill(Qt::blue);
    for (int y = 0; y < 80; ++y)
        for (int x = 0; x < 80; ++x)
            image.setPixel(x, y, qRgb(255, 0, 0)); // top left, shown top right
    for (const char* format : {"png", "webp"}) {
        SCOPED_TRACE(format);
        if (!QImageWriter::supportedImageFormats().contains(format)) {
            ADD_FAILURE() << "Qt can't write " << format << " here";
            continue;
        }
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        ASSERT_TRUE(image.save(&buffer, format, 100));
        const FilePath path = tree.file(QStringLiteral("sideways.%1").arg(QLatin1String(format)),
                                        test::withExif(bytes, test::exifOrientationBlock(6)));
        const PreviewContent content = load(path, {100, 100});
        ASSERT_EQ(content.kind, Kind::image) << content.message.toStdString();
        EXPECT_EQ(content.pixelSize, QSize(200, 400));
        EXPECT_EQ(content.details.first(), "200 × 400");
        ASSERT_EQ(content.image.size(), QSize(50, 100));
        EXPECT_EQ(QColor(content.image.pixel(45, 5)), QColor(Qt::red));
        EXPECT_EQ(QColor(content.image.pixel(5, 5)), QColor(Qt::blue));
        const auto size = preview::imageSize(path);
        ASSERT_TRUE(size);
        EXPECT_EQ(size->first, QSize(200, 400));
    }
}

TEST(ImagePreview, AHugePictureIsRefusedWithItsSizeWithoutDecoding)
{
    test::TempTree tree;
    // A real small PNG whose header claims 20,000 × 20,000 pixels.
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(Qt::white);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    ASSERT_TRUE(image.save(&buffer, "png"));
    const qsizetype ihdr = png.indexOf("IHDR");
    ASSERT_GT(ihdr, 0);
    for (int i = 0; i < 2; ++i) {
        const quint32 side = 20000;
        for (int b = 0; b < 4; ++b)
            png[ihdr + 4 + i * 4 + b] = char((side >> (24 - 8 * b)) & 0xFF);
    }
    const quint32 crc = crc32(QByteArrayView(png).sliced(ihdr, 17));
    for (int b = 0; b < 4; ++b)
        png[ihdr + 17 + b] = char((crc >> (24 - 8 * b)) & 0xFF);
    const PreviewContent content = load(tree.file("huge.png", png));
    EXPECT_EQ(content.kind, Kind::message);
    EXPECT_EQ(content.message, "Too large to preview");
    ASSERT_FALSE(content.details.isEmpty());
    EXPECT_EQ(content.details.first(), "20,000 × 20,000");
}

TEST(ImagePreview, ATruncatedPictureOrTextNamedLikeAPictureGivesAMessage)
{
    test::TempTree tree;
    const FilePath whole = savedImage(tree, "whole.png", {300, 300});
    const QByteArray bytes = test::readAll(whole);
    const PreviewContent content = load(tree.file("cut.png", bytes.left(60)));
    EXPECT_EQ(content.kind, Kind::message);
    EXPECT_EQ(content.message, "“cut.png” can’t be shown: the picture is damaged or in a format Orwick can’t read.");
    // So does text named like a picture.
    EXPECT_EQ(load(tree.file("fake.jpg", "not a picture")).kind, Kind::message);
}

// 36 megapixels decode to 144 MB, over Qt's own 128 MiB limit for one read but within the
// preview's 40 megapixels. WebP decodes whole before it is scaled (PNG and JPEG scale while
// reading), so the preview raises the limit itself, as the picture tools do.
TEST(ImagePreview, APictureJustUnderThePreviewsLimitIsShown)
{
    if (!QImageReader::supportedImageFormats().contains("webp"))
        GTEST_SKIP() << "Qt's WebP plugin isn't installed (qt6-image-formats-plugins)";
    test::TempTree tree;
    ASSERT_LE(qint64(8000) * 4500, PreviewLimits{}.maxPixels);
    const FilePath path = savedImage(tree, "panorama.webp", {8000, 4500}, "webp"); // one colour: a small file
    QImageReader::setAllocationLimit(128); // Qt's default, as a process starts with it
    const PreviewContent content = load(path, {800, 800});
    ASSERT_EQ(content.kind, Kind::image) << content.message.toStdString();
    EXPECT_EQ(content.pixelSize, QSize(8000, 4500));
    EXPECT_EQ(content.image.size(), QSize(800, 450));
    EXPECT_EQ(content.image.pixelColor(400, 225).blue(), 255);
}

// Qt shows a JPEG cut short with a grey bottom; the preview says it is damaged instead.
TEST(ImagePreview, AJpegCutShortIsDamagedNotGrey)
{
    test::TempTree tree;
    const FilePath whole = savedImage(tree, "whole.jpg", {300, 200}, "jpeg");
    const QByteArray bytes = test::readAll(whole);
    ASSERT_EQ(load(whole).kind, Kind::image);
    const PreviewContent content = load(tree.file("cut.jpg", bytes.left(bytes.size() * 2 / 3)));
    EXPECT_EQ(content.kind, Kind::message);
    EXPECT_EQ(content.message, "“cut.jpg” can’t be shown: the picture is damaged or in a format Orwick can’t read.");
    // Bytes after the end marker (some cameras write them) leave a whole picture whole.
    EXPECT_EQ(load(tree.file("trailing.jpg", bytes + QByteArray(3000, 'z'))).kind, Kind::image);
}

// Pictures read upright by their EXIF orientation in every format that carries one: PNG and WebP,
// which Qt leaves as stored, turned here; JPEG, which Qt turns, turned once; and EXIF that is
// damaged or says nonsense leaving the picture as stored, still read.

#include "TestPictures.h"
#include "images/Exiv2Access.h"
#include "images/ImageRead.h"
#include "images/LongestSide.h"
#include "images/UprightReader.h"

#include <QFile>
#include <QImageWriter>
#include <exiv2/exiv2.hpp>
#include <gtest/gtest.h>

namespace orwick::test {
namespace {

// 40 × 20, blue, with a red block in its top left corner (8 × 8, two fifths of the height): a
// quarter turn clockwise (orientation 6) shows it 20 × 40 with the block top right.
QImage markedPicture(QSize size = {40, 20})
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::blue);
    const int block = size.height() * 2 / 5;
    for (int y = 0; y < block; ++y)
        for (int x = 0; x < block; ++x)
            image.setPixel(x, y, qRgb(255, 0, 0));
    return image;
}

bool redAt(const QImage& image, int x, int y) { return near(image.pixelColor(x, y), Qt::red, 40); }

// Where the block is once the picture is read: "top left", "top right"…
std::string blockCorner(const QImage& image)
{
    const int right = image.width() - 3, bottom = image.height() - 3;
    std::string corners;
    for (const auto& [x, y, name] : {std::tuple{2, 2, "top left"}, {right, 2, "top right"}, {2, bottom, "bottom left"},
                                     {right, bottom, "bottom right"}})
        if (redAt(image, x, y))
            corners += corners.empty() ? name : std::string(" and ") + name;
    return corners.empty() ? "nowhere" : corners;
}

ReadPicture readWhole(const FilePath& file, const std::function<QSize(QSize)>& sizeFor = {})
{
    auto picture = readPicture(file, sizeFor, CancelFlag());
    EXPECT_TRUE(picture) << file.fileName().toStdString() << ": " << picture.error().toStdString();
    return picture.value_or(ReadPicture{});
}

QSize headerSize(const FilePath& file)
{
    const auto header = readPictureHeader(file);
    EXPECT_TRUE(header) << header.error().toStdString();
    return header ? header->size : QSize();
}

// Four quadrants of different colours: each of the eight orientations shows them differently.
QImage quadrants(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgb(x < size.width() / 2 ? 20 : 230, y < size.height() / 2 ? 40 : 200, 120));
    return image;
}

// The colour at the centre of each quadrant, clockwise from the top left.
QList<QColor> quadrantColours(const QImage& image)
{
    const int w = image.width(), h = image.height();
    return {image.pixelColor(w / 4, h / 4), image.pixelColor(3 * w / 4, h / 4), image.pixelColor(3 * w / 4, 3 * h / 4),
            image.pixelColor(w / 4, 3 * h / 4)};
}

bool webpWritable() { return QImageWriter::supportedImageFormats().contains("webp"); }

} // namespace

TEST(UprightReader, APngTurnedByItsExifChunkReadsUpright)
{
    TempTree tree;
    const FilePath png = tree.file("scan.png", withExif(encoded(markedPicture(), "png"), exifOrientationBlock(6)));
    EXPECT_EQ(headerSize(png), QSize(20, 40)) << "the size is told upright, as for a JPEG";
    const ReadPicture whole = readWhole(png);
    EXPECT_EQ(whole.size, QSize(20, 40));
    EXPECT_EQ(whole.image.size(), QSize(20, 40));
    EXPECT_EQ(blockCorner(whole.image), "top right");
    // A thumbnail's read: the size asked for is upright, the picture scaled to it.
    const ReadPicture small = readWhole(png, longestSideAtMost(20));
    EXPECT_EQ(small.image.size(), QSize(10, 20));
    EXPECT_TRUE(redAt(small.image, 8, 1)) << blockCorner(small.image);
}

TEST(UprightReader, AWebpTurnedByItsExifChunkReadsUpright)
{
    if (!webpWritable())
        GTEST_SKIP() << "Qt can't write WebP here";
    TempTree tree;
    for (const int quality : {100, 90}) { // lossless, lossy
        SCOPED_TRACE(quality);
        const QByteArray webp = withExif(encoded(markedPicture(), "webp", quality), exifOrientationBlock(6));
        const FilePath file = tree.file(QStringLiteral("photo-%1.webp").arg(quality), webp);
        ASSERT_FALSE(decoded(webp).isNull()) << "the test's extended WebP must be one Qt reads";
        EXPECT_EQ(decoded(webp).size(), QSize(40, 20)) << "Qt alone leaves a WebP as stored";
        EXPECT_EQ(headerSize(file), QSize(20, 40));
        const ReadPicture whole = readWhole(file);
        EXPECT_EQ(whole.image.size(), QSize(20, 40));
        EXPECT_EQ(blockCorner(whole.image), "top right");
    }
}

TEST(UprightReader, AJpegIsTurnedOnceAsQtTurnsIt)
{
    TempTree tree;
    const FilePath jpeg = tree.file("photo.jpg", withExifOrientation(encoded(markedPicture(), "jpeg", 95), 6));
    EXPECT_EQ(headerSize(jpeg), QSize(20, 40));
    const ReadPicture whole = readWhole(jpeg);
    EXPECT_EQ(whole.image.size(), QSize(20, 40));
    EXPECT_EQ(blockCorner(whole.image), "top right") << "turned once, not twice";
    // Decoded scaled while reading (libjpeg), in the stored orientation, then turned.
    const FilePath large = tree.file("large.jpg", withExifOrientation(encoded(markedPicture({800, 400}), "jpeg", 95), 6));
    const ReadPicture scaled = readWhole(large, longestSideAtMost(100));
    EXPECT_EQ(scaled.size, QSize(400, 800));
    EXPECT_EQ(scaled.image.size(), QSize(50, 100));
    EXPECT_EQ(blockCorner(scaled.image), "top right");
}

TEST(UprightReader, EveryOrientationShowsAPngAsQtShowsAJpeg)
{
    TempTree tree;
    const QImage picture = quadrants({60, 30});
    for (int orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(orientation);
        const QByteArray exif = exifOrientationBlock(orientation);
        const ReadPicture png = readWhole(tree.file(QStringLiteral("%1.png").arg(orientation), withExif(encoded(picture, "png"), exif)));
        const QImage jpeg = decoded(withExif(encoded(picture, "jpeg", 95), exif)); // Qt's own turn
        ASSERT_EQ(png.image.size(), jpeg.size());
        const QList<QColor> shown = quadrantColours(png.image), expected = quadrantColours(jpeg);
        for (int i = 0; i < 4; ++i)
            EXPECT_TRUE(near(shown[i], expected[i])) << "quadrant " << i << ": " << shown[i].name().toStdString()
                                                     << " where Qt shows " << expected[i].name().toStdString();
    }
}

TEST(UprightReader, ThePngTextChunkOtherToolsWriteIsReadToo)
{
    // exiv2 (and ImageMagick) keep a PNG's EXIF in a "Raw profile type exif" text chunk.
    TempTree tree;
    const FilePath png = tree.file("tagged.png", encoded(markedPicture(), "png"));
    exiv2::prepare();
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
    auto image = Exiv2::ImageFactory::open(png.native().toStdString());
#pragma GCC diagnostic pop
    image->readMetadata();
    image->exifData()["Exif.Image.Orientation"] = uint16_t(6);
    image->writeMetadata();
    ASSERT_FALSE(readAll(png).contains("eXIf"));
    EXPECT_EQ(headerSize(png), QSize(20, 40));
    EXPECT_EQ(blockCorner(readWhole(png).image), "top right");
}

TEST(UprightReader, DamagedOrMeaninglessExifLeavesThePictureAsStored)
{
    TempTree tree;
    const QByteArray png = encoded(markedPicture(), "png");
    static const char garbage[] = "MM\x00\x2A\xFF\xFF\xFF\x00 not a directory"; // with its zero bytes
    const struct {
        const char* name;
        QByteArray exif;
    } rows[] = {
        {"no EXIF", {}},
        {"garbage", QByteArray(garbage, sizeof garbage - 1)},
        {"cut short", exifOrientationBlock(6).left(13)},
        {"orientation 9", exifOrientationBlock(9)},
        {"orientation 0", exifOrientationBlock(0)},
        {"an empty chunk", QByteArray()},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const QByteArray bytes = row.name == std::string_view("no EXIF") ? png : withExif(png, row.exif);
        const FilePath file = tree.file(QStringLiteral("%1.png").arg(QString::fromLatin1(row.name)), bytes);
        EXPECT_EQ(headerSize(file), QSize(40, 20));
        const ReadPicture whole = readWhole(file);
        EXPECT_EQ(whole.image.size(), QSize(40, 20));
        EXPECT_EQ(blockCorner(whole.image), "top left");
    }
}

TEST(UprightReader, TurnsAsQtNamesEachOrientation)
{
    EXPECT_EQ(transformationOfOrientation(1), QImageIOHandler::TransformationNone);
    EXPECT_EQ(transformationOfOrientation(6), QImageIOHandler::TransformationRotate90);
    EXPECT_EQ(transformationOfOrientation(8), QImageIOHandler::TransformationRotate270);
    EXPECT_EQ(transformationOfOrientation(0), QImageIOHandler::TransformationNone);
    EXPECT_EQ(transformationOfOrientation(9), QImageIOHandler::TransformationNone);
    // Mirrored first, then turned a quarter clockwise, as Qt's readers do.
    const QImage turned = transformedImage(markedPicture(), QImageIOHandler::TransformationMirrorAndRotate90);
    EXPECT_EQ(turned.size(), QSize(20, 40));
    EXPECT_EQ(blockCorner(turned), "bottom right");
}

TEST(UprightReader, TheReaderSaysWhoseTurnItIs)
{
    TempTree tree;
    const FilePath png = tree.file("a.png", withExif(encoded(markedPicture(), "png"), exifOrientationBlock(6)));
    QFile file;
    ASSERT_TRUE(openPictureFile(file, png));
    UprightReader reader(file);
    EXPECT_EQ(reader.transformation(), QImageIOHandler::TransformationRotate90);
    EXPECT_EQ(reader.qt().size(), QSize(40, 20)) << "Qt's reader tells the stored size";
    const QImage image = reader.read();
    EXPECT_EQ(image.size(), QSize(20, 40));
    EXPECT_EQ(blockCorner(image), "top right");
}

} // namespace orwick::test

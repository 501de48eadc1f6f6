// Turning pictures made here: a JPEG's orientation composed and its compressed data left as it
// was, the pixels of other formats turned and their metadata kept, and the pictures that can't be
// turned, each failing with its name.

#include "TestPictures.h"
#include "images/Exiv2Access.h"
#include "images/ImageMetadata.h"
#include "images/ImageTurn.h"
#include "support/TaggedJpeg.h"

#include <QImageWriter>
#include <exiv2/exiv2.hpp>
#include <gtest/gtest.h>

namespace orwick::test {
namespace {

constexpr PictureTurn kTurns[] = {PictureTurn::left, PictureTurn::right, PictureTurn::flipHorizontal, PictureTurn::flipVertical};

// exiv2 0.27 hands pictures back in std::auto_ptr.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
std::unique_ptr<Exiv2::Image> metadataOf(const QByteArray& bytes)
{
    exiv2::prepare();
    auto image = Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(bytes.constData()), long(bytes.size()));
    image->readMetadata();
    return std::unique_ptr<Exiv2::Image>(image.release());
}

// Puts `tags` on the picture at `file` (any format exiv2 writes).
void tagFile(const FilePath& file, std::initializer_list<std::pair<const char*, const char*>> tags)
{
    exiv2::prepare();
    auto image = Exiv2::ImageFactory::open(file.native().toStdString());
    image->readMetadata();
    for (const auto& [key, value] : tags)
        image->exifData()[key] = value;
    image->writeMetadata();
}
#pragma GCC diagnostic pop

// The EXIF orientation the bytes say, 0 when they say none.
long orientationIn(const QByteArray& bytes)
{
    const auto image = metadataOf(bytes);
    const auto it = image->exifData().findKey(Exiv2::ExifKey("Exif.Image.Orientation"));
    return it == image->exifData().end() ? 0 : it->toLong();
}

long exifNumber(const QByteArray& bytes, const char* key)
{
    const auto image = metadataOf(bytes);
    const auto it = image->exifData().findKey(Exiv2::ExifKey(key));
    return it == image->exifData().end() ? -1 : it->toLong();
}

// Four quadrants of different colours and a gradient: every turn and mirror of it differs.
QImage quadrants(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y)
        for (int x = 0; x < size.width(); ++x) {
            const bool right = x >= size.width() / 2, bottom = y >= size.height() / 2;
            image.setPixel(x, y, qRgb(right ? 230 : 20, bottom ? 200 : 40, x * 255 / size.width()));
        }
    return image;
}

// Pixels in one format, for comparing pictures decoded from different files.
QImage rgb(const QImage& image) { return image.convertToFormat(QImage::Format_RGB32); }

QByteArray turned(const FilePath& file, PictureTurn turn)
{
    CancelFlag cancel;
    auto bytes = turnedBytes(file, turn, cancel);
    EXPECT_TRUE(bytes) << file.fileName().toStdString() << ": " << bytes.error().toStdString();
    return bytes.value_or(QByteArray());
}

TEST(ImageTurn, OrientationsComposeAsQtShowsThem)
{
    // The same compressed picture under each orientation: Qt's reader turns it as EXIF says, so
    // the composed orientation must show exactly the picture turned.
    const QByteArray jpeg = encoded(quadrants({48, 32}), "jpeg", 90);
    for (int orientation = 1; orientation <= 8; ++orientation) {
        const QImage shown = decoded(withExifOrientation(jpeg, orientation));
        for (const PictureTurn turn : kTurns) {
            const int composed = turnedOrientation(orientation, turn);
            EXPECT_EQ(rgb(decoded(withExifOrientation(jpeg, composed))), rgb(turnedImage(shown, turn)))
                << "orientation " << orientation << ", " << turnTitle(turn).toStdString() << " → " << composed;
        }
    }
}

TEST(ImageTurn, TheCommonTurnsGiveTheKnownOrientations)
{
    EXPECT_EQ(turnedOrientation(1, PictureTurn::right), 6);
    EXPECT_EQ(turnedOrientation(6, PictureTurn::right), 3);
    EXPECT_EQ(turnedOrientation(3, PictureTurn::right), 8);
    EXPECT_EQ(turnedOrientation(8, PictureTurn::right), 1);
    EXPECT_EQ(turnedOrientation(1, PictureTurn::left), 8);
    EXPECT_EQ(turnedOrientation(6, PictureTurn::left), 1);
    EXPECT_EQ(turnedOrientation(1, PictureTurn::flipHorizontal), 2);
    EXPECT_EQ(turnedOrientation(1, PictureTurn::flipVertical), 4);
    EXPECT_EQ(turnedOrientation(2, PictureTurn::flipHorizontal), 1);
    EXPECT_EQ(turnedOrientation(0, PictureTurn::right), 6) << "no orientation counts as upright";
    EXPECT_EQ(turnedOrientation(9, PictureTurn::left), 8);
}

TEST(ImageTurn, AJpegTurnsWithoutLosingAnything)
{
    TempTree tree;
    const QByteArray plain = encoded(quadrants({48, 32}), "jpeg", 90); // no EXIF at all
    const FilePath photo = tree.file("photo.jpg", plain);
    const QImage before = decoded(plain);

    const QByteArray right = turned(photo, PictureTurn::right);
    EXPECT_EQ(orientationIn(right), 6) << "EXIF was added to carry the turn";
    EXPECT_EQ(jpegScan(right), jpegScan(plain)) << "the compressed picture is byte for byte the same";
    EXPECT_EQ(rgb(decoded(right)), rgb(turnedImage(before, PictureTurn::right)));

    // Turned four times it is upright again, the pixels still untouched.
    QByteArray bytes = plain;
    for (int i = 0; i < 4; ++i) {
        tree.file("photo.jpg", bytes);
        bytes = turned(photo, PictureTurn::right);
    }
    EXPECT_EQ(orientationIn(bytes), 1);
    EXPECT_EQ(jpegScan(bytes), jpegScan(plain));
    EXPECT_EQ(rgb(decoded(bytes)), rgb(before));
}

TEST(ImageTurn, AJpegAlreadyTurnedComposesItsOrientation)
{
    TempTree tree;
    const QByteArray jpeg = encoded(quadrants({48, 32}), "jpeg", 90);
    const struct {
        int from;
        PictureTurn turn;
        int to;
    } rows[] = {{6, PictureTurn::right, 3}, {8, PictureTurn::right, 1}, {6, PictureTurn::left, 1}, {3, PictureTurn::flipVertical, 2}};
    for (const auto& row : rows) {
        const QByteArray source = withExifOrientation(jpeg, row.from);
        const FilePath photo = tree.file("turned.jpg", source);
        const QByteArray bytes = turned(photo, row.turn);
        EXPECT_EQ(orientationIn(bytes), row.to) << row.from << " " << turnTitle(row.turn).toStdString();
        EXPECT_EQ(jpegScan(bytes), jpegScan(source));
        EXPECT_EQ(rgb(decoded(bytes)), rgb(turnedImage(decoded(source), row.turn))) << "turned once from how it looked, not twice";
    }
}

TEST(ImageTurn, ATurnedPhotoKeepsItsCameraDateAndPlace)
{
    TempTree tree;
    const FilePath photo = cameraPhoto(tree.path(QStringLiteral("pier.jpg")));
    const auto before = readPhotoFacts(photo);
    ASSERT_TRUE(before) << before.error().toStdString();
    ASSERT_FALSE(before->camera.isEmpty());
    ASSERT_TRUE(before->taken.isValid());

    const QByteArray bytes = turned(photo, PictureTurn::right);
    const auto after = photoFactsOf(bytes, QStringLiteral("pier.jpg"));
    ASSERT_TRUE(after) << after.error().toStdString();
    EXPECT_EQ(after->camera, before->camera);
    EXPECT_EQ(after->taken, before->taken);
    EXPECT_EQ(after->location, before->location);
    EXPECT_EQ(orientationIn(bytes), 3);
}

TEST(ImageTurn, APngTurnsItsPixelsLosslesslyAndKeepsItsMetadata)
{
    TempTree tree;
    const QImage picture = quadrants({80, 40});
    const FilePath png = tree.file("plan.png", encoded(picture, "png"));
    tagFile(png, {{"Exif.Image.Model", "Scanner 3000"},
                  {"Exif.Photo.DateTimeOriginal", "2023:01:02 03:04:05"},
                  {"Exif.Photo.PixelXDimension", "80"},
                  {"Exif.Photo.PixelYDimension", "40"}});
    const auto before = readPhotoFacts(png);
    ASSERT_TRUE(before) << before.error().toStdString();

    const QByteArray right = turned(png, PictureTurn::right);
    const QImage shown = decoded(right);
    EXPECT_EQ(shown.size(), QSize(40, 80));
    EXPECT_EQ(rgb(shown), rgb(turnedImage(picture, PictureTurn::right))) << "every pixel, exactly";
    const auto after = photoFactsOf(right, QStringLiteral("plan.png"));
    ASSERT_TRUE(after) << after.error().toStdString();
    EXPECT_EQ(after->camera, before->camera);
    EXPECT_EQ(after->taken, before->taken);
    EXPECT_EQ(exifNumber(right, "Exif.Photo.PixelXDimension"), 40) << "the stored size follows the pixels";
    EXPECT_EQ(exifNumber(right, "Exif.Photo.PixelYDimension"), 80);
    EXPECT_EQ(orientationIn(right), 1);

    // Mirrored, the size stays.
    const QByteArray flipped = turned(png, PictureTurn::flipHorizontal);
    EXPECT_EQ(rgb(decoded(flipped)), rgb(picture.mirrored(true, false)));
}

TEST(ImageTurn, APngShownTurnedByItsOrientationTurnsFromHowItIsShown)
{
    TempTree tree;
    const QImage picture = quadrants({80, 40});
    const FilePath png = tree.file("sideways.png", withExif(encoded(picture, "png"), exifOrientationBlock(6)));
    // Shown a quarter clockwise; turned right once more it is upside down, its orientation 1.
    const QByteArray right = turned(png, PictureTurn::right);
    EXPECT_EQ(orientationIn(right), 1);
    EXPECT_EQ(rgb(decoded(right)), rgb(turnedImage(turnedImage(picture, PictureTurn::right), PictureTurn::right)))
        << "turned from how it was shown, by one quarter";
}

TEST(ImageTurn, ALosslessWebpStaysLosslessAndALossyOneLosesLittle)
{
    if (!QImageWriter::supportedImageFormats().contains("webp"))
        GTEST_SKIP() << "Qt can't write WebP here";
    TempTree tree;
    const QImage picture = quadrants({64, 32});
    const FilePath lossless = tree.file("lossless.webp", encoded(picture, "webp", 100));
    ASSERT_TRUE(encoded(picture, "webp", 100).contains("VP8L")) << "the test needs a lossless WebP";
    EXPECT_EQ(rgb(decoded(turned(lossless, PictureTurn::left))), rgb(turnedImage(picture, PictureTurn::left)));

    const FilePath lossy = tree.file("lossy.webp", encoded(picture, "webp", 80));
    const QByteArray bytes = turned(lossy, PictureTurn::left);
    EXPECT_FALSE(bytes.contains("VP8L"));
    const QImage shown = decoded(bytes);
    ASSERT_EQ(shown.size(), QSize(32, 64));
    // Turned left, the top right quadrant comes to the top left.
    EXPECT_TRUE(near(shown.pixelColor(4, 4), QColor(230, 40, 240)));
}

TEST(ImageTurn, PicturesThatCantBeTurnedFailWithTheirNames)
{
    TempTree tree;
    const QByteArray jpeg = encoded(quadrants({300, 200}), "jpeg", 90);
    const struct {
        FilePath file;
        QString error;
    } rows[] = {
        {tree.file("cut.jpg", jpeg.left(jpeg.size() * 2 / 3)), QStringLiteral("“cut.jpg” can’t be read: the picture is cut short.")},
        {tree.file("garbage.png", QByteArray(500, 'x')), QStringLiteral("“garbage.png” isn’t a picture Orwick can read.")},
        {tree.file("notes.txt", "words"), QStringLiteral("“notes.txt” isn’t a picture Orwick can read.")},
        {tree.file("moving.gif", twoFrameGif()), QStringLiteral("“moving.gif” can’t be turned: Orwick can’t write GIF pictures.")},
        {tree.file("moving.webp", twoFrameWebp()),
         QStringLiteral("“moving.webp” can’t be turned: it is an animation, and only its first frame would remain.")},
        {tree.file("png.jpg", encoded(quadrants({20, 10}), "png")),
         QStringLiteral("“png.jpg” can’t be turned in place: it holds a PNG picture under another name.")},
        {tree.path("gone.png"), QStringLiteral("“gone.png” is no longer there.")},
    };
    CancelFlag cancel;
    for (const auto& row : rows) {
        if (row.file.extension() == u"webp" && !QImageWriter::supportedImageFormats().contains("webp"))
            continue;
        auto bytes = turnedBytes(row.file, PictureTurn::right, cancel);
        ASSERT_FALSE(bytes) << row.file.fileName().toStdString();
        EXPECT_TRUE(bytes.error().startsWith(row.error)) << bytes.error().toStdString();
    }
}

TEST(ImageTurn, CancelledTurnsNothing)
{
    TempTree tree;
    const FilePath photo = tree.file("photo.jpg", encoded(quadrants({20, 10}), "jpeg", 90));
    CancelFlag cancel;
    cancel.cancel();
    auto bytes = turnedBytes(photo, PictureTurn::right, cancel);
    ASSERT_FALSE(bytes);
    EXPECT_TRUE(bytes.error().isEmpty());
}

} // namespace
} // namespace orwick::test

// Photo metadata on pictures the tests make: tagged with exiv2 here, read, stripped and read back
// with exiv2, the pixels compared before and after.

#include "TestPictures.h"
#include "images/Exiv2Access.h"
#include "images/ImageMetadata.h"
#include "support/TempHome.h"

#include <QColorSpace>
#include <QImage>
#include <QImageWriter>
#include <QtEndian>
#include <exiv2/exiv2.hpp>
#include <gtest/gtest.h>
#include <thread>

namespace orwick {
namespace {

using test::jpegScan;

// exiv2 0.27 hands pictures back in std::auto_ptr.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"
// The tests use exiv2 directly too: made ready first, as the workers need.
std::unique_ptr<Exiv2::Image> openWithExiv2(const FilePath& file)
{
    exiv2::prepare();
    auto image = Exiv2::ImageFactory::open(file.native().toStdString());
    image->readMetadata();
    return std::unique_ptr<Exiv2::Image>(image.release());
}

std::unique_ptr<Exiv2::Image> openWithExiv2(const QByteArray& bytes)
{
    exiv2::prepare();
    auto image = Exiv2::ImageFactory::open(reinterpret_cast<const Exiv2::byte*>(bytes.constData()), long(bytes.size()));
    image->readMetadata();
    return std::unique_ptr<Exiv2::Image>(image.release());
}
#pragma GCC diagnostic pop

QImage gradient()
{
    QImage image(64, 48, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x * 4, y * 5, (x + y) * 2));
    image.setColorSpace(QColorSpace::SRgb); // written as an ICC profile
    return image;
}

FilePath savePicture(const test::TempTree& tree, const QString& name, const char* format)
{
    const FilePath file = tree.path(name);
    QImageWriter writer(file.text(), format);
    EXPECT_TRUE(writer.write(gradient())) << writer.errorString().toStdString();
    return file;
}

// Camera, date, place (51°30'15" N, 0°7'30" W), a turned orientation, XMP, IPTC and a comment.
void tag(const FilePath& file, bool withComment = true)
{
    const auto image = openWithExiv2(file);
    Exiv2::ExifData& exif = image->exifData();
    exif["Exif.Image.Make"] = "Canon";
    exif["Exif.Image.Model"] = "Canon EOS R5";
    exif["Exif.Image.Orientation"] = uint16_t(6);
    exif["Exif.Photo.DateTimeOriginal"] = "2024:05:01 10:20:30";
    exif["Exif.GPSInfo.GPSVersionID"] = "2 3 0 0";
    exif["Exif.GPSInfo.GPSLatitudeRef"] = "N";
    exif["Exif.GPSInfo.GPSLatitude"] = "51/1 30/1 15/1";
    exif["Exif.GPSInfo.GPSLongitudeRef"] = "W";
    exif["Exif.GPSInfo.GPSLongitude"] = "0/1 7/1 30/1";
    Exiv2::XmpData& xmp = image->xmpData();
    xmp["Xmp.xmp.Rating"] = "4";
    xmp["Xmp.exif.GPSLatitude"] = "51,30.25N";
    xmp["Xmp.exif.GPSLongitude"] = "0,7.5W";
    xmp["Xmp.photoshop.City"] = "London";
    Exiv2::IptcData& iptc = image->iptcData();
    iptc["Iptc.Application2.Caption"] = "Harbour";
    iptc["Iptc.Application2.City"] = "London";
    if (withComment)
        image->setComment("taken on the pier");
    image->writeMetadata();
}

template <class Data>
std::vector<std::string> keysOf(const Data& data)
{
    std::vector<std::string> keys;
    for (const auto& datum : data)
        keys.push_back(datum.key());
    return keys;
}

template <class Data>
bool hasKeyStarting(const Data& data, const std::string& prefix)
{
    return std::ranges::any_of(data, [&](const auto& datum) { return datum.key().starts_with(prefix); });
}

// A PNG's compressed picture: its IDAT chunks' data, joined.
QByteArray pngPixels(const QByteArray& bytes)
{
    QByteArray pixels;
    for (qsizetype at = 8; at + 8 <= bytes.size();) {
        const quint32 length = qFromBigEndian<quint32>(bytes.constData() + at);
        if (bytes.mid(at + 4, 4) == "IDAT")
            pixels += bytes.mid(at + 8, length);
        at += 12 + length;
    }
    return pixels;
}

QImage decoded(const QByteArray& bytes) { return QImage::fromData(bytes).convertToFormat(QImage::Format_RGB32); }

TEST(ImageMetadata, ReadsCameraDateTakenPlaceAndGroups)
{
    test::TempTree tree;
    const FilePath photo = savePicture(tree, QStringLiteral("pier.jpg"), "jpeg");
    tag(photo);
    const auto facts = readPhotoFacts(photo);
    ASSERT_TRUE(facts.has_value()) << facts.error().toStdString();
    EXPECT_EQ(facts->camera, QStringLiteral("Canon EOS R5"));
    EXPECT_EQ(facts->taken, QDateTime(QDate(2024, 5, 1), QTime(10, 20, 30)));
    ASSERT_TRUE(facts->location.has_value());
    EXPECT_NEAR(facts->location->x(), 51.504167, 1e-5);
    EXPECT_NEAR(facts->location->y(), -0.125, 1e-5);
    EXPECT_EQ(facts->groups, (QStringList{"EXIF", "XMP", "IPTC", "ICC", "Comment"}));
}

TEST(ImageMetadata, NamesTheMakeOnlyWhenTheModelLeavesItOutAndReadsThePlaceFromXmpWhenExifHasNone)
{
    test::TempTree tree;
    const FilePath photo = savePicture(tree, QStringLiteral("a.jpg"), "jpeg");
    const FilePath png = savePicture(tree, QStringLiteral("x.png"), "png");
    {
        const auto image = openWithExiv2(photo);
        image->exifData()["Exif.Image.Make"] = "FUJIFILM";
        image->exifData()["Exif.Image.Model"] = "X-T4";
        image->exifData()["Exif.Photo.DateTimeOriginal"] = "2023:12:31 23:59:58";
        image->exifData()["Exif.Photo.OffsetTimeOriginal"] = "+09:00";
        image->writeMetadata();
        const auto xmp = openWithExiv2(png);
        xmp->xmpData()["Xmp.exif.GPSLatitude"] = "33,51.5S";
        xmp->xmpData()["Xmp.exif.GPSLongitude"] = "151,12,30E";
        xmp->writeMetadata();
    }
    const auto facts = readPhotoFacts(photo);
    ASSERT_TRUE(facts.has_value()) << facts.error().toStdString();
    EXPECT_EQ(facts->camera, QStringLiteral("FUJIFILM X-T4"));
    EXPECT_EQ(facts->taken.toUTC(), QDateTime(QDate(2023, 12, 31), QTime(14, 59, 58), Qt::UTC));
    EXPECT_FALSE(facts->location.has_value());
    const auto placed = readPhotoFacts(png);
    ASSERT_TRUE(placed.has_value()) << placed.error().toStdString();
    ASSERT_TRUE(placed->location.has_value());
    EXPECT_NEAR(placed->location->x(), -33.858333, 1e-5);
    EXPECT_NEAR(placed->location->y(), 151.208333, 1e-5);
    EXPECT_TRUE(placed->groups.contains(QStringLiteral("XMP")));
}

TEST(ImageMetadata, UprightPhotoLosesEveryExifTag)
{
    test::TempTree tree;
    const FilePath photo = savePicture(tree, QStringLiteral("up.jpg"), "jpeg");
    {
        const auto image = openWithExiv2(photo);
        image->exifData()["Exif.Image.Make"] = "Canon";
        image->exifData()["Exif.Image.Orientation"] = uint16_t(1);
        image->writeMetadata();
    }
    const auto stripped = strippedBytes(photo, MetadataStrip::everything, CancelFlag());
    ASSERT_TRUE(stripped.has_value()) << stripped.error().toStdString();
    EXPECT_TRUE(openWithExiv2(*stripped)->exifData().empty());
    const auto facts = photoFactsOf(*stripped, QStringLiteral("up.jpg"));
    ASSERT_TRUE(facts.has_value());
    EXPECT_EQ(facts->groups, QStringList{QStringLiteral("ICC")});
}

TEST(ImageMetadata, NothingToRemoveLeavesTheBytesAsTheyAre)
{
    test::TempTree tree;
    const FilePath photo = savePicture(tree, QStringLiteral("bare.jpg"), "jpeg");
    const QByteArray before = test::readAll(photo);
    for (const MetadataStrip what : {MetadataStrip::location, MetadataStrip::everything}) {
        const auto stripped = strippedBytes(photo, what, CancelFlag());
        ASSERT_TRUE(stripped.has_value()) << stripped.error().toStdString();
        EXPECT_EQ(*stripped, before);
    }
    {
        const auto image = openWithExiv2(photo);
        image->exifData()["Exif.Image.Make"] = "Canon";
        image->writeMetadata();
    }
    const auto located = strippedBytes(photo, MetadataStrip::location, CancelFlag());
    ASSERT_TRUE(located.has_value()) << located.error().toStdString();
    EXPECT_EQ(*located, test::readAll(photo)) << "no place, so nothing to rewrite";
}

// Stripping the place leaves no GPS and keeps everything else; stripping everything keeps only
// the turn (and the colour profile). The pixels stay as they were: JPEG's compressed scan and
// PNG's IDAT chunks byte for byte, WebP's decoded. The file itself is the engine's to write.
class StripFormats : public testing::TestWithParam<const char*> {};

TEST_P(StripFormats, StripLocationThenEverything)
{
    const QByteArray format = GetParam();
    if (!QImageWriter::supportedImageFormats().contains(format))
        GTEST_SKIP() << "Qt can't write " << format.constData() << " here (qt6-image-formats-plugins)";
    const bool jpeg = format == "jpeg";
    test::TempTree tree;
    const FilePath photo = savePicture(tree, QStringLiteral("pier.") + QString::fromLatin1(format), format.constData());
    tag(photo, /*withComment=*/jpeg);
    const QByteArray before = test::readAll(photo);
    ASSERT_TRUE(canStripMetadata(photo));
    const auto facts = readPhotoFacts(photo);
    ASSERT_TRUE(facts.has_value()) << facts.error().toStdString();
    ASSERT_TRUE(facts->location.has_value());

    const auto located = strippedBytes(photo, MetadataStrip::location, CancelFlag());
    ASSERT_TRUE(located.has_value()) << located.error().toStdString();
    EXPECT_EQ(test::readAll(photo), before);
    const auto image = openWithExiv2(*located);
    EXPECT_FALSE(hasKeyStarting(image->exifData(), "Exif.GPSInfo.")) << testing::PrintToString(keysOf(image->exifData()));
    EXPECT_FALSE(hasKeyStarting(image->xmpData(), "Xmp.exif.GPS"));
    EXPECT_TRUE(hasKeyStarting(image->exifData(), "Exif.Image.Model"));
    EXPECT_TRUE(hasKeyStarting(image->xmpData(), "Xmp.xmp.Rating"));
    if (jpeg) {
        EXPECT_FALSE(hasKeyStarting(image->exifData(), "Exif.Image.GPSTag"));
        EXPECT_FALSE(hasKeyStarting(image->xmpData(), "Xmp.photoshop.City"));
        EXPECT_FALSE(hasKeyStarting(image->iptcData(), "Iptc.Application2.City"));
        EXPECT_TRUE(hasKeyStarting(image->exifData(), "Exif.Photo.DateTimeOriginal"));
        EXPECT_TRUE(hasKeyStarting(image->exifData(), "Exif.Image.Orientation"));
        EXPECT_TRUE(hasKeyStarting(image->iptcData(), "Iptc.Application2.Caption"));
        EXPECT_EQ(image->comment(), "taken on the pier");
        EXPECT_EQ(jpegScan(*located), jpegScan(before));
    }

    const auto bare = strippedBytesOf(before, MetadataStrip::everything, photo.fileName(), CancelFlag());
    ASSERT_TRUE(bare.has_value()) << bare.error().toStdString();
    const auto bareImage = openWithExiv2(*bare);
    EXPECT_EQ(keysOf(bareImage->exifData()), std::vector<std::string>{"Exif.Image.Orientation"});
    EXPECT_TRUE(bareImage->xmpData().empty());
    EXPECT_TRUE(bareImage->iptcData().empty());
    EXPECT_FALSE(bare->contains("Canon"));
    if (jpeg) {
        EXPECT_TRUE(bareImage->xmpPacket().empty());
        EXPECT_TRUE(bareImage->comment().empty());
        EXPECT_TRUE(bareImage->iccProfileDefined());
        EXPECT_FALSE(bare->contains("London"));
        EXPECT_LT(bare->size(), before.size());
        EXPECT_FALSE(jpegScan(before).isEmpty());
        EXPECT_EQ(jpegScan(*bare), jpegScan(before));
    }

    const auto bareFacts = photoFactsOf(*bare, photo.fileName());
    ASSERT_TRUE(bareFacts.has_value()) << bareFacts.error().toStdString();
    EXPECT_EQ(bareFacts->groups.contains(QStringLiteral("ICC")), facts->groups.contains(QStringLiteral("ICC")));
    EXPECT_FALSE(bareFacts->location.has_value());
    EXPECT_TRUE(bareFacts->camera.isEmpty());

    EXPECT_EQ(decoded(*bare), decoded(before));
    EXPECT_EQ(decoded(*located), decoded(before));
    if (format == "png") {
        EXPECT_EQ(pngPixels(*bare), pngPixels(before));
        EXPECT_FALSE(pngPixels(before).isEmpty());
    }
}

INSTANTIATE_TEST_SUITE_P(ImageMetadata, StripFormats, testing::Values("jpeg", "png", "webp"));

TEST(ImageMetadata, CorruptJpegFailsWithItsName)
{
    test::TempTree tree;
    const FilePath photo = savePicture(tree, QStringLiteral("pier.jpg"), "jpeg");
    tag(photo);
    const QByteArray whole = test::readAll(photo);
    // Cut inside the EXIF segment, which says it is longer than what is left.
    const FilePath cut = tree.file("cut short.jpg", whole.left(300));
    const auto facts = readPhotoFacts(cut);
    ASSERT_FALSE(facts.has_value());
    EXPECT_TRUE(facts.error().contains(QStringLiteral("“cut short.jpg”"))) << facts.error().toStdString();
    const auto stripped = strippedBytes(cut, MetadataStrip::everything, CancelFlag());
    ASSERT_FALSE(stripped.has_value());
    EXPECT_TRUE(stripped.error().startsWith(QStringLiteral("Couldn’t remove the metadata of “cut short.jpg”: ")))
        << stripped.error().toStdString();

    const FilePath garbage = tree.file("garbage.jpg", QByteArray("\xFF\xD8\xFF\xE1\xFF\xFF", 6) + QByteArray(64, '\x07'));
    const auto garbled = strippedBytes(garbage, MetadataStrip::location, CancelFlag());
    ASSERT_FALSE(garbled.has_value());
    EXPECT_TRUE(garbled.error().contains(QStringLiteral("“garbage.jpg”"))) << garbled.error().toStdString();
}

TEST(ImageMetadata, FileThatIsNoPictureSaysSo)
{
    test::TempTree tree;
    const FilePath notes = tree.file("notes.jpg", "just some words\n");
    EXPECT_FALSE(canStripMetadata(notes));
    const auto facts = readPhotoFacts(notes);
    ASSERT_FALSE(facts.has_value());
    EXPECT_EQ(facts.error(), QStringLiteral("“notes.jpg” isn’t a picture whose metadata Orwick can read."));
    const auto stripped = strippedBytes(notes, MetadataStrip::everything, CancelFlag());
    ASSERT_FALSE(stripped.has_value());
    EXPECT_EQ(stripped.error(), facts.error());

    const auto missing = readPhotoFacts(tree.path(QStringLiteral("gone.jpg")));
    ASSERT_FALSE(missing.has_value());
    EXPECT_EQ(missing.error(), QStringLiteral("“gone.jpg” is no longer there."));
    EXPECT_FALSE(readPhotoFacts(tree.folder(QStringLiteral("album.jpg"))).has_value());
}

TEST(ImageMetadata, FormatsExiv2OnlyReadsAreNotOffered)
{
    test::TempTree tree;
    const FilePath bitmap = savePicture(tree, QStringLiteral("plain.bmp"), "bmp");
    EXPECT_FALSE(canStripMetadata(bitmap));
    EXPECT_TRUE(readPhotoFacts(bitmap).has_value());
    const auto stripped = strippedBytes(bitmap, MetadataStrip::everything, CancelFlag());
    ASSERT_FALSE(stripped.has_value());
    EXPECT_TRUE(stripped.error().contains(QStringLiteral("only JPEG, PNG and WebP"))) << stripped.error().toStdString();
    EXPECT_FALSE(canStripMetadata(savePicture(tree, QStringLiteral("scan.tiff"), "tiff")));
    EXPECT_TRUE(canStripMetadata(savePicture(tree, QStringLiteral("p.jpg"), "jpeg")));
}

TEST(ImageMetadata, CancelledStripFailsQuietly)
{
    test::TempTree tree;
    const FilePath photo = savePicture(tree, QStringLiteral("pier.jpg"), "jpeg");
    CancelFlag cancel;
    cancel.cancel();
    const auto stripped = strippedBytes(photo, MetadataStrip::everything, cancel);
    ASSERT_FALSE(stripped.has_value());
    EXPECT_TRUE(stripped.error().isEmpty());
}

TEST(ImageMetadata, WorkersStripDifferentPhotosAtOnce)
{
    test::TempTree tree;
    std::vector<FilePath> photos;
    for (int i = 0; i < 8; ++i) {
        photos.push_back(savePicture(tree, QStringLiteral("p%1.jpg").arg(i), "jpeg"));
        tag(photos.back());
    }
    std::vector<Result<QByteArray>> results(photos.size());
    {
        std::vector<std::jthread> workers;
        for (size_t i = 0; i < photos.size(); ++i)
            workers.emplace_back([&, i] { results[i] = strippedBytes(photos[i], MetadataStrip::location, CancelFlag()); });
    }
    for (const auto& result : results) {
        ASSERT_TRUE(result.has_value()) << result.error().toStdString();
        EXPECT_FALSE(hasKeyStarting(openWithExiv2(*result)->xmpData(), "Xmp.exif.GPS"));
    }
}

} // namespace
} // namespace orwick

// orwick-cli image strip, run as the built program on photos the test makes and tags with exiv2:
// the location or everything goes, what was asked is counted, and a file that isn't a picture
// is said with its name and turns the exit status to 1.

#include "CliRun.h"
#include "images/ImageMetadata.h"
#include "support/TaggedJpeg.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

namespace orwick::test {
namespace {

// A small JPEG with a camera and a place.
FilePath taggedPhoto(const TempTree& tree, const QString& name)
{
    return taggedJpeg(tree.path(name), {{"Exif.Image.Make", "Canon"},
                                        {"Exif.Image.Model", "Canon EOS R5"},
                                        {"Exif.GPSInfo.GPSLatitudeRef", "N"},
                                        {"Exif.GPSInfo.GPSLatitude", "51/1 30/1 0/1"},
                                        {"Exif.GPSInfo.GPSLongitudeRef", "W"},
                                        {"Exif.GPSInfo.GPSLongitude", "0/1 7/1 0/1"}});
}

PhotoFacts factsOf(const FilePath& file)
{
    const auto facts = readPhotoFacts(file);
    EXPECT_TRUE(facts.has_value()) << facts.error().toStdString();
    return facts.value_or(PhotoFacts{});
}

TEST(CliImageStripTest, LocationGoesAndTheCameraStaysAndNoFileIsAUsageError)
{
    TempTree tree;
    const FilePath photo = taggedPhoto(tree, QStringLiteral("pier.jpg"));
    ASSERT_TRUE(factsOf(photo).location.has_value());

    const CliRun run = runCli({"image", "strip", photo.native(), "--location"});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.out, "Removed the location from pier.jpg\n");
    const PhotoFacts facts = factsOf(photo);
    EXPECT_FALSE(facts.location.has_value());
    EXPECT_EQ(facts.camera, QStringLiteral("Canon EOS R5"));

    const CliRun none = runCli({"image", "strip", "--location"});
    EXPECT_EQ(none.status, 2);
    EXPECT_TRUE(none.err.contains("image strip FILE... [--location]")) << none.err.toStdString();
}

TEST(CliImageStripTest, EverythingGoesAndWhatIsNoPictureIsSaid)
{
    TempTree tree;
    const FilePath first = taggedPhoto(tree, QStringLiteral("one.jpg"));
    const FilePath second = taggedPhoto(tree, QStringLiteral("two.jpg"));
    const FilePath notes = tree.file("notes.txt", "words\n");

    const CliRun run = runCli({"image", "strip", first.native(), notes.native(), second.native()});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "Removed metadata from 2 of 3 pictures; 1 failed\n");
    EXPECT_TRUE(run.err.contains("“notes.txt” isn’t a picture")) << run.err.toStdString();
    for (const FilePath& photo : {first, second}) {
        const PhotoFacts facts = factsOf(photo);
        EXPECT_TRUE(facts.camera.isEmpty());
        EXPECT_FALSE(facts.location.has_value());
        EXPECT_FALSE(facts.groups.contains(QStringLiteral("EXIF")));
    }
    EXPECT_EQ(readAll(notes), "words\n");
}

} // namespace
} // namespace orwick::test

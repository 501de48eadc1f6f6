// orwick-cli image rotate and flip, run as the built program on pictures the test makes: a JPEG
// turned through its orientation alone, a PNG through its pixels, what was asked counted, and a
// file that isn't a picture said with its name, turning the exit status to 1.

#include "CliRun.h"
#include "support/TaggedJpeg.h"
#include "support/TempHome.h"

#include <QImage>
#include <QImageReader>
#include <gtest/gtest.h>

namespace orwick::test {
namespace {

// How the picture shows: its size once its orientation turned it upright.
QSize shownSize(const FilePath& file)
{
    QImageReader reader(file.text());
    reader.setAutoTransform(true);
    return reader.read().size();
}

TEST(CliImageTurnTest, RotatesAJpegAndFlipsAPngInPlace)
{
    TempTree tree;
    const FilePath photo = taggedJpeg(tree.path(QStringLiteral("pier.jpg")), {{"Exif.Image.Model", "Canon EOS R5"}});
    ASSERT_EQ(shownSize(photo), QSize(32, 24));
    const CliRun right = runCli({"image", "rotate", "right", photo.native()});
    EXPECT_EQ(right.status, 0) << right.err.toStdString();
    EXPECT_EQ(right.out, "Rotated pier.jpg\n");
    EXPECT_EQ(shownSize(photo), QSize(24, 32));

    QImage picture(40, 20, QImage::Format_RGB32);
    picture.fill(Qt::white);
    picture.setPixel(0, 0, qRgb(255, 0, 0));
    const FilePath plan = tree.path("plan.png");
    ASSERT_TRUE(picture.save(plan.text(), "PNG"));
    const CliRun flip = runCli({"image", "flip", "vertical", plan.native()});
    EXPECT_EQ(flip.status, 0) << flip.err.toStdString();
    EXPECT_EQ(flip.out, "Flipped plan.png\n");
    EXPECT_EQ(QImage(plan.text()).pixel(0, 19), qRgb(255, 0, 0)) << "the top left corner went to the bottom";
}

TEST(CliImageTurnTest, WhatIsNoPictureIsSaidAndAWrongWayIsAUsageError)
{
    TempTree tree;
    const FilePath photo = taggedJpeg(tree.path(QStringLiteral("one.jpg")), {{"Exif.Image.Model", "Canon EOS R5"}});
    const FilePath notes = tree.file("notes.txt", "words\n");
    const CliRun run = runCli({"image", "rotate", "left", photo.native(), notes.native()});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.out, "Rotated 1 of 2 pictures; 1 failed\n");
    EXPECT_TRUE(run.err.contains("“notes.txt” isn’t a picture Orwick can read.")) << run.err.toStdString();
    EXPECT_EQ(shownSize(photo), QSize(24, 32));
    EXPECT_EQ(readAll(notes), "words\n");

    const CliRun sideways = runCli({"image", "rotate", "sideways", photo.native()});
    EXPECT_EQ(sideways.status, 2);
    EXPECT_TRUE(sideways.err.contains("image rotate left|right FILE...")) << sideways.err.toStdString();
    const CliRun none = runCli({"image", "flip", "horizontal"});
    EXPECT_EQ(none.status, 2);
}

} // namespace
} // namespace orwick::test

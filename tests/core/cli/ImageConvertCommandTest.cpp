// orwick-cli image convert / resize / sets, run as the built program on pictures made here:
// the files made are printed one per line, a picture that can't be read is said on standard
// error with its name while the others go on, in place keeps the name, and usage errors exit 2.

#include "CliRun.h"
#include "support/TempHome.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>
#include <gtest/gtest.h>

namespace orwick::test {
namespace {

QByteArray encoded(QSize size, const QByteArray& format)
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::darkCyan);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter(&buffer, format).write(image);
    return bytes;
}

QSize sizeOf(const FilePath& file)
{
    QImageReader reader(file.text());
    return reader.size();
}

QByteArray formatOf(const FilePath& file)
{
    QImageReader reader(file.text());
    return reader.format();
}

TEST(ImageConvertCommand, ConvertsEachPictureBesideItAndPrintsWhatItMade)
{
    TempTree tree;
    const FilePath a = tree.file("a.jpg", encoded({64, 32}, "jpeg"));
    const FilePath b = tree.file("b.png", encoded({20, 40}, "png"));
    tree.file("a.png", "taken"); // the engine makes the name free

    CliRun run = runCli({"image", "convert", a.native(), b.native(), "--to", "PNG"});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.outLines(), (QList<QByteArray>{tree.path("a 2.png").native(), tree.path("b 2.png").native()}));
    EXPECT_EQ(sizeOf(tree.path("a 2.png")), QSize(64, 32));
    EXPECT_EQ(formatOf(tree.path("a 2.png")), "png");
    EXPECT_EQ(readAll(tree.path("a.png")), "taken");

    CliRun jpeg = runCli({"image", "convert", b.native(), "--to", "jpg", "--quality", "80"});
    EXPECT_EQ(jpeg.status, 0) << jpeg.err.toStdString();
    EXPECT_EQ(jpeg.outLines(), QList<QByteArray>{tree.path("b.jpg").native()});
    EXPECT_EQ(formatOf(tree.path("b.jpg")), "jpeg");

    // In place refuses a format the name doesn't say.
    const QByteArray bytes = readAll(a);
    run = runCli({"image", "convert", a.native(), "--to", "png", "--in-place"});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.outLines().isEmpty());
    EXPECT_TRUE(run.err.contains("“a.jpg” can’t become PNG in place")) << run.err.toStdString();
    EXPECT_EQ(readAll(a), bytes);
}

TEST(ImageConvertCommand, ResizesToTheLongestSide)
{
    TempTree tree;
    const FilePath photo = tree.file("photo.jpg", encoded({400, 300}, "jpeg"));
    CliRun run = runCli({"image", "resize", photo.native(), "--longest", "100"});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    const FilePath made = tree.path("photo (100 px).jpg");
    EXPECT_EQ(run.outLines(), QList<QByteArray>{made.native()});
    EXPECT_EQ(sizeOf(made), QSize(100, 75));
    EXPECT_EQ(sizeOf(photo), QSize(400, 300));

    CliRun inPlace = runCli({"image", "resize", photo.native(), "--longest", "200", "--in-place"});
    EXPECT_EQ(inPlace.status, 0) << inPlace.err.toStdString();
    EXPECT_EQ(inPlace.outLines(), QList<QByteArray>{photo.native()});
    EXPECT_EQ(sizeOf(photo), QSize(200, 150));
}

TEST(ImageConvertCommand, MakesImageSets)
{
    TempTree tree;
    const FilePath icon = tree.file("icon@2x.png", encoded({31, 17}, "png"));
    CliRun run = runCli({"image", "sets", icon.native()});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(run.outLines(), QList<QByteArray>{tree.path("icon@1x.png").native()});
    EXPECT_EQ(sizeOf(tree.path("icon@1x.png")), QSize(16, 9));
}

TEST(ImageConvertCommand, APictureThatCantBeReadFailsAndTheOthersGoOn)
{
    TempTree tree;
    const FilePath good = tree.file("good.png", encoded({10, 10}, "png"));
    const FilePath bad = tree.file("bad.png", "not a picture at all");
    CliRun run = runCli({"image", "convert", bad.native(), good.native(), tree.path("missing.png").native(), "--to", "jpeg"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.outLines(), QList<QByteArray>{tree.path("good.jpg").native()});
    const QByteArray errors = run.err;
    EXPECT_TRUE(errors.contains("“bad.png” can’t be read")) << errors.toStdString();
    EXPECT_TRUE(errors.contains("/missing.png” isn’t there.")) << errors.toStdString();
    EXPECT_FALSE(exists(tree.path("bad.jpg")));
}

TEST(ImageConvertCommand, UsageErrorsExitTwo)
{
    TempTree tree;
    const FilePath photo = tree.file("photo.png", encoded({10, 10}, "png"));
    const QList<QList<QByteArray>> wrong{
        {"image", "convert", photo.native()},                               // no --to
        {"image", "convert", photo.native(), "--to", "gif"},                // Qt doesn't write it
        {"image", "convert", photo.native(), "--to", "png", "--quality", "101"},
        {"image", "resize", photo.native(), "--longest", "0"},
        {"image", "resize", photo.native(), "--longest", "10", "--to", "png"}, // not resize's
        {"image", "sets", photo.native(), "--in-place"},
        {"image", "sets"},
    };
    for (const auto& arguments : wrong) {
        CliRun run = runCli(arguments);
        EXPECT_EQ(run.status, 2) << arguments.join(' ').toStdString();
        EXPECT_TRUE(run.err.startsWith("orwick-cli: ")) << run.err.toStdString();
    }
    CliRun gif = runCli(wrong[1]);
    EXPECT_TRUE(gif.err.contains("Orwick can’t write “gif” pictures here; it writes PNG, JPEG")) << gif.err.toStdString();
    EXPECT_EQ(readAll(photo), encoded({10, 10}, "png"));
}

} // namespace
} // namespace orwick::test

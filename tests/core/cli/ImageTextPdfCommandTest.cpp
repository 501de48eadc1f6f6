// orwick-cli image ocr and image pdf, run as the built program on pictures drawn here: the text
// read on standard output, one PDF of the items in order under a free name, and nothing made
// when an item can't be used.

#include "CliRun.h"
#include "support/LockedPdf.h"
#include "support/TempHome.h"

#include <QBuffer>
#include <QFile>
#include <QFont>
#include <QImageWriter>
#include <QPainter>
#include <QPdfDocument>
#include <gtest/gtest.h>

namespace orwick::test {
namespace {

// A picture of `size` holding `text` in large black letters on white (or nothing).
QByteArray picture(QSize size, const QString& text = {}, const QByteArray& format = "png")
{
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(64);
    painter.setFont(font);
    painter.drawText(image.rect(), Qt::AlignCenter, text);
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter(&buffer, format).write(image);
    return bytes;
}

// The pages' sizes in points of the PDF at `file`; nothing when it can't be read.
QList<QSize> pageSizes(const FilePath& file)
{
    QPdfDocument document;
    if (document.load(file.text()) != QPdfDocument::Error::None)
        return {};
    QList<QSize> sizes;
    for (int page = 0; page < document.pageCount(); ++page)
        sizes.append(document.pagePointSize(page).toSize());
    return sizes;
}

TEST(ImageOcrCommand, PrintsTheTextItReadsAndAMissingLanguageSaysWhichPackageToInstall)
{
    TempTree tree;
    const FilePath line = tree.file("line.png", picture({1400, 180}, QStringLiteral("Orwick reads this line 42")));
    const CliRun run = runCli({"image", "ocr", line.native()});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_EQ(QString::fromUtf8(run.out).simplified().toLower(), QStringLiteral("orwick reads this line 42"));
    EXPECT_TRUE(run.err.isEmpty()) << "Tesseract's own messages stay quiet: " << run.err.toStdString();
    const CliRun english = runCli({"image", "ocr", line.native(), "--lang", "eng"});
    EXPECT_EQ(english.out, run.out);
    const CliRun unknown = runCli({"image", "ocr", line.native(), "--lang", "zzz"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_TRUE(unknown.out.isEmpty());
    EXPECT_EQ(unknown.errLines(), QList<QByteArray>{"The “zzz” language for text recognition isn’t installed. Install the package tesseract-ocr-zzz."});
}

TEST(ImageOcrCommand, ABlankPictureSaysSoAndADamagedOrMissingOneFailsWithItsName)
{
    TempTree tree;
    const FilePath blank = tree.file("blank.png", picture({600, 400}));
    const CliRun run = runCli({"image", "ocr", blank.native()});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.out.isEmpty()) << run.out.toStdString();
    EXPECT_EQ(run.errLines(), QList<QByteArray>{"No text was found in “blank.png”."});
    const FilePath cut = tree.file("cut.jpg", picture({600, 400}, {}, "jpeg").left(400));
    const CliRun damaged = runCli({"image", "ocr", cut.native()});
    EXPECT_EQ(damaged.status, 1);
    EXPECT_TRUE(damaged.err.startsWith("“cut.jpg”")) << damaged.err.toStdString();
    const CliRun missing = runCli({"image", "ocr", tree.path(QStringLiteral("gone.png")).native()});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.errLines(), QList<QByteArray>{"“" + tree.path(QStringLiteral("gone.png")).native() + "” isn’t there."});
    EXPECT_EQ(runCli({"image", "ocr"}).status, 2);
}

TEST(ImagePdfCommand, MakesOnePdfOfTheItemsInOrderAndPrintsItsPath)
{
    TempTree tree;
    const FilePath wide = tree.file("wide.png", picture({300, 200}));
    const FilePath tall = tree.file("tall.jpg", picture({100, 400}, {}, "jpeg"));
    const FilePath out = tree.path(QStringLiteral("out.pdf"));
    const CliRun first = runCli({"image", "pdf", wide.native(), tall.native(), "-o", out.native()});
    EXPECT_EQ(first.status, 0) << first.err.toStdString();
    EXPECT_EQ(first.outLines(), QList<QByteArray>{out.native()});
    EXPECT_EQ(pageSizes(out), (QList<QSize>{{300, 200}, {100, 400}}));

    // The PDF just made goes in page by page, on Letter paper; out.pdf stays as it was.
    QFile made(out.text());
    ASSERT_TRUE(made.open(QIODevice::ReadOnly));
    const QByteArray before = made.readAll();
    const CliRun second = runCli({"image", "pdf", out.native(), wide.native(), "-o", out.native(), "--page", "letter"});
    EXPECT_EQ(second.status, 0) << second.err.toStdString();
    const FilePath next = tree.path(QStringLiteral("out 2.pdf"));
    EXPECT_EQ(second.outLines(), QList<QByteArray>{next.native()});
    EXPECT_EQ(pageSizes(next), (QList<QSize>{{792, 612}, {612, 792}, {792, 612}}));
    made.seek(0);
    EXPECT_EQ(made.readAll(), before);
}

TEST(ImagePdfCommand, ALockedPdfOrAMissingItemMakesNothing)
{
    TempTree tree;
    const FilePath wide = tree.file("wide.png", picture({300, 200}));
    const FilePath locked = tree.file("secret.pdf", passwordPdf("hunter2"));
    const FilePath out = tree.path(QStringLiteral("out.pdf"));
    const CliRun refused = runCli({"image", "pdf", wide.native(), locked.native(), "-o", out.native(), "--page", "a4"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_TRUE(refused.out.isEmpty()) << refused.out.toStdString();
    EXPECT_TRUE(refused.err.contains("“secret.pdf” is protected by a password")) << refused.err.toStdString();
    const CliRun missing = runCli({"image", "pdf", wide.native(), tree.path(QStringLiteral("gone.png")).native(), "-o", out.native()});
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(missing.err.contains("isn’t there")) << missing.err.toStdString();
    EXPECT_FALSE(QFile::exists(out.text()));
    EXPECT_EQ(runCli({"image", "pdf", wide.native()}).status, 2) << "no -o";
    EXPECT_EQ(runCli({"image", "pdf", wide.native(), "-o", out.native(), "--page", "a3"}).status, 2);
    EXPECT_FALSE(QFile::exists(out.text()));
}

} // namespace
} // namespace orwick::test

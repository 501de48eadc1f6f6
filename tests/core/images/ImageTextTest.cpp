// Text recognition on pictures the tests draw: a line of text read back, upright from a turned
// JPEG, on a transparent background; a blank picture has no text; bad input says why.

#include "TestPictures.h"
#include "images/ImageText.h"
#include "support/TempHome.h"

#include <QFile>
#include <QFont>
#include <QImageWriter>
#include <QPainter>
#include <QRegularExpression>
#include <gtest/gtest.h>

namespace orwick {
namespace {

const QString kLine = QStringLiteral("Orwick reads this line 42");

// The line in large black letters on `background`.
QImage lineOfText(const QColor& background = Qt::white, QImage::Format format = QImage::Format_RGB32)
{
    QImage image(1400, 180, format);
    image.fill(background);
    QPainter painter(&image);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(64);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(image.rect(), Qt::AlignCenter, kLine);
    return image;
}

FilePath save(const test::TempTree& tree, const QString& name, const QImage& image)
{
    const FilePath file = tree.path(name);
    QImageWriter writer(file.text());
    EXPECT_TRUE(writer.write(image)) << writer.errorString().toStdString();
    return file;
}

// Case and runs of white space don't matter: Tesseract may read "42" after two spaces.
std::string simplified(const QString& text) { return text.simplified().toLower().toStdString(); }

TEST(ImageText, ListsEnglishFirstAndNeverOsd)
{
    const QStringList languages = recognitionLanguages();
    ASSERT_FALSE(languages.isEmpty()) << "tesseract-ocr-eng is one of Orwick's runtime packages";
    EXPECT_EQ(languages.first(), QStringLiteral("eng"));
    EXPECT_FALSE(languages.contains(QStringLiteral("osd")));
}

TEST(ImageText, ListsTheLanguagesOfTheDataFolderTesseractIsPointedAt)
{
    // TESSDATA_PREFIX names the folder; "fra" here is English's data under another name.
    const QString installed = QStringLiteral("/usr/share/tesseract-ocr/5/tessdata/eng.traineddata");
    if (!QFile::exists(installed))
        GTEST_SKIP() << "Tesseract's English data isn't at " << installed.toStdString();
    test::TempTree tree;
    for (const char* name : {"osd.traineddata", "fra.traineddata", "eng.traineddata", "notes.txt"})
        ASSERT_TRUE(QFile::link(installed, tree.path(QString::fromLatin1(name)).text()));
    const QByteArray before = qgetenv("TESSDATA_PREFIX");
    qputenv("TESSDATA_PREFIX", tree.root().native());
    const QStringList languages = recognitionLanguages();
    const auto french = recognizeText(save(tree, QStringLiteral("line.png"), lineOfText()), QStringLiteral("fra"), CancelFlag());
    if (before.isNull())
        qunsetenv("TESSDATA_PREFIX");
    else
        qputenv("TESSDATA_PREFIX", before);
    EXPECT_EQ(languages, (QStringList{QStringLiteral("eng"), QStringLiteral("fra")}));
    ASSERT_TRUE(french.has_value()) << french.error().toStdString();
    EXPECT_EQ(simplified(*french), simplified(kLine));
}

TEST(ImageText, ReadsALineOfTextPlainTurnedOrOnATransparentBackground)
{
    test::TempTree tree;
    // Stored on its side, with the EXIF orientation (6: a quarter turn clockwise) that turns it back.
    const QImage sideways = lineOfText().transformed(QTransform().rotate(-90));
    // Grey of transparent black is black: that picture must be laid on white first.
    for (const FilePath& file : {save(tree, QStringLiteral("line.png"), lineOfText()),
                                 tree.file("turned.jpg", test::withExifOrientation(test::encoded(sideways, "jpeg", 95), 6)),
                                 save(tree, QStringLiteral("clear.png"), lineOfText(Qt::transparent, QImage::Format_ARGB32))}) {
        const auto text = recognizeText(file, QStringLiteral("eng"), CancelFlag());
        ASSERT_TRUE(text.has_value()) << text.error().toStdString();
        EXPECT_EQ(simplified(*text), simplified(kLine)) << file.fileName().toStdString();
    }
}

TEST(ImageText, ABlankPictureHasNoTextAndIsNoFailure)
{
    test::TempTree tree;
    QImage blank(800, 600, QImage::Format_RGB32);
    blank.fill(Qt::white);
    const auto text = recognizeText(save(tree, QStringLiteral("blank.png"), blank), QStringLiteral("eng"), CancelFlag());
    ASSERT_TRUE(text.has_value()) << text.error().toStdString();
    EXPECT_TRUE(text->isEmpty()) << text->toStdString();
    EXPECT_EQ(noTextFoundText(tree.path(QStringLiteral("blank.png"))), QStringLiteral("No text was found in “blank.png”."));
}

TEST(ImageText, AMissingLanguageNamesItsPackageAndALanguageThatIsAPathIsNotLoaded)
{
    test::TempTree tree;
    const FilePath file = save(tree, QStringLiteral("line.png"), lineOfText());
    const auto text = recognizeText(file, QStringLiteral("zzz"), CancelFlag());
    ASSERT_FALSE(text.has_value());
    EXPECT_EQ(text.error(), QStringLiteral("The “zzz” language for text recognition isn’t installed. Install the package tesseract-ocr-zzz."));
    const auto path = recognizeText(file, QStringLiteral("../eng"), CancelFlag());
    ASSERT_FALSE(path.has_value());
    EXPECT_TRUE(path.error().contains(QStringLiteral("isn’t installed"))) << path.error().toStdString();
    if (recognitionLanguages().contains(QStringLiteral("chi_sim")))
        return;
    const auto joined = recognizeText(file, QStringLiteral("eng+chi_sim"), CancelFlag());
    ASSERT_FALSE(joined.has_value());
    EXPECT_TRUE(joined.error().endsWith(QStringLiteral("Install the package tesseract-ocr-chi-sim."))) << joined.error().toStdString();
}

TEST(ImageText, ADamagedPictureFailsWithItsName)
{
    test::TempTree tree;
    const FilePath cut = tree.file("cut.png", test::readAll(save(tree, QStringLiteral("whole.png"), lineOfText())).left(300));
    const auto text = recognizeText(cut, QStringLiteral("eng"), CancelFlag());
    ASSERT_FALSE(text.has_value());
    EXPECT_TRUE(text.error().contains(QStringLiteral("“cut.png”"))) << text.error().toStdString();
}

TEST(ImageText, AHugePictureIsRefusedWithItsSize)
{
    test::TempTree tree;
    const auto text = recognizeText(tree.file("huge.png", test::hugeWhitePng(30000)), QStringLiteral("eng"), CancelFlag());
    ASSERT_FALSE(text.has_value());
    EXPECT_TRUE(text.error().startsWith(QStringLiteral("“huge.png” is too large"))) << text.error().toStdString();
}

TEST(ImageText, ACancelledReadGivesNoText)
{
    test::TempTree tree;
    CancelFlag cancel;
    cancel.cancel();
    const auto text = recognizeText(save(tree, QStringLiteral("line.png"), lineOfText()), QStringLiteral("eng"), cancel);
    EXPECT_FALSE(text.has_value());
}

} // namespace
} // namespace orwick

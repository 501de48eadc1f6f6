// Combining pictures and PDFs into one PDF, read back with Qt PDF: a page per picture and per
// PDF page in order, sizes that fit each item or the paper asked for, pictures upright and
// first frames, and bad items that stop the whole PDF with their name.

#include "support/LockedPdf.h"
#include "TestPictures.h"
#include "images/ImagePdf.h"

#include <QBuffer>
#include <QPainter>
#include <QPdfDocument>
#include <QPdfWriter>
#include <gtest/gtest.h>

namespace orwick {
namespace {

using test::near;

// A PDF of two pages, A5 then 300 × 150 points, each with a black square in its top left.
QByteArray twoPagePdf()
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setResolution(72);
    writer.setPageLayout(QPageLayout(QPageSize(QPageSize::A5), QPageLayout::Portrait, QMarginsF()));
    QPainter painter(&writer);
    painter.fillRect(QRectF(0, 0, 100, 100), Qt::black);
    writer.setPageLayout(QPageLayout(QPageSize(QSizeF(150, 300), QPageSize::Point, {}, QPageSize::ExactMatch), QPageLayout::Landscape, QMarginsF()));
    writer.newPage();
    painter.fillRect(QRectF(0, 0, 100, 100), Qt::black);
    painter.end();
    return buffer.data();
}

// The combined PDF read back; the document keeps the bytes' buffer.
struct ReadBack {
    QBuffer buffer;
    QPdfDocument document;
    explicit ReadBack(const QByteArray& pdf)
    {
        buffer.setData(pdf);
        buffer.open(QIODevice::ReadOnly);
        document.load(&buffer);
    }
    QSize pageSize(int page) const { return document.pagePointSize(page).toSize(); }
    // The page as it looks on paper: Qt PDF leaves what isn't drawn transparent.
    QImage page(int index)
    {
        QImage paper(pageSize(index), QImage::Format_RGB32);
        paper.fill(Qt::white);
        QPainter painter(&paper);
        painter.drawImage(0, 0, document.render(index, pageSize(index)));
        return paper;
    }
};

struct Items {
    test::TempTree tree;
    QList<FilePath> files;
    Items()
    {
        files = {tree.file("wide.png", test::encoded(test::halves({300, 200}, Qt::red, Qt::blue), "png")),
                 tree.file("tall.jpg", test::encoded(test::halves({120, 400}, Qt::green, Qt::blue), "jpeg", 95)),
                 tree.file("moving.gif", test::twoFrameGif()),
                 tree.file("pages.pdf", twoPagePdf())};
    }
};

Result<QByteArray> combined(const QList<FilePath>& items, PdfPageSize size)
{
    return combineIntoPdf(items, size, CancelFlag());
}

TEST(ImagePdf, FitMakesAPageOfEachPictureAndOfEachPdfPageInOrderKeepingTheirLook)
{
    Items items;
    const auto pdf = combined(items.files, PdfPageSize::fit);
    ASSERT_TRUE(pdf.has_value()) << pdf.error().toStdString();
    ReadBack back(*pdf);
    ASSERT_EQ(back.document.status(), QPdfDocument::Status::Ready);
    ASSERT_EQ(back.document.pageCount(), 5);
    EXPECT_EQ(back.pageSize(0), QSize(300, 200));
    EXPECT_EQ(back.pageSize(1), QSize(120, 400));
    EXPECT_EQ(back.pageSize(2), QSize(4, 4));
    EXPECT_EQ(back.pageSize(3), QPageSize(QPageSize::A5).sizePoints());
    EXPECT_EQ(back.pageSize(4), QSize(300, 150));
    const QImage wide = back.page(0);
    EXPECT_TRUE(near(wide.pixelColor(50, 100), Qt::red));
    EXPECT_TRUE(near(wide.pixelColor(250, 100), Qt::blue));
    const QImage tall = back.page(1);
    EXPECT_TRUE(near(tall.pixelColor(30, 200), Qt::green));
    EXPECT_TRUE(near(tall.pixelColor(90, 200), Qt::blue));
    // The GIF's first frame is red, its second blue.
    EXPECT_TRUE(near(back.page(2).pixelColor(2, 2), Qt::red)) << back.page(2).pixelColor(2, 2).name().toStdString();
    // A PDF's pages, drawn again: the black square on white paper.
    const QImage redrawn = back.page(4);
    EXPECT_TRUE(near(redrawn.pixelColor(50, 50), Qt::black));
    EXPECT_TRUE(near(redrawn.pixelColor(200, 100), Qt::white));
}

TEST(ImagePdf, A4AndLetterPagesTurnTheWayTheItemIs)
{
    Items items;
    const QSize a4 = QPageSize(QPageSize::A4).sizePoints();
    const auto onA4 = combined(items.files, PdfPageSize::a4);
    ASSERT_TRUE(onA4.has_value()) << onA4.error().toStdString();
    ReadBack back(*onA4);
    ASSERT_EQ(back.document.pageCount(), 5);
    EXPECT_EQ(back.pageSize(0), a4.transposed()); // the wide picture
    EXPECT_EQ(back.pageSize(1), a4);
    EXPECT_EQ(back.pageSize(2), a4); // square
    EXPECT_EQ(back.pageSize(3), a4);
    EXPECT_EQ(back.pageSize(4), a4.transposed());
    const auto onLetter = combined(items.files.mid(0, 2), PdfPageSize::letter);
    ASSERT_TRUE(onLetter.has_value()) << onLetter.error().toStdString();
    ReadBack letter(*onLetter);
    EXPECT_EQ(letter.pageSize(0), QSize(792, 612));
    EXPECT_EQ(letter.pageSize(1), QSize(612, 792));
}

TEST(ImagePdf, APictureOnPaperIsCentredWithAMarginAround)
{
    // A 1,200 × 400 picture on landscape A4 (842 × 595): scaled to the 770 points between the
    // margins, and the paper around it stays white.
    test::TempTree tree;
    const FilePath wide = tree.file("wide.png", test::encoded(test::halves({1200, 400}, Qt::red, Qt::blue), "png"));
    const auto pdf = combined({wide}, PdfPageSize::a4);
    ASSERT_TRUE(pdf.has_value()) << pdf.error().toStdString();
    ReadBack back(*pdf);
    const QImage page = back.page(0);
    EXPECT_TRUE(near(page.pixelColor(10, 297), Qt::white));
    EXPECT_TRUE(near(page.pixelColor(60, 297), Qt::red));
    EXPECT_TRUE(near(page.pixelColor(780, 297), Qt::blue));
    EXPECT_TRUE(near(page.pixelColor(832, 297), Qt::white));
    EXPECT_TRUE(near(page.pixelColor(421, 40), Qt::white));
}

TEST(ImagePdf, ATurnedJpegIsPutUpright)
{
    // Stored wide, red on the left; its EXIF orientation turns it a quarter clockwise: red on top.
    test::TempTree tree;
    const QByteArray stored = test::encoded(test::halves({300, 200}, Qt::red, Qt::blue), "jpeg", 95);
    const FilePath turned = tree.file("turned.jpg", test::withExifOrientation(stored, 6));
    const auto pdf = combined({turned}, PdfPageSize::fit);
    ASSERT_TRUE(pdf.has_value()) << pdf.error().toStdString();
    ReadBack back(*pdf);
    EXPECT_EQ(back.pageSize(0), QSize(200, 300));
    const QImage page = back.page(0);
    EXPECT_TRUE(near(page.pixelColor(100, 50), Qt::red));
    EXPECT_TRUE(near(page.pixelColor(100, 250), Qt::blue));
}

TEST(ImagePdf, ALargePictureIsDrawnScaledOnAPageOfItsOwnSize)
{
    test::TempTree tree;
    const FilePath large = tree.file("large.png", test::encoded(test::halves({6000, 400}, Qt::red, Qt::blue), "png"));
    const auto pdf = combined({large}, PdfPageSize::fit);
    ASSERT_TRUE(pdf.has_value()) << pdf.error().toStdString();
    ReadBack back(*pdf);
    EXPECT_EQ(back.pageSize(0), QSize(6000, 400));
    EXPECT_TRUE(pdf->contains("/Width " + QByteArray::number(kPdfPictureLongestSide))) << "the picture is kept at the bound";
    EXPECT_FALSE(pdf->contains("/Width 6000"));
}

TEST(ImagePdf, ALockedPdfOrADamagedItemFailsTheWholeCombineWithItsName)
{
    Items items;
    const auto locked = combined({items.files[0], items.tree.file("secret.pdf", test::passwordPdf("hunter2"))}, PdfPageSize::fit);
    ASSERT_FALSE(locked.has_value());
    EXPECT_EQ(locked.error(), QStringLiteral("“secret.pdf” is protected by a password, so its pages can’t be combined."));
    const QByteArray jpeg = test::encoded(test::halves({400, 300}, Qt::red, Qt::blue), "jpeg", 90);
    items.files.append(items.tree.file("cut.jpg", jpeg.left(jpeg.size() / 2)));
    const auto pdf = combined(items.files, PdfPageSize::fit);
    ASSERT_FALSE(pdf.has_value());
    EXPECT_TRUE(pdf.error().startsWith(QStringLiteral("“cut.jpg”"))) << pdf.error().toStdString();
    const auto notPdf = combined({items.tree.file("broken.pdf", "%PDF-1.4\nnothing else")}, PdfPageSize::fit);
    ASSERT_FALSE(notPdf.has_value());
    EXPECT_EQ(notPdf.error(), QStringLiteral("“broken.pdf” can’t be read: the PDF is damaged or has no pages."));
}

TEST(ImagePdf, AHugePictureIsRefusedWithoutDecodingIt)
{
    // A real PNG (its pixels would take 3.6 GB once decoded), which PNG can only decode whole.
    test::TempTree tree;
    const FilePath huge = tree.file("huge.png", test::hugeWhitePng(30000));
    const auto pdf = combined({huge}, PdfPageSize::fit);
    ASSERT_FALSE(pdf.has_value());
    EXPECT_TRUE(pdf.error().contains(QStringLiteral("“huge.png” is too large"))) << pdf.error().toStdString();
    EXPECT_TRUE(pdf.error().contains(QStringLiteral("30,000 × 30,000"))) << pdf.error().toStdString();
}

TEST(ImagePdf, NothingToCombineAndACancelMakeNoPdf)
{
    EXPECT_FALSE(combined({}, PdfPageSize::fit).has_value());
    Items items;
    CancelFlag cancel;
    cancel.cancel();
    EXPECT_FALSE(combineIntoPdf(items.files, PdfPageSize::fit, cancel).has_value());
}

} // namespace
} // namespace orwick

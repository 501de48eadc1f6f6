// The picture tools' actions on a headless window over real files: which selections they take,
// what they ask the window, where a combined PDF goes and what it is called, a conversion
// through the engine with its one undo step, and pictures turned in place, with the ones that
// can't be reported and left as they were.

#include "images/ImageActions.h"

#include "state/FileActions.h"
#include "support/HeadlessWindow.h"
#include "support/ScratchMount.h"

#include <QBuffer>
#include <QDir>
#include <QImage>
#include <QImageReader>
#include <QUndoStack>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

struct ImageActionsTest : test::HeadlessWindowTest {
    FilePath png, jpeg, pdf, text, folder;

    void SetUp() override
    {
        png = tree.path("a.png");
        jpeg = tree.path("b.jpg");
        ASSERT_TRUE(QImage(40, 20, QImage::Format_RGB32).save(png.text(), "PNG"));
        ASSERT_TRUE(QImage(40, 20, QImage::Format_RGB32).save(jpeg.text(), "JPEG"));
        pdf = tree.file("c.pdf", "%PDF-1.4\n");
        text = tree.file("d.txt", "words");
        folder = tree.folder("Sub");
        openWindow(tree.root());
        ASSERT_GE(window->activePane()->row(text), 0);
    }
    void select(const QList<FilePath>& items)
    {
        window->activePane()->click(items.first(), Qt::NoModifier);
        for (const FilePath& item : items.mid(1))
            window->activePane()->click(item, Qt::ControlModifier);
    }
    bool changes() { return imageActions::canChangePictures(*window); }
    bool combines() { return imageActions::canCombine(*window); }
};

} // namespace

TEST_F(ImageActionsTest, PicturesAreTakenOnlyWhenEverySelectedItemIsOne)
{
    EXPECT_FALSE(changes()) << "nothing selected";
    select({png});
    EXPECT_TRUE(changes());
    EXPECT_TRUE(imageActions::canCopyImage(*window));
    EXPECT_TRUE(imageActions::canReadText(*window));
    select({png, jpeg});
    EXPECT_TRUE(changes());
    EXPECT_FALSE(imageActions::canCopyImage(*window)) << "one picture goes on the clipboard";
    EXPECT_EQ(imageActions::selectedPictures(*window), (QList<FilePath>{png, jpeg}));
    select({png, text});
    EXPECT_FALSE(changes()) << "a text file among them";
    EXPECT_FALSE(combines());
    select({folder});
    EXPECT_FALSE(changes());
    EXPECT_FALSE(imageActions::canReadText(*window));
    // PDFs are combined but not converted.
    select({pdf});
    EXPECT_FALSE(changes());
    EXPECT_TRUE(combines());
    select({png, pdf});
    EXPECT_TRUE(combines());
}

TEST_F(ImageActionsTest, NothingIsTakenWhileANameIsBeingEdited)
{
    select({png});
    window->activePane()->setRenaming(png);
    EXPECT_FALSE(changes());
    EXPECT_FALSE(imageActions::canCopyImage(*window));
    window->activePane()->setRenaming(std::nullopt);
    EXPECT_TRUE(changes());
}

TEST_F(ImageActionsTest, ResizeAsksTheWindowForTheOptionsWithThePictures)
{
    QList<QList<FilePath>> asked;
    QObject::connect(window.get(), &WindowState::imageResizeRequested, [&](const QList<FilePath>& pictures) { asked.append(pictures); });
    imageActions::requestResize(*window);
    EXPECT_TRUE(asked.isEmpty()) << "nothing selected: nothing asked";
    select({jpeg, png});
    imageActions::requestResize(*window);
    ASSERT_EQ(asked.size(), 1);
    EXPECT_EQ(asked.first(), (QList<FilePath>{png, jpeg})) << "in shown order";
}

TEST_F(ImageActionsTest, TheCombinedPdfIsNamedForItsOneItemOrItsFolder)
{
    const FilePath receipts = tree.folder("Receipts");
    EXPECT_EQ(imageActions::combinedPdfName({receipts.child(QStringLiteral("scan 1.png"))}), "scan 1.pdf");
    EXPECT_EQ(imageActions::combinedPdfName({receipts.child(QStringLiteral("a.png")), receipts.child(QStringLiteral("b.png"))}), "Receipts.pdf");
    EXPECT_EQ(imageActions::combinedPdfName({FilePath::fromText(QStringLiteral("/a.png")), FilePath::fromText(QStringLiteral("/b.png"))}),
              "Combined.pdf");
}

TEST_F(ImageActionsTest, ConvertingMakesAFileBesideEachPictureInOneUndoStep)
{
    QStringList said;
    QObject::connect(window.get(), &WindowState::messageRequested, [&](const QString& message) { said.append(message); });
    select({png, jpeg});
    imageActions::convert(*window, "png");
    ASSERT_TRUE(test::waitUntil([] { return FileOperations::shared().isIdle(); }, 20000));
    const QStringList files = QDir(tree.root().text()).entryList(QDir::Files, QDir::Name);
    EXPECT_EQ(files, (QStringList{"a 2.png", "a.png", "b.jpg", "b.png", "c.pdf", "d.txt"})) << "a.png's own name is taken: the free one";
    EXPECT_EQ(QImage(tree.path("b.png").text()).size(), QSize(40, 20));
    EXPECT_EQ(window->undoStack()->count(), 1);
    window->undoStack()->undo();
    ASSERT_TRUE(test::waitUntil([] { return FileOperations::shared().isIdle(); }, 20000));
    EXPECT_EQ(QDir(tree.root().text()).entryList(QDir::Files, QDir::Name), (QStringList{"a.png", "b.jpg", "c.pdf", "d.txt"}));
}

namespace {

// Turning through the engine, on pictures of their own folder: the reports and toasts the window
// would hear, and the bytes of each file before.
struct TurnPicturesTest : test::HeadlessWindowTest {
    QList<OperationOutcome> reports;
    QStringList toasts;

    void openWithHandlers(const FilePath& folder)
    {
        openWindow(folder);
        FileOperations::WindowHandlers handlers;
        handlers.reportErrors = [this](const OperationOutcome& outcome) { reports.append(outcome); };
        handlers.announce = [this](const Toast& toast) { toasts.append(toast.text); };
        FileOperations::shared().setWindowHandlers(window->undoStack(), window.get(), std::move(handlers));
    }
    void selectAll(const QList<FilePath>& items)
    {
        window->activePane()->click(items.first(), Qt::NoModifier);
        for (const FilePath& item : items.mid(1))
            window->activePane()->click(item, Qt::ControlModifier);
    }
    static void settle() { ASSERT_TRUE(test::waitUntil([] { return FileOperations::shared().isIdle(); }, 20000)); }
    static QByteArray bytesOf(const FilePath& file)
    {
        QFile handle(file.text());
        return handle.open(QIODevice::ReadOnly) ? handle.readAll() : QByteArray();
    }
    static QByteArray picture(const char* format)
    {
        QImage image(40, 20, QImage::Format_RGB32);
        image.fill(Qt::darkCyan);
        image.setPixel(0, 0, qRgb(255, 0, 0));
        QByteArray bytes;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::WriteOnly);
        EXPECT_TRUE(image.save(&buffer, format));
        return bytes;
    }
};

} // namespace

TEST_F(TurnPicturesTest, TurningIsOneUndoStepThatBringsBackEveryPictureExactly)
{
    const FilePath folder = tree.folder("Turn");
    const FilePath png = tree.file("Turn/plan.png", picture("PNG"));
    const FilePath jpeg = tree.file("Turn/photo.jpg", picture("JPEG"));
    const QByteArray pngBefore = bytesOf(png), jpegBefore = bytesOf(jpeg);
    ASSERT_EQ(::chmod(png.c_str(), 0640), 0);
    const bool takesAttributes = ::setxattr(png.c_str(), "user.xdg.comment", "plan", 4, 0) == 0; // not every disk does
    openWithHandlers(folder);
    selectAll({png, jpeg});
    imageActions::turn(*window, PictureTurn::right);
    settle();
    // Still the same file to the user: its mode and extended attributes stay.
    struct stat st {};
    ASSERT_EQ(::stat(png.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 07777, 0640u);
    if (takesAttributes) {
        char comment[16] = {};
        EXPECT_EQ(::getxattr(png.c_str(), "user.xdg.comment", comment, sizeof comment), 4);
        EXPECT_STREQ(comment, "plan");
    }
    EXPECT_TRUE(reports.isEmpty()) << reports.value(0).errors.join('\n').toStdString();
    EXPECT_EQ(toasts, QStringList{QStringLiteral("Rotated 2 files")});
    EXPECT_EQ(QImage(png.text()).size(), QSize(20, 40));
    QImageReader turned(jpeg.text());
    turned.setAutoTransform(true);
    EXPECT_EQ(turned.read().size(), QSize(20, 40));
    ASSERT_EQ(window->undoStack()->count(), 1) << "one step for the whole selection";
    EXPECT_EQ(window->undoStack()->undoText(), QStringLiteral("Rotate Right"));

    window->undoStack()->undo();
    settle();
    EXPECT_EQ(bytesOf(png), pngBefore);
    EXPECT_EQ(bytesOf(jpeg), jpegBefore);
}

TEST_F(TurnPicturesTest, ADamagedOrReadOnlyPictureIsReportedAndLeftAsItWas)
{
    const FilePath folder = tree.folder("Turn");
    const FilePath fine = tree.file("Turn/fine.png", picture("PNG"));
    const QByteArray jpeg = picture("JPEG");
    const FilePath cut = tree.file("Turn/cut.jpg", jpeg.left(jpeg.size() * 2 / 3));
    const FilePath locked = tree.file("Turn/locked.png", picture("PNG"));
    ASSERT_EQ(::chmod(locked.c_str(), 0444), 0);
    const QByteArray cutBefore = bytesOf(cut), lockedBefore = bytesOf(locked);
    openWithHandlers(folder);
    selectAll({fine, cut, locked});
    imageActions::turn(*window, PictureTurn::left);
    settle();
    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(reports.first().done, 1);
    QStringList errors = reports.first().errors;
    errors.sort();
    EXPECT_EQ(errors, (QStringList{QStringLiteral("Couldn’t change “locked.png”: it is read-only."),
                                   QStringLiteral("“cut.jpg” can’t be read: the picture is cut short.")}));
    EXPECT_TRUE(toasts.isEmpty()) << "not everything went well: no success toast";
    EXPECT_EQ(bytesOf(cut), cutBefore);
    EXPECT_EQ(bytesOf(locked), lockedBefore);
    EXPECT_EQ(QImage(fine.text()).size(), QSize(20, 40));
}

TEST_F(TurnPicturesTest, APictureOnAReadOnlyDiskIsReportedAndLeftAsItWas)
{
    test::ScratchMount disk("tmpfs", "size=1m");
    if (!disk.ok())
        GTEST_SKIP() << disk.why().toStdString();
    const FilePath photo = disk.root().child(QStringLiteral("photo.jpg"));
    {
        QFile file(photo.text());
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(picture("JPEG"));
    }
    const QByteArray before = bytesOf(photo);
    ASSERT_TRUE(disk.makeReadOnly());
    openWithHandlers(disk.root());
    selectAll({photo});
    imageActions::turn(*window, PictureTurn::flipHorizontal);
    settle();
    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(reports.first().errors, QStringList{QStringLiteral("Couldn’t change “photo.jpg”: the disk is read-only.")});
    EXPECT_EQ(reports.first().done, 0);
    EXPECT_EQ(bytesOf(photo), before);
    window.reset(); // the pane lets go of the disk before it is unmounted
}

TEST_F(TurnPicturesTest, ACancelLeavesEveryPictureWholeAndUndoCoversWhatWasTurned)
{
    const FilePath folder = tree.folder("Many");
    QImage image(600, 400, QImage::Format_RGB32);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, qRgb(x % 256, y % 256, (x * y) % 256)); // slow to compress: the cancel comes midway
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    ASSERT_TRUE(image.save(&buffer, "PNG"));
    QList<FilePath> pictures;
    for (int i = 0; i < 40; ++i)
        pictures.append(tree.file(QStringLiteral("Many/%1.png").arg(i, 2, 10, QLatin1Char('0')), png));
    openWithHandlers(folder);
    selectAll(pictures);
    imageActions::turn(*window, PictureTurn::right);
    ASSERT_FALSE(FileOperations::shared().jobs().isEmpty());
    const quint64 job = FileOperations::shared().jobs().first().id;
    ASSERT_TRUE(test::waitUntil([&] { return QImage(pictures.first().text()).width() == 400; }, 20000));
    FileOperations::shared().cancelJob(job);
    settle();

    ASSERT_EQ(reports.size(), 1);
    EXPECT_TRUE(reports.first().cancelled);
    EXPECT_TRUE(reports.first().errors.isEmpty()) << reports.first().errors.join('\n').toStdString();
    int turned = 0;
    for (const FilePath& picture : pictures) {
        const QByteArray bytes = bytesOf(picture);
        if (bytes == png)
            continue;
        EXPECT_EQ(QImage::fromData(bytes).size(), QSize(400, 600)) << picture.fileName().toStdString() << ": old or turned, never half";
        ++turned;
    }
    EXPECT_EQ(turned, reports.first().done) << "what was turned is what is counted";
    EXPECT_LT(turned, pictures.size()) << "the cancel came before the last picture";
    EXPECT_TRUE(QDir(folder.text()).entryList(QDir::Hidden | QDir::Files).size() == pictures.size()) << "no temporary file left";

    window->undoStack()->undo();
    settle();
    for (const FilePath& picture : pictures)
        EXPECT_EQ(bytesOf(picture), png) << picture.fileName().toStdString();
}

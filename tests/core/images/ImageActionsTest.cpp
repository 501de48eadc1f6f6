// The picture tools' actions on a headless window over real files: which selections they take,
// what they ask the window, where a combined PDF goes and what it is called, and a conversion
// through the engine with its one undo step.

#include "images/ImageActions.h"

#include "state/FileActions.h"
#include "support/HeadlessWindow.h"

#include <QDir>
#include <QImage>
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

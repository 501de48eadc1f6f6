// The picture tools in a real window, on pictures the tests draw with QImage: the commands are
// on for pictures and dimmed with a reason for other files; converting makes a file beside the
// picture and undo moves it to the Trash; image sets, Combine into PDF, Copy Image, the Resize
// dialog driven by keys, the picture context menu, a turned picture's thumbnail and the
// recognized text shown whole.

#include "WindowFixture.h"

#include "commands/CommandCatalog.h"
#include "images/ImageFormats.h"
#include "images/ImageText.h"
#include "platform/XdgPaths.h"
#include "ui/images/RecognizedTextSheet.h"
#include "ui/images/ResizeDialog.h"
#include "ui/views/Thumbnails.h"
#include "ui/window/CommandMenus.h"

#include <QBuffer>
#include <QCheckBox>
#include <QClipboard>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTimer>
#include <thread>

namespace orwick::test {
namespace {

const QStringList kPictureCommands{"copyImage", "imageSets", "removeLocation", "removeMetadata", "copyText", "combinePDF",
                                   "image.convert.png", "image.resize", "image.rotate.left", "image.rotate.right",
                                   "image.flip.horizontal", "image.flip.vertical"};

struct ImageWindowTest : WindowTest {
    // A picture of `size` in `format`, a colour gradient so that its pixels tell where they came from.
    FilePath picture(const QString& name, QSize size, const char* format)
    {
        QImage image(size, QImage::Format_RGB32);
        for (int y = 0; y < size.height(); ++y)
            for (int x = 0; x < size.width(); ++x)
                image.setPixel(x, y, qRgb(x * 255 / size.width(), y * 255 / size.height(), 128));
        const FilePath path = tree.path(name);
        EXPECT_TRUE(image.save(path.text(), format)) << name.toStdString();
        return path;
    }
    bool enabled(const QString& id) { return CommandCatalog::find(id)->enabledIn(*state); }
    QStringList names() { return QDir(tree.root().text()).entryList(QDir::Files, QDir::Name); }
    // A line of text drawn large and black on white, for the text recognition.
    FilePath scanOfText()
    {
        QImage image(900, 140, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        QFont font(QStringLiteral("DejaVu Sans"));
        font.setPixelSize(64);
        painter.setFont(font);
        painter.setPen(Qt::black);
        painter.drawText(image.rect(), Qt::AlignCenter, QStringLiteral("HELLO ORWICK"));
        painter.end();
        const FilePath scan = tree.path("scan.png");
        EXPECT_TRUE(image.save(scan.text(), "PNG"));
        return scan;
    }
    ResizeDialog* resizeDialog() { return window->findChild<ResizeDialog*>(); }
    // Runs "Image: Resize…" and waits until its dialog has the keyboard.
    void openResize()
    {
        ASSERT_TRUE(CommandCatalog::run(QStringLiteral("image.resize"), *state));
        ASSERT_TRUE(waitUntil([&] { return resizeDialog() && resizeDialog()->isAncestorOf(QApplication::focusWidget()); }));
    }
    QStringList trashed() { return QDir(xdg::dataHome().text() + QStringLiteral("/Trash/files")).entryList(QDir::Files); }
};

TEST_F(ImageWindowTest, PictureCommandsAreOnForAPictureAndSayWhyForATextFile)
{
    const FilePath photo = picture("photo.jpg", {64, 48}, "JPEG");
    const FilePath notes = tree.file("notes.txt", "not a picture");
    open(tree.root());
    for (const QString& id : kPictureCommands)
        EXPECT_FALSE(enabled(id)) << "nothing selected: " << id.toStdString();

    select(photo);
    for (const QString& id : kPictureCommands)
        EXPECT_TRUE(enabled(id)) << id.toStdString();
    EXPECT_FALSE(enabled("removeBackground")) << "no counterpart on Linux";

    select(notes);
    for (const QString& id : kPictureCommands) {
        EXPECT_FALSE(enabled(id)) << id.toStdString();
        EXPECT_TRUE(CommandCatalog::find(id)->disabledNote.startsWith(QStringLiteral("Select "))) << id.toStdString();
    }
    // From the menu (or its key), a dimmed command says why.
    window->menus()->action(QStringLiteral("imageSets"))->trigger();
    EXPECT_EQ(toast(), QStringLiteral("Make Image Sets (@1x @2x @3x): Select pictures"));
    EXPECT_EQ(names(), (QStringList{"notes.txt", "photo.jpg"})) << "nothing was made";

    // A picture and a text file together: not every item is a picture.
    pane()->click(photo, Qt::ControlModifier);
    EXPECT_EQ(pane()->selection().size(), 2);
    EXPECT_FALSE(enabled("image.convert.png"));
}

TEST_F(ImageWindowTest, TheImageFamilyOffersOnlyTheFormatsQtWritesHere)
{
    open(tree.root());
    QStringList titles;
    for (const AppCommand& command : CommandCatalog::all(*state))
        if (command.title.startsWith(QStringLiteral("Image: Convert")) || command.title.startsWith(QStringLiteral("Image: Resize")))
            titles.append(command.title);
    QStringList expected;
    for (const QByteArray& format : writableImageFormats())
        expected.append(QStringLiteral("Image: Convert to ") + formatTitle(format));
    expected.append(QStringLiteral("Image: Resize…"));
    EXPECT_EQ(titles, expected);
    EXPECT_TRUE(titles.contains(QStringLiteral("Image: Convert to PNG")));
}

// The made files' pixels and names are the core tests'; here each command runs from the
// catalogue on the window's selection, makes its files beside it and undoes in one step.
TEST_F(ImageWindowTest, ConvertImageSetsAndCombineMakeFilesBesideThePicturesInOneUndoStep)
{
    const FilePath photo = picture("photo.jpg", {64, 48}, "JPEG");
    const FilePath icon = picture("icon.png", {90, 60}, "PNG");
    const QString pdf = tree.root().fileName() + QStringLiteral(".pdf"); // named for the folder
    open(tree.root());
    const struct {
        const char* command;
        QList<FilePath> selected;
        QStringList made;
    } rows[] = {
        {"image.convert.png", {photo}, {"photo.png"}},
        {"imageSets", {icon}, {"icon@1x.png", "icon@2x.png", "icon@3x.png"}},
        {"combinePDF", {icon, photo}, {pdf}},
    };
    const QStringList before = names();
    for (const auto& row : rows) {
        SCOPED_TRACE(row.command);
        select(row.selected.first());
        for (const FilePath& more : row.selected.mid(1))
            pane()->click(more, Qt::ControlModifier);
        const int steps = state->undoStack()->index();
        ASSERT_TRUE(CommandCatalog::run(QString::fromLatin1(row.command), *state));
        settle();
        QStringList expected = before + row.made, after = names();
        expected.sort();
        after.sort();
        EXPECT_EQ(after, expected);
        EXPECT_EQ(state->undoStack()->index(), steps + 1) << "one undo step";
        state->undoStack()->undo();
        settle();
        EXPECT_EQ(names(), before);
        for (const QString& made : row.made)
            EXPECT_TRUE(trashed().contains(made)) << made.toStdString();
    }
    EXPECT_TRUE(readAll(xdg::homeTrash().child(QStringLiteral("files")).child(pdf)).startsWith("%PDF"));
}

TEST_F(ImageWindowTest, CopyImagePutsThePicturesPixelsOnTheClipboard)
{
    const FilePath photo = picture("photo.png", {50, 20}, "PNG");
    open(tree.root());
    QGuiApplication::clipboard()->clear();
    select(photo);
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("copyImage"), *state));
    ASSERT_TRUE(waitUntil([] {
        const QMimeData* data = QGuiApplication::clipboard()->mimeData();
        return data && data->hasFormat(QStringLiteral("image/png"));
    }));
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(QImage::fromData(data->data(QStringLiteral("image/png")), "PNG").size(), QSize(50, 20));
    EXPECT_EQ(QGuiApplication::clipboard()->image().size(), QSize(50, 20));

    // "Copy as Data URI" of a small picture: its bytes, typed.
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("copyDataURI"), *state));
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("data:image/png;base64,") + QString::fromLatin1(readAll(photo).toBase64()));
}

TEST_F(ImageWindowTest, TheResizeDialogRunsOnReturnAndCancelsOnEsc)
{
    const FilePath photo = picture("photo.jpg", {200, 100}, "JPEG");
    open(tree.root());
    select(photo);
    openResize();
    EXPECT_FALSE(resizeDialog()->qualityField()->isHidden()) << "a JPEG is saved lossily";
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return !resizeDialog(); }));
    settle();
    EXPECT_EQ(names(), QStringList{"photo.jpg"}) << "Esc changes nothing";

    // Longest side (clicked into), typed over its field; Return resizes beside. The dialog offers
    // the last resize's choices again, which an earlier test in this process may have made.
    openResize();
    if (resizeDialog()->replaceOriginals()->isChecked())
        press(Qt::Key_R, Qt::AltModifier);
    ASSERT_TRUE(waitUntil([&] { return !resizeDialog()->replaceOriginals()->isChecked(); }));
    resizeDialog()->longestField()->setFocus(Qt::MouseFocusReason);
    ASSERT_TRUE(waitUntil([&] { return resizeDialog()->longestChoice()->isChecked(); }));
    resizeDialog()->longestField()->selectAll();
    type(QStringLiteral("50"));
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return !resizeDialog(); }));
    settle();
    const QStringList made = names();
    ASSERT_EQ(made.size(), 2) << made.join(u',').toStdString();
    const QString resized = made.at(made.at(0) == QStringLiteral("photo.jpg") ? 1 : 0);
    EXPECT_EQ(QImage(tree.path(resized).text()).size(), QSize(50, 25)) << resized.toStdString();
    EXPECT_EQ(QImage(photo.text()).size(), QSize(200, 100)) << "the original stays";

    // Percentage (Alt+P) and Replace originals (Alt+R): the picture itself, one undo step back.
    state->undoStack()->undo();
    settle();
    const QByteArray original = readAll(photo);
    select(photo);
    openResize();
    EXPECT_TRUE(resizeDialog()->longestField()->hasFocus()) << "the last resize's way of sizing, its field taking the keys";
    press(Qt::Key_P, Qt::AltModifier);
    EXPECT_TRUE(waitUntil([&] { return resizeDialog()->percentChoice()->isChecked(); }));
    press(Qt::Key_Tab);
    resizeDialog()->percentField()->selectAll();
    type(QStringLiteral("25"));
    press(Qt::Key_R, Qt::AltModifier);
    EXPECT_TRUE(waitUntil([&] { return resizeDialog()->replaceOriginals()->isChecked(); }));
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return !resizeDialog(); }));
    settle();
    EXPECT_EQ(names(), QStringList{"photo.jpg"});
    EXPECT_EQ(QImage(photo.text()).size(), QSize(50, 25));
    state->undoStack()->undo();
    settle();
    EXPECT_EQ(readAll(photo), original) << "undo gives the original bytes back";
}

TEST_F(ImageWindowTest, TabbingThroughTheResizeDialogKeepsTheWayOfSizing)
{
    const FilePath photo = picture("photo.jpg", {200, 100}, "JPEG");
    open(tree.root());
    select(photo);
    openResize();
    resizeDialog()->longestChoice()->setChecked(true);
    resizeDialog()->percentField()->setFocus(Qt::TabFocusReason);
    EXPECT_TRUE(resizeDialog()->longestChoice()->isChecked()) << "passing through the percentage by Tab";
    resizeDialog()->percentField()->selectAll();
    type(QStringLiteral("30"));
    EXPECT_TRUE(resizeDialog()->percentChoice()->isChecked()) << "typing a percentage chooses it";
    resizeDialog()->longestField()->setFocus(Qt::MouseFocusReason);
    EXPECT_TRUE(resizeDialog()->longestChoice()->isChecked()) << "clicking into a field chooses its way";
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return !resizeDialog(); }));
}

TEST_F(ImageWindowTest, TheContextMenuOfAPictureHasTheImageTools)
{
    const FilePath photo = picture("photo.png", {20, 20}, "PNG");
    const FilePath notes = tree.file("notes.txt", "text");
    open(tree.root());
    const auto menuTitles = [&] {
        QStringList titles;
        QTimer::singleShot(0, [&titles] {
            auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (!menu)
                return;
            for (QAction* action : menu->actions()) {
                titles.append(action->text());
                if (action->menu())
                    for (QAction* inner : action->menu()->actions())
                        if (!inner->isSeparator())
                            titles.append(QStringLiteral("  ") + inner->text());
            }
            menu->close();
        });
        window->menus()->showContextMenu(window->mapToGlobal(QPoint(200, 200)));
        return titles;
    };
    select(photo);
    const QStringList onPicture = menuTitles();
    EXPECT_TRUE(onPicture.contains(QStringLiteral("Copy Image"))) << onPicture.join(u'|').toStdString();
    EXPECT_TRUE(onPicture.contains(QStringLiteral("Image"))) << onPicture.join(u'|').toStdString();
    EXPECT_TRUE(onPicture.contains(QStringLiteral("  Convert to PNG")));
    EXPECT_TRUE(onPicture.contains(QStringLiteral("  Resize…")));
    EXPECT_TRUE(onPicture.contains(QStringLiteral("  Make Image Sets (@1x @2x @3x)")));
    for (const char* turn : {"  Rotate Left", "  Rotate Right", "  Flip Horizontal", "  Flip Vertical"})
        EXPECT_TRUE(onPicture.contains(QString::fromUtf8(turn))) << turn;
    select(notes);
    const QStringList onText = menuTitles();
    EXPECT_FALSE(onText.isEmpty());
    EXPECT_FALSE(onText.contains(QStringLiteral("Image")) || onText.contains(QStringLiteral("Copy Image"))) << onText.join(u'|').toStdString();
}

TEST_F(ImageWindowTest, ATurnedPictureShowsTurnedInItsThumbnailAndUndoTurnsItBack)
{
    const FilePath photo = picture("photo.jpg", {64, 32}, "JPEG");
    // A photo taken earlier: the kernel stamps files in clock ticks of a few milliseconds, and
    // the test is faster than that.
    {
        QFile file(photo.text());
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-3600), QFileDevice::FileModificationTime));
    }
    open(tree.root());
    select(photo);
    Thumbnails thumbnails;
    // The thumbnail of the pane's item as it is now, once made.
    const auto thumbnailSize = [&] {
        QImage made;
        EXPECT_TRUE(waitUntil([&] {
            made = thumbnails.thumbnail(*pane()->item(photo), 256);
            return !made.isNull();
        }));
        return made.size();
    };
    EXPECT_EQ(thumbnailSize(), QSize(64, 32));
    const Timestamp before = pane()->item(photo)->modified;

    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("image.rotate.right"), *state));
    settle();
    EXPECT_EQ(toast(), QStringLiteral("Rotated photo.jpg"));
    // The pane hears of the change and the new modification time makes a new thumbnail.
    ASSERT_TRUE(waitUntil([&] { return pane()->item(photo) && pane()->item(photo)->modified != before; }));
    EXPECT_EQ(thumbnailSize(), QSize(32, 64));

    // A person's undo comes later than a clock tick after the turn.
    const Timestamp turned = pane()->item(photo)->modified;
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    state->undoStack()->undo();
    settle();
    ASSERT_TRUE(waitUntil([&] { return pane()->item(photo)->modified != turned; }));
    EXPECT_EQ(thumbnailSize(), QSize(64, 32));
}

TEST_F(ImageWindowTest, CopyTextPutsTheTextOnTheClipboardAndShowsItWhole)
{
    if (!recognitionLanguages().contains(QStringLiteral("eng")))
        GTEST_SKIP() << "Tesseract's English data (tesseract-ocr-eng) isn't installed";
    const FilePath scan = scanOfText();
    open(tree.root());
    QGuiApplication::clipboard()->clear();
    select(scan);
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("copyText"), *state));
    ASSERT_TRUE(waitUntil([&] { return toast().startsWith(QStringLiteral("Copied the text of “scan.png”")); }, 30000)) << toast().toStdString();
    EXPECT_TRUE(QGuiApplication::clipboard()->text().contains(QStringLiteral("HELLO"))) << QGuiApplication::clipboard()->text().toStdString();

    QPushButton* show = nullptr;
    for (QPushButton* button : window->toasts()->findChildren<QPushButton*>())
        if (button->isVisible() && button->text() == QStringLiteral("Show"))
            show = button;
    ASSERT_NE(show, nullptr);
    show->click();
    auto* sheet = window->findChild<RecognizedTextSheet*>();
    ASSERT_NE(sheet, nullptr);
    EXPECT_TRUE(sheet->textView()->toPlainText().contains(QStringLiteral("ORWICK")));
    ASSERT_TRUE(waitUntil([&] { return QApplication::focusWidget() == sheet->textView(); }));
    press(Qt::Key_Escape);
    EXPECT_TRUE(waitUntil([&] { return window->findChild<RecognizedTextSheet*>() == nullptr; }));
}

TEST_F(ImageWindowTest, EachFurtherInstalledLanguageHasItsOwnCopyTextCommand)
{
    // Two languages installed: German (the first, whose data here is damaged) and French (the
    // English model standing in), so only the language the command names reads the line.
    QString english;
    QDir debian(QStringLiteral("/usr/share/tesseract-ocr"));
    for (const QString& version : debian.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        if (QFile::exists(debian.filePath(version + QStringLiteral("/tessdata/eng.traineddata"))))
            english = debian.filePath(version + QStringLiteral("/tessdata/eng.traineddata"));
    if (english.isEmpty())
        GTEST_SKIP() << "Tesseract's English data (tesseract-ocr-eng) isn't in /usr/share/tesseract-ocr";
    test::TempTree data;
    data.file("tessdata/deu.traineddata", "not a model");
    data.link(QStringLiteral("tessdata/fra.traineddata"), english.toUtf8());
    const QByteArray savedPrefix = qgetenv("TESSDATA_PREFIX");
    qputenv("TESSDATA_PREFIX", data.root().native());
    const FilePath scan = scanOfText();
    open(tree.root());
    const AppCommand* french = CommandCatalog::find(QStringLiteral("image.text.fra"));
    ASSERT_NE(french, nullptr);
    EXPECT_EQ(french->title, QStringLiteral("Image: Copy Text in French"));
    EXPECT_EQ(CommandCatalog::find(QStringLiteral("image.text.deu")), nullptr) << "the first language is Copy Text from Image's own";
    EXPECT_FALSE(french->enabledIn(*state)) << "nothing selected";
    select(scan);
    QGuiApplication::clipboard()->clear();
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("image.text.fra"), *state));
    EXPECT_TRUE(waitUntil([&] { return toast().startsWith(QStringLiteral("Copied the text of “scan.png”")); }, 30000)) << toast().toStdString();
    EXPECT_TRUE(QGuiApplication::clipboard()->text().contains(QStringLiteral("ORWICK")));
    // Copy Text from Image reads in the first language, whose data is damaged: it says so.
    ASSERT_TRUE(CommandCatalog::run(QStringLiteral("copyText"), *state));
    EXPECT_TRUE(waitUntil([&] { return !toast().startsWith(QStringLiteral("Copied the text")) && !toast().startsWith(QStringLiteral("Reading")); }, 30000));
    EXPECT_TRUE(toast().contains(QStringLiteral("“deu”"))) << toast().toStdString();
    if (savedPrefix.isNull())
        qunsetenv("TESSDATA_PREFIX");
    else
        qputenv("TESSDATA_PREFIX", savedPrefix);
}

} // namespace
} // namespace orwick::test

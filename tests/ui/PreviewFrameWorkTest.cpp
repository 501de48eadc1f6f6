// What the preview keeps off the GUI thread: a picture comes from its load already at the size
// the view shows it (and the view draws it at that size, never enlarged), a text document comes
// unwrapped as the view shows it, and one the view lets go of is freed on another thread. And
// what it keeps out of the window: a new item never lays the window out again.

#include "support/TempHome.h"
#include "support/TestMain.h"
#include "ui/preview/DocumentDisposal.h"
#include "ui/preview/PreparedPreview.h"
#include "ui/preview/PreviewImageView.h"
#include "ui/preview/PreviewView.h"

#include <QApplication>
#include <QImage>
#include <QPlainTextDocumentLayout>
#include <QPlainTextEdit>
#include <QThread>
#include <QVBoxLayout>
#include <atomic>
#include <gtest/gtest.h>

using namespace orwick;

TEST(PreviewPictures, AreShrunkToTheirRoomAndNeverEnlarged)
{
    EXPECT_EQ(PreviewImageView::shownSize(QSize(800, 600), QSize(400, 400)), QSize(400, 300));
    EXPECT_EQ(PreviewImageView::shownSize(QSize(600, 800), QSize(400, 400)), QSize(300, 400));
    EXPECT_EQ(PreviewImageView::shownSize(QSize(100, 50), QSize(400, 400)), QSize(100, 50));
    EXPECT_EQ(PreviewImageView::shownSize(QSize(4000, 10), QSize(100, 100)), QSize(100, 1)); // at least a pixel
}

TEST(PreviewPictures, ALoadedPictureComesFittedToTheViewsRoom)
{
    test::TempTree tree;
    const FilePath path = tree.file("wide.png");
    QImage picture(800, 600, QImage::Format_RGB32);
    picture.fill(Qt::darkCyan);
    ASSERT_TRUE(picture.save(path.text()));
    PreviewRequest request;
    request.path = path;
    request.box = QSize(1024, 1024);
    PreviewStyle style = PreviewStyle::fromApplication();
    style.pictureRoom = QSize(200, 400);
    CancelFlag cancel;
    const PreparedPreview prepared = preparePreview(request, style, cancel);
    ASSERT_EQ(prepared.content.kind, PreviewContent::Kind::image);
    EXPECT_EQ(prepared.content.image.size(), QSize(800, 600)); // as decoded, for another size later
    EXPECT_EQ(prepared.fitted.size(), QSize(200, 150));
    EXPECT_EQ(prepared.fitted.pixel(100, 75), QColor(Qt::darkCyan).rgb());

    // Room enough: no second copy.
    style.pictureRoom = QSize(1000, 1000);
    EXPECT_TRUE(preparePreview(request, style, cancel).fitted.isNull());
}

TEST(PreviewDocuments, ALetGoTextDocumentIsFreedOnAnotherThread)
{
    auto document = std::make_shared<QTextDocument>();
    document->setDocumentLayout(new QPlainTextDocumentLayout(document.get()));
    document->setPlainText(QString(QStringLiteral("a line of text\n")).repeated(5000));
    std::atomic<QThread*> freedOn = nullptr;
    QObject::connect(document.get(), &QObject::destroyed, [&freedOn] { freedOn = QThread::currentThread(); });
    disposeInBackground(std::move(document));
    ASSERT_TRUE(test::waitUntil([&] { return freedOn.load() != nullptr; }));
    EXPECT_NE(freedOn.load(), QThread::currentThread());
}

TEST(PreviewDocuments, ADocumentStillHeldElsewhereIsLeftToItsHolder)
{
    auto document = std::make_shared<QTextDocument>();
    document->setDocumentLayout(new QPlainTextDocumentLayout(document.get()));
    std::shared_ptr<QTextDocument> holder = document;
    bool destroyed = false;
    QObject::connect(document.get(), &QObject::destroyed, [&destroyed] { destroyed = true; });
    disposeInBackground(std::move(document));
    QThread::msleep(50);
    EXPECT_FALSE(destroyed);
    EXPECT_EQ(holder->thread(), QThread::currentThread());
    holder.reset();
    EXPECT_TRUE(destroyed);
}

TEST(PreviewDocuments, ATextDocumentComesUnwrappedAsTheViewShowsIt)
{
    // Any other wrap mode would have the view lay every block out again on the GUI thread.
    test::TempTree tree;
    PreviewRequest request;
    request.path = tree.file("long.log", QByteArray("a line of a log file\n").repeated(2000));
    CancelFlag cancel;
    const PreparedPreview prepared = preparePreview(request, PreviewStyle::fromApplication(), cancel);
    ASSERT_EQ(prepared.content.kind, PreviewContent::Kind::text);
    ASSERT_NE(prepared.document, nullptr);
    EXPECT_EQ(prepared.document->defaultTextOption().wrapMode(), QTextOption::NoWrap);
    EXPECT_EQ(prepared.document->blockCount(), 2001);
    PreviewView view;
    EXPECT_EQ(view.textView()->lineWrapMode(), QPlainTextEdit::NoWrap);
}

namespace {

// Counts the layout requests a widget is sent.
class LayoutRequests : public QObject {
public:
    explicit LayoutRequests(QWidget* watched) { watched->installEventFilter(this); }
    int count = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        count += event->type() == QEvent::LayoutRequest;
        return false;
    }
};

} // namespace

TEST(PreviewViewLayout, ItemsShownInTurnLeaveTheWindowsLayoutAlone)
{
    test::TempTree tree;
    QWidget window;
    auto* layout = new QVBoxLayout(&window);
    auto* view = new PreviewView(&window);
    layout->addWidget(view);
    window.resize(500, 400);
    window.show();
    ASSERT_TRUE(test::waitUntil([&] { return view->isVisible() && view->width() > 0; }));

    // Each kind with its own header: a title, details, a note of a limit, or none.
    std::vector<PreparedPreview> items;
    CancelFlag cancel;
    const PreviewStyle style = PreviewStyle::fromApplication();
    for (const FilePath& path : {tree.file("script.py", "def f():\n    return 1\n"), tree.file("table.csv", "a,b\n1,2\n3,4\n"),
                                 tree.file("notes.txt", QByteArray("a longer line of text that goes on\n").repeated(400)),
                                 tree.path("gone.txt")}) {
        PreviewRequest request;
        request.path = path;
        items.push_back(preparePreview(request, style, cancel));
        ASSERT_FALSE(items.back().content.isEmpty()) << path.text().toStdString();
    }
    for (const PreparedPreview& item : items) // each page shown once, as it is first polished
        view->showPrepared(item);
    QApplication::processEvents();

    LayoutRequests requests(&window);
    for (int round = 0; round < 2; ++round)
        for (const PreparedPreview& item : items) {
            view->showPrepared(item);
            QApplication::processEvents();
        }
    EXPECT_EQ(requests.count, 0);
    EXPECT_EQ(view->titleText(), QStringLiteral("gone.txt"));
}

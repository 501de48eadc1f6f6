// What the preview keeps off the GUI thread: a picture comes from its load already at the size
// the view shows it (and the view draws it at that size, never enlarged), and a text document
// the view lets go of is freed on another thread.

#include "support/TempHome.h"
#include "support/TestMain.h"
#include "ui/preview/DocumentDisposal.h"
#include "ui/preview/PreparedPreview.h"
#include "ui/preview/PreviewImageView.h"

#include <QImage>
#include <QPlainTextDocumentLayout>
#include <QThread>
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

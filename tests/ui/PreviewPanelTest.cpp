// The preview column and Quick Look in a real window: F3 shows the column, which follows the
// cursor; tasks in a previewed note toggle as one undoable change; Space opens Quick Look, whose
// arrows move through the folder; Expand Preview takes the content area and is kept.

#include "WindowFixture.h"
#include "app/Settings.h"
#include "ui/preview/PreparedPreview.h"
#include "ui/preview/PreviewFollower.h"
#include "ui/preview/PreviewLoad.h"
#include "ui/preview/PreviewPanel.h"
#include "ui/preview/PreviewView.h"
#include "ui/preview/QuickLook.h"

#include <QPdfWriter>
#include <QPainter>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextBrowser>
#include <unistd.h>

using namespace orwick;

namespace {

struct PreviewWindowTest : test::WindowTest {
    FilePath note, code, notes;
    void SetUp() override
    {
        openSettings()->setValue(QStringLiteral("previewExpanded"), false);
        code = tree.file("a.py", "def f():\n    return 1  # one\n");
        note = tree.file("b.md", "# Plan\n\n- [ ] write\n- [x] read\n");
        tree.file("c.txt", "plain words\n");
        open(tree.root());
    }
    PreviewView* panelView() { return window->previewPanel()->view(); }
    bool shows(PreviewView* view, const QString& title)
    {
        return test::waitUntil([&] { return view->titleText() == title; });
    }
};

} // namespace

TEST_F(PreviewWindowTest, F3ShowsThePanelAndItFollowsTheCursor)
{
    EXPECT_EQ(window->previewPanel(), nullptr) << "made when first shown";
    EXPECT_EQ(window->quickLook(), nullptr) << "made when first asked for";
    select(code);
    press(Qt::Key_F3);
    EXPECT_TRUE(state->showPreview()) << "kept with the window's session";
    ASSERT_TRUE(window->previewPanel()->isVisible());
    // At 380 pixels, or half the room beside the sidebar in a narrow window, taken from the panes.
    const int room = window->previewPanel()->width() + window->activePaneWidget()->width();
    EXPECT_GE(window->previewPanel()->width(), std::min(380, room / 2) - 10);
    EXPECT_GE(window->activePaneWidget()->width() + 10, room / 2);
    ASSERT_TRUE(shows(panelView(), "a.py"));
    EXPECT_EQ(panelView()->shownKind(), PreviewContent::Kind::text);
    EXPECT_EQ(panelView()->textView()->toPlainText(), "def f():\n    return 1  # one\n");
    // The source is coloured: the first line's keyword has a format of its own.
    const QTextBlock first = panelView()->textView()->document()->firstBlock();
    ASSERT_FALSE(first.layout()->formats().isEmpty());
    EXPECT_EQ(first.layout()->formats().first().start, 0);
    EXPECT_EQ(first.layout()->formats().first().length, 3);

    press(Qt::Key_Down);
    ASSERT_TRUE(shows(panelView(), "b.md"));
    EXPECT_EQ(panelView()->shownKind(), PreviewContent::Kind::markdown);
    EXPECT_TRUE(panelView()->noteView()->toPlainText().contains("Plan"));
    press(Qt::Key_Down);
    ASSERT_TRUE(shows(panelView(), "c.txt"));
    EXPECT_EQ(panelView()->textView()->toPlainText(), "plain words\n");
    EXPECT_TRUE(window->activePaneWidget()->isAncestorOf(QApplication::focusWidget())) << "the keyboard stays in the pane";

    press(Qt::Key_F3);
    EXPECT_FALSE(window->previewPanel()->isVisible());
    EXPECT_FALSE(state->showPreview());
}

TEST_F(PreviewWindowTest, TheCatalogueKeyTogglesThePanelToo)
{
    press(Qt::Key_P, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_TRUE(window->previewPanel()->isVisible());
    EXPECT_EQ(panelView()->shownKind(), PreviewContent::Kind::none) << "nothing under the cursor yet";
    press(Qt::Key_P, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_FALSE(window->previewPanel()->isVisible());
}

TEST_F(PreviewWindowTest, ClickingOrSpaceTogglesATaskAsOneUndoableChangeUnlessItChangedMeanwhile)
{
    select(note);
    state->setShowPreview(true);
    ASSERT_TRUE(shows(panelView(), "b.md"));
    const QByteArray before = test::readAll(note);
    const int steps = state->undoStack()->count();
    Q_EMIT panelView()->noteView()->anchorClicked(QUrl(QStringLiteral("task:3")));
    settle();
    const QByteArray after = test::readAll(note);
    EXPECT_TRUE(after.startsWith("# Plan\n\n- [x] write ✅ ")) << after.toStdString();
    EXPECT_TRUE(after.endsWith("\n- [x] read\n"));
    EXPECT_EQ(state->undoStack()->count(), steps + 1);
    EXPECT_EQ(state->undoStack()->undoText(), "Toggle Task");
    // The preview shows the ticked box.
    EXPECT_TRUE(test::waitUntil([&] { return panelView()->noteView()->toHtml().count(QChar(0x2611)) == 2; }));
    state->undoStack()->undo();
    settle();
    EXPECT_EQ(test::readAll(note), before);

    // Space on the focused box toggles it too.
    QTextBrowser* browser = panelView()->noteView();
    ASSERT_TRUE(test::waitUntil([&] { return browser->toHtml().count(QChar(0x2611)) == 1; }));
    browser->setFocus();
    ASSERT_TRUE(test::waitUntil([&] { return QApplication::focusWidget() == browser; }));
    press(Qt::Key_Tab); // the first link: the box of "write"
    ASSERT_EQ(browser->textCursor().charFormat().anchorHref(), "task:3");
    press(Qt::Key_Space);
    settle();
    EXPECT_TRUE(test::readAll(note).contains("- [x] write")) << test::readAll(note).toStdString();

    // A task that changed meanwhile is refused and nothing is lost.
    const QByteArray changed = "# Plan\n\nno tasks here\n";
    ASSERT_TRUE(test::writeFile(note, changed));
    const int stepsNow = state->undoStack()->count();
    Q_EMIT browser->anchorClicked(QUrl(QStringLiteral("task:3")));
    settle();
    EXPECT_EQ(test::readAll(note), changed);
    EXPECT_EQ(state->undoStack()->count(), stepsNow);
    EXPECT_TRUE(test::waitUntil([&] { return toast().contains("That task is no longer in “b.md”."); })) << toast().toStdString();
}

TEST_F(PreviewWindowTest, TasksShowTheirBoxWithoutABullet)
{
    const FilePath mixed = tree.file("mixed.md", "- [ ] write\n- [x] read\n\n* plain point\n");
    select(mixed);
    state->setShowPreview(true);
    ASSERT_TRUE(shows(panelView(), "mixed.md"));
    const QTextDocument* document = panelView()->noteView()->document();
    QStringList bulleted, unbulleted;
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next())
        (block.textList() ? bulleted : unbulleted).append(block.text().trimmed());
    EXPECT_EQ(bulleted.join(u'|').toStdString(), "plain point");
    ASSERT_EQ(unbulleted.size(), 2) << unbulleted.join(u'|').toStdString();
    EXPECT_EQ(unbulleted[0], QString(QChar(0x2610)) + " write");
    EXPECT_EQ(unbulleted[1], QString(QChar(0x2611)) + " read");
    // Each stays indented as the list's items are.
    EXPECT_GT(document->begin().blockFormat().indent(), 0);
}

TEST_F(PreviewWindowTest, SpaceOpensQuickLookArrowsMoveAndEscCloses)
{
    select(code);
    QWidget* before = QApplication::focusWidget();
    press(Qt::Key_Space);
    QuickLook* look = window->quickLook();
    ASSERT_TRUE(look->isOpen());
    EXPECT_EQ(look->geometry(), window->rect()) << "over the whole window";
    ASSERT_TRUE(shows(look->view(), "a.py"));
    press(Qt::Key_Down);
    EXPECT_EQ(pane()->cursor(), note);
    ASSERT_TRUE(shows(look->view(), "b.md"));
    press(Qt::Key_Up);
    ASSERT_TRUE(shows(look->view(), "a.py"));
    press(Qt::Key_Escape);
    EXPECT_FALSE(look->isOpen());
    EXPECT_EQ(QApplication::focusWidget(), before);
    press(Qt::Key_Y, Qt::ControlModifier); // the catalogue's key
    EXPECT_TRUE(look->isOpen());
    press(Qt::Key_Space);
    EXPECT_FALSE(look->isOpen());
}

TEST_F(PreviewWindowTest, ExpandPreviewTakesTheContentAreaAndIsKept)
{
    select(code);
    press(Qt::Key_Return, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_TRUE(state->previewExpanded());
    EXPECT_TRUE(state->showPreview());
    EXPECT_TRUE(window->previewPanel()->isVisible());
    EXPECT_FALSE(window->activePaneWidget()->isVisible());
    EXPECT_TRUE(readSettingsBool(*openSettings(), QStringLiteral("previewExpanded"), false));
    WindowState second(tree.root(), &preferences);
    MainWindow other(&second);
    EXPECT_TRUE(second.previewExpanded());
    press(Qt::Key_Return, Qt::ControlModifier | Qt::AltModifier);
    EXPECT_FALSE(state->previewExpanded());
    EXPECT_TRUE(window->activePaneWidget()->isVisible());
    EXPECT_TRUE(window->activePaneWidget()->isAncestorOf(QApplication::focusWidget()));
}

TEST_F(PreviewWindowTest, APdfShowsItsFirstPageAndADamagedOneSaysSo)
{
    const FilePath pdf = tree.path("d.pdf");
    {
        QPdfWriter writer(pdf.text());
        writer.setPageSize(QPageSize(QPageSize::A5));
        QPainter painter(&writer);
        painter.drawText(QPointF(200, 400), QStringLiteral("page one"));
        writer.newPage();
        painter.drawText(QPointF(200, 400), QStringLiteral("page two"));
    }
    tree.file("e.pdf", test::readAll(pdf).left(200));
    state->setShowPreview(true);
    select(pdf);
    ASSERT_TRUE(shows(panelView(), "d.pdf"));
    EXPECT_EQ(panelView()->shownKind(), PreviewContent::Kind::pdf);
    EXPECT_TRUE(panelView()->detailsText().startsWith("2 pages")) << panelView()->detailsText().toStdString();
    select(tree.path("e.pdf"));
    ASSERT_TRUE(shows(panelView(), "e.pdf"));
    EXPECT_EQ(panelView()->shownKind(), PreviewContent::Kind::message);
}

TEST_F(PreviewWindowTest, AFileDeletedWhileLoadingGivesAMessageOrItsLastContents)
{
    state->setShowPreview(true);
    PreviewLoad load;
    std::shared_ptr<PreparedPreview> result;
    QObject::connect(&load, &PreviewLoad::ready, [&](std::shared_ptr<PreparedPreview> prepared) { result = prepared; });
    const FilePath doomed = tree.file("doomed.txt", QByteArray(300000, 'z'));
    load.show(doomed);
    ASSERT_EQ(::unlink(doomed.c_str()), 0);
    ASSERT_TRUE(test::waitUntil([&] { return result != nullptr; }));
    const auto kind = result->content.kind;
    EXPECT_TRUE(kind == PreviewContent::Kind::message || kind == PreviewContent::Kind::text);
    if (kind == PreviewContent::Kind::message) {
        EXPECT_EQ(result->content.message, "Can’t read “doomed.txt”: it isn’t there any more.");
    }
}

TEST_F(PreviewWindowTest, AFolderShowsItsCountsThenItsSize)
{
    tree.file("f/one.png", QByteArray(5000, 'x'));
    tree.file("f/two.txt", "x");
    state->setShowPreview(true);
    pane()->reload();
    select(tree.path("f"));
    ASSERT_TRUE(shows(panelView(), "f"));
    EXPECT_EQ(panelView()->shownKind(), PreviewContent::Kind::folder);
    EXPECT_TRUE(test::waitUntil([&] { return panelView()->pageText().contains(" in 2 files"); }))
        << panelView()->pageText().toStdString();
    EXPECT_TRUE(panelView()->pageText().startsWith("2 items\n")) << panelView()->pageText().toStdString();
}

TEST_F(PreviewWindowTest, AFolderSummaryReadsWholeInANarrowColumn)
{
    for (const char* name : {"a.png", "b.txt", "c.pdf", "d.zip", "e.csv", "f.c", "g.mp3", "h.ttf"})
        tree.file(QStringLiteral("many/") + QString::fromLatin1(name), "x");
    tree.file("many/sub/x", "x");
    state->setShowPreview(true);
    pane()->reload();
    select(tree.path("many"));
    ASSERT_TRUE(shows(panelView(), "many"));
    ASSERT_TRUE(test::waitUntil([&] { return panelView()->pageText().contains(" in 9 files"); })) << panelView()->pageText().toStdString();
    const QStringList lines = panelView()->pageText().split(QLatin1Char('\n'));
    ASSERT_EQ(lines.size(), 3) << panelView()->pageText().toStdString();
    EXPECT_EQ(lines[0], "9 items");
    for (const char* kind : {"1 folder", "1 image", "1 document", "1 PDF", "1 archive", "1 data file", "1 source file",
                             "1 audio file", "1 other file"})
        EXPECT_TRUE(lines[1].contains(QString::fromLatin1(kind))) << "every kind is on the page, however narrow the column: "
                                                                 << lines[1].toStdString();
    EXPECT_TRUE(panelView()->detailsText().isEmpty()) << "not cut short in the header line";
}

// The window's file keys (catalogue commands), toasts with Undo, the progress card, the
// inline name of a new folder, driven through a real window over real files.

#include "WindowFixture.h"
#include "fileops/FileClipboard.h"
#include "ui/fileops/FileOpsController.h"
#include "ui/fileops/ProgressCard.h"
#include "ui/views/FileListView.h"

#include <QClipboard>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QUndoStack>

using namespace orwick;
using test::waitUntil;

namespace {

using FileOpsWindowTest = test::WindowTest;

TEST_F(FileOpsWindowTest, CopyPasteShowsAToastWhoseUndoRemovesTheCopy)
{
    const FilePath file = tree.file("a.txt", "a");
    const FilePath other = tree.folder("other");
    open(tree.root());
    select(file);
    press(Qt::Key_C, Qt::ControlModifier);
    const ClipboardFiles clip = readFileClipboard(QApplication::clipboard()->mimeData());
    EXPECT_EQ(clip.items, QList<FilePath>{file});
    EXPECT_FALSE(clip.cut);

    pane()->navigate(other);
    ASSERT_TRUE(waitUntil([&] { return pane()->url() == other && !pane()->isLoading(); }));
    press(Qt::Key_V, Qt::ControlModifier);
    settle();
    EXPECT_EQ(test::readAll(other.child(QStringLiteral("a.txt"))), "a");
    EXPECT_EQ(toast(), QStringLiteral("Copied a.txt"));
    auto* undoButton = window->toasts()->findChild<QPushButton*>();
    ASSERT_NE(undoButton, nullptr);
    EXPECT_EQ(undoButton->text(), QStringLiteral("Undo"));
    undoButton->click();
    settle();
    EXPECT_FALSE(test::exists(other.child(QStringLiteral("a.txt"))));
    EXPECT_TRUE(test::exists(file));
}

TEST_F(FileOpsWindowTest, DeleteTrashesAndCtrlZPutsBack)
{
    const FilePath file = tree.file("old.txt", "o");
    open(tree.root());
    select(file);
    press(Qt::Key_Delete);
    settle();
    EXPECT_FALSE(test::exists(file));
    EXPECT_EQ(toast(), QStringLiteral("Moved old.txt to the Trash"));
    // The Edit menu's Undo (the catalogue's command, Ctrl+Z its key) names the step it undoes.
    QMenu* edit = nullptr;
    for (QAction* top : window->menuBar()->actions())
        if (top->text() == QStringLiteral("&Edit"))
            edit = top->menu();
    ASSERT_NE(edit, nullptr);
    Q_EMIT edit->aboutToShow();
    ASSERT_FALSE(edit->actions().isEmpty());
    EXPECT_EQ(edit->actions().first()->text(), QStringLiteral("Undo ") + state->undoStack()->undoText());
    EXPECT_FALSE(state->undoStack()->undoText().isEmpty());
    EXPECT_EQ(edit->actions().first()->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Z));
    Q_EMIT edit->aboutToHide();
    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_EQ(test::readAll(file), "o");
    EXPECT_EQ(toast(), QString()) << "its Undo would now undo the step before";
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    settle();
    EXPECT_FALSE(test::exists(file));
}

TEST_F(FileOpsWindowTest, NewFolderStartsInlineRename)
{
    open(tree.root());
    press(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    settle();
    QLineEdit* editor = nullptr;
    ASSERT_TRUE(waitUntil([&] {
        editor = window->activePaneWidget()->listView()->viewport()->findChild<QLineEdit*>();
        return editor && editor->isVisible();
    }));
    EXPECT_EQ(editor->text(), QStringLiteral("untitled folder"));
    EXPECT_TRUE(window->fileOps()->isRenaming());
    editor->setText(QStringLiteral("Invoices"));
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(editor, &enter);
    settle();
    EXPECT_TRUE(test::exists(tree.path("Invoices")));
    EXPECT_FALSE(test::exists(tree.path("untitled folder")));
    EXPECT_EQ(state->undoStack()->undoText(), QStringLiteral("Rename untitled folder"));
}

TEST_F(FileOpsWindowTest, ProgressCardShowsEachRunningJob)
{
    const FilePath big = tree.file("big.bin", QByteArray(8 << 20, 'b'));
    open(tree.root());
    select(big);
    press(Qt::Key_D, Qt::ControlModifier);
    ProgressCard* card = window->fileOps()->progressCard();
    ASSERT_FALSE(ops().jobs().isEmpty());
    EXPECT_TRUE(card->isVisible());
    ASSERT_EQ(card->rowTexts().size(), 1);
    EXPECT_TRUE(card->rowTexts().first().startsWith(QStringLiteral("Duplicate — ")));
    settle();
    EXPECT_FALSE(card->isVisible());
    EXPECT_TRUE(test::exists(tree.path("big copy.bin")));

    CopyProgress::Snapshot snapshot;
    snapshot.totalBytes = 3 << 20;
    snapshot.finishedBytes = 1 << 20;
    EXPECT_EQ(ProgressCard::progressText(snapshot), QStringLiteral("%1 of %2").arg(QLocale::system().formattedDataSize(1 << 20), QLocale::system().formattedDataSize(3 << 20)));
    // A job done item by item counts items, not bytes.
    CopyProgress trashing;
    trashing.setTotalItems(10);
    trashing.addFinished(3);
    EXPECT_EQ(ProgressCard::progressText(trashing.snapshot()), QStringLiteral("3 of 10 items"));
}

} // namespace

// Several windows in one Orwick: the list of windows and the front one, New Window, requests
// from outside going to the window in front, and each file job's question, failure and toast
// showing in the window whose command started it.

#include "app/OpenRouter.h"
#include "commands/CommandCatalog.h"
#include "fileops/FileClipboard.h"
#include "fileops/FileOperations.h"
#include "support/KeyPress.h"
#include "support/TempHome.h"
#include "support/TestMain.h"
#include "ui/pane/PaneWidget.h"
#include "ui/window/MainWindow.h"
#include "ui/window/ToastHost.h"
#include "ui/window/Windows.h"

#include <QApplication>
#include <QClipboard>
#include <QMessageBox>
#include <QPushButton>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace orwick;
using test::waitUntil;

namespace {

struct TwoWindowsTest : ::testing::Test {
    test::TempTree tree;
    ViewPreferences preferences;
    std::unique_ptr<Windows> windows = std::make_unique<Windows>(&preferences);
    OpenRouter router;

    void SetUp() override
    {
        windows->serve(router);
        OpenRouter::setInstance(&router);
    }
    void TearDown() override
    {
        ASSERT_TRUE(waitUntil([] { return FileOperations::shared().isIdle(); }, 20000));
        OpenRouter::setInstance(nullptr);
        windows.reset();
    }
    MainWindow* openOn(const FilePath& folder)
    {
        MainWindow* window = windows->open(folder);
        activate(window);
        EXPECT_TRUE(waitUntil([&] { return !window->state()->activePane()->isLoading(); }));
        return window;
    }
    static void activate(MainWindow* window)
    {
        window->activateWindow();
        EXPECT_TRUE(waitUntil([&] { return QApplication::activeWindow() == window; }));
    }
    // Selects `item` in the window and presses a key there, as a person would.
    static void pressIn(MainWindow* window, const FilePath& item, int key, Qt::KeyboardModifiers modifiers)
    {
        activate(window);
        PaneState* pane = window->state()->activePane();
        ASSERT_TRUE(waitUntil([&] { return pane->row(item) >= 0; })) << item.text().toStdString();
        pane->click(item, Qt::NoModifier);
        test::pressKey(window->activePaneWidget()->focusTarget(), key, modifiers);
    }
    static QString toastOf(MainWindow* window) { return window->toasts()->currentMessage(); }
    void settle() { ASSERT_TRUE(waitUntil([] { return FileOperations::shared().isIdle(); }, 20000)); }
};

TEST_F(TwoWindowsTest, TheFrontWindowIsTheOneActiveLast)
{
    MainWindow* first = openOn(tree.root());
    EXPECT_EQ(windows->front(), first);
    MainWindow* second = openOn(tree.folder("B"));
    EXPECT_EQ(windows->all(), (QList<MainWindow*>{first, second}));
    EXPECT_EQ(windows->front(), second);
    activate(first);
    EXPECT_EQ(windows->front(), first);

    // Requests from outside go to the front window, in a new tab.
    router.open({{tree.folder("C"), false}});
    EXPECT_EQ(first->state()->tabs().size(), 2);
    EXPECT_EQ(second->state()->tabs().size(), 1);
    EXPECT_EQ(first->state()->activePane()->url(), tree.path("C"));

    // A closed window leaves the list, and the other is in front (two tabs: it asks first).
    first->close();
    QMessageBox* question = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (question = first->findChild<QMessageBox*>(QStringLiteral("closeTabsQuestion"))); }));
    for (QAbstractButton* button : question->buttons())
        if (button->text() == QStringLiteral("Close Window"))
            button->click();
    ASSERT_TRUE(waitUntil([&] { return windows->all().size() == 1; }));
    EXPECT_EQ(windows->front(), second);
    router.open({{tree.path("C"), false}});
    EXPECT_EQ(second->state()->tabs().size(), 2);
}

TEST_F(TwoWindowsTest, NewWindowOpensAFreshWindowOnTheHomeFolder)
{
    MainWindow* first = openOn(tree.root());
    const AppCommand* command = CommandCatalog::find(QStringLiteral("newWindow"));
    ASSERT_NE(command, nullptr);
    EXPECT_EQ(command->title, QStringLiteral("New Window"));
    EXPECT_EQ(command->shortcut, QKeySequence(Qt::CTRL | Qt::Key_N));
    test::pressKey(first->activePaneWidget()->focusTarget(), Qt::Key_N, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return windows->all().size() == 2; }));
    MainWindow* second = windows->all().last();
    EXPECT_EQ(windows->front(), second);
    EXPECT_EQ(second->state()->activePane()->url(), test::tempHome());
    EXPECT_EQ(second->state()->tabs().size(), 1);

    // Without a router (no program around it) the command is dimmed.
    OpenRouter::setInstance(nullptr);
    EXPECT_FALSE(command->enabledIn(*first->state()));
}

TEST_F(TwoWindowsTest, AToastOrAFailureShowsInTheWindowWhoseCommandStartedTheJob)
{
    const FilePath file = tree.file("a.txt", "a");
    tree.file("b.txt", "b");
    MainWindow* first = openOn(tree.root());
    MainWindow* second = openOn(tree.root());
    pressIn(first, file, Qt::Key_D, Qt::ControlModifier); // Duplicate
    settle();
    EXPECT_EQ(toastOf(first), QStringLiteral("Duplicated a.txt"));
    EXPECT_EQ(toastOf(second), QString());

    // Its Undo is that window's: the other window's Undo has nothing to undo.
    EXPECT_TRUE(first->state()->undoStack()->canUndo());
    EXPECT_FALSE(second->state()->undoStack()->canUndo());

    // The second window (not the active one) renames onto a name that is taken.
    FileOperations::shared().rename(file, "b.txt", second->state()->undoStack());
    settle();
    EXPECT_EQ(toastOf(second), QStringLiteral("“b.txt” already exists in this folder."));
    EXPECT_FALSE(toastOf(first).contains(QStringLiteral("already exists"))) << toastOf(first).toStdString();
    EXPECT_EQ(test::readAll(file), "a");
}

TEST_F(TwoWindowsTest, AnUndoThatFailsSaysSoInItsOwnWindow)
{
    const FilePath file = tree.file("src/a.txt", "a");
    const FilePath destination = tree.folder("dst");
    MainWindow* first = openOn(tree.root());
    FileOperations::shared().transfer({file}, destination, FileOperations::Mode::move, first->state()->undoStack());
    settle();
    MainWindow* second = openOn(tree.root());
    // The folder it came from goes behind Orwick's back, so the move can't be undone.
    ASSERT_EQ(::rmdir(tree.path("src").c_str()), 0);
    activate(first);
    test::pressKey(first->activePaneWidget()->focusTarget(), Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_TRUE(waitUntil([&] { return toastOf(first).contains(QStringLiteral("a.txt")); })) << toastOf(first).toStdString();
    EXPECT_EQ(toastOf(second), QString());
    EXPECT_EQ(test::readAll(destination.child(QStringLiteral("a.txt"))), "a");
}

TEST_F(TwoWindowsTest, AConflictQuestionShowsInTheWindowWhoseCommandStartedTheJob)
{
    const FilePath file = tree.file("in/a.txt", "new");
    const FilePath docs = tree.folder("Docs");
    tree.file("Docs/a.txt", "old");
    MainWindow* first = openOn(docs);
    MainWindow* second = openOn(docs);
    // Paste in the first window, opened before the second.
    activate(first);
    QApplication::clipboard()->setMimeData(makeFileClipboard({file}, false).release());
    test::pressKey(first->activePaneWidget()->focusTarget(), Qt::Key_V, Qt::ControlModifier);
    QMessageBox* box = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (box = first->findChild<QMessageBox*>()) && box->isVisible(); }));
    EXPECT_EQ(second->findChild<QMessageBox*>(), nullptr);
    EXPECT_EQ(box->text(), QStringLiteral("“a.txt” is already in “Docs”"));
    for (QAbstractButton* button : box->buttons())
        if (button->text() == QStringLiteral("Keep Both"))
            button->click();
    settle();
    EXPECT_EQ(test::readAll(docs.child(QStringLiteral("a.txt"))), "old");
    EXPECT_EQ(test::readAll(docs.child(QStringLiteral("a 2.txt"))), "new");
    EXPECT_TRUE(toastOf(first).startsWith(QStringLiteral("Copied"))) << toastOf(first).toStdString();
    EXPECT_EQ(toastOf(second), QString());
}

} // namespace

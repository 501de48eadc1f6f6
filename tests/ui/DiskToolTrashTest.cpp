// Removing from the disk-tool panels: the ticked duplicates, a treemap block and the ticked
// build folders each go to the real (temporary-home) Trash as one step on the window's undo
// stack, with the toast and its Undo; the panel drops what left, keeps what could not go, and
// one undo puts everything back.

#include "DiskToolWindow.h"
#include "fileops/FileOperations.h"
#include "platform/XdgPaths.h"
#include "state/WindowState.h"
#include "support/TempHome.h"
#include "support/TestMain.h"
#include "ui/panels/CleanUpPanel.h"
#include "ui/panels/DiskToolKeys.h"
#include "ui/panels/DuplicatesPanel.h"
#include "ui/panels/SpacePanel.h"
#include "ui/panels/TreemapWidget.h"
#include "ui/window/MainWindow.h"
#include "ui/window/ToastHost.h"

#include <QDir>
#include <QFile>
#include <QPushButton>
#include "support/KeyPress.h"
#include <QTreeWidget>
#include <gtest/gtest.h>

namespace orwick {
namespace {

using test::TempTree;
using test::waitUntil;

// How many entries the home Trash holds (the Trash is shared by the whole test program).
int trashCount()
{
    return int(QDir(xdg::homeTrash().child(QStringLiteral("files")).text()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden).size());
}

class DiskToolTrashTest : public test::DiskToolWindowTest {
protected:
    QUndoStack* undo() { return state->undoStack(); }
    void settle() { ASSERT_TRUE(waitUntil([] { return FileOperations::shared().isIdle(); }, 20000)); }
    QString toast() const { return window->toasts()->currentMessage(); }
    // Presses the toast's Undo button.
    void undoFromToast()
    {
        for (auto* button : window->toasts()->findChildren<QPushButton*>())
            if (button->text() == "Undo" && button->isVisibleTo(window->toasts())) {
                button->click();
                return;
            }
        FAIL() << "the toast offers no Undo";
    }
};

TEST_F(DiskToolTrashTest, TickedDuplicatesGoInOneUndoableStepAndComeBack)
{
    const QByteArray a(150000, 'a'), b(120000, 'b');
    const FilePath aKeep = tree.file("docs/a.bin", a);
    const FilePath aCopy = tree.file("docs/a copy.bin", a);
    const FilePath aTwo = tree.file("other/a (2).bin", a);
    const FilePath bOld = tree.file("b.bin", b);
    const FilePath bNew = tree.file("deep/er/b.bin", b);
    tree.touch(bOld, 1000000);
    tree.touch(bNew, 2000000);
    open();
    DiskToolKeys::openDuplicates(window.get(), pane());
    auto* panel = shown<DuplicatesPanel>();
    ASSERT_TRUE(panel);
    ASSERT_TRUE(waitUntil([&] { return !panel->isSearching(); }));
    ASSERT_EQ(panel->choice().groups().size(), 2u);
    panel->tickExtraCopies();
    ASSERT_EQ(panel->choice().chosenCount(), 3);

    const int trashedBefore = trashCount();
    const int stepsBefore = undo()->count();
    panel->trashChosen();
    ASSERT_TRUE(waitUntil([&] { return !panel->isTrashing(); }, 20000));
    for (const FilePath& gone : {aCopy, aTwo, bNew})
        EXPECT_FALSE(test::exists(gone)) << gone.text().toStdString();
    EXPECT_TRUE(test::exists(aKeep));
    EXPECT_TRUE(test::exists(bOld));
    EXPECT_EQ(trashCount(), trashedBefore + 3) << "they are in the Trash, not deleted";
    EXPECT_EQ(undo()->count(), stepsBefore + 1) << "one step for all of them";
    EXPECT_EQ(undo()->undoText(), "Remove Duplicates");
    EXPECT_EQ(toast(), "Moved 3 items to the Trash");
    EXPECT_TRUE(panel->choice().groups().empty()) << "every group is down to one member";
    EXPECT_EQ(panel->choice().chosenCount(), 0);
    EXPECT_TRUE(panel->footer().startsWith("Looked through ")) << panel->footer().toStdString();

    undoFromToast();
    settle();
    for (const FilePath& back : {aCopy, aTwo, bNew})
        EXPECT_EQ(test::readAll(back).size(), back == bNew ? b.size() : a.size()) << back.text().toStdString();
    EXPECT_EQ(trashCount(), trashedBefore);
    ASSERT_TRUE(waitUntil([&] { return !panel->isSearching(); }));
    EXPECT_EQ(panel->choice().groups().size(), 2u) << "after the undo the panel looks again and finds them";
}

TEST_F(DiskToolTrashTest, DuplicatesThatCouldNotGoStayInTheirGroup)
{
    const QByteArray a(150000, 'a');
    tree.file("a.bin", a);
    const FilePath copy1 = tree.file("a copy.bin", a);
    const FilePath copy2 = tree.file("a copy 2.bin", a);
    const FilePath copy3 = tree.file("a copy 3.bin", a);
    open();
    DiskToolKeys::openDuplicates(window.get(), pane());
    auto* panel = shown<DuplicatesPanel>();
    ASSERT_TRUE(waitUntil([&] { return !panel->isSearching(); }));
    panel->tickExtraCopies();
    ASSERT_EQ(panel->choice().chosenCount(), 3);
    // One ticked file is renamed away behind the panel's back: the Trash step can't take it.
    ASSERT_TRUE(QFile::rename(copy2.text(), tree.path(QStringLiteral("elsewhere.bin")).text()));
    panel->trashChosen();
    ASSERT_TRUE(waitUntil([&] { return !panel->isTrashing(); }, 20000));
    ASSERT_EQ(panel->choice().groups().size(), 1u);
    const auto& files = panel->choice().groups().front().files;
    ASSERT_EQ(files.size(), 2u) << "the kept file and the one that could not go";
    EXPECT_TRUE(std::any_of(files.begin(), files.end(), [&](const Duplicates::File& f) { return f.url == copy2; }));
    EXPECT_FALSE(test::exists(copy1));
    EXPECT_FALSE(test::exists(copy3));
    EXPECT_EQ(panel->choice().chosen(), QSet<FilePath>{copy2}) << "it stays ticked";
    settle();
}

TEST_F(DiskToolTrashTest, TreemapBlockGoesAndTheMapAndItsCountLoseIt)
{
    const FilePath big = tree.file("big/large", QByteArray(3000000, 'l'));
    tree.file("big/small", QByteArray(10, 's'));
    tree.file("other/large", QByteArray(2000000, 'o'));
    open();
    DiskToolKeys::openSpace(window.get(), pane());
    auto* panel = shown<SpacePanel>();
    ASSERT_TRUE(waitUntil([&] { return panel->current() != nullptr; }));
    auto* map = panel->findChild<TreemapWidget*>();
    ASSERT_EQ(map->blocks().front().node->name, "big");
    const qint64 sizeBefore = panel->root()->size;
    const qint64 bigSize = map->blocks().front().node->size;
    const int revision = panel->revision();
    ASSERT_TRUE(panel->footer().contains(" · 5 items · ")) << panel->footer().toStdString();

    const int stepsBefore = undo()->count();
    panel->trashNode(map->blocks().front().node);
    ASSERT_TRUE(waitUntil([&] { return !panel->isTrashing(); }, 20000));
    EXPECT_TRUE(panel->footer().contains(" · 2 items · ")) << "big and its two files left: " << panel->footer().toStdString();
    EXPECT_FALSE(test::exists(big.parent()));
    EXPECT_EQ(undo()->count(), stepsBefore + 1);
    EXPECT_GT(panel->revision(), revision);
    EXPECT_EQ(panel->root()->size, sizeBefore - bigSize);
    for (const auto& block : map->blocks())
        EXPECT_TRUE(!block.node || block.node->name != "big") << "the map is laid out without it";
    EXPECT_EQ(toast(), "Moved big to the Trash");

    undo()->undo();
    settle();
    EXPECT_EQ(test::readAll(big).size(), 3000000);
    ASSERT_TRUE(waitUntil([&] { return panel->root() && panel->root()->size == sizeBefore; }))
        << "after the undo the panel measures again";
}

TEST_F(DiskToolTrashTest, DeleteOnTheSmallFilesBlockSaysWhyNothingMoves)
{
    const FilePath small = tree.file("small", QByteArray(10, 's'));
    tree.file("large", QByteArray(2000000, 'l'));
    open();
    DiskToolKeys::openSpace(window.get(), pane());
    auto* panel = shown<SpacePanel>();
    ASSERT_TRUE(waitUntil([&] { return panel->current() != nullptr; }));
    auto* map = panel->findChild<TreemapWidget*>();
    ASSERT_EQ(map->blocks().size(), 2u);
    test::pressKey(map, Qt::Key_End);
    ASSERT_TRUE(map->currentBlock() && !map->currentBlock()->node) << "on the small-files block";
    const int stepsBefore = undo()->count(), inTrash = trashCount();

    test::pressKey(map, Qt::Key_Delete);
    EXPECT_EQ(toast(), "The files under 1 MB are measured together, not one by one: to move them to the Trash, select them in their folder");
    EXPECT_FALSE(panel->isTrashing());
    settle();
    EXPECT_TRUE(test::exists(small));
    EXPECT_EQ(undo()->count(), stepsBefore);
    EXPECT_EQ(trashCount(), inTrash);
    EXPECT_EQ(map->blocks().size(), 2u);
}

TEST_F(DiskToolTrashTest, AfterAnUndoTheMapStaysInTheFolderItShowed)
{
    const FilePath large = tree.file("a/b/large", QByteArray(2000000, 'l'));
    tree.file("a/b/other", QByteArray(1500000, 'o'));
    open();
    DiskToolKeys::openSpace(window.get(), pane());
    auto* panel = shown<SpacePanel>();
    ASSERT_TRUE(waitUntil([&] { return panel->current() != nullptr; }));
    panel->goIn(panel->root()->children.front().get());
    panel->goIn(const_cast<SpaceNode*>(panel->current())->children.front().get());
    ASSERT_EQ(panel->current()->url(), large.parent());
    ASSERT_EQ(panel->current()->children.front()->url(), large);
    panel->trashNode(panel->current()->children.front().get());
    ASSERT_TRUE(waitUntil([&] { return !panel->isTrashing(); }, 20000));
    EXPECT_EQ(panel->current()->children.size(), 1u);

    undo()->undo();
    settle();
    ASSERT_TRUE(waitUntil([&] { return panel->current() && panel->current()->children.size() == 2; }));
    EXPECT_EQ(panel->current()->url(), large.parent());
}

TEST_F(DiskToolTrashTest, TickedBuildFoldersGoInOneStepAndLeaveTheList)
{
    tree.file("web/package.json", "{}");
    const FilePath modules = tree.file("web/node_modules/x/index.js", "x").parent().parent();
    const FilePath cache = tree.file("py/__pycache__/m.pyc", "c").parent();
    const FilePath venv = tree.file("py/.venv/lib/site.py", "s").parent().parent();
    open();
    DiskToolKeys::openCleanUp(window.get(), pane());
    auto* panel = shown<CleanUpPanel>();
    ASSERT_TRUE(waitUntil([&] { return !panel->isScanning() && panel->rows().size() == 3; }));
    for (const auto& row : panel->rows())
        EXPECT_TRUE(row.size.has_value()) << "every row is measured";
    EXPECT_EQ(panel->footer(), "Projects rebuild these when needed. Undo (Ctrl+Z) puts them back. Space ticks, Delete moves the ticked to the Trash.");
    // Untick the virtual environment: it stays on disk and in the list.
    auto* list = panel->findChild<QTreeWidget*>();
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        if (list->topLevelItem(i)->text(0) == "py/.venv")
            list->topLevelItem(i)->setCheckState(0, Qt::Unchecked);

    const int stepsBefore = undo()->count();
    panel->trashTicked();
    ASSERT_TRUE(waitUntil([&] { return !panel->isTrashing(); }, 20000));
    EXPECT_FALSE(test::exists(modules));
    EXPECT_FALSE(test::exists(cache));
    EXPECT_TRUE(test::exists(venv));
    EXPECT_EQ(undo()->count(), stepsBefore + 1);
    ASSERT_EQ(panel->rows().size(), 1u);
    EXPECT_EQ(panel->rows().front().found.url, venv);

    undo()->undo();
    settle();
    EXPECT_TRUE(test::exists(modules.child(QStringLiteral("x/index.js"))));
    EXPECT_TRUE(test::exists(cache.child(QStringLiteral("m.pyc"))));
    EXPECT_TRUE(waitUntil([&] { return !panel->isScanning() && panel->rows().size() == 3; }))
        << "after the undo the panel looks again";
    for (const auto& row : panel->rows())
        EXPECT_EQ(row.ticked, row.found.url != venv) << "and keeps the ticks it had";

    undo()->redo();
    settle();
    EXPECT_FALSE(test::exists(modules));
    EXPECT_TRUE(waitUntil([&] { return !panel->isScanning() && panel->rows().size() == 1; })) << "and after the redo";
}

} // namespace
} // namespace orwick

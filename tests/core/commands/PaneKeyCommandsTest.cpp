// The keys a pane's views act on that run commands belong to the catalogue like every other:
// Return opens, Backspace goes to the enclosing folder, Esc drops the selection and then closes
// the filter, Ctrl+Alt+1…4 sort; each is a command of the palette and the menus.

#include "commands/CommandCatalog.h"
#include "support/HeadlessWindow.h"

#include <gtest/gtest.h>

using namespace orwick;

namespace {

struct PaneKeyCommandsTest : test::HeadlessWindowTest {
    void SetUp() override
    {
        tree.file("a.txt");
        tree.file("b.txt");
        openWindow(tree.root());
    }
    // The command whose key (window or pane) is `key`, or an empty id.
    QString ownerOf(const QKeySequence& key)
    {
        for (const AppCommand& command : CommandCatalog::all(*window))
            if (command.shortcut == key || command.otherShortcuts.contains(key) || command.paneShortcuts.contains(key))
                return command.id;
        return {};
    }
};

TEST_F(PaneKeyCommandsTest, ThePanesKeysAreCommandsOfTheCatalogue)
{
    EXPECT_EQ(ownerOf(QKeySequence(Qt::Key_Return)), "open");
    EXPECT_EQ(ownerOf(QKeySequence(Qt::Key_Enter)), "open");
    EXPECT_EQ(ownerOf(QKeySequence(Qt::Key_Backspace)), "up");
    EXPECT_EQ(ownerOf(QKeySequence(Qt::Key_Escape)), "deselectOrCloseFilter");
    EXPECT_EQ(ownerOf(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_1)), "sort.name");
    EXPECT_EQ(ownerOf(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_2)), "sort.modified");
    EXPECT_EQ(ownerOf(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_3)), "sort.size");
    EXPECT_EQ(ownerOf(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_4)), "sort.kind");
    // Return, Backspace and Esc are never window-wide: fields and editors keep them.
    for (const AppCommand& command : CommandCatalog::all(*window))
        for (int key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Backspace, Qt::Key_Escape}) {
            EXPECT_NE(command.shortcut, QKeySequence(key)) << command.id.toStdString();
            EXPECT_FALSE(command.otherShortcuts.contains(QKeySequence(key))) << command.id.toStdString();
        }
    EXPECT_EQ(CommandCatalog::find("deselectOrCloseFilter")->shortcutText(), QKeySequence(Qt::Key_Escape).toString(QKeySequence::NativeText))
        << "the palette names a command by its pane key when it has no other";
}

TEST_F(PaneKeyCommandsTest, EscapeDropsTheSelectionThenClosesTheFilter)
{
    PaneState* pane = window->activePane();
    EXPECT_FALSE(CommandCatalog::run("deselectOrCloseFilter", *window)) << "nothing to drop or close";
    pane->setFiltering(true);
    pane->click(tree.path("a.txt"), Qt::NoModifier);
    ASSERT_FALSE(pane->selection().isEmpty());
    EXPECT_TRUE(CommandCatalog::run("deselectOrCloseFilter", *window));
    EXPECT_TRUE(pane->selection().isEmpty());
    EXPECT_TRUE(pane->isFiltering()) << "the selection went first";
    EXPECT_TRUE(CommandCatalog::find("open")->enabledIn(*window)) << "Return still opens the item under the cursor";
    EXPECT_TRUE(CommandCatalog::run("deselectOrCloseFilter", *window));
    EXPECT_FALSE(pane->isFiltering());
}

} // namespace

// The Trash's columns sort from the keyboard too, and only where they are.
TEST_F(PaneKeyCommandsTest, TheTrashsColumnsSortOnlyInTheTrash)
{
    EXPECT_EQ(ownerOf(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_5)), "sort.originalLocation");
    EXPECT_EQ(ownerOf(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_6)), "sort.dateDeleted");
    PaneState* pane = window->activePane();
    EXPECT_FALSE(CommandCatalog::run("sort.dateDeleted", *window)) << "a folder has no such column";
    EXPECT_EQ(pane->sortKey(), SortKey::name);
    EXPECT_EQ(CommandCatalog::find(QStringLiteral("sort.dateDeleted"))->disabledNote, QStringLiteral("Only the Trash has this column"));
    pane->show(Listing::of(Listing::Kind::trash));
    EXPECT_TRUE(CommandCatalog::run("sort.dateDeleted", *window));
    EXPECT_EQ(pane->sortKey(), SortKey::dateDeleted);
    EXPECT_TRUE(CommandCatalog::run("sort.originalLocation", *window));
    EXPECT_EQ(pane->sortKey(), SortKey::originalLocation);
}

// A keyboard user's everyday session, scripted as one run in a real window with no mouse: go in
// and out of folders, filter and Esc, select and deselect by pattern, make and name a folder,
// rename in place, trash and undo, split and copy and move to the other pane with undo, tabs
// opened, switched, closed and reopened, the palette, the views, Go to Path, back and forward,
// hidden files, Get Info and the Keyboard Shortcuts sheet. Each step checks what the user would
// see happen, so a key that stops reaching its command fails here.

#include "WindowFixture.h"

#include "commands/PaletteState.h"
#include "ui/panels/InfoPanel.h"
#include "ui/panels/DiskToolKeys.h"
#include "ui/panels/ShortcutsSheet.h"
#include "ui/views/FileListView.h"
#include "ui/window/NamePatternPrompt.h"
#include "ui/window/PaletteController.h"

#include <QLineEdit>
#include <QTabBar>

namespace orwick::test {
namespace {

struct EverydayKeyboardTest : WindowTest {
    void awaitPatternField()
    {
        ASSERT_TRUE(waitUntil([&] {
            auto* prompt = window->findChild<NamePatternPrompt*>();
            return prompt && prompt->isVisible() && QApplication::focusWidget() == prompt->patternField();
        }));
    }
    QStringList selectedNames()
    {
        QStringList names;
        for (const FileItem& item : pane()->selectedItems())
            names << item.name;
        return names;
    }
    QString cursorName() { return pane()->cursor() ? pane()->cursor()->fileName() : QString(); }
    // Type-select: the letters reach the list, whose cursor goes to the first name they start.
    void goTo(const QString& prefix)
    {
        waitUntil([] { return false; }, int(PaneState::kTypeAheadWindowMs) + 50); // a fresh prefix
        type(prefix);
    }
    void awaitLoaded(const FilePath& folder)
    {
        ASSERT_TRUE(waitUntil([&] { return pane()->url() == folder && !pane()->isLoading(); })) << folder.text().toStdString();
    }
    void backToWindow()
    {
        window->activateWindow();
        ASSERT_TRUE(waitUntil([&] { return QApplication::activeWindow() == window.get(); }));
    }
    QLineEdit* renameEditor()
    {
        for (QLineEdit* editor : window->activePaneWidget()->listView()->viewport()->findChildren<QLineEdit*>())
            if (editor->isVisible())
                return editor;
        return nullptr;
    }
    // Ctrl+K, the query, Return on the first row.
    void runFromPalette(const QString& query)
    {
        press(Qt::Key_K, Qt::ControlModifier);
        ASSERT_TRUE(waitUntil([&] { return palette()->isOpen(); }));
        type(query);
        press(Qt::Key_Return);
        ASSERT_TRUE(waitUntil([&] { return !palette()->isOpen(); }));
    }
};

TEST_F(EverydayKeyboardTest, TwentyEverydayTasksByKeyboardOnly)
{
    tree.file("Projects/orwick/README.md", "r");
    tree.file("Projects/site/index.html", "i");
    tree.file("Inbox/a-report.txt", "a");
    tree.file("Inbox/b-budget.txt", "b");
    tree.file("Inbox/notes.md", "n");
    tree.file("Inbox/.secret", "s");
    tree.folder("Outbox");
    open(tree.root());
    DiskToolKeys::follow(*state, window.get());

    // 1. Into a folder by type-select and Return; 2. out with Backspace, the cursor on it.
    goTo(QStringLiteral("pro"));
    ASSERT_EQ(cursorName(), "Projects");
    press(Qt::Key_Return);
    awaitLoaded(tree.path("Projects"));
    press(Qt::Key_Backspace);
    awaitLoaded(tree.root());
    EXPECT_EQ(cursorName(), "Projects");

    // 3. Into Inbox; filter, into the list, Esc clears the selection, Esc closes the filter.
    goTo(QStringLiteral("inb"));
    press(Qt::Key_Return);
    awaitLoaded(tree.path("Inbox"));
    press(Qt::Key_F, Qt::ControlModifier);
    type(QStringLiteral("rep"));
    ASSERT_TRUE(waitUntil([&] { return pane()->items().size() == 1; }));
    press(Qt::Key_Return);
    press(Qt::Key_Escape);
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return pane()->items().size() == 3; }));
    EXPECT_FALSE(pane()->isFiltering());

    // 4. Select by pattern; 5. deselect by pattern.
    press(Qt::Key_Plus, Qt::ControlModifier);
    awaitPatternField();
    press(Qt::Key_A, Qt::ControlModifier);
    type(QStringLiteral("*.txt"));
    press(Qt::Key_Return);
    backToWindow();
    EXPECT_EQ(selectedNames(), (QStringList{"a-report.txt", "b-budget.txt"}));
    press(Qt::Key_Minus, Qt::ControlModifier | Qt::ShiftModifier);
    awaitPatternField();
    press(Qt::Key_A, Qt::ControlModifier);
    type(QStringLiteral("b*"));
    press(Qt::Key_Return);
    backToWindow();
    EXPECT_EQ(selectedNames(), QStringList{"a-report.txt"});

    // 6. A new folder, named in place.
    press(Qt::Key_N, Qt::ControlModifier | Qt::ShiftModifier);
    settle();
    ASSERT_TRUE(waitUntil([&] { return renameEditor() && renameEditor()->hasFocus(); }));
    press(Qt::Key_A, Qt::ControlModifier);
    type(QStringLiteral("Done"));
    press(Qt::Key_Return);
    settle();
    ASSERT_TRUE(waitUntil([&] { return test::exists(tree.path("Inbox/Done")); }));

    // 7. Rename in place: F2 selects the name without its extension.
    goTo(QStringLiteral("notes"));
    ASSERT_EQ(cursorName(), "notes.md");
    press(Qt::Key_F2);
    ASSERT_TRUE(waitUntil([&] { return renameEditor() && renameEditor()->hasFocus(); }));
    EXPECT_EQ(renameEditor()->selectedText(), "notes");
    type(QStringLiteral("ideas"));
    press(Qt::Key_Return);
    settle();
    ASSERT_TRUE(waitUntil([&] { return test::exists(tree.path("Inbox/ideas.md")); }));
    EXPECT_FALSE(test::exists(tree.path("Inbox/notes.md")));

    // 8. Trash with Delete; 9. Ctrl+Z puts it back.
    ASSERT_TRUE(waitUntil([&] { return pane()->row(tree.path("Inbox/ideas.md")) >= 0; }));
    goTo(QStringLiteral("ideas"));
    ASSERT_EQ(cursorName(), "ideas.md");
    press(Qt::Key_Delete);
    settle();
    EXPECT_FALSE(test::exists(tree.path("Inbox/ideas.md")));
    EXPECT_FALSE(pane()->selection().isEmpty()) << "the cursor goes on to a row that stays";
    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_TRUE(test::exists(tree.path("Inbox/ideas.md")));

    // 10. Split; the new pane goes to Outbox; 11. back to the first pane from the palette.
    press(Qt::Key_Backslash, Qt::ControlModifier);
    ASSERT_TRUE(state->selectedTab()->isSplit());
    PaneState* right = pane();
    backToWindow();
    press(Qt::Key_Backspace);
    awaitLoaded(tree.root());
    goTo(QStringLiteral("out"));
    press(Qt::Key_Return);
    awaitLoaded(tree.path("Outbox"));
    runFromPalette(QStringLiteral("focus next pane"));
    ASSERT_NE(pane(), right);
    EXPECT_EQ(pane()->url(), tree.path("Inbox"));

    // 12. F5 copies to the other pane, Ctrl+Z takes the copy back; 13. F6 moves.
    goTo(QStringLiteral("a-"));
    ASSERT_EQ(cursorName(), "a-report.txt");
    press(Qt::Key_F5);
    settle();
    EXPECT_TRUE(test::exists(tree.path("Outbox/a-report.txt")));
    EXPECT_TRUE(test::exists(tree.path("Inbox/a-report.txt")));
    press(Qt::Key_Z, Qt::ControlModifier);
    settle();
    EXPECT_FALSE(test::exists(tree.path("Outbox/a-report.txt")));
    goTo(QStringLiteral("b-"));
    press(Qt::Key_F6);
    settle();
    EXPECT_TRUE(test::exists(tree.path("Outbox/b-budget.txt")));
    EXPECT_FALSE(test::exists(tree.path("Inbox/b-budget.txt")));

    // 14. Tabs: a new one, switch, close, reopen.
    press(Qt::Key_T, Qt::ControlModifier);
    ASSERT_EQ(state->tabs().size(), 2);
    press(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(window->tabBar()->currentIndex(), 0);
    press(Qt::Key_Tab, Qt::ControlModifier);
    EXPECT_EQ(window->tabBar()->currentIndex(), 1);
    press(Qt::Key_W, Qt::ControlModifier);
    ASSERT_EQ(state->tabs().size(), 1);
    press(Qt::Key_T, Qt::ControlModifier | Qt::ShiftModifier);
    ASSERT_EQ(state->tabs().size(), 2);
    press(Qt::Key_W, Qt::ControlModifier);
    ASSERT_EQ(state->tabs().size(), 1);
    backToWindow();

    // 15. The palette runs a command by name: hidden files show.
    runFromPalette(QStringLiteral("toggle hidden"));
    EXPECT_TRUE(pane()->showHidden());
    ASSERT_TRUE(waitUntil([&] { return pane()->row(tree.path("Inbox/.secret")) >= 0; }));
    // 16. Ctrl+H hides them again.
    press(Qt::Key_H, Qt::ControlModifier);
    EXPECT_FALSE(pane()->showHidden());

    // 17. The views: grid, table, back to the list.
    press(Qt::Key_1, Qt::ControlModifier);
    EXPECT_EQ(pane()->viewMode(), ViewMode::grid);
    press(Qt::Key_4, Qt::ControlModifier);
    EXPECT_EQ(pane()->viewMode(), ViewMode::table);
    press(Qt::Key_2, Qt::ControlModifier);
    EXPECT_EQ(pane()->viewMode(), ViewMode::list);

    // 18. Go to Path: the typed path replaces the one offered.
    press(Qt::Key_L, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return palette()->isOpen(); }));
    type(tree.path("Projects/site").text());
    press(Qt::Key_Return);
    awaitLoaded(tree.path("Projects/site"));

    // 19. Back and forward.
    press(Qt::Key_Left, Qt::AltModifier);
    awaitLoaded(tree.path("Inbox"));
    press(Qt::Key_Right, Qt::AltModifier);
    awaitLoaded(tree.path("Projects/site"));

    // 20. Get Info on the cursor's file, Esc closes it.
    goTo(QStringLiteral("index"));
    press(Qt::Key_I, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] {
        auto* info = window->findChild<InfoPanel*>();
        return info && info->info().path == tree.path("Projects/site/index.html");
    }));
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return state->panel() == WindowState::Panel::none; }));

    // 21. F1 shows the keys; Esc goes back to the list, which still takes keys.
    press(Qt::Key_F1);
    ASSERT_TRUE(waitUntil([&] { return window->findChild<ShortcutsSheet*>(); }));
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([&] { return !window->findChild<ShortcutsSheet*>() || !window->findChild<ShortcutsSheet*>()->isVisible(); }));
    press(Qt::Key_Backspace);
    awaitLoaded(tree.path("Projects"));
}

} // namespace
} // namespace orwick::test

#pragma once
// The fixture of the notes window tests: two notes, alpha.md and beta.md, in the folder "notes"
// of a temporary tree, that folder's property columns in a store of the tree's own
// (settings/columns.json), and a real window on the folder with the notes decoration on its
// panes. A test's SetUp() writes the notes and the columns (writeNotes), adds what it needs, and
// then opens the window (openWindow) and shows it.

#include "notes/FileProperties.h"
#include "state/WindowState.h"
#include "support/TempHome.h"
#include "support/TestMain.h"
#include "ui/notes/PaneNotesDecoration.h"
#include "ui/pane/PaneWidget.h"
#include "ui/window/MainWindow.h"

#include <gtest/gtest.h>

namespace orwick::test {

struct NotesWindowTest : ::testing::Test {
    test::TempTree tree;
    ViewPreferences preferences;
    FileProperties store{nullptr, tree.path("settings/columns.json")};
    FilePath alpha, beta, folder;
    std::unique_ptr<WindowState> state;
    std::unique_ptr<MainWindow> window;

    // Writes the two notes and gives their folder `columns`.
    void writeNotes(const char* alphaText, const char* betaText, const FolderColumns& columns)
    {
        alpha = tree.file(QString("notes/alpha.md"), alphaText);
        beta = tree.file(QString("notes/beta.md"), betaText);
        folder = alpha.parent();
        ASSERT_TRUE(store.setColumns(folder, columns));
    }
    // The window on the notes' folder, its panes decorated from `store`; not shown yet.
    void openWindow()
    {
        state = std::make_unique<WindowState>(folder, &preferences);
        window = std::make_unique<MainWindow>(state.get());
        PaneNotesDecoration::attach(window.get(), &store);
    }
    PaneState* pane() { return state->activePane(); }
    PaneWidget* widget() { return window->activePaneWidget(); }
};

} // namespace orwick::test

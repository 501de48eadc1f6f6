#include "commands/CommandCatalog.h"
#include "state/FileActions.h"
#include "state/TabState.h"
#include "support/HeadlessWindow.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QHash>
#include <QSet>
#include <gtest/gtest.h>

using namespace orwick;

namespace {
struct CatalogFixture : test::HeadlessWindowTest {
    void SetUp() override
    {
        tree.file("a.txt");
        tree.folder("Sub");
        openWindow(tree.root());
    }
    bool enabled(const char* id) { return CommandCatalog::find(id)->enabledIn(*window); }
};
} // namespace

TEST_F(CatalogFixture, EveryCommandHasOneIdATitleAndAnAction)
{
    QSet<QString> ids;
    for (const AppCommand& command : CommandCatalog::all(*window)) {
        EXPECT_FALSE(ids.contains(command.id)) << command.id.toStdString();
        ids.insert(command.id);
        EXPECT_FALSE(command.title.isEmpty()) << command.id.toStdString();
        EXPECT_TRUE(command.run) << command.id.toStdString();
        const AppCommand* found = CommandCatalog::find(command.id); // each family answers for its own ids
        EXPECT_TRUE(found && found->id == command.id) << "found by its id: " << command.id.toStdString();
        // A command that can be dimmed says why (the palette and the Keyboard Shortcuts sheet
        // show it), and only such a command has a note.
        EXPECT_EQ(!command.disabledNote.isEmpty(), bool(command.isEnabled))
            << (command.isEnabled ? "can be dimmed but doesn't say why: " : "never dimmed, yet has a note: ") << command.id.toStdString();
    }
    // Catalogue order: the fixed commands first, in their order, then the families.
    const QList<AppCommand> all = CommandCatalog::all(*window);
    EXPECT_EQ(all.first().id, "newTab");
    EXPECT_EQ(all[1].id, "newFolder");
    const auto at = [&all](const char* id) {
        return std::find_if(all.cbegin(), all.cend(), [id](const AppCommand& c) { return c.id == QLatin1StringView(id); }) - all.cbegin();
    };
    EXPECT_LT(at("saveWorkspace"), at("theme.Orwick")) << "workspaces, then themes, appearance and accents";
    EXPECT_LT(at("accent.themesOwn"), at("image.convert.png")) << "then the image operations";
    EXPECT_LT(at("image.convert.png"), at("learn.gettingAround")) << "and last the guide's topics";
    EXPECT_TRUE(all.last().id.startsWith(QStringLiteral("learn."))) << all.last().id.toStdString();
    EXPECT_EQ(CommandCatalog::find("thisMac")->title, "This Computer");
    EXPECT_EQ(CommandCatalog::find("showInFinder")->title, "Show in System File Manager");
    EXPECT_EQ(CommandCatalog::find("nextTab")->shortcut, QKeySequence(Qt::CTRL | Qt::Key_Tab));
    EXPECT_EQ(CommandCatalog::find("dualPane")->shortcutText(), "Ctrl+\\");
    EXPECT_EQ(CommandCatalog::find("view.grid")->shortcut, QKeySequence(Qt::CTRL | Qt::Key_1));
    // In a split tab F8 moves to the other pane; Tab stays with the text fields (filter, palette,
    // editor) and the terminal, which use it themselves.
    EXPECT_EQ(CommandCatalog::find("nextPane")->shortcutText(), "F8");
    EXPECT_EQ(CommandCatalog::find("quit")->shortcut, QKeySequence(Qt::CTRL | Qt::Key_Q));
    // Dimmed here (one pane, nothing selected, nothing closed or done yet), each says why.
    for (const char* id : {"reopenTab", "copyContents", "copyDataURI", "moveTo", "copyTo", "putBack", "compress", "extract",
                           "closePane", "nextPane", "rename", "linkToOther", "pin", "openInNewTab", "biggerIcons", "smallerIcons",
                           "closeTerminal", "saveSearch", "undo", "redo", "cut", "copy", "duplicate", "trash", "copyPath",
                           "forward", "deselectOrCloseFilter"}) {
        EXPECT_FALSE(enabled(id)) << id;
        EXPECT_FALSE(CommandCatalog::find(id)->disabledNote.isEmpty()) << id;
    }
    EXPECT_EQ(CommandCatalog::find("undo")->disabledNote, "Nothing to undo");
}

TEST_F(CatalogFixture, PredicatesFollowTheWindow)
{
    EXPECT_FALSE(enabled("copyPath")); // nothing selected
    EXPECT_FALSE(enabled("openInNewTab"));
    EXPECT_FALSE(enabled("closePane")); // a single pane
    EXPECT_FALSE(enabled("nextPane"));
    EXPECT_TRUE(enabled("quit"));
    EXPECT_FALSE(enabled("reopenTab"));
    EXPECT_FALSE(enabled("airDrop"));
    EXPECT_FALSE(enabled("downloadNow"));

    window->activePane()->click(tree.path("Sub"), Qt::NoModifier);
    EXPECT_TRUE(enabled("copyPath"));
    EXPECT_TRUE(enabled("openInNewTab"));
    window->activePane()->setRenaming(tree.path("Sub"));
    EXPECT_FALSE(enabled("copyPath")) << "file commands wait while a name is edited";
    window->activePane()->setRenaming(std::nullopt);

    EXPECT_TRUE(CommandCatalog::run("dualPane", *window));
    EXPECT_TRUE(enabled("closePane"));
    EXPECT_TRUE(enabled("nextPane"));
}

TEST_F(CatalogFixture, RunningGoesThroughTheSamePredicate)
{
    EXPECT_FALSE(CommandCatalog::run("reopenTab", *window)); // disabled: not run
    EXPECT_TRUE(CommandCatalog::run("newTab", *window));
    EXPECT_EQ(window->tabs().size(), 2);
    EXPECT_TRUE(CommandCatalog::run("closeTab", *window));
    EXPECT_EQ(window->tabs().size(), 1);
    EXPECT_TRUE(CommandCatalog::run("reopenTab", *window));
    EXPECT_EQ(window->tabs().size(), 2);
    EXPECT_TRUE(CommandCatalog::run("view.table", *window));
    EXPECT_EQ(window->activePane()->viewMode(), ViewMode::table);
    EXPECT_TRUE(CommandCatalog::run("sort.size", *window));
    EXPECT_EQ(window->activePane()->sortKey(), SortKey::size);
    EXPECT_FALSE(CommandCatalog::run("no.such.command", *window));
}

namespace {
// The file commands, run headless on a window over real files in a temporary folder.
struct FileCommandsFixture : CatalogFixture {
    QStringList enabledOf(const QStringList& ids)
    {
        QStringList result;
        for (const QString& id : ids)
            if (CommandCatalog::find(id)->enabledIn(*window))
                result.append(id);
        return result;
    }
    void select(const FilePath& item)
    {
        ASSERT_TRUE(test::waitUntil([&] { return window->activePane()->row(item) >= 0; })) << item.text().toStdString();
        window->activePane()->click(item, Qt::NoModifier);
    }
    void settle() { ASSERT_TRUE(test::waitUntil([] { return FileOperations::shared().isIdle(); }, 20000)); }
};
} // namespace

TEST_F(FileCommandsFixture, SelectionCommandsWaitForASelectionAndForANameBeingEdited)
{
    const QStringList onFiles{"rename", "duplicate", "trash", "cut", "copy", "compress", "copyTo", "moveTo"};
    EXPECT_EQ(enabledOf(onFiles), QStringList{}) << "nothing selected";
    EXPECT_EQ(enabledOf({"newFolder", "newFile", "tidyUp"}), (QStringList{"newFolder", "newFile", "tidyUp"}));
    EXPECT_FALSE(enabled("copyToOther")) << "a single pane";
    EXPECT_FALSE(enabled("putBack")) << "not the Trash";

    select(tree.path("a.txt"));
    EXPECT_EQ(enabledOf(onFiles), onFiles);
    EXPECT_FALSE(enabled("extract")) << "a.txt is no archive";
    window->activePane()->setRenaming(tree.path("a.txt"));
    EXPECT_EQ(enabledOf(onFiles + QStringList{"newFolder", "newFile", "paste"}), QStringList{}) << "a name is being edited";
    EXPECT_FALSE(CommandCatalog::run("trash", *window));
    window->files().endRename();
    EXPECT_TRUE(enabled("trash"));

    // Several selected: rename opens the batch rename panel over them.
    window->activePane()->click(tree.path("Sub"), Qt::ShiftModifier);
    EXPECT_EQ(window->activePane()->selection().size(), 2);
    EXPECT_TRUE(enabled("rename"));
    EXPECT_TRUE(CommandCatalog::run("rename", *window));
    EXPECT_EQ(window->panel(), WindowState::Panel::batchRename);
    EXPECT_EQ(window->panelItems(), window->selectedURLs());
    EXPECT_TRUE(enabled("duplicate"));
}

TEST_F(FileCommandsFixture, OtherPaneAndClipboardAndArchivesDecideTheirCommands)
{
    const FilePath archive = tree.file("photos.tar.gz", "not really");
    window->activePane()->reload();
    select(archive);
    EXPECT_TRUE(enabled("extract"));
    EXPECT_FALSE(enabled("copyToOther")) << "a single pane: there is no other pane to copy into";
    window->selectedTab()->toggleSplit();
    window->selectedTab()->activate(window->selectedTab()->panes().first());
    EXPECT_TRUE(enabled("copyToOther"));
    EXPECT_TRUE(enabled("moveToOther"));
    window->selectedTab()->otherPane()->show(Listing::of(Listing::Kind::recents));
    EXPECT_FALSE(enabled("copyToOther")) << "the other pane shows no folder to copy into";

    QGuiApplication::clipboard()->clear();
    EXPECT_FALSE(enabled("paste"));
    EXPECT_TRUE(CommandCatalog::run("copy", *window));
    EXPECT_TRUE(enabled("paste"));
    EXPECT_TRUE(enabled("moveHere"));
}

TEST_F(FileCommandsFixture, CommandsChangeFilesAndTrashCanBePutBackFromTheTrashListing)
{
    const FilePath file = tree.path("a.txt");
    select(file);
    EXPECT_TRUE(CommandCatalog::run("duplicate", *window));
    settle();
    EXPECT_TRUE(test::exists(tree.path("a copy.txt")));

    EXPECT_TRUE(CommandCatalog::run("trash", *window));
    settle();
    EXPECT_FALSE(test::exists(file));
    EXPECT_EQ(window->undoStack()->undoText(), "Move to Trash");

    EXPECT_TRUE(CommandCatalog::run("trashFolder", *window));
    PaneState* pane = window->activePane();
    ASSERT_TRUE(test::waitUntil([&] { return !pane->isLoading(); }));
    FilePath trashed;
    for (const FileItem& item : pane->items())
        if (item.url.fileName() == "a.txt")
            trashed = item.url;
    ASSERT_FALSE(trashed.isEmpty());
    EXPECT_FALSE(enabled("putBack")) << "nothing selected";
    pane->click(trashed, Qt::NoModifier);
    EXPECT_TRUE(enabled("putBack"));
    EXPECT_FALSE(enabled("trash")) << "already in the Trash";
    EXPECT_FALSE(enabled("duplicate"));
    EXPECT_TRUE(CommandCatalog::run("putBack", *window));
    settle();
    EXPECT_TRUE(test::exists(file));
}

TEST_F(FileCommandsFixture, NewFolderAndTransferToAFolderGoThroughTheWindowsUndoStack)
{
    EXPECT_TRUE(CommandCatalog::run("newFolder", *window));
    settle();
    EXPECT_TRUE(test::exists(tree.path("untitled folder")));
    EXPECT_TRUE(CommandCatalog::run("newFile", *window));
    settle();
    EXPECT_TRUE(test::exists(tree.path(FileActions::kNewFileName)));

    select(tree.path("a.txt"));
    EXPECT_TRUE(window->transferSelection(true, tree.path("Sub")));
    settle();
    EXPECT_TRUE(test::exists(tree.path("Sub/a.txt")));
    EXPECT_FALSE(test::exists(tree.path("a.txt")));
    EXPECT_EQ(window->undoStack()->undoText(), "Move");
    window->undoStack()->undo();
    settle();
    EXPECT_TRUE(test::exists(tree.path("a.txt")));
}

TEST_F(FileCommandsFixture, CompressThenExtractGivesTheFileBackBesideIt)
{
    select(tree.path("a.txt"));
    EXPECT_FALSE(enabled("extract"));
    EXPECT_TRUE(CommandCatalog::run("compress", *window));
    settle();
    const FilePath archive = tree.path("a.txt.zip");
    ASSERT_TRUE(test::exists(archive));
    select(archive);
    EXPECT_TRUE(enabled("extract"));
    EXPECT_TRUE(CommandCatalog::run("extract", *window));
    settle();
    EXPECT_TRUE(test::exists(tree.path("a 2.txt"))) << "the extracted file, beside the archive under a free name";
}

TEST_F(FileCommandsFixture, CopyAndMoveToTheOtherPaneDoNothingInASinglePane)
{
    QList<PaletteRequest> asked;
    QObject::connect(window.get(), &WindowState::paletteRequested, [&](PaletteRequest request) { asked.append(request); });
    select(tree.path("a.txt"));
    EXPECT_FALSE(CommandCatalog::run("copyToOther", *window));
    EXPECT_FALSE(CommandCatalog::run("moveToOther", *window));
    EXPECT_EQ(asked, QList<PaletteRequest>{}) << "Copy to… and Move to… are the commands that ask for a folder";
    EXPECT_TRUE(FileOperations::shared().isIdle()) << "nothing was copied or moved";
    EXPECT_EQ(CommandCatalog::find(QStringLiteral("moveToOther"))->disabledNote, QStringLiteral("Needs a selection, and another pane showing a folder"));
    EXPECT_TRUE(test::exists(tree.path("a.txt")));
}

// A key runs one command: two commands on one key would leave the window to pick one.
TEST_F(CatalogFixture, NoTwoCommandsShareAKey)
{
    QHash<QKeySequence, QString> owner;
    for (const AppCommand& command : CommandCatalog::all(*window)) {
        QList<QKeySequence> keys = command.otherShortcuts + command.paneShortcuts;
        if (!command.shortcut.isEmpty())
            keys.prepend(command.shortcut);
        for (const QKeySequence& key : keys) {
            const auto taken = owner.constFind(key);
            EXPECT_TRUE(taken == owner.cend()) << key.toString().toStdString() << " runs both " << taken->toStdString() << " and "
                                               << command.id.toStdString();
            owner.insert(key, command.id);
        }
    }
    EXPECT_GT(owner.size(), 50) << "the catalogue's keys were all looked at";
}

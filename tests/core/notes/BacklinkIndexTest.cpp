// The backlinks index kept current: a vault is built in the background, then a note saved by
// another program (the watcher), a note made through the file operations engine, a note
// deleted and a folder of notes moved in all show in the backlinks without a rebuild; a vault
// is the folder holding ".obsidian" above a note, else the note's folder.

#include "fileops/FileOperations.h"
#include "notes/BacklinkIndex.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QUndoStack>
#include <gtest/gtest.h>
#include <unistd.h>

using namespace orwick;

namespace {

QStringList linkingNames(const QList<Backlink>& links)
{
    QStringList out;
    for (const Backlink& link : links)
        out.append(link.note.fileName());
    return out;
}

void save(const FilePath& path, const QByteArray& bytes)
{
    // As an editor saves: a temporary file beside it, renamed into place.
    const FilePath temporary = path.parent().child(QByteArrayView(QByteArray(".") + path.fileNameBytes() + ".tmp"));
    ASSERT_TRUE(test::writeFile(temporary, bytes));
    ASSERT_EQ(::rename(temporary.c_str(), path.c_str()), 0);
}

TEST(BacklinkIndex, TheVaultIsTheObsidianFolderAboveElseTheNotesFolder)
{
    test::TempTree tree;
    tree.folder("v/.obsidian");
    EXPECT_EQ(BacklinkIndex::vaultFor(tree.file("v/a/b/n.md")), tree.path("v"));
    EXPECT_EQ(BacklinkIndex::vaultFor(tree.file("plain/n.md")), tree.path("plain"));
}

TEST(BacklinkIndex, KeepsCurrentWithSavesDeletionsAndMovesByOtherPrograms)
{
    test::TempTree tree;
    const FilePath target = tree.file("v/Target.md", "# Target\n");
    tree.file("v/a.md", "[[Target]]\n");
    BacklinkIndex index;
    int changed = 0;
    QObject::connect(&index, &BacklinkIndex::changed, [&] { ++changed; });
    index.open(tree.path("v"));
    EXPECT_TRUE(index.backlinksOf(target).isEmpty()); // nothing until built
    ASSERT_TRUE(test::waitUntil([&] { return index.isReady(); }));
    EXPECT_EQ(changed, 1);
    EXPECT_EQ(linkingNames(index.backlinksOf(target)), QStringList{"a.md"});
    EXPECT_GE(index.watchedFolders(), 1);

    // Saved by another program, in a folder made after the build.
    const FilePath folder = tree.folder("v/new");
    ASSERT_TRUE(test::waitUntil([&] { return index.watchedFolders() >= 2; }));
    save(folder.child(QStringLiteral("b.md")), "see [t](../Target.md)\n");
    ASSERT_TRUE(test::waitUntil([&] { return index.backlinksOf(target).size() == 2; }))
        << linkingNames(index.backlinksOf(target)).join(',').toStdString();
    EXPECT_EQ(index.backlinksOf(target)[1].line, 1);

    // Changed to link elsewhere, then deleted.
    save(tree.path("v/a.md"), "no links\n");
    ASSERT_TRUE(test::waitUntil([&] { return linkingNames(index.backlinksOf(target)) == QStringList{"b.md"}; }));
    ASSERT_EQ(::unlink(folder.child(QStringLiteral("b.md")).c_str()), 0);
    ASSERT_TRUE(test::waitUntil([&] { return index.backlinksOf(target).isEmpty(); }));

    // A folder of notes moved in from outside the vault.
    tree.file("outside/deep/c.md", "[[target]]\n");
    ASSERT_EQ(::rename(tree.path("outside").c_str(), tree.path("v/inside").c_str()), 0);
    ASSERT_TRUE(test::waitUntil([&] { return linkingNames(index.backlinksOf(target)) == QStringList{"c.md"}; }));
    EXPECT_TRUE(index.table().hasNote(tree.path("v/inside/deep/c.md")));
    EXPECT_FALSE(index.isBusy());
}

TEST(BacklinkIndex, FollowsNotesTheEngineMakes)
{
    test::TempTree tree;
    tree.folder("v/.obsidian");
    const FilePath target = tree.file("v/sub/Target.md", "# Target\n");
    FileOperations operations;
    QUndoStack undo;
    BacklinkIndex index;
    index.follow(&operations);
    index.open(BacklinkIndex::vaultFor(target));
    ASSERT_TRUE(test::waitUntil([&] { return index.isReady(); }));
    operations.createFile(tree.path("v/other/n.md"), "about [[Target|the target]]\n", QStringLiteral("New Note"), &undo);
    ASSERT_TRUE(test::waitUntil([&] { return index.backlinksOf(target).size() == 1; }));
    EXPECT_EQ(index.backlinksOf(target)[0].text, "about [[Target|the target]]");

    // Another vault replaces the first.
    const FilePath elsewhere = tree.file("w/x.md", "[[y]]\n");
    index.open(tree.path("w"));
    EXPECT_FALSE(index.isReady());
    ASSERT_TRUE(test::waitUntil([&] { return index.isReady(); }));
    EXPECT_EQ(index.vault(), tree.path("w"));
    EXPECT_TRUE(index.backlinksOf(target).isEmpty());
    EXPECT_EQ(index.table().noteCount(), 1);
    EXPECT_TRUE(index.table().hasNote(elsewhere));
}

} // namespace

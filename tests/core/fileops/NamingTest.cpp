// Rename (one and many), new folder and file, tidy up, and names that are not UTF-8.

#include "FileOpsFixture.h"

#include "fileops/ItemCopier.h"
#include "platform/Trash.h"

namespace orwick::test {
namespace {

TEST_F(FileOpsTest, RenameAndUndo)
{
    const FilePath item = file("Readme", "r");
    ops.rename(item, "Notes.md", &stack);
    settle();
    EXPECT_EQ(readAll(tree.path("Notes.md")), "r");
    EXPECT_EQ(lastToast(), QStringLiteral("Renamed Readme"));
    EXPECT_EQ(toasts.last().icon, QStringLiteral("pencil"));
    EXPECT_EQ(stack.undoText(), QStringLiteral("Rename Readme"));
    EXPECT_EQ(moves, (QList<FileMove>{{item, tree.path("Notes.md")}}));
    undo();
    EXPECT_EQ(readAll(item), "r");
    EXPECT_FALSE(exists(tree.path("Notes.md")));
    redo();
    EXPECT_TRUE(exists(tree.path("Notes.md")));
    // A change of letter case only goes through a temporary name.
    ops.rename(tree.path("Notes.md"), "NOTES.md", &stack);
    settle();
    EXPECT_EQ(names(tree.root()), QList<QByteArray>{"NOTES.md"});
}

TEST_F(FileOpsTest, RenameRefusesSlashesTakenNamesAndDots)
{
    const FilePath item = file("a.txt", "a");
    file("b.txt", "b");
    ops.rename(item, "x/y", &stack);
    ops.rename(item, "b.txt", &stack);
    ops.rename(item, "..", &stack);
    settle();
    EXPECT_EQ(errors, (QStringList{QStringLiteral("A name can't contain “/”."),
                                   QStringLiteral("“b.txt” already exists in this folder."),
                                   QStringLiteral("“..” already exists in this folder.")}));
    EXPECT_EQ(readAll(tree.path("b.txt")), "b");
    EXPECT_EQ(stack.count(), 0);
}

TEST_F(FileOpsTest, RenameManySwapsNamesInTwoPhases)
{
    const FilePath a = file("a", "A");
    const FilePath b = file("b", "B");
    ops.renameMany({{a, b}, {b, a}}, QStringLiteral("Rename 2 Items"), &stack);
    settle();
    EXPECT_EQ(readAll(a), "B");
    EXPECT_EQ(readAll(b), "A");
    EXPECT_EQ(moves.size(), 2);
    EXPECT_TRUE(names(tree.root()) == (QList<QByteArray>{"a", "b"}));
    undo(); // undo goes last-first, so the names free up in turn
    EXPECT_EQ(readAll(a), "A");
    EXPECT_EQ(readAll(b), "B");
}

TEST_F(FileOpsTest, NewFolderIsUntitledAndUnique)
{
    QList<FilePath> made;
    ops.newFolder(tree.root(), &stack, [&](const FilePath& path) { made.append(path); });
    settle();
    ops.newFolder(tree.root(), &stack, [&](const FilePath& path) { made.append(path); });
    settle();
    ASSERT_EQ(made.size(), 2);
    EXPECT_EQ(made[0].fileName(), QStringLiteral("untitled folder"));
    EXPECT_EQ(made[1].fileName(), QStringLiteral("untitled folder 2"));
    EXPECT_EQ(stack.undoText(), QStringLiteral("New Folder"));
    undo();
    EXPECT_FALSE(exists(made[1]));
    EXPECT_TRUE(exists(homeTrashFiles().child(QStringLiteral("untitled folder 2"))));
    redo();
    EXPECT_TRUE(exists(made[1]));
}

TEST_F(FileOpsTest, NewFileInAFolderThatIsGoneSaysWhere)
{
    ops.newFile(tree.path("missing"), "a.txt", &stack);
    ops.newFile(tree.root(), "a.txt", &stack);
    settle();
    EXPECT_EQ(errors, QStringList{QStringLiteral("Couldn't create a file in “missing”")});
    EXPECT_TRUE(exists(tree.path("a.txt")));
    EXPECT_EQ(stack.undoText(), QStringLiteral("New File"));
}

TEST_F(FileOpsTest, TidyUpSortsLooseFilesByKindInOneStep)
{
    file("Downloads/photo.jpg", "j");
    file("Downloads/scan.png", "p");
    file("Downloads/letter.txt", "t");
    file("Downloads/.hidden.jpg", "h");
    file("Downloads/movie.mp4.part", "partial");
    file("Downloads/Project/keep.jpg", "k");
    file("Downloads/Images/photo.jpg", "older");
    const FilePath folder = tree.path("Downloads");
    ops.tidyUp(folder, &stack);
    settle();
    EXPECT_EQ(names(folder), (QList<QByteArray>{".hidden.jpg", "Documents", "Images", "Project", "movie.mp4.part"}));
    EXPECT_EQ(names(tree.path("Downloads/Images")), (QList<QByteArray>{"photo 2.jpg", "photo.jpg", "scan.png"}));
    EXPECT_EQ(lastToast(), QStringLiteral("Tidied 3 files into 2 folders"));
    EXPECT_EQ(toasts.last().icon, QStringLiteral("tray.2"));
    EXPECT_EQ(stack.count(), 1);
    undo();
    EXPECT_EQ(names(folder), (QList<QByteArray>{".hidden.jpg", "Images", "Project", "letter.txt", "movie.mp4.part", "photo.jpg", "scan.png"}));
    EXPECT_EQ(readAll(tree.path("Downloads/Images/photo.jpg")), "older");
    EXPECT_EQ(readAll(tree.path("Downloads/photo.jpg")), "j");
}

TEST_F(FileOpsTest, NamesThatAreNotUtf8SurviveEveryOperation)
{
    const QByteArray latin1 = "caf\xe9 \xff.txt";
    const FilePath item = tree.file(QByteArray("src/") + latin1, "bytes");
    const FilePath dest = tree.folder("dest");

    ops.transfer({item}, dest, FileOperations::Mode::copy, &stack);
    settle();
    EXPECT_EQ(readAll(dest.child(QByteArrayView(latin1))), "bytes");

    ops.transfer({dest.child(QByteArrayView(latin1))}, tree.folder("moved"), FileOperations::Mode::move, &stack);
    settle();
    const FilePath moved = tree.path("moved").child(QByteArrayView(latin1));
    EXPECT_EQ(readAll(moved), "bytes");

    ops.rename(moved, "\xe0\xe1.bin", &stack);
    settle();
    const FilePath renamed = tree.path("moved").child(QByteArrayView("\xe0\xe1.bin"));
    EXPECT_EQ(readAll(renamed), "bytes");

    ops.trash({renamed}, QStringLiteral("Move to Trash"), &stack);
    settle();
    const FilePath inTrash = homeTrashFiles().child(QByteArrayView("\xe0\xe1.bin"));
    EXPECT_EQ(trash::originalPath(inTrash), renamed);
    ops.putBack({inTrash}, &stack);
    settle();
    EXPECT_EQ(readAll(renamed), "bytes");
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();

    for (int i = 0; i < 5; ++i)
        undo(); // put back, trash, rename, move, copy
    EXPECT_EQ(readAll(item), "bytes");
    EXPECT_FALSE(exists(dest.child(QByteArrayView(latin1))));
    EXPECT_TRUE(names(tree.path("moved")).isEmpty());
    EXPECT_TRUE(removeTree(item).has_value()); // QTemporaryDir can't remove names that aren't UTF-8
}

} // namespace
} // namespace orwick::test

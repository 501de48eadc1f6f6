// Batch renames in the engine: one job and one undo step in two phases (swaps, cycles, letter
// case), an item gone since the preview failing alone, and undo covering what was done.

#include "FileOpsFixture.h"

#include "rename/RenamePreview.h"

#include <QDir>

namespace orwick::test {
namespace {

class RenameManyTest : public FileOpsTest {
protected:
    // Renames as the batch rename panel commits them, keeping the engine's answer.
    void commit(const QList<FileMove>& renames)
    {
        ops.renameMany(renames, batchRenameTitle(renames.size()), &stack,
                       [this](const QList<FilePath>& done, const QHash<FilePath, QString>& failed) {
                           renamed = done;
                           failures = failed;
                       });
        settle();
    }
    // Nothing of the engine's own is left behind in the folder.
    void expectNoTemporaryNames() const
    {
        for (const QByteArray& name : names(tree.root()))
            EXPECT_FALSE(name.startsWith(".orwick-")) << name.toStdString();
    }
    QList<FilePath> renamed;
    QHash<FilePath, QString> failures;
};

TEST_F(RenameManyTest, SwapIsOneStepAndOneToast)
{
    const FilePath a = file("a.txt", "A");
    const FilePath b = file("b.txt", "B");
    commit({{a, b}, {b, a}});
    EXPECT_EQ(readAll(a), "B");
    EXPECT_EQ(readAll(b), "A");
    EXPECT_EQ(lastToast(), QStringLiteral("Renamed 2 items"));
    EXPECT_EQ(stack.count(), 1);
    EXPECT_EQ(stack.undoText(), QStringLiteral("Rename 2 items"));
    EXPECT_EQ(renamed.size(), 2);
    expectNoTemporaryNames();
    undo();
    EXPECT_EQ(readAll(a), "A");
    EXPECT_EQ(readAll(b), "B");
    expectNoTemporaryNames();
    redo();
    EXPECT_EQ(readAll(a), "B");
}

TEST_F(RenameManyTest, CycleOfThreeGoesRound)
{
    const FilePath a = file("1", "one");
    const FilePath b = file("2", "two");
    const FilePath c = file("3", "three");
    commit({{a, b}, {b, c}, {c, a}});
    EXPECT_EQ(readAll(b), "one");
    EXPECT_EQ(readAll(c), "two");
    EXPECT_EQ(readAll(a), "three");
    undo();
    EXPECT_EQ(readAll(a), "one");
    EXPECT_EQ(readAll(b), "two");
    EXPECT_EQ(readAll(c), "three");
}

TEST_F(RenameManyTest, LetterCaseAloneChanges)
{
    const FilePath readme = file("readme.md", "r");
    const FilePath notes = file("notes.md", "n");
    BatchRename rule;
    rule.mode = BatchRename::Mode::changeCase;
    rule.letterCase = BatchRename::LetterCase::upper;
    commit(previewRenames(BatchRenamer(rule), {readme, notes}).renames());
    EXPECT_EQ(names(tree.root()), (QList<QByteArray>{"NOTES.md", "README.md"}));
    undo();
    EXPECT_EQ(names(tree.root()), (QList<QByteArray>{"notes.md", "readme.md"}));
}

TEST_F(RenameManyTest, ItemGoneSinceThePreviewFailsAloneAndUndoCoversTheRest)
{
    const FilePath a = file("a.txt", "A");
    const FilePath b = file("b.txt", "B");
    const FilePath c = file("c.txt", "C");
    BatchRename rule;
    rule.mode = BatchRename::Mode::number;
    rule.baseName = QStringLiteral("Doc");
    const RenamePreview preview = previewRenames(BatchRenamer(rule), {a, b, c});
    ASSERT_EQ(preview.renames().size(), 3);
    ASSERT_EQ(::unlink(b.c_str()), 0);
    commit(preview.renames());
    EXPECT_EQ(names(tree.root()), (QList<QByteArray>{"Doc 01.txt", "Doc 03.txt"}));
    EXPECT_EQ(renamed, (QList<FilePath>{a, c}));
    EXPECT_EQ(failures.value(b), QStringLiteral("It's no longer there"));
    ASSERT_EQ(reports.size(), 1);
    EXPECT_EQ(reports[0].done, 2);
    EXPECT_EQ(reports[0].skipped, 1);
    EXPECT_TRUE(reports[0].canUndo);
    EXPECT_EQ(stack.count(), 1);
    undo();
    EXPECT_EQ(names(tree.root()), (QList<QByteArray>{"a.txt", "c.txt"}));
    expectNoTemporaryNames();
}

TEST_F(RenameManyTest, NameTakenSinceThePreviewKeepsTheOldOne)
{
    const FilePath a = file("a", "A");
    const FilePath b = file("b", "B");
    file("b2", "someone else's");
    commit({{a, tree.path("a2")}, {b, tree.path("b2")}});
    EXPECT_EQ(readAll(tree.path("a2")), "A");
    EXPECT_EQ(readAll(b), "B");
    EXPECT_EQ(readAll(tree.path("b2")), "someone else's");
    EXPECT_EQ(failures.value(b), QStringLiteral("An item with that name is already there"));
    ASSERT_EQ(errors.size(), 1);
    EXPECT_TRUE(errors[0].startsWith(QStringLiteral("Couldn’t rename “b”"))) << errors[0].toStdString();
    expectNoTemporaryNames();
    undo();
    EXPECT_EQ(readAll(a), "A");
}

TEST_F(RenameManyTest, BytesThatAreNotUtf8AreKept)
{
    const FilePath item = tree.file(QByteArray("caf\xe9 1.txt"), "x");
    BatchRename rule;
    rule.find = QStringLiteral("1");
    rule.replacement = QStringLiteral("2");
    commit(previewRenames(BatchRenamer(rule), {item}).renames());
    EXPECT_EQ(names(tree.root()), QList<QByteArray>{"caf\xe9 2.txt"});
    undo();
    EXPECT_EQ(names(tree.root()), QList<QByteArray>{"caf\xe9 1.txt"});
}

} // namespace
} // namespace orwick::test

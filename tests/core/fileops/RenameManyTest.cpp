// Batch renames in the engine: one job and one undo step in two phases (swaps, cycles, letter
// case), an item gone since the preview failing alone, and undo covering what was done.

#include "FileOpsFixture.h"

#include "rename/RenamePreview.h"

#include <QDir>
#include <sys/inotify.h>
#include <unistd.h>

namespace orwick::test {
namespace {

// The names items took in a folder while it was watched (inotify's moved-to events).
class NamesTaken {
public:
    explicit NamesTaken(const FilePath& folder) : m_fd(inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    {
        inotify_add_watch(m_fd, folder.c_str(), IN_MOVED_TO);
    }
    ~NamesTaken() { ::close(m_fd); }
    QList<QByteArray> read() const
    {
        QList<QByteArray> names;
        alignas(inotify_event) char buffer[64 * 1024];
        for (ssize_t got; (got = ::read(m_fd, buffer, sizeof buffer)) > 0;) {
            for (char* at = buffer; at < buffer + got;) {
                const auto* event = reinterpret_cast<const inotify_event*>(at);
                if (event->len > 0)
                    names.append(QByteArray(event->name));
                at += sizeof(inotify_event) + event->len;
            }
        }
        return names;
    }

private:
    int m_fd;
};

qsizetype temporaryNames(const QList<QByteArray>& names)
{
    return std::count_if(names.begin(), names.end(), [](const QByteArray& name) { return name.startsWith(".orwick-"); });
}

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

TEST_F(RenameManyTest, OnlyNamesThatWaitForOneAnotherGoAside)
{
    // a → b while b → c: b frees its name first, so no item needs a temporary one, neither to
    // rename nor to undo or redo; a swap among them takes one temporary name each way.
    const FilePath a = file("a", "A");
    const FilePath b = file("b", "B");
    const FilePath c = tree.path("c");
    const FilePath x = file("x", "X");
    const FilePath y = file("y", "Y");
    const NamesTaken taken(tree.root());
    commit({{a, b}, {b, c}, {x, y}, {y, x}});
    QList<QByteArray> names = taken.read();
    EXPECT_EQ(temporaryNames(names), 1) << "the swap's first item waits";
    EXPECT_EQ(names.size(), 5);
    EXPECT_EQ(readAll(b), "A");
    EXPECT_EQ(readAll(c), "B");
    EXPECT_EQ(readAll(x), "Y");
    EXPECT_EQ(readAll(y), "X");

    undo();
    names = taken.read();
    EXPECT_EQ(temporaryNames(names), 1) << names.join(' ').toStdString();
    EXPECT_EQ(names.size(), 5);
    EXPECT_EQ(readAll(a), "A");
    EXPECT_EQ(readAll(b), "B");
    EXPECT_FALSE(exists(c));
    EXPECT_EQ(readAll(x), "X");
    EXPECT_EQ(readAll(y), "Y");

    redo();
    EXPECT_EQ(temporaryNames(taken.read()), 1);
    EXPECT_EQ(readAll(c), "B");
    EXPECT_EQ(readAll(y), "X");
    expectNoTemporaryNames();
}

TEST_F(RenameManyTest, UndoFindsItsOldNameTakenAndKeepsTheItemBesideIt)
{
    const FilePath a = file("a", "A");
    commit({{a, tree.path("b")}});
    file("a", "someone else's");
    undo();
    EXPECT_EQ(readAll(a), "someone else's");
    EXPECT_EQ(readAll(tree.path("a 2")), "A");
    EXPECT_FALSE(exists(tree.path("b")));
    expectNoTemporaryNames();
    redo();
    EXPECT_EQ(readAll(tree.path("b")), "A") << "redo follows the item where undo left it";
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

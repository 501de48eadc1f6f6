// orwick-cli copy, move and trash, run as the built program on temporary trees: names that are
// not UTF-8 are acted on exactly, and every item not done is said with its reason, counted in
// the summary and turns the exit status to 1.

#include "CliRun.h"
#include "support/ScratchMount.h"
#include "support/TempHome.h"

#include <QDir>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick::test {
namespace {

const QByteArray kLatin1Name = "caf\xe9 menu.txt"; // "café menu.txt" in Latin-1: not UTF-8

QList<QByteArray> entries(const FilePath& folder)
{
    QList<QByteArray> names;
    QDir dir(QString::fromUtf8(folder.native())); // only for counting: names are compared below as bytes
    for (const QString& name : dir.entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden))
        names.append(name.toUtf8());
    return names;
}

bool isThere(const FilePath& path)
{
    struct stat info {};
    return lstat(path.c_str(), &info) == 0;
}

// A path of `length` bytes under `root` (folders of 200-byte names that need not exist).
QByteArray pathOfLength(const FilePath& root, qsizetype length)
{
    QByteArray path = root.native();
    while (path.size() < length) {
        path += '/';
        path += QByteArray(std::min<qsizetype>(200, std::max<qsizetype>(1, length - path.size())), 'x');
    }
    return path;
}

TEST(CliFileOpsTest, CopyMoveAndTrashKeepANameThatIsNotUtf8)
{
    TempTree tree;
    const FilePath source = tree.file(QByteArray("src/") + kLatin1Name, "menu");
    const FilePath copies = tree.folder("copies");
    const FilePath moved = tree.folder("moved");

    CliRun run = runCli({"copy", source.native(), copies.native()});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_TRUE(run.err.isEmpty()) << run.err.toStdString();
    EXPECT_EQ(run.outLines().size(), 1);
    EXPECT_TRUE(run.out.startsWith("Copied caf")) << run.out.toStdString();
    EXPECT_EQ(readAll(copies.child(QByteArrayView(kLatin1Name))), "menu");

    run = runCli({"move", copies.child(QByteArrayView(kLatin1Name)).native(), moved.native()});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_FALSE(isThere(copies.child(QByteArrayView(kLatin1Name))));
    EXPECT_EQ(readAll(moved.child(QByteArrayView(kLatin1Name))), "menu");

    run = runCli({"trash", moved.child(QByteArrayView(kLatin1Name)).native()});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    EXPECT_FALSE(isThere(moved.child(QByteArrayView(kLatin1Name))));
    const FilePath trashFiles = tempHome().child(QStringLiteral(".local/share/Trash/files"));
    EXPECT_EQ(readAll(trashFiles.child(QByteArrayView(kLatin1Name))), "menu");
    // The temporary folders can't remove names that are not UTF-8 themselves.
    ::unlink(trashFiles.child(QByteArrayView(kLatin1Name)).c_str());
    ::unlink(trashFiles.parent().child(QStringLiteral("info")).child(QByteArrayView(kLatin1Name + ".trashinfo")).c_str());
    ::unlink(source.c_str());
}

// Copy, move and trash on one tree: each item not done is said with its reason and counted, and
// full success keeps its words and exits zero.
TEST(CliFileOpsTest, EveryItemNotDoneIsSaidAndCountedAndFullSuccessExitsZero)
{
    TempTree tree;
    const FilePath a = tree.file("src/a.txt", "a");
    const FilePath b = tree.file("src/b.txt", "b");
    const FilePath c = tree.file("src/c.txt", "c");
    const FilePath dest = tree.folder("dest");
    const FilePath missing = tree.path("src/missing.txt");

    CliRun run = runCli({"copy", a.native(), b.native(), missing.native(), c.native(), dest.native()});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.outLines(), QList<QByteArray>{"Copied 3 of 4 items; 1 failed"});
    ASSERT_EQ(run.errLines().size(), 1) << run.err.toStdString();
    EXPECT_EQ(run.errLines().first(), ("“" + missing.native() + "” isn’t there."));
    EXPECT_EQ(readAll(dest.child(QStringLiteral("a.txt"))), "a");
    EXPECT_EQ(readAll(dest.child(QStringLiteral("b.txt"))), "b");
    EXPECT_EQ(readAll(dest.child(QStringLiteral("c.txt"))), "c");
    EXPECT_EQ(entries(dest).size(), 3);

    const FilePath moved = tree.folder("moved");
    run = runCli({"move", a.native(), b.native(), moved.native()});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.outLines(), QList<QByteArray>{"Moved 2 items"});
    EXPECT_TRUE(run.err.isEmpty());
    EXPECT_FALSE(isThere(a));
    EXPECT_EQ(readAll(moved.child(QStringLiteral("b.txt"))), "b");

    const QByteArray overlong = pathOfLength(tree.root(), 5000);
    ASSERT_EQ(overlong.size(), 5000);
    const FilePath movedC = moved.child(QStringLiteral("c.txt"));
    run = runCli({"move", overlong, c.native(), moved.native()});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.outLines(), QList<QByteArray>{"Moved 1 of 2 items; 1 failed"});
    ASSERT_EQ(run.errLines().size(), 1) << run.err.toStdString();
    EXPECT_TRUE(run.errLines().first().endsWith("can’t be used: the path is 5000 bytes long, and Linux takes at most 4095."))
        << run.err.toStdString();
    EXPECT_FALSE(isThere(c));
    EXPECT_EQ(readAll(movedC), "c");

    run = runCli({"trash", movedC.native(), missing.native()});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.outLines(), QList<QByteArray>{"Moved 1 of 2 items to the Trash; 1 failed"});
    EXPECT_EQ(run.errLines(), QList<QByteArray>{"“" + missing.native() + "” isn’t there."});
    EXPECT_FALSE(isThere(movedC));

    // A missing destination does nothing.
    const FilePath movedB = moved.child(QStringLiteral("b.txt"));
    const FilePath nowhere = tree.path("nowhere");
    run = runCli({"move", movedB.native(), nowhere.native()});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.out.isEmpty());
    EXPECT_EQ(run.errLines(), QList<QByteArray>{"“" + nowhere.native() + "” isn’t there."});
    EXPECT_EQ(readAll(movedB), "b");
    EXPECT_FALSE(isThere(nowhere));
}

TEST(CliFileOpsTest, EveryFailureOfTheEngineIsOneLine)
{
    ScratchMount disk("tmpfs", "size=1m,nr_inodes=4"); // the root and three more entries
    if (!disk.ok())
        GTEST_SKIP() << disk.why().toStdString();
    TempTree tree;
    QList<QByteArray> arguments{"copy"};
    for (int i = 0; i < 8; ++i)
        arguments.append(tree.file(QStringLiteral("src/f%1.txt").arg(i), "text").native());
    arguments.append(disk.root().native());

    const CliRun run = runCli(arguments);
    const qsizetype copied = entries(disk.root()).size();
    ASSERT_GE(copied, 1);
    ASSERT_LT(copied, 8);
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.outLines(), QList<QByteArray>{QStringLiteral("Copied %1 of 8 items; %2 failed").arg(copied).arg(8 - copied).toUtf8()});
    ASSERT_EQ(run.errLines().size(), 8 - copied) << run.err.toStdString();
    for (const QByteArray& line : run.errLines())
        EXPECT_TRUE(line.startsWith("Couldn’t copy “f") && line.contains("the disk has no room for more files"))
            << line.toStdString();
}

} // namespace
} // namespace orwick::test

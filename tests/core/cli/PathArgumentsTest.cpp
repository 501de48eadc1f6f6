// The folder-reading commands of orwick-cli take their paths as bytes and refuse a path that
// isn't there, or isn't a folder, with a message and exit status 1.

#include "CliRun.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace orwick::test {
namespace {

const QList<QByteArray> kFolderCommands{"list", "status", "props", "duplicates", "space", "cleanup"};

TEST(CliPathArgumentsTest, AMissingFolderOrAFileWhereAFolderIsNeededIsSaidAndFails)
{
    TempTree tree;
    const QByteArray missing = tree.path("missing").native();
    for (const QByteArray& command : kFolderCommands) {
        const CliRun run = runCli({command, missing});
        EXPECT_EQ(run.status, 1) << command.toStdString();
        EXPECT_TRUE(run.out.isEmpty()) << command.toStdString() << ": " << run.out.toStdString();
        EXPECT_EQ(run.errLines(), QList<QByteArray>{"“" + missing + "” isn’t there."}) << command.toStdString();
    }
    // A file where a folder is needed.
    const QByteArray file = tree.file("notes.txt", "n").native();
    for (const QByteArray& command : kFolderCommands) {
        if (command == "space")
            continue; // measures a file too
        const CliRun run = runCli({command, file});
        EXPECT_EQ(run.status, 1) << command.toStdString();
        EXPECT_EQ(run.errLines(), QList<QByteArray>{"“" + file + "” isn’t a folder."}) << command.toStdString();
    }
}

TEST(CliPathArgumentsTest, AFolderWhoseNameIsNotUtf8IsRead)
{
    TempTree tree;
    const QByteArray folderName = "d\xf6rt"; // Latin-1: not UTF-8
    tree.file(folderName + "/inner.txt", "12345");
    const FilePath folder = tree.root().child(QByteArrayView(folderName));

    const CliRun listed = runCli({"list", folder.native()});
    EXPECT_EQ(listed.status, 0) << listed.err.toStdString();
    ASSERT_EQ(listed.outLines().size(), 1);
    EXPECT_TRUE(listed.outLines().first().endsWith("\t5\tinner.txt")) << listed.out.toStdString();

    const CliRun space = runCli({"space", folder.native()});
    EXPECT_EQ(space.status, 0) << space.err.toStdString();
    EXPECT_TRUE(space.out.contains(" · 1 entries") || space.out.contains(" · 1 entry")) << space.out.toStdString();

    const CliRun duplicates = runCli({"duplicates", folder.native()});
    EXPECT_EQ(duplicates.status, 0) << duplicates.err.toStdString();
    // The temporary folder can't remove names that are not UTF-8 itself.
    ::unlink(folder.child(QStringLiteral("inner.txt")).c_str());
    ::rmdir(folder.c_str());
}

} // namespace
} // namespace orwick::test

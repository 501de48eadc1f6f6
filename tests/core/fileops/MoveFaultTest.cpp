// A move between two disks while the user keeps working in the source: what changed or
// appeared during the copy stays in the source, is counted and named, and nothing is lost.

#include "FileOpsFixture.h"

#include "fileops/ItemCopier.h"
#include "fileops/TransferNotes.h"
#include "support/ScratchMount.h"

#include <QMutex>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick::test {
namespace {

class MoveFault : public FileOpsTest {
protected:
    void SetUp() override
    {
        if (!from.ok() || !to.ok())
            GTEST_SKIP() << (from.ok() ? to.why() : from.why()).toStdString();
    }
    void write(const FilePath& path, const QByteArray& content)
    {
        QFile out(path.text());
        ASSERT_TRUE(out.open(QIODevice::WriteOnly));
        out.write(content);
    }

    ScratchMount from{"tmpfs", "size=64m"};
    ScratchMount to{"tmpfs", "size=64m"};
};

TEST_F(MoveFault, WhatChangesOrAppearsDuringTheMoveStaysInTheSource)
{
    const FilePath album = from.root().child(QStringLiteral("Album"));
    mkdir(album.c_str(), 0755);
    mkdir(album.child(QStringLiteral("disc2")).c_str(), 0755);
    for (int i = 0; i < 6; ++i)
        write(album.child(QStringLiteral("song%1.mp3").arg(i)), QByteArray(256 << 10, char('a' + i)));
    for (int i = 0; i < 3; ++i)
        write(album.child(QStringLiteral("disc2/track%1.mp3").arg(i)), QByteArray(64 << 10, char('k' + i)));

    CopyProgress progress;
    QList<QByteArray> started;
    FilePath extras;
    progress.setFileObserver([&](QByteArrayView name) {
        started.append(name.toByteArray());
        if (started.size() != 4)
            return;
        // The user saves into a file that was already copied, and makes new items in folders
        // that were already read.
        FilePath folder = album;
        if (!exists(folder.child(QByteArrayView(started.first()))))
            folder = album.child(QStringLiteral("disc2"));
        QFile saved(folder.child(QByteArrayView(started.first())).text());
        ASSERT_TRUE(saved.open(QIODevice::Append));
        saved.write(" edited");
        saved.close();
        write(album.child(QStringLiteral("new note.txt")), "written during the move");
        mkdir(folder.child(QStringLiteral("extras")).c_str(), 0755);
        write(folder.child(QStringLiteral("extras/cover.jpg")), "jpg");
        extras = folder.child(QStringLiteral("extras/cover.jpg"));
    });
    MoveKind how = MoveKind::renamed;
    const FilePath moved = to.root().child(QStringLiteral("Album"));
    const CopyResult result = moveItem(album, moved, progress, &how);
    ASSERT_TRUE(result.ok()) << result.reason.toStdString();
    EXPECT_EQ(how, MoveKind::copied);
    EXPECT_EQ(result.leftInPlace, 3) << result.notes.join('\n').toStdString();

    // Everything copied arrived; what was saved or made meanwhile is still in the source.
    EXPECT_EQ(names(moved).size(), 7);
    EXPECT_TRUE(exists(album.child(QStringLiteral("new note.txt"))));
    EXPECT_EQ(readAll(extras), "jpg");
    int edited = 0, inSource = 0;
    for (const QByteArray& folder : {QByteArray(), QByteArray("disc2")}) {
        const FilePath at = folder.isEmpty() ? album : album.child(QByteArrayView(folder));
        for (const QByteArray& name : names(at)) {
            if (!name.endsWith(".mp3"))
                continue;
            ++inSource;
            edited += readAll(at.child(QByteArrayView(name))).endsWith(" edited") ? 1 : 0;
        }
    }
    EXPECT_EQ(inSource, 1);
    EXPECT_EQ(edited, 1);

    ChangeReport report;
    report.leftInPlace = result.leftInPlace;
    EXPECT_EQ(withTransferNotes(QStringLiteral("Moved Album"), report),
              QStringLiteral("Moved Album; 3 items changed during the move and were left in place"));
}

TEST_F(MoveFault, UnchangedTreeIsRemovedWholeHardLinksAndReadOnlyFoldersIncluded)
{
    const FilePath album = from.root().child(QStringLiteral("Album"));
    mkdir(album.c_str(), 0755);
    mkdir(album.child(QStringLiteral("locked")).c_str(), 0755);
    write(album.child(QStringLiteral("a.txt")), "a");
    ASSERT_EQ(link(album.child(QStringLiteral("a.txt")).c_str(), album.child(QStringLiteral("locked/b.txt")).c_str()), 0);
    chmod(album.child(QStringLiteral("locked")).c_str(), 0555);
    CopyProgress progress;
    const CopyResult result = moveItem(album, to.root().child(QStringLiteral("Album")), progress);
    ASSERT_TRUE(result.ok()) << result.reason.toStdString();
    EXPECT_EQ(result.leftInPlace, 0) << result.notes.join('\n').toStdString();
    EXPECT_FALSE(exists(album));
    const FilePath moved = to.root().child(QStringLiteral("Album"));
    EXPECT_EQ(statOf(moved.child(QStringLiteral("a.txt"))).st_ino, statOf(moved.child(QStringLiteral("locked/b.txt"))).st_ino);
    EXPECT_EQ(statOf(moved.child(QStringLiteral("locked"))).st_mode & 07777, 0555u);
}

TEST_F(MoveFault, EngineMoveBetweenDisksCanBeUndone)
{
    const FilePath album = from.root().child(QStringLiteral("Album"));
    mkdir(album.c_str(), 0750);
    write(album.child(QStringLiteral("song.mp3")), QByteArray(1 << 20, 's'));
    ops.transfer({album}, to.root(), FileOperations::Mode::move, &stack);
    settle();
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    EXPECT_EQ(lastToast(), QStringLiteral("Moved Album"));
    EXPECT_FALSE(exists(album));
    undo();
    EXPECT_EQ(readAll(album.child(QStringLiteral("song.mp3"))), QByteArray(1 << 20, 's'));
    EXPECT_EQ(statOf(album).st_mode & 07777, 0750u);
    EXPECT_TRUE(names(to.root()).isEmpty());
}

} // namespace
} // namespace orwick::test

// The Trash on another disk is used only when it is safe: a real tmpfs mounted for the test
// stands for a USB disk, with a .Trash-$UID that belongs to another user, is open to everyone
// or is a link, and with an administrator's sticky .Trash. Refused items stay where they were.

#include "FileOpsFixture.h"

#include "fileops/TrashLog.h"
#include "platform/Trash.h"
#include "support/ScratchMount.h"

#include <QFile>
#include <unistd.h>

namespace orwick::test {
namespace {

constexpr uid_t kOtherUser = 12345;

class TrashFault : public FileOpsTest {
protected:
    void SetUp() override
    {
        if (!disk.ok())
            GTEST_SKIP() << disk.why().toStdString();
        item = disk.root().child(QStringLiteral("report.txt"));
        ASSERT_TRUE(writeFile(item, "the user's words"));
    }

    QByteArray uid() const { return QByteArray::number(getuid()); }
    FilePath ownTrash() const { return disk.root().child(QByteArrayView(".Trash-" + uid())); }
    FilePath folder(const FilePath& path, mode_t mode, uid_t owner) const
    {
        ::mkdir(path.c_str(), mode);
        EXPECT_EQ(::chmod(path.c_str(), mode), 0);
        EXPECT_EQ(::lchown(path.c_str(), owner, getgid()), 0);
        return path;
    }

    // Trashing the item is refused with `problem`, and it stays where it was with its content.
    void expectRefused(const QString& problem)
    {
        ops.trash({item}, QStringLiteral("Move to Trash"), &stack);
        settle();
        ASSERT_EQ(errors.size(), 1);
        EXPECT_EQ(errors[0], QStringLiteral("Couldn’t move “report.txt”: it can’t go to the Trash: the Trash on this "
                                            "disk, “.Trash-%1”, %2, so it isn’t safe to use.")
                                 .arg(getuid())
                                 .arg(problem));
        EXPECT_EQ(readAll(item), "the user's words");
        EXPECT_EQ(stack.count(), 0);
        EXPECT_EQ(ops.trashLog().size(), 0);
    }

    ScratchMount disk{"tmpfs", "size=4m,nr_inodes=1000,mode=1777"};
    FilePath item;
};

TEST_F(TrashFault, TrashOfAnotherUserIsRefused)
{
    folder(ownTrash(), 0700, kOtherUser);
    expectRefused(QStringLiteral("belongs to another user"));
    EXPECT_TRUE(names(ownTrash()).isEmpty()); // nothing went into their folder
}

TEST_F(TrashFault, TrashOpenToEveryoneIsRefused)
{
    folder(ownTrash(), 0777, getuid());
    expectRefused(QStringLiteral("is open to other users"));
    EXPECT_TRUE(names(ownTrash()).isEmpty());
}

TEST_F(TrashFault, TrashThatIsALinkIsRefused)
{
    const FilePath elsewhere = folder(disk.root().child(QStringLiteral("elsewhere")), 0700, kOtherUser);
    ASSERT_EQ(::symlink("elsewhere", ownTrash().c_str()), 0);
    expectRefused(QStringLiteral("is a link to another place"));
    EXPECT_TRUE(names(elsewhere).isEmpty());
}

TEST_F(TrashFault, MissingTrashIsMadePrivate)
{
    ops.trash({item}, QStringLiteral("Move to Trash"), &stack);
    settle();
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    EXPECT_EQ(readAll(ownTrash().child(QStringLiteral("files")).child(item.fileName())), "the user's words");
    EXPECT_EQ(statOf(ownTrash()).st_mode & 07777, 0700u);
    EXPECT_EQ(statOf(ownTrash().child(QStringLiteral("files"))).st_mode & 07777, 0700u);
}

TEST_F(TrashFault, StickySharedTrashIsUsed)
{
    const FilePath shared = folder(disk.root().child(QStringLiteral(".Trash")), 01777, kOtherUser);
    ops.trash({item}, QStringLiteral("Move to Trash"), &stack);
    settle();
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    const FilePath mine = shared.child(QByteArrayView(uid()));
    const FilePath inTrash = mine.child(QStringLiteral("files")).child(item.fileName());
    EXPECT_EQ(readAll(inTrash), "the user's words");
    EXPECT_EQ(statOf(mine).st_mode & 07777, 0700u);
    EXPECT_FALSE(exists(ownTrash()));
    EXPECT_TRUE(readAll(trash::infoFileFor(inTrash)).contains("\nPath=report.txt\n"));
    EXPECT_EQ(trash::originalPath(inTrash), item);
    undo();
    EXPECT_EQ(readAll(item), "the user's words");
}

TEST_F(TrashFault, SharedTrashWithoutTheStickyBitOrWithAnotherUsersFolderIsPassedOver)
{
    const FilePath shared = disk.root().child(QStringLiteral(".Trash"));
    folder(shared, 0777, kOtherUser); // not sticky: anyone could swap our folder in it
    ops.trash({item}, QStringLiteral("Move to Trash"), &stack, false);
    settle();
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    EXPECT_TRUE(exists(ownTrash().child(QStringLiteral("files")).child(item.fileName())));
    EXPECT_FALSE(exists(shared.child(QByteArrayView(uid()))));
    undo();

    ASSERT_EQ(::chmod(shared.c_str(), 01777), 0);
    folder(shared.child(QByteArrayView(uid())), 0700, kOtherUser); // someone else made "our" folder
    ops.trash({item}, QStringLiteral("Move to Trash"), &stack, false);
    settle();
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    EXPECT_TRUE(exists(ownTrash().child(QStringLiteral("files")).child(item.fileName())));
    EXPECT_TRUE(names(shared.child(QByteArrayView(uid()))).isEmpty());
}

TEST_F(TrashFault, RecordsInAnotherUsersTrashAreNotBelieved)
{
    ops.trash({item}, QStringLiteral("Move to Trash"), &stack, false);
    settle();
    const FilePath inTrash = ownTrash().child(QStringLiteral("files")).child(item.fileName());
    ASSERT_TRUE(exists(inTrash));
    EXPECT_EQ(ops.trashLog().formerPath(inTrash), item);
    EXPECT_EQ(trash::originalPath(inTrash), item);

    // The folder now belongs to someone else, who can rewrite its records and its items.
    ASSERT_EQ(::lchown(ownTrash().c_str(), kOtherUser, getgid()), 0);
    EXPECT_FALSE(ops.trashLog().formerPath(inTrash));
    EXPECT_FALSE(trash::originalPath(inTrash));
    EXPECT_FALSE(TrashLog().formerPath(inTrash));
    EXPECT_TRUE(ops.trashLog().trashedItems().isEmpty());
    ops.putBack({inTrash}, &stack);
    settle();
    EXPECT_FALSE(errors.isEmpty());
    EXPECT_TRUE(exists(inTrash));
    EXPECT_FALSE(exists(item));
}

} // namespace
} // namespace orwick::test

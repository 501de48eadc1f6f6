// The freedesktop Trash, the trash log and Put Back, with the real Trash of the temporary home.

#include "FileOpsFixture.h"

#include "fileops/TrashLog.h"
#include "fileops/UniqueName.h"
#include "platform/JsonFile.h"
#include "platform/StoreNotices.h"
#include "platform/Trash.h"
#include "platform/XdgPaths.h"

#include <QJsonObject>
#include <QRegularExpression>

namespace orwick::test {
namespace {

QByteArray infoOf(const FilePath& inTrash) { return readAll(trash::infoFileFor(inTrash)); }

TEST_F(FileOpsTest, TrashWritesTheInfoFileAndTheLog)
{
    const FilePath item = file("Old Notes/draft 1.md", "draft");
    ops.trash({item}, QStringLiteral("Move to Trash"), &stack);
    settle();
    const FilePath inTrash = homeTrashFiles().child(QStringLiteral("draft 1.md"));
    EXPECT_EQ(readAll(inTrash), "draft");
    EXPECT_FALSE(exists(item));
    const QByteArray info = infoOf(inTrash);
    EXPECT_TRUE(info.startsWith("[Trash Info]\nPath=" + item.native().toPercentEncoding("/") + "\n")) << info.constData();
    EXPECT_TRUE(info.contains("%20")); // the blanks are encoded
    EXPECT_TRUE(QRegularExpression(QStringLiteral("DeletionDate=\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\n"))
                    .match(QString::fromLatin1(info)).hasMatch());
    EXPECT_EQ(ops.trashLog().formerPath(inTrash), item);
    // The log on disk says the same, and a fresh reader finds it.
    EXPECT_EQ(TrashLog().formerPath(inTrash), item);
    EXPECT_EQ(lastToast(), QStringLiteral("Moved draft 1.md to the Trash"));
    EXPECT_EQ(stack.undoText(), QStringLiteral("Move to Trash"));

    undo();
    EXPECT_EQ(readAll(item), "draft");
    EXPECT_FALSE(exists(inTrash));
    EXPECT_FALSE(exists(trash::infoFileFor(inTrash)));
    EXPECT_FALSE(TrashLog().formerPath(inTrash));
    redo();
    EXPECT_FALSE(exists(item));
    EXPECT_EQ(TrashLog().formerPath(inTrash), item);
}

TEST_F(FileOpsTest, ANameThatIsNotUtf8IsLoggedWithEveryByte)
{
    const FilePath item = tree.file(QByteArray("Old Notes/caf\xe9 \xff.txt"), "x");
    ops.trash({item}, QStringLiteral("Move to Trash"), &stack);
    settle();
    const FilePath inTrash = homeTrashFiles().child(QByteArrayView("caf\xe9 \xff.txt"));
    ASSERT_TRUE(exists(inTrash));
    // On disk, and read back whole by a fresh reader (another Orwick, the next start).
    const auto onDisk = readJsonFile(xdg::orwickDataDir().child(QStringLiteral("trash-log.json")));
    ASSERT_TRUE(onDisk);
    EXPECT_EQ(onDisk->object().value(QStringLiteral("entries")).toObject().size(), 1);
    EXPECT_EQ(TrashLog().formerPath(inTrash), item);
    EXPECT_EQ(TrashLog().trashedItems(), QList<FilePath>{inTrash});

    ops.putBack({inTrash}, &stack);
    settle();
    EXPECT_EQ(readAll(item), "x");
    EXPECT_EQ(TrashLog().size(), 0);
}

TEST_F(FileOpsTest, HomeTrashIsMadePrivate)
{
    ASSERT_FALSE(exists(xdg::homeTrash()));
    ops.trash({file("private.txt", "p")}, QStringLiteral("Move to Trash"), &stack, false);
    settle();
    EXPECT_TRUE(exists(homeTrashFiles().child(QStringLiteral("private.txt"))));
    for (const FilePath& folder : {xdg::homeTrash(), homeTrashFiles(), xdg::homeTrash().child(QStringLiteral("info"))})
        EXPECT_EQ(statOf(folder).st_mode & 07777, 0700u) << folder.c_str();
}

TEST_F(FileOpsTest, TrashKeepsBothItemsOfOneName)
{
    const FilePath first = file("a/x.txt", "1");
    const FilePath second = file("b/x.txt", "2");
    ops.trash({first, second}, QStringLiteral("Move to Trash"), &stack, false);
    settle();
    EXPECT_EQ(readAll(homeTrashFiles().child(QStringLiteral("x.txt"))), "1");
    EXPECT_EQ(readAll(homeTrashFiles().child(QStringLiteral("x 2.txt"))), "2");
    EXPECT_TRUE(toasts.isEmpty()); // not announced when asked so
    undo();
    EXPECT_EQ(readAll(first), "1");
    EXPECT_EQ(readAll(second), "2");
}

TEST_F(FileOpsTest, PutBackUsesTheLogThenTheInfoFile)
{
    const FilePath ours = file("docs/ours.txt", "ours");
    ops.trash({ours}, QStringLiteral("Move to Trash"), &stack);
    settle();
    // An item another program trashed: only its .trashinfo knows where it came from.
    const FilePath theirs = tree.path("docs/theirs.txt");
    ASSERT_TRUE(writeFile(homeTrashFiles().child(QStringLiteral("theirs.txt")), "theirs"));
    ASSERT_TRUE(writeFile(trash::infoFileFor(homeTrashFiles().child(QStringLiteral("theirs.txt"))),
                          "[Trash Info]\nPath=" + theirs.native().toPercentEncoding("/") + "\nDeletionDate=2020-01-01T10:00:00\n"));
    file("docs/ours.txt", "a new one"); // the old place is taken meanwhile

    ops.putBack({homeTrashFiles().child(QStringLiteral("ours.txt")), homeTrashFiles().child(QStringLiteral("theirs.txt"))}, &stack);
    settle();
    EXPECT_TRUE(errors.isEmpty()) << errors.join('\n').toStdString();
    EXPECT_EQ(readAll(tree.path("docs/ours 2.txt")), "ours");
    EXPECT_EQ(readAll(theirs), "theirs");
    EXPECT_TRUE(names(homeTrashFiles()).isEmpty());
    EXPECT_TRUE(names(homeTrashFiles().parent().child(QStringLiteral("info"))).isEmpty());
    EXPECT_EQ(ops.trashLog().size(), 0);
    EXPECT_EQ(lastToast(), QStringLiteral("Put back 2 items"));

    undo(); // back into the Trash
    EXPECT_FALSE(exists(theirs));
    EXPECT_EQ(names(homeTrashFiles()).size(), 2);
}

TEST_F(FileOpsTest, PutBackMakesTheMissingFolderAgain)
{
    const FilePath item = file("gone/deeper/file.txt", "f");
    ops.trash({item}, QStringLiteral("Move to Trash"), &stack);
    settle();
    rmdir(tree.path("gone/deeper").c_str());
    rmdir(tree.path("gone").c_str());
    ops.putBack({homeTrashFiles().child(QStringLiteral("file.txt"))}, &stack);
    settle();
    EXPECT_EQ(readAll(item), "f");
    undo();
    EXPECT_FALSE(exists(tree.path("gone")));
}

TEST_F(FileOpsTest, ItemWithoutOriginCannotBePutBack)
{
    const FilePath stray = homeTrashFiles().child(QStringLiteral("stray"));
    ASSERT_TRUE(writeFile(stray, {}));
    ops.putBack({stray}, &stack);
    settle();
    EXPECT_EQ(errors, QStringList{QStringLiteral("“stray” can't be put back: where it came from isn't known.")});
    EXPECT_TRUE(exists(stray));
}

TEST_F(FileOpsTest, ItemOnAnotherVolumeGoesToThatVolumesTrash)
{
    QTemporaryDir shm(QStringLiteral("/dev/shm/orwick-test-XXXXXX"));
    // /dev/shm's Trash is shared with every other run: a name of this run's own keeps its place.
    const FilePath shmFolder = FilePath::fromText(shm.path());
    const FilePath item = shmFolder.child(shmFolder.fileName() + QStringLiteral(".txt"));
    QFile(item.text()).open(QIODevice::WriteOnly);
    if (isSameVolume(item, xdg::homeTrash().parent()))
        GTEST_SKIP() << "/dev/shm is on the home's file system here";
    const auto folder = trash::trashFolderFor(item);
    ASSERT_TRUE(folder.has_value()) << folder.error().toStdString();
    EXPECT_EQ(folder->text(), QStringLiteral("/dev/shm/.Trash-%1").arg(getuid()));
    ops.trash({item}, QStringLiteral("Move to Trash"), &stack);
    settle();
    const FilePath inTrash = folder->child(QStringLiteral("files")).child(item.fileName());
    EXPECT_TRUE(exists(inTrash));
    // Paths in a volume's Trash are relative to its top folder.
    EXPECT_TRUE(infoOf(inTrash).contains("\nPath=" + item.native().mid(9).toPercentEncoding("/") + "\n"));
    EXPECT_EQ(trash::originalPath(inTrash), item);
    undo();
    EXPECT_TRUE(exists(item));
    EXPECT_FALSE(exists(trash::infoFileFor(inTrash)));
}

TEST_F(FileOpsTest, DamagedTrashLogIsKeptAsideAndTheNextTrashingStartsANewOne)
{
    const FilePath logFile = xdg::orwickDataDir().child(QStringLiteral("trash-log.json"));
    ASSERT_TRUE(writeFile(logFile, "{ not json"));
    StoreNotices::takePending();
    FileOperations engine;
    EXPECT_EQ(engine.trashLog().size(), 0);
    const FilePath aside = logFile.parent().child(QStringLiteral("trash-log.damaged.json"));
    EXPECT_EQ(readAll(aside), "{ not json");
    const QStringList messages = StoreNotices::takePending();
    ASSERT_EQ(messages.size(), 1);
    EXPECT_EQ(messages[0], QStringLiteral("Orwick couldn’t read its trash log, so Put Back goes by the Trash’s own "
                                          "records. The damaged file was kept as “%1”.")
                               .arg(aside.abbreviated()));

    const FilePath item = file(QStringLiteral("t"), "t");
    ops.trash({item}, QStringLiteral("Move to Trash"), &stack);
    settle();
    EXPECT_EQ(TrashLog().formerPath(homeTrashFiles().child(QStringLiteral("t"))), item);
    EXPECT_EQ(readAll(aside), "{ not json"); // the damaged copy stays as it was
    ::unlink(aside.c_str());
}

} // namespace
} // namespace orwick::test

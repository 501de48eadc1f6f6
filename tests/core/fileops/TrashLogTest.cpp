// The trash log as a store shared by several Orwick processes: entries merged under the file's
// lock, a file that can't be written said once without losing an entry, and a full disk.

#include "fileops/TrashLog.h"
#include "platform/JsonFile.h"
#include "platform/StoreNotices.h"
#include "support/ScratchMount.h"
#include "support/TempHome.h"

#include <QJsonObject>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orwick::test {
namespace {

// Items lying in a Trash's files/ folder, and where each came from.
QList<std::pair<FilePath, FilePath>> trashedItems(const TempTree& tree, const QString& prefix, int count)
{
    QList<std::pair<FilePath, FilePath>> items;
    for (int i = 0; i < count; ++i) {
        const QString name = QStringLiteral("%1 %2").arg(prefix).arg(i);
        items.append({tree.file(QStringLiteral("Trash/files/") + name, "x"), tree.path(QStringLiteral("docs/") + name)});
    }
    return items;
}

qsizetype entriesOnDisk(const FilePath& file)
{
    const auto document = readJsonFile(file);
    return document ? document->object().value(QStringLiteral("entries")).toObject().size() : -1;
}

TEST(TrashLogStore, TwoProcessesLoggingAtOnceKeepEveryEntry)
{
    TempTree tree;
    const FilePath file = tree.path(QStringLiteral("data/trash-log.json"));
    const auto parentItems = trashedItems(tree, QStringLiteral("parent"), 150);
    const auto childItems = trashedItems(tree, QStringLiteral("child"), 150);
    const pid_t child = fork();
    if (child == 0) {
        TrashLog log(file); // its own object and descriptors, as another Orwick has
        int failed = 0;
        for (const auto& entry : childItems)
            failed += log.update({entry}, {}) ? 0 : 1;
        _exit(failed == 0 && log.size() >= 150 ? 0 : 1);
    }
    TrashLog log(file);
    for (const auto& entry : parentItems)
        ASSERT_TRUE(log.update({entry}, {}));
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(entriesOnDisk(file), 300);
    EXPECT_EQ(TrashLog(file).size(), 300);

    // Removing merges the same way: the other process's entries stay.
    QList<FilePath> removed;
    for (const auto& entry : parentItems)
        removed.append(entry.first);
    ASSERT_TRUE(log.update({}, removed));
    EXPECT_EQ(entriesOnDisk(file), 150);
    EXPECT_EQ(log.size(), 150);
}

TEST(TrashLogStore, EntriesOfItemsEmptiedFromTheTrashAreDroppedAndThoseOfAnUnpluggedDiskKept)
{
    TempTree tree;
    const FilePath file = tree.path(QStringLiteral("data/trash-log.json"));
    const auto items = trashedItems(tree, QStringLiteral("item"), 2);
    const FilePath unplugged = tree.path(QStringLiteral("gone-disk/.Trash-1000/files/photo.jpg"));
    TrashLog log(file);
    ASSERT_TRUE(log.update({items[0], items[1], {unplugged, tree.path("photo.jpg")}}, {}));
    ::unlink(items[0].first.c_str()); // emptied by another program
    TrashLog reread(file);
    EXPECT_EQ(reread.size(), 2);
    ASSERT_TRUE(reread.update({}, {}) ); // nothing to do
    ASSERT_TRUE(reread.update({}, {items[1].first}));
    EXPECT_EQ(entriesOnDisk(file), 1); // only the unplugged disk's entry
}

TEST(TrashLogStore, FolderThatIsAFileIsSaidOnceAndNothingIsLost)
{
    TempTree tree;
    tree.file("blocker", "a file, not a folder");
    const FilePath file = tree.path(QStringLiteral("blocker/trash-log.json"));
    const auto items = trashedItems(tree, QStringLiteral("item"), 3);
    StoreNotices::takePending();
    TrashLog log(file);
    for (const auto& entry : items) {
        const Status saved = log.update({entry}, {});
        ASSERT_FALSE(saved);
        EXPECT_TRUE(saved.error().startsWith(QStringLiteral("Couldn’t write"))) << saved.error().toStdString();
    }
    EXPECT_EQ(log.size(), 3);
    const QStringList messages = StoreNotices::takePending();
    ASSERT_EQ(messages.size(), 1) << messages.join('\n').toStdString();
    EXPECT_EQ(messages[0], QStringLiteral("Orwick couldn’t save its trash log (“%1”): a part of the path isn’t a folder. "
                                          "Nothing is lost while Orwick is open; it tries again with the next change.")
                               .arg(file.abbreviated()));

    ASSERT_EQ(::unlink(tree.path("blocker").c_str()), 0);
    ASSERT_TRUE(log.update({}, {}));
    EXPECT_EQ(entriesOnDisk(file), 3);
}

TEST(TrashLogFault, FullDiskIsSaidOnceAndTheEntriesAreWrittenWhenThereIsRoom)
{
    ScratchMount disk("tmpfs", "size=64k,nr_inodes=100");
    if (!disk.ok())
        GTEST_SKIP() << disk.why().toStdString();
    TempTree tree;
    const FilePath file = disk.root().child(QStringLiteral("trash-log.json"));
    const auto items = trashedItems(tree, QStringLiteral("an item with a long name to fill the log"), 40);
    TrashLog log(file);
    ASSERT_TRUE(log.update({items[0]}, {}));

    // Fill the disk to its last byte.
    const FilePath filler = disk.root().child(QStringLiteral("filler"));
    const int fd = ::open(filler.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600);
    ASSERT_GE(fd, 0);
    const QByteArray block(4096, 'f');
    while (::write(fd, block.constData(), size_t(block.size())) > 0) {
    }
    ::close(fd);

    StoreNotices::takePending();
    for (int i = 1; i < 40; ++i)
        EXPECT_FALSE(log.update({items[i]}, {}));
    const QStringList messages = StoreNotices::takePending();
    ASSERT_EQ(messages.size(), 1) << messages.join('\n').toStdString();
    EXPECT_TRUE(messages[0].contains(QStringLiteral(": the disk is full."))) << messages[0].toStdString();
    EXPECT_EQ(entriesOnDisk(file), 1); // the old file is whole
    EXPECT_EQ(log.size(), 40);

    ASSERT_EQ(::unlink(filler.c_str()), 0);
    ASSERT_TRUE(log.update({}, {}));
    EXPECT_EQ(entriesOnDisk(file), 40);
}

} // namespace
} // namespace orwick::test

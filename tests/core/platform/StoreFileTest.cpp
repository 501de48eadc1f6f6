// StoreFile: damaged files set aside under a free name, updates merged under the lock by several
// writers, and a file that can't be written said once; with real files in a temporary folder.

#include "platform/StoreFile.h"
#include "platform/StoreNotices.h"
#include "support/ScratchMount.h"
#include "support/TempHome.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonObject>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace orwick::test {
namespace {

// Adds `key` to the store's object, as each writer of a shared store does.
Status add(const StoreFile& file, const QString& key)
{
    const auto written = file.update([&](const std::optional<QJsonDocument>& onDisk) {
        QJsonObject object = onDisk ? onDisk->object() : QJsonObject();
        object.insert(key, true);
        return QJsonDocument(object);
    });
    if (!written)
        return failure(written.error());
    return {};
}

class StoreFileTest : public ::testing::Test {
protected:
    StoreFileTest() { StoreNotices::takePending(); }

    StoreFile store(const QString& relative = QStringLiteral("data/things.json")) const
    {
        return StoreFile(tree.path(relative), {QStringLiteral("its things"), QStringLiteral("it starts with none")});
    }

    TempTree tree;
};

TEST_F(StoreFileTest, DamagedOrWronglyShapedFileIsKeptAsideUnderAFreeNameWithOneMessage)
{
    // A missing file is no news.
    EXPECT_FALSE(store().read());
    EXPECT_TRUE(StoreNotices::takePending().isEmpty());
    EXPECT_FALSE(exists(tree.path("data")));
    tree.file("data/things.damaged.json", "an earlier one");
    tree.file("data/things.json", "{ not json");
    EXPECT_FALSE(store().read());
    EXPECT_FALSE(exists(tree.path("data/things.json")));
    EXPECT_EQ(readAll(tree.path("data/things.damaged.json")), "an earlier one");
    EXPECT_EQ(readAll(tree.path("data/things.damaged 2.json")), "{ not json");
    const QStringList messages = StoreNotices::takePending();
    ASSERT_EQ(messages.size(), 1);
    EXPECT_EQ(messages[0], QStringLiteral("Orwick couldn’t read its things, so it starts with none. The damaged file "
                                          "was kept as “%1”.")
                               .arg(tree.path("data/things.damaged 2.json").abbreviated()));

    // A file of the wrong shape counts as damaged; a sound one reads as it is, without a word.
    tree.file("data/things.json", "[1, 2]");
    EXPECT_FALSE(store().read());
    EXPECT_EQ(readAll(tree.path("data/things.damaged 3.json")), "[1, 2]");
    EXPECT_EQ(StoreNotices::takePending().size(), 1);
    tree.file("data/things.json", "{\"a\": 1}");
    ASSERT_TRUE(store().read());
    EXPECT_EQ(store().read()->object().value("a").toInt(), 1);
    EXPECT_TRUE(StoreNotices::takePending().isEmpty());
}

TEST_F(StoreFileTest, UpdateSetsADamagedFileAsideBeforeWriting)
{
    tree.file("data/things.json", "\xff\xfe garbage");
    ASSERT_TRUE(add(store(), QStringLiteral("new")));
    EXPECT_EQ(readAll(tree.path("data/things.damaged.json")), "\xff\xfe garbage");
    EXPECT_EQ(store().read()->object().keys(), QStringList{QStringLiteral("new")});
    EXPECT_EQ(StoreNotices::takePending().size(), 1);
}

TEST_F(StoreFileTest, WritesAtomicallyAndLeavesNoTemporaryFiles)
{
    ASSERT_TRUE(add(store(), QStringLiteral("a")));
    ASSERT_TRUE(add(store(), QStringLiteral("b")));
    EXPECT_EQ(store().read()->object().keys(), (QStringList{QStringLiteral("a"), QStringLiteral("b")}));
    QDir folder(tree.path("data").text());
    EXPECT_EQ(folder.entryList(QDir::Files | QDir::Hidden), (QStringList{QStringLiteral("things.json"), QStringLiteral("things.lock")}));
}

TEST_F(StoreFileTest, TwoProcessesMergeTheirChanges)
{
    const pid_t child = fork();
    if (child == 0) {
        const StoreFile mine = store(); // its own object, its own descriptors
        int failed = 0;
        for (int i = 0; i < 100; ++i)
            failed += add(mine, QStringLiteral("child %1").arg(i)) ? 0 : 1;
        _exit(failed);
    }
    const StoreFile mine = store();
    for (int i = 0; i < 100; ++i)
        ASSERT_TRUE(add(mine, QStringLiteral("parent %1").arg(i)));
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    EXPECT_EQ(store().read()->object().size(), 200);
}

TEST_F(StoreFileTest, ThreadsWithTheirOwnStoresMergeTheirChanges)
{
    std::vector<std::thread> writers;
    for (int t = 0; t < 3; ++t)
        writers.emplace_back([this, t] {
            const StoreFile mine = store();
            for (int i = 0; i < 50; ++i)
                (void)add(mine, QStringLiteral("%1-%2").arg(t).arg(i));
        });
    for (std::thread& writer : writers)
        writer.join();
    EXPECT_EQ(store().read()->object().size(), 150);
}

TEST_F(StoreFileTest, FolderThatIsAFileIsReportedOnceUntilAWriteSucceeds)
{
    tree.file("blocker", "a file, not a folder");
    const StoreFile blocked = store(QStringLiteral("blocker/things.json"));
    const Status first = add(blocked, QStringLiteral("a"));
    ASSERT_FALSE(first);
    EXPECT_TRUE(first.error().startsWith(QStringLiteral("Couldn’t write"))) << first.error().toStdString();
    EXPECT_FALSE(add(blocked, QStringLiteral("b")));
    EXPECT_FALSE(add(store(QStringLiteral("blocker/things.json")), QStringLiteral("c")));
    const QStringList messages = StoreNotices::takePending();
    ASSERT_EQ(messages.size(), 1) << messages.join('\n').toStdString();
    EXPECT_TRUE(messages[0].startsWith(QStringLiteral("Orwick couldn’t save its things (“%1”): a part of the path isn’t a folder.")
                                           .arg(tree.path("blocker/things.json").abbreviated())))
        << messages[0].toStdString();
    EXPECT_FALSE(store(QStringLiteral("blocker/things.json")).read()); // nothing to read there: no message
    EXPECT_TRUE(StoreNotices::takePending().isEmpty());

    // Once it can be written, the next failure is news again.
    ::unlink(tree.path("blocker").c_str());
    ASSERT_TRUE(add(blocked, QStringLiteral("d")));
    EXPECT_EQ(store(QStringLiteral("blocker/things.json")).read()->object().keys(), QStringList{QStringLiteral("d")});
    for (const char* name : {"blocker/things.json", "blocker/things.lock"})
        ::unlink(tree.path(name).c_str());
    ::rmdir(tree.path("blocker").c_str());
    tree.file("blocker", "a file again");
    EXPECT_FALSE(add(blocked, QStringLiteral("e")));
    EXPECT_EQ(StoreNotices::takePending().size(), 1);
}

TEST_F(StoreFileTest, UnreadableFileIsNeitherReadNorReplaced)
{
    // A folder where the file should be can't be read, even by root.
    tree.file("data/things.json/inside", "kept");
    EXPECT_FALSE(store().read());
    EXPECT_FALSE(add(store(), QStringLiteral("x")));
    EXPECT_EQ(readAll(tree.path("data/things.json/inside")), "kept");
    const QStringList messages = StoreNotices::takePending();
    ASSERT_EQ(messages.size(), 2) << messages.join('\n').toStdString(); // it can't be read; it can't be saved
    EXPECT_TRUE(messages[0].startsWith(QStringLiteral("Orwick couldn’t read its things"))) << messages[0].toStdString();
}

TEST_F(StoreFileTest, NoticesWaitForTheWindowAndThenArriveOnItsThread)
{
    QObject window;
    QStringList shown;
    StoreNotices::post(QStringLiteral("before"));
    StoreNotices::deliverTo(&window, [&shown](const QString& message) { shown.append(message); });
    StoreNotices::post(QStringLiteral("after"));
    EXPECT_TRUE(shown.isEmpty()); // never inside post()
    QCoreApplication::processEvents();
    EXPECT_EQ(shown, (QStringList{QStringLiteral("before"), QStringLiteral("after")}));
    StoreNotices::deliverTo(nullptr, {});
    StoreNotices::post(QStringLiteral("waiting"));
    EXPECT_EQ(StoreNotices::takePending(), QStringList{QStringLiteral("waiting")});
}

TEST_F(StoreFileTest, NoticeForAWindowThatClosesFirstGoesToTheNextWindow)
{
    QStringList shown;
    {
        QObject closing;
        StoreNotices::deliverTo(&closing, [&shown](const QString& message) { shown.append("first " + message); });
        StoreNotices::post(QStringLiteral("damaged"));
    } // gone before the event loop ran
    QCoreApplication::processEvents();
    QObject next;
    StoreNotices::deliverTo(&next, [&shown](const QString& message) { shown.append("next " + message); });
    QCoreApplication::processEvents();
    EXPECT_EQ(shown, QStringList{QStringLiteral("next damaged")});
    StoreNotices::deliverTo(nullptr, {});
}

TEST(StoreFault, ReadOnlyDiskIsSaidOnceAndTheOldFileKept)
{
    ScratchMount disk("tmpfs", "size=1m,nr_inodes=100");
    if (!disk.ok())
        GTEST_SKIP() << disk.why().toStdString();
    const StoreFile file(disk.root().child(QStringLiteral("things.json")),
                         {QStringLiteral("its things"), QStringLiteral("it starts with none")});
    ASSERT_TRUE(add(file, QStringLiteral("before")));
    ASSERT_TRUE(disk.makeReadOnly());
    StoreNotices::takePending();
    EXPECT_FALSE(add(file, QStringLiteral("a")));
    EXPECT_FALSE(add(file, QStringLiteral("b")));
    const QStringList messages = StoreNotices::takePending();
    ASSERT_EQ(messages.size(), 1) << messages.join('\n').toStdString();
    EXPECT_TRUE(messages[0].contains(QStringLiteral(": the disk is read-only."))) << messages[0].toStdString();
    EXPECT_EQ(file.read()->object().keys(), QStringList{QStringLiteral("before")});
}

} // namespace
} // namespace orwick::test

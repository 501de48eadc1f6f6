// orwick-cli tasks, run as the built program on a temporary tree of notes: one tab-separated line
// a task (note, line, done or open, due, scheduled and start dates, priority, recurrence, title),
// --open leaving out the done ones, a note that isn't UTF-8 said with exit status 1 while the
// others are printed, and a summary of the notes the tasks are in and the notes read.

#include "CliRun.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>
#include <unistd.h>

namespace orwick::test {
namespace {

TEST(TasksCommand, PrintsEveryTaskUnderAFolder)
{
    TempTree tree;
    tree.file(QString("v/a.md"), "# A\n- [ ] pay rent 📅 2024-06-01 ⏳ 2024-05-30 ⏫ 🔁 every month\n- [x] call ✅ 2024-05-02\n");
    tree.file(QString("v/sub/b.md"), "* [ ] read 🛫 2024-05-01 🔽\n");
    CliRun all = runCli({"tasks", tree.path("v").native()});
    EXPECT_EQ(all.status, 0) << all.err.toStdString();
    EXPECT_EQ(all.outLines(), (QList<QByteArray>{"a.md\t2\topen\t2024-06-01\t2024-05-30\t-\thigh\tevery month\tpay rent",
                                                "a.md\t3\tdone\t-\t-\t-\tnormal\t-\tcall",
                                                "sub/b.md\t1\topen\t-\t-\t2024-05-01\tlow\t-\tread"}));
    EXPECT_TRUE(all.err.startsWith("3 tasks in 2 notes; 2 notes read in ")) << all.err.toStdString();

    CliRun open = runCli({"tasks", tree.path("v").native(), "--open"});
    EXPECT_EQ(open.outLines().size(), 2);

    const FilePath bad = tree.file(QByteArray("v/\xff.md"), "- [ ] \xff\n");
    CliRun withBad = runCli({"tasks", tree.path("v").native()});
    EXPECT_EQ(withBad.status, 1);
    EXPECT_EQ(withBad.outLines().size(), 3);
    EXPECT_TRUE(withBad.err.contains("UTF-8")) << withBad.err.toStdString();
    ::unlink(bad.c_str());

    CliRun missing = runCli({"tasks", tree.path("gone").native()});
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(missing.err.contains("isn’t there")) << missing.err.toStdString();
}

// The summary counts the notes the printed tasks are in, apart from the notes read: a note without
// tasks is read but holds none, and --open leaves out a note whose tasks are all done.
TEST(TasksCommand, SaysHowManyNotesHoldTheTasksAndHowManyWereRead)
{
    TempTree tree;
    tree.file(QString("v/a.md"), "- [ ] pay rent\n- [x] call\n");
    tree.file(QString("v/b.md"), "# Just text\n\nNo tasks here.\n");
    tree.file(QString("v/sub/c.md"), "- [x] read\n");
    CliRun all = runCli({"tasks", tree.path("v").native()});
    EXPECT_EQ(all.status, 0) << all.err.toStdString();
    EXPECT_EQ(all.outLines().size(), 3);
    EXPECT_TRUE(all.err.startsWith("3 tasks in 2 notes; 3 notes read in ")) << all.err.toStdString();

    CliRun open = runCli({"tasks", tree.path("v").native(), "--open"});
    EXPECT_EQ(open.outLines().size(), 1);
    EXPECT_TRUE(open.err.startsWith("1 task in 1 note; 3 notes read in ")) << open.err.toStdString();
}

} // namespace
} // namespace orwick::test

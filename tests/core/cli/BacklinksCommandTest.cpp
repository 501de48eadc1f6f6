// orwick-cli backlinks, run as the built program on a temporary vault: one "path:line: text"
// line per linking line, by Markdown links and wikilinks, the vault found from ".obsidian" or
// given with --vault; exit 0 with a sentence on standard error when no note links; a missing
// note or a file that isn't a note refused with exit 1.

#include "CliRun.h"
#include "support/TempHome.h"

#include <QDir>
#include <gtest/gtest.h>
#include <unistd.h>

namespace orwick::test {
namespace {

TEST(BacklinksCommand, PrintsEveryLinkingLineWithItsPath)
{
    TempTree tree;
    tree.folder("v/.obsidian");
    const FilePath target = tree.file("v/Projects/Plan.md", "# Plan\n");
    tree.file("v/a.md", "intro\nsee [[Plan#Goals|the plan]]\n");
    tree.file("v/Journal/b.md", "[p](../Projects/Plan.md) and [[plan]]\n```\n[[Plan]]\n```\n");
    const FilePath bad = tree.file(QByteArray("v/\xff.md"), QByteArray("[[Plan]] \xff\n"));

    CliRun run = runCli({"backlinks", target.native()});
    EXPECT_EQ(run.status, 0) << run.err.toStdString();
    const QByteArray vault = tree.path("v").native();
    EXPECT_EQ(run.outLines(), (QList<QByteArray>{vault + "/Journal/b.md:1: [p](../Projects/Plan.md) and [[plan]]",
                                                vault + "/a.md:2: see [[Plan#Goals|the plan]]"}));
    EXPECT_TRUE(run.err.contains("1 note skipped")) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains("4 notes read in")) << run.err.toStdString();

    // Paths inside the working folder are relative to it.
    const QString was = QDir::currentPath();
    ASSERT_TRUE(QDir::setCurrent(QString::fromLocal8Bit(vault)));
    CliRun relative = runCli({"backlinks", "Projects/Plan.md"});
    QDir::setCurrent(was);
    EXPECT_EQ(relative.outLines(), (QList<QByteArray>{"Journal/b.md:1: [p](../Projects/Plan.md) and [[plan]]", "a.md:2: see [[Plan#Goals|the plan]]"}));
    ::unlink(bad.c_str());
}

TEST(BacklinksCommand, NoLinksIsNoFailure)
{
    TempTree tree;
    const FilePath lonely = tree.file("notes/Lonely.md", "# alone\n");
    tree.file("notes/other.md", "[[Someone else]]\n");
    tree.file("elsewhere/c.md", "[[Lonely]]\n");
    CliRun run = runCli({"backlinks", lonely.native()});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.out.isEmpty());
    EXPECT_TRUE(run.err.contains("No notes link to")) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains("2 notes read")) << run.err.toStdString(); // the note's own folder: no vault above

    CliRun wider = runCli({"backlinks", lonely.native(), "--vault", tree.root().native()});
    EXPECT_EQ(wider.status, 0);
    EXPECT_EQ(wider.outLines(), QList<QByteArray>{tree.path("elsewhere/c.md").native() + ":1: [[Lonely]]"});
}

TEST(BacklinksCommand, RefusesWhatIsntANote)
{
    TempTree tree;
    const FilePath text = tree.file("a.txt", "[[x]]\n");
    CliRun notNote = runCli({"backlinks", text.native()});
    EXPECT_EQ(notNote.status, 1);
    EXPECT_TRUE(notNote.err.contains("isn’t a Markdown note")) << notNote.err.toStdString();
    CliRun missing = runCli({"backlinks", tree.path("gone.md").native()});
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(missing.err.contains("isn’t there")) << missing.err.toStdString();
    CliRun usage = runCli({"backlinks"});
    EXPECT_EQ(usage.status, 2);
    CliRun help = runCli({"backlinks", "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.contains("No notes link to")) << help.out.toStdString();
}

} // namespace
} // namespace orwick::test

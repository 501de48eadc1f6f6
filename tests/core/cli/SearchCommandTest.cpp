// orwick-cli search, run as the built program on temporary trees: the paths it prints (as
// bytes), its filters and its exit status (0 found, 1 none, 2 bad argument).

#include "CliRun.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

namespace orwick::test {

TEST(SearchCommand, PrintsEveryMatchingPathAsBytesAndNothingFoundIsStatusOne)
{
    TempTree tree;
    const FilePath plain = tree.file("docs/Résumé 2024.txt", "x");
    const FilePath odd = tree.file(QByteArray("old/resume-caf\xe9.txt"), "x");
    tree.file("other.txt", "resume inside");
    const CliRun run = runCli({"search", "RESUME", tree.root().native()});
    EXPECT_EQ(run.status, 0) << run.err.constData();
    EXPECT_EQ(sorted(run.outLines()), sorted({plain.native(), odd.native()}));
    const CliRun none = runCli({"search", "zzz", tree.root().native()});
    EXPECT_EQ(none.status, 1) << "nothing found";
    EXPECT_TRUE(none.out.isEmpty());
}

TEST(SearchCommand, ContentKindAndHiddenOptions)
{
    TempTree tree;
    const FilePath note = tree.file("notes/plan.txt", "call the résumé people");
    const FilePath named = tree.file("resume.jpg", "");
    const FilePath hidden = tree.file(".cache/resume.log", "");
    EXPECT_EQ(runCli({"search", "resume", tree.root().native()}).outLines(), QList<QByteArray>{named.native()});
    EXPECT_EQ(sorted(runCli({"search", "resume", tree.root().native(), "--content"}).outLines()), sorted({note.native(), named.native()}));
    EXPECT_EQ(runCli({"search", "resume", tree.root().native(), "--kind", "images"}).outLines(), QList<QByteArray>{named.native()});
    EXPECT_EQ(sorted(runCli({"search", "resume", tree.root().native(), "--hidden"}).outLines()), sorted({named.native(), hidden.native()}));
}

TEST(SearchCommand, BadArgumentsAreStatusTwoWithAMessage)
{
    TempTree tree;
    EXPECT_EQ(runCli({"search"}).status, 2);
    const CliRun kind = runCli({"search", "x", tree.root().native(), "--kind", "spreadsheets"});
    EXPECT_EQ(kind.status, 2);
    EXPECT_TRUE(kind.err.contains("unknown kind “spreadsheets”")) << kind.err.constData();
    EXPECT_EQ(runCli({"search", "x", tree.root().native(), "--changed"}).status, 2);
    const CliRun missing = runCli({"search", "x", tree.path("nowhere").native()});
    EXPECT_EQ(missing.status, 2);
    EXPECT_TRUE(missing.err.contains("isn’t there")) << missing.err.constData();
    EXPECT_EQ(runCli({"search", "x", tree.root().native(), "--frobnicate"}).status, 2);
    const CliRun help = runCli({"search", "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_TRUE(help.out.contains("--content"));
}

} // namespace orwick::test

// orwick-cli highlight, run as the built program on temporary files: HTML spans (the default),
// the token list, the style sheet, a language named by option, and files it can't read.

#include "CliRun.h"
#include "support/TempHome.h"

#include <gtest/gtest.h>

namespace orwick::test {

TEST(HighlightCommand, PrintsHtmlSpansByDefault)
{
    TempTree tree;
    const FilePath file = tree.file("main.py", "def f(): # <x>\n    return 1\n");
    const CliRun run = runCli({"highlight", file.native()});
    EXPECT_EQ(run.status, 0) << run.err.constData();
    EXPECT_EQ(run.out, "<span class=\"tok-keyword\">def</span> <span class=\"tok-function\">f</span>(): "
                       "<span class=\"tok-comment\"># &lt;x&gt;</span>\n    "
                       "<span class=\"tok-keyword\">return</span> <span class=\"tok-number\">1</span>\n");
    EXPECT_EQ(runCli({"highlight", file.native(), "--html"}).out, run.out);
}

TEST(HighlightCommand, TokensAreStartLengthKindInUtf16UnitsAndTheLanguageOptionOverridesTheName)
{
    TempTree tree;
    const FilePath file = tree.file("a.js", "\"\xF0\x9F\x98\x80\" if\n");
    const CliRun run = runCli({"highlight", file.native(), "--tokens"});
    EXPECT_EQ(run.status, 0) << run.err.constData();
    EXPECT_EQ(run.outLines(), (QList<QByteArray>{"0 4 string", "5 2 keyword"}));

    // The language option overrides the file name.
    const FilePath query = tree.file("query.txt", "SELECT 1");
    EXPECT_TRUE(runCli({"highlight", query.native(), "--tokens"}).out.isEmpty()); // .txt: no highlighting
    EXPECT_EQ(runCli({"highlight", query.native(), "--tokens", "--language", "PostgreSQL"}).status, 2);
    EXPECT_EQ(runCli({"highlight", query.native(), "--tokens", "--language", "psql"}).outLines(),
              (QList<QByteArray>{"0 6 keyword", "7 1 number"}));
}

TEST(HighlightCommand, StyleSheetForLightAndDark)
{
    const CliRun light = runCli({"highlight", "--css"});
    const CliRun dark = runCli({"highlight", "--css", "--dark"});
    EXPECT_EQ(light.status, 0);
    EXPECT_EQ(light.outLines().size(), 9);
    EXPECT_TRUE(light.out.startsWith(".tok-keyword { color: rgba("));
    EXPECT_NE(light.out, dark.out);
}

TEST(HighlightCommand, SaysWhyAFileCantBeRead)
{
    TempTree tree;
    const CliRun missing = runCli({"highlight", tree.path("gone.py").native()});
    EXPECT_EQ(missing.status, 1);
    EXPECT_TRUE(missing.err.contains("isn’t there")) << missing.err.constData();
    const CliRun folder = runCli({"highlight", tree.root().native()});
    EXPECT_EQ(folder.status, 1);
    EXPECT_TRUE(folder.err.contains("it’s a folder")) << folder.err.constData();
    EXPECT_EQ(runCli({"highlight"}).status, 2);
    EXPECT_EQ(runCli({"highlight", "a", "b"}).status, 2);
}

} // namespace orwick::test

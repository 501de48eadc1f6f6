#include "disktools/ContentSearch.h"

#include <gtest/gtest.h>

using namespace orwick;
using namespace orwick::ContentSearch;

namespace {

const Tools kAll{"/usr/bin/rg", "/usr/bin/git", "/usr/bin/grep"};
const Tools kNoRipgrep{"", "/usr/bin/git", "/usr/bin/grep"};
const Tools kGrepOnly{"", "", "/usr/bin/grep"};

} // namespace

TEST(ContentSearchCommand, RipgrepLiteralMatchCase)
{
    const auto chosen = command("needle", {.regex = false, .matchCase = true}, false, kAll);
    ASSERT_TRUE(chosen);
    EXPECT_EQ(chosen->tool, Tool::ripgrep);
    EXPECT_EQ(chosen->executable, "/usr/bin/rg");
    EXPECT_EQ(chosen->arguments, QStringList({"--line-number", "--no-heading", "--null", "--color", "never", "--max-columns",
                                              "400", "--fixed-strings", "--case-sensitive", "-e", "needle", "."}));
}

TEST(ContentSearchCommand, RipgrepRegexIgnoringCaseEvenInARepository)
{
    const auto chosen = command("a.*b", {.regex = true, .matchCase = false}, true, kAll);
    ASSERT_TRUE(chosen);
    EXPECT_EQ(chosen->tool, Tool::ripgrep);
    EXPECT_EQ(chosen->arguments, QStringList({"--line-number", "--no-heading", "--null", "--color", "never", "--max-columns",
                                              "400", "--ignore-case", "-e", "a.*b", "."}));
}

TEST(ContentSearchCommand, GitGrepInARepositoryWithoutRipgrep)
{
    const auto literal = command("x", {.regex = false, .matchCase = false}, true, kNoRipgrep);
    ASSERT_TRUE(literal);
    EXPECT_EQ(literal->tool, Tool::gitGrep);
    EXPECT_EQ(literal->executable, "/usr/bin/git");
    EXPECT_EQ(literal->arguments, QStringList({"-c", "core.quotepath=off", "grep", "-n", "-I", "-z", "--untracked",
                                               "--no-color", "-F", "-i", "-e", "x", "--", "."}));
    const auto regex = command("x", {.regex = true, .matchCase = true}, true, kNoRipgrep);
    EXPECT_EQ(regex->arguments, QStringList({"-c", "core.quotepath=off", "grep", "-n", "-I", "-z", "--untracked",
                                             "--no-color", "-E", "-e", "x", "--", "."}));
}

TEST(ContentSearchCommand, GrepOutsideARepositoryExcludesTheSixteenFolders)
{
    const auto chosen = command("x", {.regex = true, .matchCase = false}, false, kNoRipgrep);
    ASSERT_TRUE(chosen);
    EXPECT_EQ(chosen->tool, Tool::grep);
    EXPECT_EQ(chosen->executable, "/usr/bin/grep");
    EXPECT_EQ(chosen->arguments,
              QStringList({"-r", "-n", "-I", "--null", "-E", "-i", "--exclude-dir=node_modules", "--exclude-dir=.git",
                           "--exclude-dir=build", "--exclude-dir=dist", "--exclude-dir=.next", "--exclude-dir=.nuxt",
                           "--exclude-dir=DerivedData", "--exclude-dir=.build", "--exclude-dir=Pods", "--exclude-dir=target",
                           "--exclude-dir=.venv", "--exclude-dir=venv", "--exclude-dir=__pycache__", "--exclude-dir=.gradle",
                           "--exclude-dir=.cache", "--exclude-dir=coverage", "-e", "x", "."}));
    // In a repository without git the grep fallback is used too.
    EXPECT_EQ(command("x", {}, true, kGrepOnly)->tool, Tool::grep);
    const auto literal = command("x", {.regex = false, .matchCase = true}, false, kGrepOnly);
    EXPECT_EQ(literal->arguments.mid(0, 5), QStringList({"-r", "-n", "-I", "--null", "-F"}));
    EXPECT_EQ(literal->arguments[5], "--exclude-dir=node_modules");
}

TEST(ContentSearchCommand, AQueryStartingWithADashFollowsDashE)
{
    for (const Tools& tools : {kAll, kNoRipgrep, kGrepOnly}) {
        const auto chosen = command("--files", {}, true, tools);
        ASSERT_TRUE(chosen);
        const qsizetype at = chosen->arguments.indexOf("--files");
        ASSERT_GT(at, 0);
        EXPECT_EQ(chosen->arguments[at - 1], "-e");
    }
}

TEST(ContentSearchCommand, NoToolNoCommand)
{
    EXPECT_FALSE(command("x", {}, false, Tools{}));
    EXPECT_FALSE(command("x", {}, false, Tools{"", "/usr/bin/git", ""})); // git only helps in a repository
    EXPECT_TRUE(noToolMessage().contains("ripgrep"));
    EXPECT_TRUE(noToolMessage().contains("grep"));
}

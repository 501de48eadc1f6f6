// Real searches with the real tools (rg, git grep, grep) on trees with awkward names.

#include "DiskTestSupport.h"
#include "disktools/ContentSearchOutput.h"
#include "disktools/ContentSearchRun.h"
#include "support/GitTestRepo.h"

#include <QDir>
#include <QElapsedTimer>
#include <atomic>
#include <sys/stat.h>
#include <gtest/gtest.h>

using namespace orwick;
using namespace orwick::ContentSearch;
using namespace orwick::test;

namespace {

Tools only(Tool tool)
{
    const Tools all = Tools::find();
    switch (tool) {
    case Tool::ripgrep: return {all.ripgrep, {}, {}};
    case Tool::gitGrep: return {{}, all.git, {}};
    case Tool::grep: return {{}, {}, all.grep};
    }
    return {};
}

const char* toolName(Tool tool) { return tool == Tool::ripgrep ? "rg" : tool == Tool::gitGrep ? "git" : "grep"; }

struct Found {
    RunOutcome outcome;
    std::vector<FileMatches> files; // merged by path, in first-seen order
    std::map<QByteArray, std::vector<Match>> byPath;
};

Found search(Tool tool, const QString& query, const FilePath& folder, Options options = {})
{
    Found found;
    CancelFlag never;
    found.outcome = runSearch(query, folder, options, never, [&](std::vector<FileMatches>&& batch) {
        for (FileMatches& file : batch) {
            auto& into = found.byPath[file.path];
            into.insert(into.end(), file.matches.begin(), file.matches.end());
            found.files.push_back(std::move(file));
        }
    }, 0, only(tool));
    return found;
}

// The awkward names every tool must bring back whole.
const QByteArray kColon = "a:b 1.txt";
const QByteArray kNewline = "new\nline.txt";
const QByteArray kNotUtf8 = "bad\xff name.txt";

void write(const FilePath& path, const QByteArray& content)
{
    QDir().mkpath(path.parent().text());
    FILE* file = fopen(path.c_str(), "wb");
    ASSERT_TRUE(file);
    fwrite(content.constData(), 1, size_t(content.size()), file);
    fclose(file);
}

void plantAwkwardTree(const FilePath& root)
{
    write(root.child(QByteArrayView(kColon)), "first\nneedle: here\nlast needle\n");
    write(root.child(QByteArrayView(kNewline)), "x needle\n");
    write(root.child(QByteArrayView(kNotUtf8)), "a needle in a file with an odd name\n");
    write(root.child(QByteArrayView("latin1.txt")), "needle \xfe\xff bytes\n");
    write(root.child(QByteArrayView("sub dir/deep.txt")), "no\nno\nNEEDLE upper\n");
    write(root.child(QByteArrayView("long.txt")), "needle " + QByteArray(600, 'x') + "\n");
    write(root.child(QByteArrayView("binary.dat")), QByteArray("needle\0needle\0", 14) + QByteArray(100, '\0'));
}

class ContentSearchTools : public ::testing::TestWithParam<Tool> {
protected:
    void SetUp() override
    {
        const Tools installed = Tools::find();
        const QString& path = GetParam() == Tool::ripgrep ? installed.ripgrep : GetParam() == Tool::gitGrep ? installed.git : installed.grep;
        if (path.isEmpty())
            GTEST_SKIP() << toolName(GetParam()) << " isn't installed here";
    }

    FilePath folder()
    {
        if (GetParam() == Tool::gitGrep) {
            m_repo = std::make_unique<GitTestRepo>(m_tree);
            return m_repo->root();
        }
        return m_tree.root();
    }

    TempTree m_tree;
    std::unique_ptr<GitTestRepo> m_repo;
};

} // namespace

TEST_P(ContentSearchTools, NamesComeBackWholeAndLinesNumbered)
{
    const FilePath root = folder();
    plantAwkwardTree(root);
    const Found found = search(GetParam(), "needle", root, {.regex = false, .matchCase = true});
    EXPECT_TRUE(found.outcome.started);
    EXPECT_FALSE(found.outcome.failure) << found.outcome.failure->toStdString();
    ASSERT_TRUE(found.byPath.contains(kColon));
    const auto& colon = found.byPath.at(kColon);
    ASSERT_EQ(colon.size(), 2u);
    EXPECT_EQ(colon[0], (Match{2, "needle: here"}));
    EXPECT_EQ(colon[1], (Match{3, "last needle"}));
    ASSERT_TRUE(found.byPath.contains(kNewline));
    EXPECT_EQ(found.byPath.at(kNewline)[0], (Match{1, "x needle"}));
    ASSERT_TRUE(found.byPath.contains(kNotUtf8));
    EXPECT_EQ(found.byPath.at(kNotUtf8)[0], (Match{1, "a needle in a file with an odd name"}));
    // Text that isn't UTF-8 comes back as its bytes; grep in a UTF-8 locale takes it for binary.
    if (GetParam() != Tool::grep) {
        ASSERT_TRUE(found.byPath.contains("latin1.txt"));
        EXPECT_EQ(found.byPath.at("latin1.txt")[0].bytes, QByteArray("needle \xfe\xff bytes"));
    }
    EXPECT_FALSE(found.byPath.contains("sub dir/deep.txt")) << "match case is on";
    EXPECT_FALSE(found.byPath.contains("binary.dat")) << "binary files are skipped";
    ASSERT_TRUE(found.byPath.contains("long.txt"));
    EXPECT_LE(found.byPath.at("long.txt")[0].bytes.size(), kMaxColumns);
    // Every url names a file that is there.
    for (const FileMatches& file : found.files) {
        EXPECT_EQ(file.url, root.child(QByteArrayView(file.path)));
        EXPECT_TRUE(exists(file.url)) << file.url.text().toStdString();
    }
    EXPECT_EQ(found.outcome.matches, GetParam() == Tool::grep ? 5 : 6);
}

TEST_P(ContentSearchTools, IgnoringCaseFindsUpperCase)
{
    const FilePath root = folder();
    plantAwkwardTree(root);
    const Found found = search(GetParam(), "needle", root, {.regex = false, .matchCase = false});
    ASSERT_TRUE(found.byPath.contains("sub dir/deep.txt"));
    EXPECT_EQ(found.byPath.at("sub dir/deep.txt")[0], (Match{3, "NEEDLE upper"}));
}

TEST_P(ContentSearchTools, LiteralQueryTakesRegexCharactersAsThemselves)
{
    const FilePath root = folder();
    write(root.child(QByteArrayView("q.txt")), "a.c\nabc\n-v\n");
    const Found literal = search(GetParam(), "a.c", root, {.regex = false});
    ASSERT_EQ(literal.byPath.at("q.txt").size(), 1u);
    const Found regex = search(GetParam(), "a.c", root, {.regex = true});
    EXPECT_EQ(regex.byPath.at("q.txt").size(), 2u);
    const Found dash = search(GetParam(), "-v", root, {});
    ASSERT_TRUE(dash.byPath.contains("q.txt"));
    EXPECT_EQ(dash.byPath.at("q.txt")[0].line, 3);
}

TEST_P(ContentSearchTools, NothingFoundIsNoFailure)
{
    const FilePath root = folder();
    plantAwkwardTree(root);
    const Found found = search(GetParam(), "absent-word", root, {});
    EXPECT_TRUE(found.files.empty());
    EXPECT_FALSE(found.outcome.failure);
    EXPECT_EQ(found.outcome.matches, 0);
}

TEST_P(ContentSearchTools, ABrokenPatternIsTheToolsMessageTidied)
{
    const FilePath root = folder();
    plantAwkwardTree(root);
    const Found found = search(GetParam(), "(needle", root, {.regex = true});
    EXPECT_TRUE(found.files.empty());
    ASSERT_TRUE(found.outcome.failure);
    const QString message = *found.outcome.failure;
    EXPECT_FALSE(message.startsWith("rg:") || message.startsWith("grep:") || message.startsWith("fatal:")) << message.toStdString();
    EXPECT_FALSE(message.contains('\n'));
    EXPECT_TRUE(message.contains("nclosed") || message.contains("nmatched")) << message.toStdString();
    EXPECT_TRUE(message[0].isUpper()) << message.toStdString();
}

INSTANTIATE_TEST_SUITE_P(EveryTool, ContentSearchTools, ::testing::Values(Tool::ripgrep, Tool::gitGrep, Tool::grep),
                         [](const auto& info) { return std::string(toolName(info.param)) == "git" ? "gitGrep" : toolName(info.param); });

TEST(ContentSearchRun, GrepLeavesOutBuildFoldersAndRipgrepHonoursIgnoreFiles)
{
    TempTree tree;
    put(tree, "src/a.txt", "needle\n");
    put(tree, "node_modules/m/b.txt", "needle\n");
    put(tree, "ignored/c.txt", "needle\n");
    put(tree, ".ignore", "ignored/\n");
    const Found grep = search(Tool::grep, "needle", tree.root());
    EXPECT_TRUE(grep.byPath.contains("src/a.txt"));
    EXPECT_FALSE(grep.byPath.contains("node_modules/m/b.txt"));
    if (Tools::find().ripgrep.isEmpty())
        GTEST_SKIP() << "rg isn't installed here";
    const Found rg = search(Tool::ripgrep, "needle", tree.root());
    EXPECT_TRUE(rg.byPath.contains("src/a.txt"));
    EXPECT_FALSE(rg.byPath.contains("ignored/c.txt"));
}

TEST(ContentSearchRun, NoToolSaysWhichToolsItLooksFor)
{
    TempTree tree;
    put(tree, "a.txt", "needle\n");
    CancelFlag never;
    int batches = 0;
    const RunOutcome outcome = runSearch("needle", tree.root(), {}, never, [&](auto&&) { ++batches; }, 0, Tools{});
    EXPECT_FALSE(outcome.started);
    ASSERT_TRUE(outcome.failure);
    EXPECT_EQ(*outcome.failure, noToolMessage());
    EXPECT_EQ(batches, 0);
}

TEST(ContentSearchRun, AToolThatCannotStartIsSaid)
{
    TempTree tree;
    CancelFlag never;
    const RunOutcome outcome = runSearch("x", tree.root(), {}, never, [](auto&&) {}, 0, Tools{tree.path("no-such-rg").text(), {}, {}});
    EXPECT_FALSE(outcome.started);
    ASSERT_TRUE(outcome.failure);
    EXPECT_TRUE(outcome.failure->contains("no-such-rg"));
}

TEST(ContentSearchRun, CancellingStopsTheToolQuickly)
{
    // A "tool" that prints one match, then would sleep for a minute.
    TempTree tree;
    const FilePath script = tree.file("slow-rg", "#!/bin/sh\nprintf 'a.txt\\0001:hit\\n'\nexec sleep 60\n");
    chmod(script.c_str(), 0755);
    CancelFlag cancel;
    int seen = 0;
    QElapsedTimer timer;
    timer.start();
    const RunOutcome outcome = runSearch("hit", tree.root(), {}, cancel, [&](std::vector<FileMatches>&& batch) {
        seen += int(batch.size());
        cancel.cancel(); // from the callback, as a panel replacing its search would
    }, 0, Tools{script.text(), {}, {}});
    EXPECT_LT(timer.elapsed(), 5000);
    EXPECT_EQ(seen, 1);
    EXPECT_TRUE(outcome.started);
    EXPECT_FALSE(outcome.failure);
}

TEST(ContentSearchRun, StopsAtTheMatchLimit)
{
    TempTree tree;
    QByteArray many;
    for (int i = 0; i < 50000; ++i)
        many += "needle\n";
    put(tree, "many.txt", many);
    CancelFlag never;
    qint64 kept = 0;
    const RunOutcome outcome = runSearch("needle", tree.root(), {}, never, [&](std::vector<FileMatches>&& batch) {
        for (const auto& file : batch)
            kept += qint64(file.matches.size());
    }, 100);
    if (!outcome.started)
        GTEST_SKIP() << "no search tool here";
    EXPECT_TRUE(outcome.isCapped);
    EXPECT_GE(kept, 100);
    EXPECT_LT(kept, 50000);
}

namespace {
std::atomic<int> probeCalls{0};
void countProbe() { ++probeCalls; }
} // namespace

TEST(ContentSearchRun, FirstOutputProbeRunsOnceBeforeTheFirstBatchAndNotWithoutOutput)
{
    TempTree tree;
    QByteArray many;
    for (int i = 0; i < 50000; ++i)
        many += "needle\n"; // several reads of the pipe
    put(tree, "many.txt", many);
    CancelFlag never;
    probeCalls = 0;
    setFirstOutputProbe(countProbe);
    int callsAtFirstBatch = -1;
    const RunOutcome outcome = runSearch("needle", tree.root(), {}, never, [&](std::vector<FileMatches>&&) {
        if (callsAtFirstBatch < 0)
            callsAtFirstBatch = probeCalls;
    });
    const int callsWithOutput = probeCalls;
    runSearch("absent", tree.root(), {}, never, [](std::vector<FileMatches>&&) {});
    const int callsWithout = probeCalls - callsWithOutput;
    setFirstOutputProbe(nullptr);
    if (!outcome.started)
        GTEST_SKIP() << "no search tool here";
    EXPECT_EQ(callsAtFirstBatch, 1);
    EXPECT_EQ(callsWithOutput, 1);
    EXPECT_EQ(callsWithout, 0);
}

#include "search/QuerySearch.h"
#include "search/SearchRoots.h"
#include "search/SearchWalker.h"
#include "support/ScratchMount.h"
#include "support/TempHome.h"
#include "support/Unprivileged.h"

#include <QDir>
#include <QFile>
#include <optional>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

struct Found {
    QStringList relative; // sorted, relative to the root
    int batches = 0;
};

Found search(const SearchQuery& query, QuerySearch::Options options = {}, const CancelFlag& cancel = CancelFlag())
{
    Found found;
    QList<FilePath> paths;
    QuerySearch::run(query, options, [&](SearchBatch&& batch) {
        ++found.batches;
        EXPECT_EQ(batch.items.size(), batch.paths.size());
        paths.append(batch.paths);
    }, cancel);
    for (const FilePath& path : paths)
        found.relative << path.text().mid(query.folder.text().size() + 1);
    found.relative.sort();
    return found;
}

SearchQuery below(const test::TempTree& tree, const QString& text)
{
    SearchQuery query;
    query.text = text;
    query.folder = tree.root();
    query.scope = SearchQuery::Scope::below;
    return query;
}

} // namespace

TEST(SearchWalker, FindsNamesBelowAndOnlyTheFolderItselfWithScopeHere)
{
    test::TempTree tree;
    tree.file("Report.txt");
    tree.file("a/b/c/annual report.pdf");
    tree.folder("reports");
    tree.file("other.txt");
    EXPECT_EQ(search(below(tree, "report")).relative, (QStringList{"Report.txt", "a/b/c/annual report.pdf", "reports"}));
    SearchQuery here = below(tree, "report");
    here.scope = SearchQuery::Scope::here;
    EXPECT_EQ(search(here).relative, (QStringList{"Report.txt", "reports"}));
}

TEST(SearchWalker, LeavesOutBuildFoldersGitAndHiddenNamesUnlessShown)
{
    test::TempTree tree;
    tree.file("web/package.json");
    tree.file("web/node_modules/left-pad/match.js");
    tree.file("rust/Cargo.toml");
    tree.file("rust/target/match.o");
    tree.file("plain/target/match.txt"); // no Cargo.toml beside it: an ordinary folder
    tree.file("repo/.git/match");
    tree.file(".config/match.conf");
    tree.file("match.md");
    EXPECT_EQ(search(below(tree, "match")).relative, (QStringList{"match.md", "plain/target/match.txt"}));
    QuerySearch::Options hidden;
    hidden.showHidden = true;
    EXPECT_EQ(search(below(tree, "match"), hidden).relative, (QStringList{".config/match.conf", "match.md", "plain/target/match.txt"}));
}

TEST(SearchWalker, NeverFollowsALinkButFindsTheLinkItself)
{
    test::TempTree outside;
    outside.file("inside/secret-match.txt");
    test::TempTree tree;
    tree.link("match-link", outside.path("inside").native());
    EXPECT_EQ(search(below(tree, "match")).relative, QStringList{"match-link"});
}

TEST(SearchWalker, KeepsNamesThatAreNotUtf8AsBytes)
{
    test::TempTree tree;
    const FilePath odd = tree.file(QByteArray("caf\xe9-match.txt"), "x");
    QList<FilePath> paths;
    QuerySearch::run(below(tree, "match"), {}, [&](SearchBatch&& batch) { paths.append(batch.paths); }, CancelFlag());
    ASSERT_EQ(paths.size(), 1);
    EXPECT_EQ(paths.first().native(), odd.native());
    EXPECT_TRUE(test::exists(paths.first()));
}

TEST(SearchWalker, LeavesUnreadableFoldersOutInSilence)
{
    // Root reads every folder: as root the walk runs as "nobody", over a file system it can enter.
    test::TempTree tree;
    std::optional<test::ScratchMount> mount;
    SearchQuery query = below(tree, "match");
    if (geteuid() == 0) {
        mount.emplace("tmpfs", "mode=0755");
        if (!mount->ok())
            GTEST_SKIP() << mount->why().toStdString();
        query.folder = mount->root();
    }
    for (const char* folder : {"open", "closed"})
        ASSERT_TRUE(test::writeFile(query.folder.child(QString::fromLatin1(folder)).child(QStringLiteral("match.txt")), {}));
    const FilePath closed = query.folder.child(QStringLiteral("closed"));
    ASSERT_EQ(chmod(closed.c_str(), 0), 0);
    Found found;
    {
        const test::Unprivileged user;
        ASSERT_TRUE(user.ok());
        found = search(query);
    }
    chmod(closed.c_str(), 0755);
    EXPECT_EQ(found.relative, QStringList{"open/match.txt"});
}

TEST(SearchWalker, FindsTextInsideTextFilesButNotInBinaryOrFolders)
{
    test::TempTree tree;
    tree.file("notes/plan.txt", "Call the Résumé people on Monday\n");
    tree.file("notes/data.bin", QByteArray("resume\0\0\0binary", 16));
    tree.file("notes/photo.jpg", "resume in a jpeg name space");
    tree.file("notes/empty.txt");
    QuerySearch::Options options;
    EXPECT_EQ(search(below(tree, "resume"), options).relative, QStringList{"notes/plan.txt"});
    options.contents = false;
    EXPECT_TRUE(search(below(tree, "resume"), options).relative.isEmpty());
}

TEST(SearchWalker, SkipsFilesAboveTheContentLimit)
{
    test::TempTree tree;
    tree.file("big.txt", QByteArray(100, 'x') + "needle");
    const auto folder = DirectoryHandle::open(tree.root());
    ASSERT_TRUE(folder);
    EXPECT_TRUE(QuerySearch::fileContains(folder->fd(), "big.txt", TextNeedle("NEEDLE"), 1000));
    EXPECT_FALSE(QuerySearch::fileContains(folder->fd(), "big.txt", TextNeedle("NEEDLE"), 50));
}

TEST(SearchWalker, KindAndDateFiltersApplyDuringTheWalk)
{
    test::TempTree tree;
    tree.file("old.jpg");
    tree.file("new.jpg");
    tree.file("new.txt");
    tree.touch(tree.path("old.jpg"), QDateTime::currentSecsSinceEpoch() - 30 * 86400);
    SearchQuery query = below(tree, "");
    query.kind = SearchQuery::Kind::images;
    query.changed = SearchQuery::Changed::week;
    EXPECT_EQ(search(query).relative, QStringList{"new.jpg"});
}

TEST(SearchWalker, ACancelledWalkOrAQueryWithNothingToLookForDeliversNothing)
{
    test::TempTree tree;
    for (int i = 0; i < 50; ++i)
        tree.file(QStringLiteral("d%1/match.txt").arg(i));
    EXPECT_EQ(search(below(tree, "  ")).batches, 0);
    CancelFlag cancel;
    cancel.cancel();
    EXPECT_EQ(search(below(tree, "match"), {}, cancel).batches, 0);
}

// Hits go out in batches while the walk goes on: with no interval many, with one longer than
// the walk the first hits at once and the rest at the end.
TEST(SearchWalker, HandsResultsOverInBatchesWhileWalking)
{
    test::TempTree tree;
    for (int i = 0; i < 200; ++i)
        tree.file(QStringLiteral("d%1/match.txt").arg(i));
    SearchWalker::Options options;
    options.roots = {tree.root()};
    options.batchIntervalMs = 0;
    options.threads = 2;
    int batches = 0;
    qint64 delivered = 0;
    const qint64 hits = SearchWalker::run(options, [](const SearchCandidate& c) { return c.name() == "match.txt"; },
                                          [&](SearchBatch&& batch) {
                                              ++batches;
                                              delivered += batch.paths.size();
                                          }, CancelFlag());
    EXPECT_EQ(hits, 200);
    EXPECT_EQ(delivered, 200);
    EXPECT_GT(batches, 1);

    options.batchIntervalMs = 60'000;
    options.threads = 0;
    QList<qsizetype> sizes;
    SearchWalker::run(options, [](const SearchCandidate& c) { return c.name() == "match.txt"; },
                      [&](SearchBatch&& batch) { sizes.append(batch.paths.size()); }, CancelFlag());
    ASSERT_EQ(sizes.size(), 2) << "the first hits at once, the rest at the end";
    EXPECT_EQ(sizes[0] + sizes[1], 200);
}

TEST(SearchWalker, TagsAreReadWithOddSeparatorsAndSpaces)
{
    EXPECT_TRUE(QuerySearch::tagsContain("Red,Work", "work"));
    EXPECT_TRUE(QuerySearch::tagsContain(" Red ;  Work ,", "Work"));
    EXPECT_TRUE(QuerySearch::tagsContain("Blue\nGreen", "green"));
    EXPECT_FALSE(QuerySearch::tagsContain("Redder,Works", "Red"));
    EXPECT_FALSE(QuerySearch::tagsContain("", "Red"));
    EXPECT_FALSE(QuerySearch::tagsContain("Red", " "));
}

TEST(SearchRoots, PseudoFileSystemsAreClosedAndHomeComesFirst)
{
    const QSet<QByteArray> closed = SearchRoots::closedMountPoints();
    EXPECT_TRUE(closed.contains("/proc"));
    EXPECT_FALSE(closed.contains("/"));
    const std::vector<FilePath> roots = SearchRoots::homeAndDrives();
    ASSERT_FALSE(roots.empty());
    EXPECT_EQ(roots.front(), test::tempHome());
}

TEST(SearchWalker, StopsAtItsLimit)
{
    test::TempTree tree;
    for (int i = 0; i < 120; ++i)
        tree.file(QStringLiteral("d%1/match-%2.txt").arg(i % 30).arg(i));
    SearchWalker::Options options;
    options.roots = {tree.root()};
    options.limit = 25;
    options.threads = 2;
    qint64 delivered = 0;
    const qint64 hits = SearchWalker::run(options, [](const SearchCandidate& c) { return c.name().startsWith("match"); },
                                          [&](SearchBatch&& batch) { delivered += batch.paths.size(); }, CancelFlag());
    EXPECT_EQ(hits, 25);
    EXPECT_EQ(delivered, 25);
}

TEST(SearchWalker, ARootOnAClosedMountIsSearchedAllTheSame)
{
    // /proc is never entered from outside; chosen as the place to look, it is searched.
    SearchWalker::Options options;
    options.roots = {FilePath::fromText("/proc/self")};
    options.recursive = false;
    options.makeItems = false;
    QList<FilePath> found;
    SearchWalker::run(options, [](const SearchCandidate& c) { return c.name() == "status"; },
                      [&](SearchBatch&& batch) { found.append(batch.paths); }, CancelFlag());
    EXPECT_EQ(found, QList<FilePath>{FilePath::fromText("/proc/self/status")});
}

TEST(SearchWalker, WalksATreeDeeperThanItHoldsOpen)
{
    test::TempTree tree;
    QString deep;
    for (int i = 0; i < 150; ++i)
        deep += QStringLiteral("d/");
    tree.file(deep + QStringLiteral("bottom-match.txt"));
    SearchWalker::Options options;
    options.roots = {tree.root()};
    options.threads = 1;
    qint64 found = SearchWalker::run(options, [](const SearchCandidate& c) { return c.name() == "bottom-match.txt"; },
                                     [](SearchBatch&&) {}, CancelFlag());
    EXPECT_EQ(found, 1);
}

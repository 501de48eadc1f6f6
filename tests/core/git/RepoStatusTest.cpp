// Reading repositories that the real git made: branches and upstreams, renames, conflicts from a
// real merge, ignored folders, worktrees and submodules, awkward names, running operations, and
// repositories in a bad way.

#include "support/GitTestRepo.h"
#include "git/RepositoryRoot.h"
#include "git/StatusReader.h"

#include <QDir>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace orwick {
namespace {

using test::GitTestRepo;
using test::TempTree;

class RepoStatusTest : public ::testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(gitExecutable().has_value()) << "these tests need git on PATH"; }
    Result<RepoStatus> read(const FilePath& root) { return readStatus(*gitExecutable(), root); }
    const RepoStatus::File* file(const RepoStatus& status, const QString& path)
    {
        for (const auto& f : status.files)
            if (f.path == path)
                return &f;
        return nullptr;
    }
    TempTree tree;
    GitTestRepo repo{tree};
};

TEST_F(RepoStatusTest, ARepositoryWithoutCommits)
{
    repo.write("first.txt", "1");
    const auto status = read(repo.root());
    ASSERT_TRUE(status);
    EXPECT_EQ(status->branch, QStringLiteral("main"));
    EXPECT_EQ(status->ahead, 0);
    EXPECT_EQ(status->behind, 0);
    ASSERT_EQ(status->files.size(), 1);
    EXPECT_EQ(status->files[0].change, Change::untracked);
    EXPECT_FALSE(status->operation);
}

TEST_F(RepoStatusTest, AheadAndBehindARealUpstream)
{
    repo.write("a.txt", "a");
    repo.commitAll("one");
    const auto noUpstream = read(repo.root());
    ASSERT_TRUE(noUpstream);
    EXPECT_EQ(noUpstream->branch, QStringLiteral("main"));
    EXPECT_TRUE(noUpstream->files.isEmpty());

    const FilePath clone = tree.path("clone");
    GitTestRepo::gitIn(tree.root(), {"clone", "-q", repo.root().text(), clone.text()});
    repo.write("a.txt", "upstream moved");
    repo.commitAll("two");
    GitTestRepo::gitIn(clone, {"fetch", "-q"});
    for (const char* message : {"local 1", "local 2"})
        GitTestRepo::gitIn(clone, {"commit", "-q", "--allow-empty", "-m", message});

    const auto status = read(clone);
    ASSERT_TRUE(status);
    EXPECT_EQ(status->branch, QStringLiteral("main"));
    EXPECT_EQ(status->ahead, 2);
    EXPECT_EQ(status->behind, 1);
}

TEST_F(RepoStatusTest, StagedRenameListsOnlyTheNewName)
{
    repo.write("old.txt", "some content that stays the same\n");
    repo.write("sub/kept.txt", "k");
    repo.commitAll("one");
    repo.git({"mv", "old.txt", "sub/new.txt"});
    repo.write("sub/kept.txt", "changed");

    const auto status = read(repo.root());
    ASSERT_TRUE(status);
    ASSERT_EQ(status->files.size(), 2);
    const auto* renamed = file(*status, "sub/new.txt");
    ASSERT_TRUE(renamed);
    EXPECT_EQ(renamed->change, Change::renamed);
    EXPECT_TRUE(renamed->isStaged);
    EXPECT_FALSE(renamed->hasUnstaged);
    EXPECT_FALSE(status->changedPaths.contains(repo.path("old.txt")));
    EXPECT_EQ(renamed->renamedFrom, QByteArray("old.txt"));
    EXPECT_EQ(status->pathsToDiscard(*renamed), (QList<FilePath>{repo.path("sub/new.txt"), repo.path("old.txt")}));
    const auto* modified = file(*status, "sub/kept.txt");
    ASSERT_TRUE(modified);
    EXPECT_EQ(status->pathsToDiscard(*modified), QList<FilePath>{repo.path("sub/kept.txt")});
    EXPECT_FALSE(modified->isStaged);
    EXPECT_TRUE(modified->hasUnstaged);
    EXPECT_EQ(status->foldersWithChanges, QSet<FilePath>{repo.path("sub")});
}

TEST_F(RepoStatusTest, ARealMergeConflictMarksEveryUnmergedFileAndTheOperation)
{
    repo.write("both-changed.txt", "base\n");
    repo.write("renamed-twice.txt", "a file that both branches rename differently\n");
    repo.commitAll("base");
    repo.git({"checkout", "-q", "-b", "other"});
    repo.write("both-changed.txt", "other\n");
    repo.write("both-added.txt", "other\n");
    repo.git({"mv", "renamed-twice.txt", "other-name.txt"});
    repo.commitAll("other");
    repo.git({"checkout", "-q", "main"});
    repo.write("both-changed.txt", "main\n");
    repo.write("both-added.txt", "main\n");
    repo.git({"mv", "renamed-twice.txt", "main-name.txt"});
    repo.commitAll("main");
    repo.git({"merge", "other"}, /*mayFail=*/true);

    const auto status = read(repo.root());
    ASSERT_TRUE(status);
    EXPECT_EQ(status->operation, QStringLiteral("Merging"));
    for (const char* path : {"both-changed.txt", "both-added.txt", "renamed-twice.txt"}) {
        const auto* conflicted = file(*status, QString::fromUtf8(path));
        ASSERT_TRUE(conflicted) << path;
        EXPECT_EQ(conflicted->change, Change::conflicted) << path;
        EXPECT_EQ(status->changedPaths.value(repo.path(path)), Change::conflicted) << path;
    }
    // The rename/rename conflict leaves DD on the original and AU/UA on the two new names.
    EXPECT_EQ(file(*status, "main-name.txt")->change, Change::conflicted);
    EXPECT_EQ(file(*status, "other-name.txt")->change, Change::conflicted);
}

TEST_F(RepoStatusTest, CherryPickAndRebaseAreNamedWhileTheyStop)
{
    repo.write("f.txt", "base\n");
    repo.commitAll("base");
    repo.git({"checkout", "-q", "-b", "other"});
    repo.write("f.txt", "other\n");
    repo.commitAll("other");
    repo.git({"checkout", "-q", "main"});
    repo.write("f.txt", "main\n");
    repo.commitAll("main");

    repo.git({"cherry-pick", "other"}, true);
    EXPECT_EQ(read(repo.root())->operation, QStringLiteral("Cherry-picking"));
    repo.git({"cherry-pick", "--abort"});
    EXPECT_FALSE(read(repo.root())->operation);

    repo.git({"rebase", "other"}, true);
    EXPECT_EQ(read(repo.root())->operation, QStringLiteral("Rebasing"));
    repo.git({"rebase", "--abort"});
}

TEST_F(RepoStatusTest, AnIgnoredFolderCoversItsContents)
{
    repo.write(".gitignore", "build/\n*.log\n");
    repo.write("build/x/y.o", "obj");
    repo.write("build/z.o", "obj");
    repo.write("debug.log", "log");
    repo.write("buildx/keep.txt", "k");
    repo.commitAll("one");
    repo.write("buildx/keep.txt", "changed");

    const auto status = read(repo.root());
    ASSERT_TRUE(status);
    EXPECT_EQ(*status->ignored.paths, (QSet<FilePath>{repo.path("build"), repo.path("debug.log")}));
    EXPECT_TRUE(status->ignored.contains(repo.path("build/x/y.o")));
    EXPECT_FALSE(status->ignored.contains(repo.path("buildx")));
    EXPECT_FALSE(status->ignored.contains(repo.root()));
    ASSERT_EQ(status->files.size(), 1);
    EXPECT_EQ(status->files[0].path, QStringLiteral("buildx/keep.txt"));
}

TEST_F(RepoStatusTest, NamesWithBlanksNonAsciiAndNewlinesComeThroughUnquoted)
{
    repo.write("seed", "s");
    repo.commitAll("seed");
    const QStringList names{"with blank.txt", "Grüße/naïve café.md", "line\nbreak.txt", "tab\there.txt", "\"quoted\".txt"};
    for (const QString& name : names)
        repo.write(name, "x");
    const auto status = read(repo.root());
    ASSERT_TRUE(status);
    for (const QString& name : names) {
        const QString expected = name.startsWith("Grüße/") ? QStringLiteral("Grüße/") : name;
        EXPECT_TRUE(file(*status, expected)) << name.toStdString();
    }
    EXPECT_TRUE(status->changedPaths.contains(repo.path("line\nbreak.txt")));
    EXPECT_TRUE(status->changedPaths.contains(repo.path("Grüße")));
}

TEST_F(RepoStatusTest, WorktreesAndSubmodulesAreRepositoriesOfTheirOwn)
{
    repo.write("a.txt", "a");
    repo.commitAll("one");
    const FilePath worktree = tree.path("wt");
    repo.git({"worktree", "add", "-q", "-b", "side", worktree.text()});
    EXPECT_EQ(findRepositoryRoot(worktree.child(QStringLiteral("inner"))), worktree);
    QFile(worktree.child(QStringLiteral("a.txt")).text()).remove();
    auto status = read(worktree);
    ASSERT_TRUE(status);
    EXPECT_EQ(status->branch, QStringLiteral("side"));
    EXPECT_EQ(status->changedPaths.value(worktree.child(QStringLiteral("a.txt"))), Change::deleted);
    EXPECT_FALSE(status->operation);

    GitTestRepo library(tree, "library");
    library.write("lib.c", "int x;");
    library.commitAll("lib");
    repo.git({"submodule", "add", "-q", library.root().text(), "vendor/lib"});
    const FilePath submodule = repo.path("vendor/lib");
    EXPECT_EQ(findRepositoryRoot(submodule), submodule);
    EXPECT_TRUE(gitFolder(submodule).native().contains("/.git/modules/"));
    QFile(submodule.child(QStringLiteral("lib.c")).text()).remove();
    status = read(submodule);
    ASSERT_TRUE(status);
    EXPECT_EQ(status->changedPaths.value(submodule.child(QStringLiteral("lib.c"))), Change::deleted);
}

TEST_F(RepoStatusTest, FindingTheRootWalksUpAndStopsAtTheTop)
{
    const FilePath deep = tree.folder("repo/a/b/c");
    EXPECT_EQ(findRepositoryRoot(deep), repo.root());
    EXPECT_EQ(findRepositoryRoot(repo.root()), repo.root());
    EXPECT_EQ(findRepositoryRoot(repo.path(".git/objects")), repo.root());
    EXPECT_FALSE(findRepositoryRoot(tree.folder("elsewhere/x")));
    EXPECT_FALSE(findRepositoryRoot(FilePath::fromNative("/")));
}

TEST_F(RepoStatusTest, ACorruptIndexOrAVanishedRepositoryGivesNoStatus)
{
    repo.write("a.txt", "a");
    repo.commitAll("one");
    ASSERT_TRUE(read(repo.root()));
    QFile index(repo.path(".git/index").text());
    ASSERT_TRUE(index.open(QIODevice::WriteOnly | QIODevice::Truncate));
    index.write("DIRC this is not an index at all");
    index.close();
    EXPECT_FALSE(read(repo.root()));

    QDir(repo.root().text()).removeRecursively();
    EXPECT_FALSE(read(repo.root()));
}

TEST_F(RepoStatusTest, NamesThatAreNotUtf8AndVeryLongPathsDoNotBreakTheRead)
{
    repo.write("seed", "s");
    repo.commitAll("seed");
    tree.file(QByteArray("repo/caf\xe9.txt"), "latin-1 name");
    // A path longer than 4096 bytes, made one folder at a time.
    int fd = open(repo.root().c_str(), O_RDONLY | O_DIRECTORY);
    const QByteArray part(200, 'd');
    for (int i = 0; i < 24 && fd >= 0; ++i) {
        mkdirat(fd, part.constData(), 0755);
        const int next = openat(fd, part.constData(), O_RDONLY | O_DIRECTORY);
        close(fd);
        fd = next;
    }
    ASSERT_GE(fd, 0);
    close(openat(fd, "deep.txt", O_WRONLY | O_CREAT, 0644));
    close(fd);

    // git warns that it cannot open the deep folder and still succeeds.
    const auto status = read(repo.root());
    ASSERT_TRUE(status);
    // The odd name shows with a replacement character, and keeps its bytes: its row gets its
    // badge and an action on it reaches the file itself.
    const RepoStatus::File* odd = file(*status, QStringLiteral("caf\uFFFD.txt"));
    ASSERT_TRUE(odd);
    EXPECT_EQ(odd->nativePath, QByteArray("caf\xe9.txt"));
    const FilePath real = repo.root().child(QByteArrayView("caf\xe9.txt"));
    EXPECT_EQ(status->pathOf(*odd), real);
    EXPECT_EQ(status->changedPaths.value(real), Change::untracked);
    ::unlink(real.c_str()); // the temporary folder's clean-up reads names as text
}

} // namespace
} // namespace orwick

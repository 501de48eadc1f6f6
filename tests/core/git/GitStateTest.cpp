// The shared git state: refreshes in the background, publishes badges, dots and ignored paths,
// applies only the newest and only a different status, remembers roots, and stays quiet without
// git or outside a repository.

#include "support/GitTestRepo.h"
#include "app/Settings.h"
#include "git/Git.h"
#include "git/GitRunner.h"
#include "support/TestMain.h"

#include <QDir>
#include <sys/stat.h>
#include <gtest/gtest.h>

namespace orwick {
namespace {

using test::GitTestRepo;
using test::TempTree;
using test::waitUntil;

class GitStateTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(gitExecutable().has_value()) << "these tests need git on PATH";
        QObject::connect(&git, &Git::statusChanged, [this](const FilePath& root) { changes.append(root); });
        repo.write(".gitignore", "build/\n");
        repo.write("sub/deeper/a.txt", "a");
        repo.write("top.txt", "t");
        repo.commitAll("one");
        repo.write("build/out/x.o", "obj");
    }
    // Refreshes and waits for the read to end, whether or not it changed anything.
    void refreshAndSettle(const FilePath& folder)
    {
        git.refresh(folder);
        ASSERT_TRUE(waitUntil([&] { return !git.isRefreshing(repo.root()); }));
    }
    TempTree tree;
    GitTestRepo repo{tree};
    Git git{gitExecutable(), nullptr};
    QList<FilePath> changes;
};

TEST_F(GitStateTest, ARefreshPublishesBadgesDotsAndIgnoredPaths)
{
    repo.write("sub/deeper/a.txt", "changed");
    repo.write("sub/new.txt", "n");
    refreshAndSettle(repo.path("sub"));
    ASSERT_EQ(changes, QList<FilePath>{repo.root()});

    EXPECT_EQ(git.badgeFor(repo.path("sub/deeper/a.txt")), Change::modified);
    EXPECT_EQ(git.badgeFor(repo.path("sub/new.txt")), Change::untracked);
    EXPECT_FALSE(git.badgeFor(repo.path("top.txt")));
    EXPECT_TRUE(git.hasChangesBelow(repo.path("sub")));
    EXPECT_TRUE(git.hasChangesBelow(repo.path("sub/deeper")));
    EXPECT_FALSE(git.hasChangesBelow(repo.root()));

    EXPECT_TRUE(git.isIgnored(repo.path("build")));
    EXPECT_TRUE(git.isIgnored(repo.path("build/out/x.o")));
    EXPECT_FALSE(git.isIgnored(repo.path("sub/new.txt")));
    EXPECT_TRUE(git.ignoredPaths(repo.path("sub/deeper")).paths->contains(repo.path("build")));

    const RepoStatus* status = git.status(repo.path("sub/deeper"));
    ASSERT_TRUE(status);
    EXPECT_EQ(status->branch, QStringLiteral("main"));
    EXPECT_EQ(status->files.size(), 2);
}

TEST_F(GitStateTest, AnUnchangedStatusChangesNothingObservable)
{
    refreshAndSettle(repo.root());
    ASSERT_EQ(changes.size(), 1);
    const RepoStatus before = *git.status(repo.root());
    refreshAndSettle(repo.path("sub"));
    EXPECT_EQ(changes.size(), 1);

    repo.write("top.txt", "changed");
    refreshAndSettle(repo.root());
    EXPECT_EQ(changes.size(), 2);
    EXPECT_NE(*git.status(repo.root()), before);
}

TEST_F(GitStateTest, ANewerRefreshSupersedesTheOlder)
{
    // A git whose first read takes its snapshot at once but answers two seconds late: without
    // supersession that stale answer would land after the newer one.
    const FilePath slowGit = tree.file(QStringLiteral("slow-git"), R"(#!/bin/sh
if [ ! -e "$0.first" ]; then
  : > "$0.first"
  git "$@" > "$0.out" 2>&1
  status=$?
  : > "$0.taken"
  sleep 2
  cat "$0.out"
  exit $status
fi
exec git "$@"
)");
    ASSERT_EQ(chmod(slowGit.c_str(), 0755), 0);
    Git slow(slowGit, nullptr);
    int signals = 0;
    QObject::connect(&slow, &Git::statusChanged, [&] { ++signals; });

    slow.refresh(repo.root());
    ASSERT_TRUE(waitUntil([&] { return test::exists(tree.path("slow-git.taken")); }));
    repo.write("top.txt", "changed after the first snapshot");
    slow.refresh(repo.root());
    ASSERT_TRUE(waitUntil([&] { return !slow.isRefreshing(repo.root()); }));
    waitUntil([] { return false; }, 2500); // long enough for the stale answer to come back
    EXPECT_EQ(signals, 1);
    EXPECT_EQ(slow.badgeFor(repo.path("top.txt")), Change::modified);
}

TEST_F(GitStateTest, OutsideARepositoryNothingRunsAndTheAnswerIsRemembered)
{
    const FilePath plain = tree.folder("plain/inner");
    EXPECT_FALSE(git.root(plain));
    git.refresh(plain);
    EXPECT_TRUE(git.repos().isEmpty());
    // The walk is not repeated: a repository made later is not seen by this process.
    GitTestRepo::gitIn(plain, {"init", "-q"});
    EXPECT_FALSE(git.root(plain));
    EXPECT_EQ(git.root(repo.path("sub")), repo.root());
    EXPECT_FALSE(git.status(plain));
    EXPECT_FALSE(git.isIgnored(plain.child(QStringLiteral("x"))));
}

TEST_F(GitStateTest, WithoutGitRefreshDoesNothing)
{
    Git missing(std::nullopt, nullptr);
    EXPECT_FALSE(missing.isAvailable());
    missing.refresh(repo.root());
    EXPECT_FALSE(missing.isRefreshing(repo.root()));
    waitUntil([] { return false; }, 100);
    EXPECT_TRUE(missing.repos().isEmpty());
    EXPECT_FALSE(missing.badgeFor(repo.path("top.txt")));
}

TEST_F(GitStateTest, BadgesGoWhenTheRepositoryIsDeletedWhileShown)
{
    repo.write("top.txt", "changed");
    refreshAndSettle(repo.root());
    ASSERT_TRUE(git.badgeFor(repo.path("top.txt")));
    QDir(repo.root().text()).removeRecursively();
    refreshAndSettle(repo.root());
    EXPECT_EQ(changes.size(), 2);
    EXPECT_FALSE(git.status(repo.root()));
    EXPECT_FALSE(git.badgeFor(repo.path("top.txt")));
    EXPECT_FALSE(git.hasChangesBelow(repo.path("sub")));
    EXPECT_FALSE(git.isIgnored(repo.path("build/out")));
}

TEST_F(GitStateTest, TwoRepositoriesShowTheirBadgesTogetherAndEachGoesAlone)
{
    GitTestRepo other(tree, QStringLiteral("other"));
    other.write("docs/b.txt", "b");
    other.commitAll("one");
    other.write("docs/b.txt", "changed");
    repo.write("top.txt", "changed");
    refreshAndSettle(repo.root());
    git.refresh(other.root());
    ASSERT_TRUE(waitUntil([&] { return !git.isRefreshing(other.root()); }));

    EXPECT_EQ(git.badgeFor(repo.path("top.txt")), Change::modified);
    EXPECT_EQ(git.badgeFor(other.path("docs/b.txt")), Change::modified);
    EXPECT_TRUE(git.hasChangesBelow(other.path("docs")));

    QDir(other.root().text()).removeRecursively();
    git.refresh(other.root());
    ASSERT_TRUE(waitUntil([&] { return !git.isRefreshing(other.root()); }));
    EXPECT_FALSE(git.badgeFor(other.path("docs/b.txt")));
    EXPECT_FALSE(git.hasChangesBelow(other.path("docs")));
    EXPECT_EQ(git.badgeFor(repo.path("top.txt")), Change::modified);
}

TEST_F(GitStateTest, HidingIgnoredFilesIsRememberedAcrossStarts)
{
    int toggles = 0;
    QObject::connect(&git, &Git::hidesIgnoredChanged, [&](bool) { ++toggles; });
    git.setHidesIgnored(true);
    git.setHidesIgnored(true);
    EXPECT_EQ(toggles, 1);
    EXPECT_TRUE(openSettings()->value("hideIgnored").toBool());
    EXPECT_TRUE(Git(std::nullopt, nullptr).hidesIgnored());
    git.setHidesIgnored(false);
    EXPECT_FALSE(Git(std::nullopt, nullptr).hidesIgnored());
}

} // namespace
} // namespace orwick

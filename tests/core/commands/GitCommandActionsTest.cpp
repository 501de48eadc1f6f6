// The palette's git commands on a real repository: enabled only inside one, run in the
// background with the repository's busy label, and saying how it went as a toast.

#include "app/Services.h"
#include "commands/CommandCatalog.h"
#include "git/Git.h"
#include "git/GitRunner.h"
#include "state/WindowState.h"
#include "support/GitTestRepo.h"
#include "support/TestMain.h"

#include <QFile>
#include <gtest/gtest.h>

using namespace orwick;

namespace {

struct GitCommandsFixture : ::testing::Test {
    test::TempTree tree;
    test::GitTestRepo repo{tree};
    ViewPreferences preferences;
    Git git{gitExecutable(), nullptr};
    std::unique_ptr<WindowState> window;
    QStringList toasts;
    QStringList labels; // each change of the busy label ("" when cleared)

    void SetUp() override
    {
        ASSERT_TRUE(gitExecutable().has_value()) << "these tests need git on PATH";
        repo.git({"config", "user.name", "Orwick Test"});
        repo.git({"config", "user.email", "test@orwick.invalid"});
        repo.write("a.txt", "a\n");
        repo.commitAll("Base");
        services().git = &git;
        QObject::connect(&git, &Git::busyChanged, [this](const FilePath& root) { labels.append(git.busy().value(root)); });
        window = std::make_unique<WindowState>(repo.root(), &preferences);
        QObject::connect(window.get(), &WindowState::messageRequested, [this](const QString& text) { toasts.append(text); });
        ASSERT_TRUE(test::waitUntil([&] { return !window->activePane()->isLoading(); }));
    }
    void TearDown() override
    {
        window.reset();
        services().git = nullptr;
    }
    // Runs the command and waits for its toast.
    QString run(const char* id)
    {
        const qsizetype before = toasts.size();
        CommandCatalog::find(id)->run(*window);
        EXPECT_TRUE(test::waitUntil([&] { return toasts.size() > before && git.busy().isEmpty(); }, 20000)) << id;
        return toasts.value(before);
    }
};

TEST_F(GitCommandsFixture, EnabledInsideARepositoryOnly)
{
    for (const char* id : {"gitStash", "gitPopStash", "gitFetch", "gitPull", "gitPush"})
        EXPECT_TRUE(CommandCatalog::find(id)->enabledIn(*window)) << id;
    WindowState outside(tree.folder("elsewhere"), &preferences);
    for (const char* id : {"gitStash", "gitPopStash", "gitFetch", "gitPull", "gitPush"}) {
        EXPECT_FALSE(CommandCatalog::find(id)->enabledIn(outside)) << id;
        EXPECT_EQ(CommandCatalog::find(id)->disabledNote, QStringLiteral("This folder isn’t in a git repository"));
    }
    services().git = nullptr;
    EXPECT_FALSE(CommandCatalog::find("gitPush")->enabledIn(*window)) << "no git state, no git commands";
}

TEST_F(GitCommandsFixture, StashAndApplyShowTheirLabelsAndSayHowItWent)
{
    repo.write("a.txt", "work in progress\n");
    repo.write("new.txt", "untracked\n");
    EXPECT_EQ(run("gitStash"), QStringLiteral("Stashed your changes"));
    EXPECT_EQ(labels, (QStringList{"Stashing…", ""}));
    EXPECT_EQ(test::readAll(repo.path("a.txt")), QByteArray("a\n"));
    EXPECT_FALSE(QFile::exists(repo.path("new.txt").text()));
    EXPECT_EQ(run("gitStash"), QStringLiteral("Nothing to stash"));

    EXPECT_EQ(run("gitPopStash"), QStringLiteral("Applied the latest stash"));
    EXPECT_EQ(test::readAll(repo.path("a.txt")), QByteArray("work in progress\n"));
    EXPECT_EQ(test::readAll(repo.path("new.txt")), QByteArray("untracked\n"));
}

TEST_F(GitCommandsFixture, PushPullAndFetchSayWhatGitDid)
{
    EXPECT_EQ(run("gitPush"), QStringLiteral("This repository has no remote to push to. Add one with git remote add."));
    const FilePath bare = tree.folder("remote.git");
    test::GitTestRepo::gitIn(bare, {"init", "-q", "--bare", "-b", "main"});
    repo.git({"remote", "add", "origin", bare.text()});
    EXPECT_EQ(run("gitPush"), QStringLiteral("Pushed"));
    EXPECT_EQ(run("gitFetch"), QStringLiteral("Fetched: up to date"));
    EXPECT_EQ(run("gitPull"), QStringLiteral("Already up to date"));
    EXPECT_TRUE(labels.contains(QStringLiteral("Pulling…")));
}

TEST_F(GitCommandsFixture, WhenBothSidesMovedPullOffersRebaseAndMerge)
{
    const FilePath bare = tree.folder("remote.git");
    test::GitTestRepo::gitIn(bare, {"init", "-q", "--bare", "-b", "main"});
    repo.git({"remote", "add", "origin", bare.text()});
    repo.git({"push", "-q", "-u", "origin", "main"});
    test::GitTestRepo::gitIn(tree.root(), {"clone", "-q", bare.text(), "colleague"});
    const FilePath colleague = tree.path("colleague");
    tree.file("colleague/theirs.txt", "theirs\n");
    test::GitTestRepo::gitIn(colleague, {"add", "theirs.txt"});
    test::GitTestRepo::gitIn(colleague, {"commit", "-q", "-m", "Theirs"});
    test::GitTestRepo::gitIn(colleague, {"push", "-q"});
    repo.write("mine.txt", "mine\n");
    repo.commitAll("Mine");

    QString question;
    QStringList choices;
    std::function<void(int)> choose;
    QObject::connect(window.get(), &WindowState::choiceRequested,
                     [&](const QString& text, const QStringList& offered, const std::function<void(int)>& chosen) {
                         question = text;
                         choices = offered;
                         choose = chosen;
                     });
    CommandCatalog::find("gitPull")->run(*window);
    ASSERT_TRUE(test::waitUntil([&] { return bool(choose); }, 20000));
    EXPECT_TRUE(question.startsWith(QStringLiteral("Both sides have new commits\nYour branch and the remote have each moved on.")))
        << question.toStdString();
    EXPECT_EQ(choices, (QStringList{"Rebase", "Merge"}));
    EXPECT_TRUE(toasts.isEmpty()) << "the question is the only message";

    choose(0);
    ASSERT_TRUE(test::waitUntil([&] { return !toasts.isEmpty() && git.busy().isEmpty(); }, 20000));
    EXPECT_EQ(toasts.last(), QStringLiteral("Pulled"));
    EXPECT_TRUE(QFile::exists(repo.path("theirs.txt").text()));
    EXPECT_EQ(repo.git({"rev-list", "--count", "--merges", "HEAD"}), QByteArray("0\n")) << "rebased, not merged";
}

} // namespace

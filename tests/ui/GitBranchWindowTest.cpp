// "Git: Switch Branch…" and "Git: New Branch…" in a real window over a real repository: the
// branches most recent first and filtered as typed, Return switching; a name git can't take
// refused as it is typed, a good one made and switched to.

#include "GitWindowFixture.h"

#include "commands/CommandCatalog.h"
#include "ui/git/BranchPanel.h"
#include "ui/panels/DiskToolKeys.h"

#include <QLineEdit>

namespace orwick {
namespace {

using test::waitUntil;

class GitBranchWindowTest : public test::GitWindowTest {
protected:
    void prepare() override
    {
        repo.write("a.txt", "a\n");
        repo.commitAll("first");
        repo.git({"branch", "older"});
        repo.git({"switch", "-q", "-c", "feature/login"});
        repo.write("b.txt", "b\n");
        repo.git({"add", "b.txt"});
        // A later commit date, so the branch is the most recent.
        repo.git({"-c", "user.name=T", "-c", "user.email=t@x", "commit", "-q", "-m", "login", "--date=2030-01-01T00:00:00"});
        repo.git({"switch", "-q", "main"});
    }
    BranchPanel* panel() const { return window ? window->findChild<BranchPanel*>() : nullptr; }
    void openWith(const char* command)
    {
        open(repo.root());
        DiskToolKeys::follow(*state, window.get());
        ASSERT_TRUE(CommandCatalog::run(QString::fromLatin1(command), *state));
        ASSERT_TRUE(waitUntil([&] { return panel() && panel()->isLoaded(); }));
        ASSERT_TRUE(waitUntil([&] { return QApplication::focusWidget() == panel()->field(); }));
    }
    QString head() { return QString::fromUtf8(repo.git({"branch", "--show-current"})).trimmed(); }
};

TEST_F(GitBranchWindowTest, SwitchesToAFilteredBranch)
{
    openWith("gitSwitchBranch");
    ASSERT_EQ(panel()->shownBranches().size(), 3);
    EXPECT_EQ(panel()->shownBranches().first(), QStringLiteral("feature/login")) << "most recent first";
    type("old");
    EXPECT_EQ(panel()->shownBranches(), QStringList{"older"});
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return head() == QStringLiteral("older"); }));
    ASSERT_TRUE(waitUntil([&] { return !panel(); })) << "the sheet closes once switched";
    EXPECT_EQ(toast(), QStringLiteral("Switched to older"));
}

TEST_F(GitBranchWindowTest, MakesABranchAndRefusesNamesGitCantTake)
{
    openWith("gitNewBranch");
    type("bad name");
    EXPECT_EQ(panel()->problem(), QStringLiteral("“bad name” can’t be a branch name\nBranch names can’t have spaces, “..”, or any of ~ ^ : ? * [ \\."));
    press(Qt::Key_Return);
    EXPECT_EQ(head(), QStringLiteral("main")) << "nothing ran";
    panel()->field()->clear();
    type("topic");
    EXPECT_TRUE(panel()->problem().isEmpty());
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return head() == QStringLiteral("topic"); }));
    ASSERT_TRUE(waitUntil([&] { return !panel(); }));
}

} // namespace
} // namespace orwick

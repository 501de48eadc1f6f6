// "Git: Stashes…" in a real window over a real repository: the latest stash first, Return
// applies it and keeps it, P pops it, Delete asks "Delete this stash?" and drops it when told to.

#include "GitWindowFixture.h"

#include "commands/CommandCatalog.h"
#include "ui/git/StashPanel.h"
#include "ui/panels/DiskToolKeys.h"

#include <QAbstractButton>
#include <QListWidget>
#include <QMessageBox>

namespace orwick {
namespace {

using test::waitUntil;

class GitStashWindowTest : public test::GitWindowTest {
protected:
    void prepare() override
    {
        repo.write("a.txt", "a\n");
        repo.commitAll("first");
        repo.write("a.txt", "older change\n");
        repo.git({"stash", "push", "-q", "-m", "older"});
        repo.write("a.txt", "newer change\n");
        repo.git({"stash", "push", "-q", "-m", "newer"});
        open(repo.root());
        DiskToolKeys::follow(*state, window.get());
        ASSERT_TRUE(CommandCatalog::run(QStringLiteral("gitStashes"), *state));
        ASSERT_TRUE(waitUntil([&] { return panel() && panel()->stashes().size() == 2; }));
        ASSERT_TRUE(waitUntil([&] { return QApplication::focusWidget() == panel()->list(); }));
    }
    StashPanel* panel() const { return window ? window->findChild<StashPanel*>() : nullptr; }
    int stashCount() { return int(repo.git({"stash", "list"}).count('\n')); }
};

TEST_F(GitStashWindowTest, ReturnAppliesAndKeepsPPops)
{
    EXPECT_TRUE(panel()->stashes().first().message.endsWith("newer"));
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return test::readAll(repo.path("a.txt")) == "newer change\n" && !panel()->isWorking(); }));
    EXPECT_EQ(stashCount(), 2);
    repo.git({"checkout", "--", "a.txt"});
    press(Qt::Key_P);
    ASSERT_TRUE(waitUntil([&] { return stashCount() == 1 && !panel()->isWorking(); }));
    EXPECT_EQ(test::readAll(repo.path("a.txt")), "newer change\n");
    ASSERT_TRUE(waitUntil([&] { return panel()->stashes().size() == 1; }));
}

TEST_F(GitStashWindowTest, DeleteAsksFirst)
{
    press(Qt::Key_Delete);
    QMessageBox* ask = nullptr;
    ASSERT_TRUE(waitUntil([&] { return (ask = panel()->findChild<QMessageBox*>()) && ask->isVisible(); }));
    EXPECT_EQ(ask->text(), QStringLiteral("Delete this stash?"));
    EXPECT_EQ(ask->informativeText(), QStringLiteral("“On main: newer” can’t be got back afterwards."));
    for (QAbstractButton* button : ask->buttons())
        if (button->text() == QStringLiteral("Delete"))
            button->click();
    ASSERT_TRUE(waitUntil([&] { return stashCount() == 1; }));
    EXPECT_TRUE(pane()->row(repo.path("a.txt")) >= 0) << "Delete acted on the stash, not the pane";
}

} // namespace
} // namespace orwick

// The Git menu of the menu bar, over a real repository: it sits after Go with the catalogue's git
// commands in order, its entries enabled inside a repository and dimmed outside one, and an entry
// runs its command (Review Changes opens the review).

#include "GitWindowFixture.h"

#include "commands/CommandCatalog.h"
#include "ui/git/GitReviewPanel.h"
#include "ui/panels/DiskToolKeys.h"
#include "ui/window/CommandMenus.h"

#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>

namespace orwick {
namespace {

using test::waitUntil;

class GitMenuTest : public test::GitWindowTest {
protected:
    void prepare() override
    {
        repo.write("a.txt", "a\n");
        repo.commitAll("first");
        repo.write("a.txt", "b\n");
    }
    QStringList menuBarTitles() const
    {
        QStringList titles;
        for (QAction* top : window->menuBar()->actions())
            titles << top->text();
        return titles;
    }
    QMenu* gitMenu() const
    {
        for (QAction* top : window->menuBar()->actions())
            if (QString(top->text()).remove(u'&') == QStringLiteral("Git"))
                return top->menu();
        return nullptr;
    }
    // The menu's entries as the menu shows them once opened: "Git: Pull" or "(Git: Pull)" when dimmed.
    QStringList shown(QMenu* menu) const
    {
        Q_EMIT menu->aboutToShow();
        QStringList entries;
        for (QAction* a : menu->actions())
            if (!a->isSeparator())
                entries << (a->isEnabled() ? a->text() : u'(' + a->text() + u')');
        Q_EMIT menu->aboutToHide();
        return entries;
    }
};

TEST_F(GitMenuTest, ListsTheGitCommandsAfterGo)
{
    open(repo.root());
    const QStringList titles = menuBarTitles();
    ASSERT_TRUE(titles.contains(QStringLiteral("Gi&t"))) << titles.join(u' ').toStdString();
    EXPECT_EQ(titles.indexOf(QStringLiteral("Gi&t")), titles.indexOf(QStringLiteral("&Go")) + 1);
    QMenu* git = gitMenu();
    EXPECT_EQ(git->actions().first(), window->menus()->action(QStringLiteral("reviewChanges")));
    for (const char* id : {"reviewChanges", "gitHistory", "gitSwitchBranch", "gitNewBranch", "gitStash", "gitPopStash", "gitStashes",
                           "gitFetch", "gitPull", "gitPush"})
        EXPECT_TRUE(git->actions().contains(window->menus()->action(QString::fromLatin1(id)))) << id;
}

// Go took Alt+G, so Git opens with Alt+T; no two menus share an Alt key, which would leave the
// later one out of reach of its letter.
TEST_F(GitMenuTest, EveryMenuOpensWithAnAltKeyOfItsOwn)
{
    open(repo.root());
    QHash<QKeySequence, QString> owners;
    for (QAction* top : window->menuBar()->actions()) {
        const QKeySequence key = QKeySequence::mnemonic(top->text());
        ASSERT_FALSE(key.isEmpty()) << top->text().toStdString();
        EXPECT_FALSE(owners.contains(key)) << top->text().toStdString() << " shares its key with " << owners.value(key).toStdString();
        owners.insert(key, top->text());
    }
    EXPECT_EQ(QKeySequence::mnemonic(gitMenu()->menuAction()->text()), QKeySequence(Qt::ALT | Qt::Key_T));
}

TEST_F(GitMenuTest, EntriesFollowWhetherTheFolderIsInARepository)
{
    test::TempTree elsewhere;
    open(elsewhere.root());
    QMenu* git = gitMenu();
    ASSERT_TRUE(git);
    for (const QString& entry : shown(git))
        EXPECT_TRUE(entry.startsWith(u'(')) << "enabled outside a repository: " << entry.toStdString();

    pane()->navigate(repo.root());
    ASSERT_TRUE(waitUntil([&] { return CommandCatalog::find(QStringLiteral("gitPull"))->enabledIn(*state); }));
    for (const QString& entry : shown(git))
        EXPECT_FALSE(entry.startsWith(u'(')) << "dimmed inside a repository: " << entry.toStdString();
    EXPECT_TRUE(window->menus()->action(QStringLiteral("gitPull"))->isEnabled()) << "a closed menu leaves its keys working";

    DiskToolKeys::follow(*state, window.get());
    window->menus()->action(QStringLiteral("reviewChanges"))->trigger();
    EXPECT_TRUE(waitUntil([&] { return window->findChild<GitReviewPanel*>() != nullptr; }));
}

} // namespace
} // namespace orwick

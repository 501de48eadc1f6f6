// "Git: History" in a real window over a real repository: the newest commit first, Return shows
// its patch; with one file selected, that file's history only, followed across its rename.

#include "GitWindowFixture.h"

#include "commands/CommandCatalog.h"
#include "ui/git/HistoryPanel.h"
#include "ui/panels/DiskToolKeys.h"

#include <QListWidget>

namespace orwick {
namespace {

using test::waitUntil;

class GitHistoryWindowTest : public test::GitWindowTest {
protected:
    void prepare() override
    {
        repo.write("old.txt", "one\n");
        repo.commitAll("Add the file");
        repo.write("other.txt", "x\n");
        repo.commitAll("Another file");
        repo.git({"mv", "old.txt", "new.txt"});
        repo.write("new.txt", "one\ntwo\n");
        repo.commitAll("Rename and grow");
    }
    HistoryPanel* panel() const { return window ? window->findChild<HistoryPanel*>() : nullptr; }
    void openHistory()
    {
        DiskToolKeys::follow(*state, window.get());
        ASSERT_TRUE(CommandCatalog::run(QStringLiteral("gitHistory"), *state));
        ASSERT_TRUE(waitUntil([&] { return panel() && panel()->isLoaded(); }));
    }
    QStringList subjects() const
    {
        QStringList list;
        for (const GitCommit& commit : panel()->commits())
            list << commit.subject;
        return list;
    }
};

TEST_F(GitHistoryWindowTest, ReturnShowsTheCommitsPatch)
{
    open(repo.root());
    openHistory();
    EXPECT_EQ(subjects(), (QStringList{"Rename and grow", "Another file", "Add the file"}));
    ASSERT_TRUE(waitUntil([&] { return QApplication::focusWidget() == panel()->list(); }));
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([&] { return panel()->patchText().contains("+two"); })) << panel()->patchText().toStdString();
    EXPECT_TRUE(panel()->patchText().contains("rename from old.txt"));
    EXPECT_EQ(state->tabs().size(), 1);
}

TEST_F(GitHistoryWindowTest, OneSelectedFileShowsItsOwnHistoryAcrossARename)
{
    open(repo.root());
    select(repo.path("new.txt"));
    openHistory();
    EXPECT_EQ(subjects(), (QStringList{"Rename and grow", "Add the file"}));
}

} // namespace
} // namespace orwick

// A pane inside a real repository: rows get their git marks when the status arrives, ignored
// items are dimmed or hidden, the status line names the branch and a git action under way; outside
// a repository nothing shows.

#include "git/GitRunner.h"
#include "support/GitTestRepo.h"
#include "support/TestMain.h"
#include "ui/pane/PaneGitDecoration.h"
#include "ui/pane/PaneWidget.h"
#include "ui/pane/StatusLine.h"
#include "ui/theme/Theme.h"
#include "ui/views/FileListModel.h"
#include "ui/views/GitMarks.h"

#include <QLabel>
#include <gtest/gtest.h>

namespace orwick {
namespace {

using test::GitTestRepo;
using test::TempTree;
using test::waitUntil;

class PaneGitDecorationTest : public ::testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(gitExecutable().has_value()) << "these tests need git on PATH";
        repo.write(".gitignore", "build/\n");
        repo.write("sub/a.txt", "a");
        repo.write("top.txt", "t");
        repo.commitAll("one");
        repo.write("sub/a.txt", "changed");
        repo.write("new.txt", "n");
        repo.write("build/x.o", "obj");
    }
    QVariant data(const QString& name, int role, int column = FileListModel::NameColumn)
    {
        const int row = pane->row(repo.path(name));
        return row < 0 ? QVariant() : widget->model()->data(widget->model()->index(row, column), role);
    }
    bool branchShown(const QString& text)
    {
        for (QLabel* label : widget->statusLine()->findChildren<QLabel*>())
            if (label->text() == text)
                return true;
        return false;
    }
    void open(const FilePath& folder)
    {
        pane = std::make_unique<PaneState>(folder, &preferences);
        widget = std::make_unique<PaneWidget>(pane.get());
        new PaneGitDecoration(widget.get(), &git);
    }

    TempTree tree;
    GitTestRepo repo{tree};
    ViewPreferences preferences;
    Git git;
    std::unique_ptr<PaneState> pane;
    std::unique_ptr<PaneWidget> widget;
};

TEST_F(PaneGitDecorationTest, RowsAreMarkedWhenTheStatusArrives)
{
    open(repo.root());
    ASSERT_TRUE(waitUntil([&] { return git.status(repo.root()) && pane->row(repo.path("sub")) >= 0; }));

    EXPECT_EQ(data("new.txt", GitMarkRole), int(Change::untracked));
    EXPECT_EQ(data("new.txt", Qt::ToolTipRole), QStringLiteral("New, not yet tracked by git"));
    EXPECT_EQ(data("sub", GitMarkRole), changesBelowMark);
    EXPECT_EQ(data("sub", Qt::ToolTipRole), QStringLiteral("Has changes since the last commit"));
    EXPECT_FALSE(data("top.txt", GitMarkRole).isValid());
    EXPECT_FALSE(data("new.txt", GitMarkRole, FileListModel::SizeColumn).isValid());

    EXPECT_EQ(data("build", Qt::ForegroundRole).value<QColor>(), theme::dimText());
    EXPECT_NE(data("top.txt", Qt::ForegroundRole).value<QColor>(), theme::dimText());
    EXPECT_TRUE(branchShown(QStringLiteral("main")));
}

TEST_F(PaneGitDecorationTest, AGitActionUnderWayShowsItsLabelBesideTheBranch)
{
    open(repo.root());
    ASSERT_TRUE(waitUntil([&] { return branchShown(QStringLiteral("main")); }));
    git.setBusy(repo.root(), QStringLiteral("Pushing…"));
    EXPECT_TRUE(branchShown(QStringLiteral("main · Pushing…")));
    git.clearBusy(repo.root());
    EXPECT_TRUE(branchShown(QStringLiteral("main")));
}

TEST_F(PaneGitDecorationTest, InsideAnIgnoredFolderEveryRowIsDimmed)
{
    open(repo.path("build"));
    ASSERT_TRUE(waitUntil([&] { return git.status(repo.root()) && pane->row(repo.path("build/x.o")) >= 0; }));
    ASSERT_TRUE(waitUntil([&] { return data("build/x.o", Qt::ForegroundRole).isValid(); }));
    EXPECT_EQ(data("build/x.o", Qt::ForegroundRole).value<QColor>(), theme::dimText());
}

TEST_F(PaneGitDecorationTest, HidingIgnoredFilesDropsThemFromThePane)
{
    open(repo.root());
    ASSERT_TRUE(waitUntil([&] { return git.status(repo.root()) && pane->row(repo.path("build")) >= 0; }));
    git.setHidesIgnored(true);
    EXPECT_TRUE(waitUntil([&] { return pane->row(repo.path("build")) < 0; }));
    EXPECT_GE(pane->row(repo.path("top.txt")), 0);
    git.setHidesIgnored(false);
    EXPECT_TRUE(waitUntil([&] { return pane->row(repo.path("build")) >= 0; }));
}

TEST_F(PaneGitDecorationTest, OutsideARepositoryNothingShows)
{
    tree.file(QStringLiteral("plain/file.txt"), "x");
    open(tree.path("plain"));
    ASSERT_TRUE(waitUntil([&] { return !pane->isLoading() && pane->row(tree.path("plain/file.txt")) >= 0; }));
    const int row = pane->row(tree.path("plain/file.txt"));
    EXPECT_FALSE(widget->model()->data(widget->model()->index(row, 0), GitMarkRole).isValid());
    EXPECT_TRUE(git.repos().isEmpty());
    for (QLabel* label : widget->statusLine()->findChildren<QLabel*>())
        EXPECT_NE(label->text(), QStringLiteral("main"));
}

} // namespace
} // namespace orwick

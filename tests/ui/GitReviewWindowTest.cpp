// The review panel in a real window over a real repository: Ctrl+Shift+U opens it with the
// changed files grouped and the first file's diff; Space stages a file and Ctrl+Return commits;
// a hunk is staged from the diff; picked lines are discarded with a copy in the Trash that
// Ctrl+Z puts back; Amend starts from the last message; a merge conflict shows the banner and
// Ours resolves it.

#include "GitWindowFixture.h"

#include "ui/git/CommitBox.h"
#include "ui/git/DiffView.h"
#include "ui/git/GitReviewPanel.h"
#include "ui/git/ReviewFileList.h"
#include "ui/git/ReviewHeader.h"
#include "ui/panels/DiskToolKeys.h"

#include <QCheckBox>
#include <QFileInfo>
#include <QPlainTextEdit>
#include <QPushButton>

namespace orwick {
namespace {

using test::waitUntil;

class GitReviewWindowTest : public test::GitWindowTest {
protected:
    void prepare() override
    {
        // Who commits: the temporary home has no git configuration of its own.
        for (const char* who : {"AUTHOR", "COMMITTER"}) {
            qputenv(QByteArray("GIT_") + who + "_NAME", "Orwick Test");
            qputenv(QByteArray("GIT_") + who + "_EMAIL", "test@orwick.invalid");
        }
    }
    void TearDown() override
    {
        GitWindowTest::TearDown();
        for (const char* who : {"AUTHOR", "COMMITTER"}) {
            qunsetenv(QByteArray("GIT_") + who + "_NAME");
            qunsetenv(QByteArray("GIT_") + who + "_EMAIL");
        }
    }
    GitReviewPanel* panel() const { return window ? window->findChild<GitReviewPanel*>() : nullptr; }
    // Opens the window on the repository and the review with its key.
    void openReview()
    {
        open(repo.root());
        DiskToolKeys::follow(*state, window.get()); // as main does: the window state's panel becomes a sheet
        press(Qt::Key_U, Qt::ControlModifier | Qt::ShiftModifier);
        ASSERT_TRUE(waitUntil([&] { return panel() && !panel()->fileList()->rows().isEmpty(); }));
        ASSERT_TRUE(waitUntil([&] { return panel()->diffView()->rowCount() > 0; }));
    }
    // The list as text: "Staged 1", "  M a.txt", …
    QStringList listed() const
    {
        QStringList lines;
        for (const ReviewRow& row : panel()->fileList()->rows())
            lines << (row.isHeading ? reviewGroupTitle(row.group) + QStringLiteral(" %1").arg(row.count)
                                    : QStringLiteral("  ") + changeLetter(row.badge) + u' ' + row.file.path);
        return lines;
    }
    bool diffShows(const QString& text) const
    {
        for (int i = 0; i < panel()->diffView()->rowCount(); ++i)
            if (panel()->diffView()->rowText(i) == text)
                return true;
        return false;
    }
    bool idle() const { return panel() && !panel()->isWorking() && git.busy().isEmpty(); }
};

TEST_F(GitReviewWindowTest, SpaceStagesAndCtrlReturnCommits)
{
    repo.write("a.txt", "one\n");
    repo.commitAll("first");
    repo.write("a.txt", "one\ntwo\n");
    repo.write("b.txt", "new\n");
    openReview();
    EXPECT_EQ(listed(), (QStringList{"Changes 1", "  M a.txt", "Untracked 1", "  U b.txt"}));
    EXPECT_EQ(panel()->header()->branchText(), QStringLiteral("main (no upstream)"));
    EXPECT_TRUE(diffShows("+two"));
    EXPECT_TRUE(panel()->header()->bannerText().isEmpty());

    press(Qt::Key_Space);
    ASSERT_TRUE(waitUntil([&] { return listed().contains("Staged 1"); }));
    EXPECT_EQ(listed(), (QStringList{"Staged 1", "  M a.txt", "Untracked 1", "  U b.txt"}));
    EXPECT_EQ(repo.git({"diff", "--cached", "--name-only"}), "a.txt\n");
    EXPECT_EQ(panel()->fileList()->currentReviewRow()->group, ReviewGroup::staged) << "the cursor follows the file";

    panel()->commitBox()->editor()->setFocus();
    type("Add two");
    press(Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(waitUntil([&] { return repo.git({"log", "-1", "--format=%s"}) == "Add two\n"; }))
        << panel()->problem().toStdString();
    ASSERT_TRUE(waitUntil([&] { return listed() == QStringList{"Untracked 1", "  U b.txt"}; }));
    EXPECT_TRUE(panel()->commitBox()->message().isEmpty());
    EXPECT_EQ(state->tabs().size(), 1) << "Ctrl+Return committed instead of opening a tab";
    EXPECT_TRUE(panel()->problem().isEmpty());
}

TEST_F(GitReviewWindowTest, StagesOneHunkFromTheDiff)
{
    repo.write("f.txt", "1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n");
    repo.commitAll("first");
    repo.write("f.txt", "one\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\ntwelve\n");
    openReview();
    press(Qt::Key_Return); // to the diff
    ASSERT_EQ(QApplication::focusWidget(), panel()->diffView());
    press(Qt::Key_BracketRight); // the second hunk
    press(Qt::Key_H);
    ASSERT_TRUE(waitUntil([&] { return listed().contains("Staged 1") && idle(); }));
    const QByteArray staged = repo.git({"diff", "--cached", "--no-color"});
    EXPECT_TRUE(staged.contains("+twelve")) << staged.toStdString();
    EXPECT_FALSE(staged.contains("+one")) << staged.toStdString();
    // What is left shows in the diff, ready for the next pick.
    ASSERT_TRUE(waitUntil([&] { return diffShows("+one") && !diffShows("+twelve"); }));
}

TEST_F(GitReviewWindowTest, HunkKeysActOnTheCurrentFilesDiffWhileTheKeyboardStaysOnTheList)
{
    repo.write("f.txt", "1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n");
    repo.commitAll("first");
    repo.write("f.txt", "one\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\ntwelve\n");
    openReview();
    ASSERT_EQ(QApplication::focusWidget(), panel()->fileList());
    const DiffView* diff = panel()->diffView();
    ASSERT_EQ(diff->cursorRow(), diff->hunkRow(0));
    press(Qt::Key_BracketRight);
    EXPECT_EQ(diff->cursorRow(), diff->hunkRow(1)) << "] goes to the next hunk";
    press(Qt::Key_BracketLeft);
    EXPECT_EQ(diff->cursorRow(), diff->hunkRow(0)) << "[ goes back";
    press(Qt::Key_BracketRight);
    press(Qt::Key_H);
    ASSERT_TRUE(waitUntil([&] { return listed().contains("Staged 1") && idle(); })) << panel()->problem().toStdString();
    const QByteArray staged = repo.git({"diff", "--cached", "--no-color"});
    EXPECT_TRUE(staged.contains("+twelve")) << staged.toStdString();
    EXPECT_FALSE(staged.contains("+one")) << staged.toStdString();
    EXPECT_EQ(QApplication::focusWidget(), panel()->fileList()) << "the keyboard stays on the list";
}

TEST_F(GitReviewWindowTest, HKeyBeforeTheNextFilesDiffIsReadStagesNothingOfTheFileBefore)
{
    repo.write("a.txt", "a\n");
    repo.write("b.txt", "b\n");
    repo.commitAll("first");
    repo.write("a.txt", "a\nmore a\n");
    repo.write("b.txt", "b\nmore b\n");
    openReview();
    ASSERT_EQ(listed(), (QStringList{"Changes 2", "  M a.txt", "  M b.txt"}));
    ASSERT_TRUE(waitUntil([&] { return diffShows("+more a") && idle(); }));
    press(Qt::Key_Down); // b's diff is read in the background: a's is still on screen
    press(Qt::Key_H);
    ASSERT_TRUE(waitUntil([&] { return diffShows("+more b") && idle(); }));
    EXPECT_EQ(repo.git({"diff", "--cached", "--name-only"}), "") << "a's hunk was staged while b was current";
    press(Qt::Key_H);
    ASSERT_TRUE(waitUntil([&] { return listed().contains("Staged 1") && idle(); })) << panel()->problem().toStdString();
    EXPECT_EQ(repo.git({"diff", "--cached", "--name-only"}), "b.txt\n");
}

TEST_F(GitReviewWindowTest, CommittingWithNothingStagedSaysSoAndCommitsNothing)
{
    repo.write("a.txt", "one\n");
    repo.commitAll("first");
    repo.write("a.txt", "one\ntwo\n");
    openReview();
    press(Qt::Key_Return, Qt::ControlModifier); // from the list
    EXPECT_EQ(panel()->problem(), QStringLiteral("Couldn’t commit\nNothing is staged to commit."));
    panel()->commitBox()->editor()->setFocus();
    type("Add two");
    press(Qt::Key_Return, Qt::ControlModifier); // from the message
    EXPECT_EQ(panel()->problem(), QStringLiteral("Couldn’t commit\nNothing is staged to commit."));
    ASSERT_TRUE(waitUntil([&] { return idle(); }));
    EXPECT_EQ(repo.git({"log", "--format=%s"}), "first\n");
    EXPECT_EQ(panel()->commitBox()->message(), QStringLiteral("Add two")) << "the message is kept for when something is staged";
    EXPECT_EQ(state->tabs().size(), 1) << "Ctrl+Return opened a tab";

    // Staged, but with no message: that is said too.
    panel()->fileList()->setFocus();
    press(Qt::Key_Space);
    ASSERT_TRUE(waitUntil([&] { return listed().contains("Staged 1") && idle(); }));
    panel()->commitBox()->setMessage({});
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(panel()->problem(), QStringLiteral("Couldn’t commit\nWrite a commit message first."));
    EXPECT_EQ(repo.git({"log", "--format=%s"}), "first\n");
}

TEST_F(GitReviewWindowTest, StagesTheRestOfAFileStagedInPart)
{
    repo.write("f.txt", "1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n");
    repo.commitAll("first");
    repo.write("f.txt", "one\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n");
    repo.git({"add", "f.txt"});
    repo.write("f.txt", "one\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\ntwelve\n");
    openReview();
    EXPECT_EQ(listed(), (QStringList{"Staged 1", "  M f.txt", "Changes 1", "  M f.txt"}));
    press(Qt::Key_Down); // the changed part: only what isn't staged yet shows
    ASSERT_TRUE(waitUntil([&] { return diffShows("+twelve") && !diffShows("+one"); }));
    press(Qt::Key_Right);
    press(Qt::Key_H);
    ASSERT_TRUE(waitUntil([&] { return listed() == QStringList{"Staged 1", "  M f.txt"}; })) << panel()->problem().toStdString();
    EXPECT_EQ(repo.git({"show", ":f.txt"}), "one\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\ntwelve\n");
}

TEST_F(GitReviewWindowTest, DiscardedLinesGoToTheTrashAndComeBackWithUndo)
{
    repo.write("f.txt", "a\nb\n");
    repo.commitAll("first");
    repo.write("f.txt", "a\nx\nb\ny\n");
    openReview();
    press(Qt::Key_Right);
    const DiffView* diff = panel()->diffView();
    int row = -1;
    for (int i = 0; i < diff->rowCount(); ++i)
        if (diff->rowText(i) == "+y")
            row = i;
    ASSERT_GE(row, 0);
    panel()->diffView()->setCursorRow(row);
    press(Qt::Key_Delete);
    ASSERT_TRUE(waitUntil([&] { return test::readAll(repo.path("f.txt")) == "a\nx\nb\n"; }));
    settle();
    EXPECT_TRUE(pane()->row(repo.path("f.txt")) >= 0) << "Delete acted in the review, not on the pane";
    ASSERT_TRUE(waitUntil([&] { return idle(); }));
    state->undoStack()->undo();
    settle();
    EXPECT_EQ(test::readAll(repo.path("f.txt")), "a\nx\nb\ny\n");
}

TEST_F(GitReviewWindowTest, AHunkPickedAfterGitWentEndsWithAMessageNotAWait)
{
    repo.write("f.txt", "a\nb\n");
    repo.commitAll("first");
    repo.write("f.txt", "a\nx\nb\n");
    open(repo.root());
    // A Git service of the panel's own, so it can go while the panel stays.
    auto own = std::make_unique<Git>();
    auto* review = new GitReviewPanel(*state, *own, repo.root(), window.get());
    review->show();
    ASSERT_TRUE(waitUntil([&] {
        return !review->fileList()->rows().isEmpty() && review->diffView()->rowCount() > 0 && !review->isWorking()
            && !own->isRefreshing(repo.root());
    }));
    own.reset();
    for (const auto action : {DiffView::Action::toggle, DiffView::Action::discard}) {
        Q_EMIT review->diffView()->pickRequested(review->diffView()->cursorHunk(), action);
        EXPECT_TRUE(waitUntil([&] { return !review->isWorking(); })) << "the panel still waits for an action that never ran";
        EXPECT_EQ(review->problem(), gitMissingMessage());
    }
    EXPECT_EQ(test::readAll(repo.path("f.txt")), "a\nx\nb\n");
}

TEST_F(GitReviewWindowTest, DiscardingAStagedRenamePutsTheOldNameBackAndUndoKeepsTheNewOne)
{
    repo.write("a.txt", "kept\n");
    repo.commitAll("first");
    repo.git({"mv", "a.txt", "b.txt"});
    openReview();
    ASSERT_EQ(listed(), (QStringList{"Staged 1", "  R b.txt"}));
    press(Qt::Key_Delete);
    ASSERT_TRUE(waitUntil([&] { return test::readAll(repo.path("a.txt")) == "kept\n" && idle(); })) << panel()->problem().toStdString();
    EXPECT_FALSE(QFileInfo::exists(repo.path("b.txt").text()));
    EXPECT_EQ(repo.git({"status", "--porcelain"}), "") << "back to the last commit, index and all";
    ASSERT_TRUE(waitUntil([&] { return panel()->fileList()->rows().isEmpty(); }));
    settle();

    state->undoStack()->undo();
    settle();
    EXPECT_EQ(test::readAll(repo.path("b.txt")), "kept\n");
    EXPECT_FALSE(QFileInfo::exists(repo.path("a.txt").text()));
}

TEST_F(GitReviewWindowTest, AmendStartsFromTheLastMessage)
{
    repo.write("a.txt", "one\n");
    repo.commitAll("The first commit\n\nWith a body.");
    repo.write("a.txt", "two\n");
    openReview();
    panel()->commitBox()->findChild<QCheckBox*>()->click();
    ASSERT_TRUE(waitUntil([&] { return !panel()->commitBox()->message().isEmpty(); }));
    EXPECT_EQ(panel()->commitBox()->message(), QStringLiteral("The first commit\n\nWith a body."));
    EXPECT_EQ(panel()->commitBox()->commitButton()->text(), QStringLiteral("Amend"));
}

TEST_F(GitReviewWindowTest, AConflictShowsTheBannerAndOursResolvesIt)
{
    repo.write("c.txt", "base\n");
    repo.commitAll("base");
    repo.git({"switch", "-q", "-c", "other"});
    repo.write("c.txt", "theirs\n");
    repo.commitAll("theirs");
    repo.git({"switch", "-q", "main"});
    repo.write("c.txt", "ours\n");
    repo.commitAll("ours");
    repo.git({"merge", "other"}, true);
    openReview();
    EXPECT_EQ(listed(), (QStringList{"Conflicts 1", "  ! c.txt"}));
    EXPECT_TRUE(panel()->header()->bannerText().startsWith("Merging")) << panel()->header()->bannerText().toStdString();
    press(Qt::Key_O);
    ASSERT_TRUE(waitUntil([&] { return listed() == QStringList{"Staged 1", "  M c.txt"} || listed().isEmpty(); }));
    EXPECT_EQ(test::readAll(repo.path("c.txt")), "ours\n");
    EXPECT_TRUE(panel()->header()->bannerText().startsWith("Merging")) << "still merging until Continue";
}

} // namespace
} // namespace orwick

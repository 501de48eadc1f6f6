#pragma once
// GitReviewPanel: "Review Changes…" — a sheet over the content for the repository of the active
// pane's folder. The changed files, grouped staged / changed / untracked / conflicted with their
// badges, on the left; the current file's diff on the right, where a hunk or picked lines can be
// staged, unstaged or discarded; the branch, upstream and ahead/behind above, with the banner of
// a merge, rebase or cherry-pick under way (Continue, Abort); the commit box below.
//
// Keys: in the list, Space stages or unstages the file, Delete discards it (its copy goes to the
// Trash, Ctrl+Z brings it back; a renamed file, staged or not, gets its old name back), and on a conflicted file O takes ours, T theirs and E opens it
// in the preferred editor; the diff's hunk keys (H stages or unstages the hunk, "]" and "[" move
// between hunks) act on the current file's diff from the list as well; Return or Right goes to
// the diff (DiffView.h has its keys), Left back; Ctrl+Return commits from anywhere in the panel,
// or says why it can't (nothing staged, no message); Esc closes.
//
// Every action runs through GitActions (never blocking the window): the header shows its busy
// label, a failure shows below the lists in the words of GitTexts with git's own reason, and the
// status refresh GitActions asks for afterwards redraws the list (Git::statusChanged). Diffs are
// read in the background too; only the newest read's answer is shown.

#include "git/DiffPatch.h"
#include "git/GitActions.h"
#include "git/ReviewList.h"
#include "ui/panels/PanelSheet.h"

#include <QPointer>

class QLabel;
class QPushButton;

namespace orwick {

class CommitBox;
class DiffView;
class Git;
class ReviewFileList;
class ReviewHeader;
class WindowState;

class GitReviewPanel : public PanelSheet {
    Q_OBJECT
public:
    GitReviewPanel(WindowState& window, Git& git, const FilePath& root, QWidget* parent);
    ~GitReviewPanel() override;

    // Opens the panel for the repository of the active pane's folder; null outside one.
    static PanelSheet* open(WindowState& window, QWidget* parent);

    const FilePath& root() const { return m_root; }
    ReviewFileList* fileList() const { return m_list; }
    DiffView* diffView() const { return m_diff; }
    CommitBox* commitBox() const { return m_commit; }
    ReviewHeader* header() const { return m_header; }
    // The last failure shown; empty when the last action went well.
    QString problem() const;
    // True while a diff is being read or an action of this panel runs.
    bool isWorking() const { return m_diffsReading > 0 || m_actionsRunning > 0; }

protected:
    void stopWork() override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void showStatus();
    void readUpstream();
    void showCurrentFile(bool keepPlace = false);
    void toggleCurrentFile();
    void discardCurrentFile();
    void applyPick(const DiffLineSelection& selection, bool discard);
    void resolveCurrent(Resolution side);
    void openCurrentInEditor();
    void commit();
    void startAmend(bool on);
    void continueOperation();
    void abortOperation();
    GitActions::Finished finished(bool reloadDiff = true);
    void report(const GitOutcome& outcome);
    void showProblem(const QString& text);
    FilePath pathOf(const ReviewRow& row) const;

    WindowState& m_window;
    QPointer<Git> m_git;
    GitActions m_actions;
    FilePath m_root;
    std::optional<QString> m_upstream;
    QString m_upstreamBranch; // the branch m_upstream belongs to
    quint64 m_diffGeneration = 0;
    int m_diffsReading = 0;
    bool m_diffIsCurrent = false; // the diff on screen is the current file's, read since the last change
    bool m_diffAfterRows = false; // while new rows go on screen: the diff is read after them
    int m_actionsRunning = 0;

    ReviewHeader* m_header;
    ReviewFileList* m_list;
    QLabel* m_diffTitle;
    QWidget* m_conflictBar;
    DiffView* m_diff;
    QLabel* m_problem;
    CommitBox* m_commit;
};

} // namespace orwick

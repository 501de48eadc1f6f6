#pragma once
// Git in one pane: after every load of a folder it asks the shared Git state for a refresh; when
// the status arrives the rows show their marks and tooltips, ignored items are dimmed (or, with
// "Hide Git-Ignored Files", dropped through the pane's arrangement), and the status line shows
// the branch, ahead/behind, a running operation and the label of a git action under way
// ("Pushing…"). Nothing here waits for git: rows are shown
// first and marked when the status comes. Owned by the pane widget.

#include "files/FileItem.h"
#include "git/Git.h"

#include <QPointer>

class QWidget;

namespace orwick {

class PaneWidget;

class PaneGitDecoration : public QObject {
    Q_OBJECT
public:
    PaneGitDecoration(PaneWidget* widget, Git* git);


    // The status line's git part: "main ↑2 ↓1 · Merging"; empty without a branch.
    static QString describe(const RepoStatus& status);

private:
    QVariant decorate(const FileItem& item, int column, int role) const;
    void loadFinished();
    void update();

    QPointer<PaneWidget> m_widget;
    QPointer<Git> m_git;
    IgnoredPaths m_ignored; // of the shown folder's repository
    FilePath m_folder;
    bool m_folderIgnored = false;
    std::shared_ptr<const QSet<FilePath>> m_hidden; // what the pane was last told to hide
};

} // namespace orwick

#pragma once
// Git: the one shared, observable source of git state for every pane. It finds the repository a
// folder belongs to (memoised for the life of the process, negative answers too), reads its
// status in the background and keeps the last status per repository root, so that rows can show
// badges, folders a changes dot, and ignored items can be dimmed or hidden.
//
// Lives on the GUI thread; every member must be called there. At most one status read per
// repository is alive: a new refresh stops the one before, and only the newest result is
// applied. A status equal to the one kept changes nothing and emits nothing.
//
// A status read that fails takes the repository's badges away and keeps git's own reason
// (statusFailure(), tidied by GitMessage.h) for the pane to show where the branch would be.
//
// Signals: statusChanged(root) follows every change of a repository's kept status (a new status,
// a different one, or the status going away when git fails) or of its failure sentence; the row
// lookups below already answer with the new state when it is emitted. hidesIgnoredChanged() follows each change of the
// setting; busyChanged(root) each change of a repository's busy label.

#include "async/Background.h"
#include "base/Result.h"
#include "git/RepoStatus.h"

#include <QObject>
#include <unordered_map>

namespace orwick {

class Git : public QObject {
    Q_OBJECT
public:
    // Uses the git found on PATH and reads "hideIgnored" from the settings store.
    explicit Git(QObject* parent = nullptr);
    // Uses `executable`; none behaves as if git were not installed.
    Git(std::optional<FilePath> executable, QObject* parent);
    ~Git() override;

    bool isAvailable() const { return m_executable.has_value(); }
    const std::optional<FilePath>& executable() const { return m_executable; }

    // --- Repositories
    // The root of the repository holding `folder`; asked of the disk once per folder.
    std::optional<FilePath> root(const FilePath& folder);
    // The kept status of the repository holding `folder`; null when there is none.
    const RepoStatus* status(const FilePath& folder);
    const QHash<FilePath, RepoStatus>& repos() const { return m_repos; }
    // Why the last status read of the repository holding `folder` failed, in git's words; empty
    // when it succeeded, when none has finished yet, and outside a repository.
    QString statusFailure(const FilePath& folder);
    // Reads the status of the repository holding `folder` again, in the background. Does nothing
    // outside a repository or without git.
    void refresh(const FilePath& folder);
    // True while a status read of the repository at `root` runs.
    bool isRefreshing(const FilePath& root) const;

    // --- Rows: each answer is a lookup in the status of each repository holding the path (one,
    // unless repositories nest), in its changedPaths and foldersWithChanges.
    struct RowMark {
        std::optional<Change> change;  // the file's badge
        bool changesBelow = false;     // a folder on the way to a change
    };
    RowMark rowMark(const FilePath& path) const;
    std::optional<Change> badgeFor(const FilePath& path) const { return rowMark(path).change; }
    bool hasChangesBelow(const FilePath& folder) const { return rowMark(folder).changesBelow; }

    // --- Ignored paths
    // The ignored paths of the repository holding `folder` (empty outside one).
    IgnoredPaths ignoredPaths(const FilePath& folder);
    // True when git ignores `path` or a folder it is in.
    bool isIgnored(const FilePath& path);

    // "Hide Git-Ignored Files", kept under "hideIgnored".
    bool hidesIgnored() const { return m_hidesIgnored; }
    void setHidesIgnored(bool hides);

    // --- Long operations (labels such as "Pushing…") per repository root.
    const QHash<FilePath, QString>& busy() const { return m_busy; }
    void setBusy(const FilePath& root, const QString& label);
    void clearBusy(const FilePath& root);

Q_SIGNALS:
    void statusChanged(const orwick::FilePath& root);
    void hidesIgnoredChanged(bool hides);
    void busyChanged(const orwick::FilePath& root);

private:
    void apply(const FilePath& root, Result<RepoStatus> status);

    std::optional<FilePath> m_executable;
    QHash<FilePath, RepoStatus> m_repos;
    QHash<FilePath, QString> m_failures; // root → why its last status read failed
    QHash<FilePath, QString> m_busy;
    bool m_hidesIgnored = false;
    QHash<FilePath, std::optional<FilePath>> m_roots;
    std::unordered_map<FilePath, TaskSlot> m_running;
};

} // namespace orwick

#pragma once
// NameIndex: the names of every file under the home folder (and under the folders the user put
// in the sidebar), so the palette finds a file anywhere by name within a keystroke. One per
// process (shared()), on the GUI thread; tests make their own.
//
// Lifecycle: nothing happens until start() (the palette's first opening). Then the index file
// (NameIndexFile) is read in the background — the names are ready at once — and the trees are
// walked again in the background (NameWalk, the search walker) to catch what changed while
// Orwick wasn't running; a walk's names replace the table whole. Without a file, the first walk
// makes the table. A later start() walks again when the last walk is older than kStaleAfter.
//
// Keeping current: the names of the table's folders are watched (one inotify instance, at most
// a budget of folders, shallow ones first) and Orwick's own changes are followed
// (FileOperations::pathsChanged). A changed folder is read again after a short settling delay,
// on a background task: names that went are removed, new ones added, and a new folder is walked
// whole. Changes seen during a walk are read again after it. Lost kernel events or a change of
// the roots start a walk.
//
// Saving: after a walk and after updates (batched), the table is written in the background,
// atomically. A damaged file is set aside and the names walked afresh.
//
// Signals: tableChanged() follows every change of table() (a walk, a load, an update that
// changed names). walkFinished() follows the end of a walk whose names were taken; updated()
// follows every applied batch of folder updates, changed or not; saved() follows each write
// that succeeded.

#include "async/Background.h"
#include "files/DirectoryWatcher.h"
#include "search/NameIndexFile.h"
#include "search/NameTable.h"
#include "search/NameWalk.h"

#include <QObject>
#include <QPointer>
#include <QSet>
#include <QTimer>
#include <functional>

namespace orwick {

class FileOperations;

class NameIndex : public QObject {
    Q_OBJECT
public:
    static constexpr qint64 kStaleAfterMs = 30 * 60 * 1000;

    struct Options {
        FilePath file;  // the index file; NameIndexFile::defaultPath() when empty
        std::function<std::vector<FilePath>()> roots; // the home folder when not set
        int settleMs = 400;     // changes are gathered this long before folders are read again
        int saveDelayMs = 3000; // updates are saved this long after the last one
        qsizetype watchBudget = 0; // folders watched at most; 0: a share of the system's limit
        qsizetype maxNames = NameWalk::kDefaultMaxNames;
        int walkThreads = 0;
    };

    explicit NameIndex(Options options, QObject* parent = nullptr);
    ~NameIndex() override;
    // The process's index: home plus the sidebar's favourites and groups, following the shared
    // FileOperations and SidebarStore. Made on first use; start() is still needed.
    static NameIndex& shared();

    // The roots for `folders` (home first): duplicates and folders that a walk of another root
    // already reaches (no hidden folder on the way) are left out.
    static std::vector<FilePath> rootsFor(const std::vector<FilePath>& folders);

    void start();
    bool isStarted() const { return m_started; }
    bool isReady() const { return m_ready; } // names were loaded or walked
    bool isWalking() const { return m_walk.isRunning(); }
    bool isUpdating() const { return m_update.isRunning() || !m_dirty.isEmpty(); }
    const NameTable& table() const { return m_table; }
    const std::vector<FilePath>& roots() const { return m_roots; }
    qint64 walkedAtMs() const { return m_walkedAtMs; }
    qsizetype watchedFolders() const { return m_watcher->watchCount(); }

    // Walks every root again in the background (a running walk is restarted).
    void refresh();
    // Stops the running walk and update for good: nothing is walked or read again afterwards
    // (the shared index, when the application quits, so that quitting never waits for a walk of
    // a large home).
    void stop();
    // Folders whose names changed; read again after the settling delay.
    void folderChanged(const FilePath& folder);
    // Paths Orwick itself made, moved or removed: their folders are read again.
    void pathsChanged(const QList<FilePath>& paths);
    // Follows the changes `operations` makes.
    void follow(FileOperations* operations);
    // Reads the roots again; walks when they differ.
    void rootsChanged();

Q_SIGNALS:
    void tableChanged();
    void walkFinished();
    void updated();
    void saved();

private:
    struct Update;
    void loaded(std::optional<NameIndexFile::Contents> contents);
    void takeWalk(NameWalk::Result result);
    void startUpdate();
    void applyUpdate(const Update& update);
    void setTable(NameTable table);
    void watchSome();
    void scheduleSave(int delayMs);
    void save();
    std::vector<FilePath> currentRoots() const;

    Options m_options;
    FilePath m_file;
    bool m_started = false;
    bool m_stopped = false;
    bool m_ready = false;
    NameTable m_table;
    std::vector<FilePath> m_roots;
    qint64 m_walkedAtMs = 0;

    TaskSlot m_walk;
    TaskSlot m_update;
    QSet<FilePath> m_dirty;            // folders waiting to be read again
    QSet<FilePath> m_changedSinceWalk; // read again once the running walk is taken
    QTimer m_settle;

    DirectoryWatcher* m_watcher;
    quint32 m_watchCursor = 0; // the next entry of the table to consider for a watch
    qsizetype m_watchBudget = 0;
    QTimer m_watchTicker;

    QTimer m_saveTimer;
    bool m_saving = false;
    bool m_saveAgain = false;
};

} // namespace orwick

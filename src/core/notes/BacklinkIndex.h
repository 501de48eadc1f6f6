#pragma once
// BacklinkIndex: the backlinks of one vault at a time, kept current while Orwick runs. The
// information panel asks it which notes link to the note it shows.
//
// The vault of a note is the nearest folder above it holding ".obsidian" (as the link updater
// and the daily notes find it), else the folder the note is in. open() builds the vault's table
// in the background (BacklinkTable::build); opening another vault drops the old table.
//
// Keeping current: every folder of the vault is watched (VaultWatcher) and Orwick's own changes
// are followed (FileOperations::pathsChanged and contentsChanged). A changed entry is read again
// on a background task at once — a note's links, a folder's notes, or its going — and the table
// is changed in place, so a saved note shows in its targets' backlinks within milliseconds.
// Changes that arrive while a build or an update runs are gathered and read after it. A kernel
// that dropped events has the vault built again.
//
// Signals: changed() follows every build that was taken and every update applied (backlinks may
// differ afterwards); it never comes for a vault that is no longer open. Lives on the GUI thread.

#include "async/Background.h"
#include "notes/BacklinkTable.h"

#include <QObject>
#include <QSet>
#include <QTimer>

namespace orwick {

class FileOperations;
class VaultWatcher;

class BacklinkIndex : public QObject {
    Q_OBJECT
public:
    explicit BacklinkIndex(QObject* parent = nullptr);
    ~BacklinkIndex() override;
    // The process's index, following FileOperations::shared().
    static BacklinkIndex& shared();

    // The vault `note` belongs to (see above).
    static FilePath vaultFor(const FilePath& note);

    // Builds the table of `vault` unless it is the one open.
    void open(const FilePath& vault);
    // Forgets the open vault (its watches too).
    void close();
    const FilePath& vault() const { return m_vault; }
    bool isReady() const { return m_ready; }
    bool isBusy() const { return m_build.isRunning() || m_updating || !m_pending.isEmpty(); }
    const BacklinkTable& table() const { return m_table; }
    qsizetype watchedFolders() const;
    qint64 lastBuildMs() const { return m_lastBuildMs; }

    // The places that link to `note`; empty until the table is ready.
    QList<Backlink> backlinksOf(const FilePath& note) const { return m_ready ? m_table.backlinksOf(note) : QList<Backlink>(); }

    // Entries made, changed, moved or removed: the ones in the open vault are read again.
    void pathsChanged(const QList<FilePath>& paths);
    // Follows the changes `operations` makes.
    void follow(FileOperations* operations);

Q_SIGNALS:
    void changed();

private:
    struct Update;
    void startBuild();
    void startUpdate();
    void applyUpdate(const FilePath& vault, Update update);

    FilePath m_vault;
    BacklinkTable m_table;
    bool m_ready = false;
    TaskSlot m_build;
    bool m_updating = false;
    QSet<FilePath> m_pending;
    QTimer m_soon; // gathers the changes of one turn of the event loop
    VaultWatcher* m_watcher;
    qint64 m_lastBuildMs = 0;
};

} // namespace orwick

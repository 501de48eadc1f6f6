#include "notes/BacklinkIndex.h"

#include "fileops/FileOperations.h"
#include "notes/DailyNotes.h"
#include "notes/NoteFile.h"
#include "notes/VaultWatcher.h"

#include <QElapsedTimer>
#include <QLoggingCategory>
#include <sys/stat.h>

Q_LOGGING_CATEGORY(lcBacklinks, "orwick.backlinks", QtInfoMsg)

namespace orwick {

// What one update read: entries that went (a note, or a folder with what was under it) and the
// notes read again, in the order the changes came.
struct BacklinkIndex::Update {
    struct Note {
        FilePath path;
        std::optional<QList<NoteLink>> links;
    };
    QList<FilePath> removed;
    QList<Note> notes;
};

BacklinkIndex::BacklinkIndex(QObject* parent) : QObject(parent), m_watcher(new VaultWatcher(this))
{
    m_soon.setSingleShot(true);
    m_soon.setInterval(0);
    connect(&m_soon, &QTimer::timeout, this, &BacklinkIndex::startUpdate);
    connect(m_watcher, &VaultWatcher::pathsChanged, this, &BacklinkIndex::pathsChanged);
    connect(m_watcher, &VaultWatcher::overflowed, this, [this] {
        if (!m_vault.isEmpty())
            startBuild();
    });
}

BacklinkIndex::~BacklinkIndex() = default;

BacklinkIndex& BacklinkIndex::shared()
{
    static QPointer<BacklinkIndex> index;
    if (!index) {
        index = new BacklinkIndex(QCoreApplication::instance());
        index->follow(&FileOperations::shared());
    }
    return *index;
}

FilePath BacklinkIndex::vaultFor(const FilePath& note)
{
    const FilePath folder = note.parent();
    if (std::optional<FilePath> vault = DailyNotes::vault(folder))
        return *vault;
    return folder;
}

qsizetype BacklinkIndex::watchedFolders() const { return m_watcher->watchCount(); }

void BacklinkIndex::follow(FileOperations* operations)
{
    connect(operations, &FileOperations::pathsChanged, this, &BacklinkIndex::pathsChanged);
    connect(operations, &FileOperations::contentsChanged, this, &BacklinkIndex::pathsChanged);
}

void BacklinkIndex::open(const FilePath& vault)
{
    if (vault.isEmpty() || vault == m_vault)
        return;
    m_vault = vault;
    startBuild();
}

void BacklinkIndex::close()
{
    m_build.cancel();
    m_vault = {};
    m_table = BacklinkTable();
    m_ready = false;
    m_pending.clear();
    m_watcher->clear();
}

void BacklinkIndex::startBuild()
{
    m_ready = false;
    m_pending.clear(); // the build reads everything
    m_watcher->clear();
    const TaskSlot::Ticket ticket = m_build.start();
    const FilePath vault = m_vault;
    runInBackground(this, [vault, token = ticket.token] {
        QElapsedTimer timer;
        timer.start();
        std::optional<BacklinkTable> table = BacklinkTable::build(vault, token.get());
        return std::make_pair(std::move(table), timer.elapsed());
    }, [this, ticket](std::pair<std::optional<BacklinkTable>, qint64> result) {
        if (!m_build.isCurrent(ticket) || !result.first)
            return;
        m_build.finish(ticket);
        m_table = std::move(*result.first);
        m_lastBuildMs = result.second;
        m_ready = true;
        m_watcher->watch(m_table.folders());
        qCDebug(lcBacklinks) << "indexed" << m_table.noteCount() << "notes of" << m_vault.text() << "in" << m_lastBuildMs << "ms";
        Q_EMIT changed();
        // Changes made while the build read the notes are read again now.
        if (!m_pending.isEmpty())
            m_soon.start();
    });
}

void BacklinkIndex::pathsChanged(const QList<FilePath>& paths)
{
    if (m_vault.isEmpty())
        return;
    bool any = false;
    for (const FilePath& path : paths) {
        if (m_vault.isAncestorOf(path)) {
            m_pending.insert(path);
            any = true;
        }
    }
    if (any && !m_updating && !m_build.isRunning())
        m_soon.start();
}

void BacklinkIndex::startUpdate()
{
    if (m_updating || m_build.isRunning() || m_pending.isEmpty() || !m_ready)
        return;
    m_updating = true;
    QList<FilePath> paths = m_pending.values();
    m_pending.clear();
    std::sort(paths.begin(), paths.end()); // a folder before what is in it
    const FilePath vault = m_vault;
    runInBackground(this, [paths] {
        Update update;
        for (const FilePath& path : paths) {
            struct stat st {};
            if (::lstat(path.c_str(), &st) != 0) {
                update.removed.append(path);
            } else if (S_ISDIR(st.st_mode)) {
                update.removed.append(path); // what was there before is read again below
                for (const FilePath& note : BacklinkTable::walk(path).notes)
                    update.notes.append({note, BacklinkTable::readLinks(note)});
            } else if (S_ISREG(st.st_mode) && notefile::isNote(path)) {
                update.notes.append({path, BacklinkTable::readLinks(path)});
            } else if (notefile::isNote(path)) {
                update.removed.append(path); // a note replaced by something else
            }
        }
        return update;
    }, [this, vault](Update update) { applyUpdate(vault, std::move(update)); });
}

void BacklinkIndex::applyUpdate(const FilePath& vault, Update update)
{
    m_updating = false;
    if (vault == m_vault && m_ready) {
        for (const FilePath& path : std::as_const(update.removed))
            m_table.remove(path);
        for (Update::Note& note : update.notes)
            m_table.setNote(note.path, std::move(note.links));
        Q_EMIT changed();
    }
    if (!m_pending.isEmpty())
        m_soon.start();
}

} // namespace orwick

#include "moc_BacklinkIndex.cpp"

#include "search/NameIndex.h"

#include "fileops/FileOperations.h"
#include "places/SidebarStore.h"
#include "platform/XdgPaths.h"

#include <QDateTime>
#include <QFile>
#include <QHash>

namespace orwick {

// What a background read of changed folders found.
struct NameIndex::Update {
    std::vector<NameWalk::FolderEntries> folders;
    NameTable newFolders; // each folder that appeared, walked whole, as a root
};

namespace {

constexpr int kWatchesPerTick = 256;
constexpr qsizetype kMaxWatchBudget = 8192;

qsizetype systemWatchBudget()
{
    QFile limits(QStringLiteral("/proc/sys/fs/inotify/max_user_watches"));
    qsizetype limit = 8192;
    if (limits.open(QIODevice::ReadOnly))
        limit = std::max<qsizetype>(0, limits.readAll().trimmed().toLongLong());
    return std::min(kMaxWatchBudget, limit / 4); // leave most of the limit to other programs
}

qint64 now() { return QDateTime::currentMSecsSinceEpoch(); }

// True when a walk of `root` reaches `folder`: it lies below, with no hidden name on the way.
bool reaches(const FilePath& root, const FilePath& folder)
{
    if (!root.contains(folder))
        return false;
    const QByteArray& bytes = folder.native();
    const qsizetype start = root.isRoot() ? 1 : root.native().size() + 1;
    for (qsizetype at = start; at < bytes.size();) {
        if (bytes[at] == '.')
            return false;
        const qsizetype slash = bytes.indexOf('/', at);
        if (slash < 0)
            break;
        at = slash + 1;
    }
    return true;
}

} // namespace

NameIndex::NameIndex(Options options, QObject* parent)
    : QObject(parent)
    , m_options(std::move(options))
    , m_file(m_options.file.isEmpty() ? NameIndexFile::defaultPath() : m_options.file)
    , m_watcher(new DirectoryWatcher(this))
{
    m_watchBudget = m_options.watchBudget > 0 ? m_options.watchBudget : systemWatchBudget();
    m_settle.setSingleShot(true);
    m_settle.setInterval(m_options.settleMs);
    connect(&m_settle, &QTimer::timeout, this, &NameIndex::startUpdate);
    m_watchTicker.setInterval(0);
    connect(&m_watchTicker, &QTimer::timeout, this, &NameIndex::watchSome);
    m_saveTimer.setSingleShot(true);
    connect(&m_saveTimer, &QTimer::timeout, this, &NameIndex::save);
    connect(m_watcher, &DirectoryWatcher::folderChanged, this, &NameIndex::folderChanged);
    connect(m_watcher, &DirectoryWatcher::overflowed, this, &NameIndex::refresh);
}

NameIndex::~NameIndex() = default;

NameIndex& NameIndex::shared()
{
    static QPointer<NameIndex> index;
    if (!index) {
        Options options;
        options.roots = [] {
            std::vector<FilePath> folders{xdg::home()};
            const SidebarStore& sidebar = SidebarStore::shared();
            for (const Place& place : sidebar.allFavorites())
                if (!place.isMissing)
                    folders.push_back(place.url);
            for (const SidebarGroup& group : sidebar.groups())
                for (const SidebarItem& item : group.items)
                    folders.push_back(item.path);
            return folders;
        };
        index = new NameIndex(std::move(options), QCoreApplication::instance());
        connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, index, &NameIndex::stop);
        index->follow(&FileOperations::shared());
        connect(&SidebarStore::shared(), &SidebarStore::favoritesChanged, index, &NameIndex::rootsChanged);
        connect(&SidebarStore::shared(), &SidebarStore::groupsChanged, index, &NameIndex::rootsChanged);
    }
    return *index;
}

std::vector<FilePath> NameIndex::rootsFor(const std::vector<FilePath>& folders)
{
    std::vector<FilePath> roots;
    for (const FilePath& folder : folders) {
        if (folder.isEmpty())
            continue;
        const bool reached = std::any_of(folders.begin(), folders.end(), [&](const FilePath& other) {
            return !other.isEmpty() && other != folder && reaches(other, folder);
        });
        if (!reached && std::find(roots.begin(), roots.end(), folder) == roots.end())
            roots.push_back(folder);
    }
    return roots;
}

std::vector<FilePath> NameIndex::currentRoots() const
{
    return rootsFor(m_options.roots ? m_options.roots() : std::vector<FilePath>{xdg::home()});
}

void NameIndex::follow(FileOperations* operations)
{
    connect(operations, &FileOperations::pathsChanged, this, &NameIndex::pathsChanged);
}

void NameIndex::start()
{
    if (m_started) {
        if (m_ready && !isWalking() && now() - m_walkedAtMs > kStaleAfterMs)
            refresh();
        return;
    }
    m_started = true;
    m_roots = currentRoots();
    runInBackground(this, [file = m_file] { return NameIndexFile::read(file); },
                    [this](std::optional<NameIndexFile::Contents> contents) { loaded(std::move(contents)); });
}

void NameIndex::loaded(std::optional<NameIndexFile::Contents> contents)
{
    if (contents && !m_ready) {
        m_walkedAtMs = contents->walkedAtMs;
        setTable(std::move(contents->table));
    }
    refresh(); // what changed while Orwick wasn't running
}

void NameIndex::refresh()
{
    if (!m_started || m_stopped)
        return;
    const TaskSlot::Ticket ticket = m_walk.start();
    m_changedSinceWalk.clear();
    runInBackground(
        this,
        [roots = m_roots, token = ticket.token, max = m_options.maxNames, threads = m_options.walkThreads] {
            return NameWalk::walk(roots, *token, max, threads);
        },
        [this, ticket](NameWalk::Result result) {
            if (!m_walk.isCurrent(ticket))
                return;
            m_walk.finish(ticket);
            takeWalk(std::move(result));
        });
}

void NameIndex::stop()
{
    m_stopped = true;
    m_walk.cancel();
    m_update.cancel();
    m_settle.stop();
    m_dirty.clear();
    m_changedSinceWalk.clear();
}

void NameIndex::takeWalk(NameWalk::Result result)
{
    m_walkedAtMs = now();
    setTable(std::move(result.table));
    scheduleSave(0);
    // What changed while the walk ran may have been read before the change.
    for (const FilePath& folder : std::as_const(m_changedSinceWalk))
        m_dirty.insert(folder);
    m_changedSinceWalk.clear();
    if (!m_dirty.isEmpty() && !m_settle.isActive())
        m_settle.start();
    Q_EMIT walkFinished();
}

void NameIndex::setTable(NameTable table)
{
    m_table = std::move(table);
    m_ready = true;
    m_watchCursor = 0; // entries were renumbered: look at every folder again
    if (!m_watchTicker.isActive())
        m_watchTicker.start();
    Q_EMIT tableChanged();
}

void NameIndex::rootsChanged()
{
    std::vector<FilePath> roots = currentRoots();
    if (roots == m_roots)
        return;
    m_roots = std::move(roots);
    if (m_started)
        refresh();
}

void NameIndex::pathsChanged(const QList<FilePath>& paths)
{
    for (const FilePath& path : paths)
        if (!path.isRoot())
            folderChanged(path.parent());
}

void NameIndex::folderChanged(const FilePath& folder)
{
    if (!m_started || m_stopped)
        return;
    m_dirty.insert(folder);
    if (isWalking())
        m_changedSinceWalk.insert(folder);
    if (!m_settle.isActive())
        m_settle.start();
}

void NameIndex::startUpdate()
{
    if (m_update.isRunning() || m_dirty.isEmpty())
        return; // the running update starts the next when it ends
    if (!m_ready) {
        m_dirty.clear(); // the first walk reads them anyway
        return;
    }
    std::vector<FilePath> folders;
    for (const FilePath& folder : std::as_const(m_dirty))
        if (const quint32 entry = m_table.find(folder); entry != NameTable::kNone && m_table.isEntered(entry))
            folders.push_back(folder);
    m_dirty.clear();
    if (folders.empty()) {
        Q_EMIT updated();
        return;
    }
    const TaskSlot::Ticket ticket = m_update.start();
    runInBackground(
        this,
        [folders, snapshot = m_table, token = ticket.token, max = m_options.maxNames] {
            Update update;
            update.folders = NameWalk::list(folders, *token);
            std::vector<FilePath> appeared;
            for (const NameWalk::FolderEntries& listed : update.folders) {
                const quint32 at = snapshot.find(listed.folder);
                for (const auto& entry : listed.entries) {
                    const quint32 known = at == NameTable::kNone ? NameTable::kNone : snapshot.findChild(at, entry.name);
                    if (entry.isEntered && (known == NameTable::kNone || !snapshot.isEntered(known)))
                        appeared.push_back(listed.folder.child(QByteArrayView(entry.name)));
                }
            }
            if (!appeared.empty())
                update.newFolders = NameWalk::walk(appeared, *token, max, 1).table;
            return update;
        },
        [this, ticket](const Update& update) {
            if (!m_update.isCurrent(ticket))
                return;
            m_update.finish(ticket);
            applyUpdate(update);
            if (!m_dirty.isEmpty() && !m_settle.isActive())
                m_settle.start();
        });
}

void NameIndex::applyUpdate(const Update& update)
{
    const qsizetype before = m_table.size();
    bool changed = false;
    for (const NameWalk::FolderEntries& listed : update.folders) {
        const quint32 folder = m_table.find(listed.folder);
        if (folder == NameTable::kNone || !m_table.isEntered(folder))
            continue; // went meanwhile with a folder above it
        if (!listed.exists) {
            changed = true;
            m_table.remove(folder); // a root only loses its names
            continue;
        }
        QHash<QByteArray, quint32> known;
        for (quint32 child : m_table.children(folder))
            known.insert(m_table.name(child).toByteArray(), child);
        for (const auto& entry : listed.entries) {
            const auto knownEntry = known.constFind(entry.name);
            const quint32 was = knownEntry == known.constEnd() ? NameTable::kNone : *knownEntry;
            if (was != NameTable::kNone)
                known.erase(knownEntry);
            if (was != NameTable::kNone && m_table.isFolder(was) == entry.isFolder
                && (!entry.isFolder || m_table.isEntered(was) == entry.isEntered))
                continue;
            if (was != NameTable::kNone)
                m_table.remove(was);
            changed = true;
            if (!entry.isEntered) {
                m_table.add(folder, entry.name, entry.isFolder, false);
                continue;
            }
            const quint32 walked = update.newFolders.find(listed.folder.child(QByteArrayView(entry.name)));
            if (walked != NameTable::kNone && update.newFolders.parent(walked) == NameTable::kNone)
                m_table.graft(folder, entry.name, update.newFolders, walked);
            else
                m_table.add(folder, entry.name, true);
        }
        for (quint32 gone : std::as_const(known)) {
            m_table.remove(gone);
            changed = true;
        }
    }
    if (changed) {
        if (m_table.size() - m_table.liveCount() > std::max<qsizetype>(10000, m_table.liveCount() / 4)) {
            setTable(m_table.compacted());
        } else {
            if (m_table.size() > before && !m_watchTicker.isActive())
                m_watchTicker.start(); // the new folders, from where the cursor stands
            Q_EMIT tableChanged();
        }
        scheduleSave(m_options.saveDelayMs);
    }
    Q_EMIT updated();
}

void NameIndex::watchSome()
{
    const quint32 size = quint32(m_table.size());
    int added = 0;
    while (m_watchCursor < size && added < kWatchesPerTick && m_watcher->watchCount() < m_watchBudget) {
        const quint32 entry = m_watchCursor++;
        if (m_table.isEntered(entry) && !m_table.isRemoved(entry)) {
            const FilePath folder = m_table.path(entry);
            if (!m_watcher->isWatching(folder)) {
                m_watcher->watchNames(folder);
                ++added;
            }
        }
    }
    if (m_watchCursor >= size || m_watcher->watchCount() >= m_watchBudget)
        m_watchTicker.stop();
}

void NameIndex::scheduleSave(int delayMs)
{
    if (!m_saveTimer.isActive() || delayMs < m_saveTimer.remainingTime())
        m_saveTimer.start(delayMs);
}

void NameIndex::save()
{
    if (m_saving) {
        m_saveAgain = true;
        return;
    }
    m_saving = true;
    runInBackground(
        this, [file = m_file, table = m_table, walkedAt = m_walkedAtMs] { return NameIndexFile::write(file, table, walkedAt); },
        [this](const Status& written) {
            m_saving = false;
            if (written)
                Q_EMIT saved();
            if (std::exchange(m_saveAgain, false))
                save();
        });
}

} // namespace orwick

#include "moc_NameIndex.cpp"

#include "notes/VaultWatcher.h"

#include "platform/ForEachEntry.h"

#include <QSet>
#include <cerrno>
#include <dirent.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace orwick {

namespace {

constexpr uint32_t kEvents = IN_CLOSE_WRITE | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF
                           | IN_MOVE_SELF | IN_ONLYDIR | IN_DONT_FOLLOW;

} // namespace

VaultWatcher::VaultWatcher(QObject* parent) : QObject(parent), m_inotify(this, [this] { drain(); }) {}

VaultWatcher::~VaultWatcher() = default;

void VaultWatcher::clear()
{
    m_inotify.clear();
}

void VaultWatcher::watch(const QList<FilePath>& folders)
{
    clear();
    for (const FilePath& folder : folders)
        if (!add(folder))
            break;
}

bool VaultWatcher::add(const FilePath& folder)
{
    if (!m_inotify.isOpen() || m_inotify.count() >= kMostFolders)
        return false;
    if (!m_inotify.add(folder, kEvents))
        return errno != ENOSPC; // the system's limit ends the watching; a folder gone meanwhile doesn't
    return true;
}

void VaultWatcher::addTree(const FilePath& folder)
{
    QList<FilePath> pending{folder};
    while (!pending.isEmpty()) {
        const FilePath current = pending.takeLast();
        if (!add(current))
            return;
        forEachEntry(current, nullptr, [&](QByteArrayView name, unsigned char type) {
            if (!name.startsWith('.') && name != "node_modules" && type == DT_DIR)
                pending.append(current.child(name));
        });
    }
}

void VaultWatcher::drain()
{
    QList<FilePath> changed;
    QSet<FilePath> seen;
    QList<FilePath> newFolders;
    bool overflow = false;
    m_inotify.readEvents([&](const inotify_event& event) {
        const auto folder = m_inotify.folderOf(event, overflow);
        if (!folder || event.len == 0)
            return;
        const QByteArrayView name(static_cast<const char*>(event.name));
        if (name.startsWith('.'))
            return; // an editor's hidden temporary file: its rename into place is seen
        const FilePath path = folder->child(name);
        if ((event.mask & IN_ISDIR) && (event.mask & (IN_CREATE | IN_MOVED_TO)))
            newFolders.append(path);
        if (!seen.contains(path)) {
            seen.insert(path);
            changed.append(path);
        }
    });
    for (const FilePath& folder : std::as_const(newFolders))
        addTree(folder);
    if (overflow)
        Q_EMIT overflowed();
    if (!changed.isEmpty())
        Q_EMIT pathsChanged(changed);
}

} // namespace orwick

#include "moc_VaultWatcher.cpp"

#include "notes/VaultWatcher.h"

#include "platform/ForEachEntry.h"

#include <QSet>
#include <QSocketNotifier>
#include <dirent.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace orwick {

namespace {

constexpr uint32_t kEvents = IN_CLOSE_WRITE | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF
                           | IN_MOVE_SELF | IN_ONLYDIR | IN_DONT_FOLLOW;

} // namespace

VaultWatcher::VaultWatcher(QObject* parent) : QObject(parent)
{
    m_fd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (m_fd < 0)
        return;
    m_notifier = new QSocketNotifier(m_fd, QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &VaultWatcher::drain);
}

VaultWatcher::~VaultWatcher()
{
    if (m_notifier)
        m_notifier->setEnabled(false);
    if (m_fd >= 0)
        ::close(m_fd);
}

void VaultWatcher::clear()
{
    for (auto it = m_folders.cbegin(); it != m_folders.cend(); ++it)
        inotify_rm_watch(m_fd, it.key());
    m_folders.clear();
    m_watches.clear();
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
    if (m_fd < 0 || m_watches.size() >= kMostFolders)
        return false;
    if (m_watches.contains(folder))
        return true;
    const int wd = inotify_add_watch(m_fd, folder.c_str(), kEvents);
    if (wd < 0)
        return errno != ENOSPC; // the system's limit ends the watching; a folder gone meanwhile doesn't
    if (const auto old = m_folders.constFind(wd); old != m_folders.cend())
        m_watches.remove(*old); // the same folder under an older path
    m_folders.insert(wd, folder);
    m_watches.insert(folder, wd);
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
    alignas(inotify_event) char buffer[16384];
    QList<FilePath> changed;
    QSet<FilePath> seen;
    QList<FilePath> newFolders;
    bool overflow = false;
    ssize_t got;
    while ((got = ::read(m_fd, buffer, sizeof buffer)) > 0) {
        for (ssize_t at = 0; at < got;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
            at += ssize_t(sizeof(inotify_event) + event->len);
            if (event->mask & IN_Q_OVERFLOW) {
                overflow = true;
                continue;
            }
            const auto folder = m_folders.constFind(event->wd);
            if (folder == m_folders.cend())
                continue;
            if (event->mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED)) {
                const FilePath gone = *folder;
                if (!(event->mask & IN_IGNORED))
                    inotify_rm_watch(m_fd, event->wd);
                m_folders.remove(event->wd);
                m_watches.remove(gone);
                continue;
            }
            if (event->len == 0)
                continue;
            const QByteArrayView name(static_cast<const char*>(event->name));
            if (name.startsWith('.'))
                continue; // an editor's hidden temporary file: its rename into place is seen
            const FilePath path = folder->child(name);
            if ((event->mask & IN_ISDIR) && (event->mask & (IN_CREATE | IN_MOVED_TO)))
                newFolders.append(path);
            if (!seen.contains(path)) {
                seen.insert(path);
                changed.append(path);
            }
        }
    }
    for (const FilePath& folder : std::as_const(newFolders))
        addTree(folder);
    if (overflow)
        Q_EMIT overflowed();
    if (!changed.isEmpty())
        Q_EMIT pathsChanged(changed);
}

} // namespace orwick

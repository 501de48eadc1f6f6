#include "files/DirectoryWatcher.h"

#include <QSet>
#include <QSocketNotifier>
#include <sys/inotify.h>
#include <unistd.h>

namespace orwick {

DirectoryWatcher::DirectoryWatcher(const FilePath& folder, QObject* parent) : QObject(parent), m_folder(folder)
{
    m_fd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (m_fd < 0)
        return;
    const uint32_t events = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_CLOSE_WRITE | IN_MODIFY | IN_ATTRIB
                          | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
    if (inotify_add_watch(m_fd, folder.c_str(), events) < 0) {
        ::close(m_fd);
        m_fd = -1;
        return;
    }
    open();
}

DirectoryWatcher::DirectoryWatcher(QObject* parent) : QObject(parent)
{
    m_fd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (m_fd >= 0)
        open();
}

void DirectoryWatcher::open()
{
    m_notifier = new QSocketNotifier(m_fd, QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this, &DirectoryWatcher::drain);
}

DirectoryWatcher::~DirectoryWatcher()
{
    if (m_notifier)
        m_notifier->setEnabled(false);
    if (m_fd >= 0)
        ::close(m_fd);
}

bool DirectoryWatcher::watchNames(const FilePath& folder)
{
    if (m_fd < 0)
        return false;
    if (m_watches.contains(folder))
        return true;
    const uint32_t events = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF
                          | IN_ONLYDIR | IN_DONT_FOLLOW;
    const int wd = inotify_add_watch(m_fd, folder.c_str(), events);
    if (wd < 0)
        return false;
    if (const auto old = m_folders.constFind(wd); old != m_folders.constEnd())
        m_watches.remove(*old); // the same folder under an older path
    m_folders.insert(wd, folder);
    m_watches.insert(folder, wd);
    return true;
}

void DirectoryWatcher::drain()
{
    alignas(inotify_event) char buffer[16384];
    bool any = false;
    bool overflow = false;
    QList<FilePath> changedFolders;
    QSet<FilePath> seen;
    struct Moved {
        quint32 cookie;
        FilePath path;
        bool arrived;
    };
    QList<Moved> moved;
    ssize_t got;
    while ((got = ::read(m_fd, buffer, sizeof buffer)) > 0) {
        any = true;
        if (m_folders.isEmpty()) {
            for (ssize_t at = 0; at < got && !m_folder.isEmpty();) {
                const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
                at += ssize_t(sizeof(inotify_event) + event->len);
                if ((event->mask & (IN_MOVED_FROM | IN_MOVED_TO)) && event->len > 0)
                    moved.append({event->cookie, m_folder.child(QByteArrayView(static_cast<const char*>(event->name))),
                                  (event->mask & IN_MOVED_TO) != 0});
            }
            continue;
        }
        for (ssize_t at = 0; at < got;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
            at += ssize_t(sizeof(inotify_event) + event->len);
            if (event->mask & IN_Q_OVERFLOW) {
                overflow = true;
                continue;
            }
            const auto folder = m_folders.constFind(event->wd);
            if (folder == m_folders.constEnd())
                continue;
            const FilePath path = *folder;
            if (event->mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED)) {
                // Gone or moved: its path no longer names it.
                if (!(event->mask & IN_IGNORED))
                    inotify_rm_watch(m_fd, event->wd);
                m_folders.remove(event->wd);
                m_watches.remove(path);
                continue;
            }
            if (!seen.contains(path)) {
                seen.insert(path);
                changedFolders.append(path);
            }
        }
    }
    if (!any)
        return;
    Q_EMIT changed();
    if (overflow)
        Q_EMIT overflowed();
    for (const FilePath& folder : std::as_const(changedFolders))
        Q_EMIT folderChanged(folder);
    for (const Moved& item : std::as_const(moved))
        Q_EMIT itemMoved(item.cookie, item.path, item.arrived);
}

} // namespace orwick

#include "files/DirectoryWatcher.h"

#include <QSet>
#include <fcntl.h>
#include <sys/inotify.h>
#include <thread>
#include <unistd.h>

namespace orwick {

DirectoryWatcher::DirectoryWatcher(const FilePath& folder, QObject* parent)
    : QObject(parent), m_folder(folder), m_inotify(this, [this] { drain(); })
{
    if (!m_inotify.isOpen())
        return;
    const uint32_t events = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_CLOSE_WRITE | IN_MODIFY | IN_ATTRIB
                          | IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;
    if (inotify_add_watch(m_inotify.fd(), folder.c_str(), events) < 0)
        m_inotify.close();
}

DirectoryWatcher::DirectoryWatcher(QObject* parent) : QObject(parent), m_inotify(this, [this] { drain(); }) {}

DirectoryWatcher::~DirectoryWatcher()
{
    // The last close of an inotify instance waits for the kernel to let go of its watches (an
    // RCU grace period: up to ~20 ms, which a pane moving to another folder would spend on the
    // GUI thread). A duplicate keeps the instance open past the close here; it is closed on a
    // thread of its own.
    if (!m_inotify.isOpen())
        return;
    const int lastReference = fcntl(m_inotify.fd(), F_DUPFD_CLOEXEC, 0);
    if (lastReference >= 0)
        std::thread([lastReference] { ::close(lastReference); }).detach();
}

bool DirectoryWatcher::watchNames(const FilePath& folder)
{
    if (!m_inotify.isOpen())
        return false;
    const uint32_t events = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_DELETE_SELF | IN_MOVE_SELF
                          | IN_ONLYDIR | IN_DONT_FOLLOW;
    return m_inotify.add(folder, events);
}

void DirectoryWatcher::drain()
{
    bool overflow = false;
    QList<FilePath> changedFolders;
    QSet<FilePath> seen;
    struct Moved {
        quint32 cookie;
        FilePath path;
        bool arrived;
    };
    QList<Moved> moved;
    const bool any = m_inotify.readEvents([&](const inotify_event& event) {
        if (m_inotify.count() == 0) {
            if (!m_folder.isEmpty() && (event.mask & (IN_MOVED_FROM | IN_MOVED_TO)) && event.len > 0)
                moved.append({event.cookie, m_folder.child(QByteArrayView(static_cast<const char*>(event.name))),
                              (event.mask & IN_MOVED_TO) != 0});
            return;
        }
        const auto folder = m_inotify.folderOf(event, overflow);
        if (folder && !seen.contains(*folder)) {
            seen.insert(*folder);
            changedFolders.append(*folder);
        }
    });
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

#include "moc_DirectoryWatcher.cpp"

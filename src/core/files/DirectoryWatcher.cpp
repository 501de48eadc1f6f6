#include "files/DirectoryWatcher.h"

#include <QSocketNotifier>
#include <sys/inotify.h>
#include <unistd.h>

namespace orwick {

DirectoryWatcher::DirectoryWatcher(const FilePath& folder, QObject* parent) : QObject(parent)
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

void DirectoryWatcher::drain()
{
    alignas(inotify_event) char buffer[16384];
    bool any = false;
    while (::read(m_fd, buffer, sizeof buffer) > 0)
        any = true;
    if (any)
        Q_EMIT changed();
}

} // namespace orwick

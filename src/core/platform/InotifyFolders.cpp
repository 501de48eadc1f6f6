#include "platform/InotifyFolders.h"

#include <QSocketNotifier>
#include <sys/inotify.h>
#include <unistd.h>

namespace orwick {

InotifyFolders::InotifyFolders(QObject* owner, std::function<void()> readable)
{
    m_fd = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    if (m_fd < 0)
        return;
    m_notifier = new QSocketNotifier(m_fd, QSocketNotifier::Read, owner);
    QObject::connect(m_notifier, &QSocketNotifier::activated, owner, std::move(readable));
}

InotifyFolders::~InotifyFolders()
{
    close();
}

void InotifyFolders::close()
{
    if (m_notifier) {
        m_notifier->setEnabled(false);
        delete m_notifier;
        m_notifier = nullptr;
    }
    if (m_fd >= 0)
        ::close(m_fd);
    m_fd = -1;
    m_folders.clear();
    m_watches.clear();
}

bool InotifyFolders::add(const FilePath& folder, uint32_t events)
{
    if (m_watches.contains(folder))
        return true;
    const int wd = inotify_add_watch(m_fd, folder.c_str(), events);
    if (wd < 0)
        return false;
    if (const auto old = m_folders.constFind(wd); old != m_folders.constEnd())
        m_watches.remove(*old); // the same folder under an older path
    m_folders.insert(wd, folder);
    m_watches.insert(folder, wd);
    return true;
}

bool InotifyFolders::readEvents(const std::function<void(const inotify_event& event)>& each)
{
    alignas(inotify_event) char buffer[16384];
    bool any = false;
    ssize_t got;
    while ((got = ::read(m_fd, buffer, sizeof buffer)) > 0) {
        any = true;
        for (ssize_t at = 0; at < got;) {
            const auto* event = reinterpret_cast<const inotify_event*>(buffer + at);
            at += ssize_t(sizeof(inotify_event) + event->len);
            each(*event);
        }
    }
    return any;
}

std::optional<FilePath> InotifyFolders::folderOf(const inotify_event& event, bool& overflowed)
{
    if (event.mask & IN_Q_OVERFLOW) {
        overflowed = true;
        return std::nullopt;
    }
    const auto found = m_folders.constFind(event.wd);
    if (found == m_folders.constEnd())
        return std::nullopt;
    if (event.mask & (IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED)) {
        forget(event.wd, event.mask & IN_IGNORED);
        return std::nullopt;
    }
    return *found;
}

void InotifyFolders::forget(int wd, bool kernelDropped)
{
    const auto found = m_folders.constFind(wd);
    if (found == m_folders.constEnd())
        return;
    if (!kernelDropped)
        inotify_rm_watch(m_fd, wd);
    m_watches.remove(*found);
    m_folders.erase(found);
}

void InotifyFolders::clear()
{
    for (auto it = m_folders.cbegin(); it != m_folders.cend(); ++it)
        inotify_rm_watch(m_fd, it.key());
    m_folders.clear();
    m_watches.clear();
}

} // namespace orwick

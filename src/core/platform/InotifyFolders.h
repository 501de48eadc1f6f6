#pragma once
// InotifyFolders: one inotify instance read on its owner's thread, and the folders it watches by
// watch descriptor — what DirectoryWatcher (its many-folder form) and VaultWatcher share. The
// owner reads the events from fd() when `readable` runs and interprets them itself.
//
// Owned by value by its QObject owner; the socket notifier is the owner's child and is switched
// off before the descriptor closes. A folder seen again under a new path (the kernel gives an
// inode one watch descriptor) is known by the new path only.

#include "base/FilePath.h"

#include <QHash>
#include <cstdint>
#include <functional>
#include <optional>

class QObject;
class QSocketNotifier;
struct inotify_event;

namespace orwick {

class InotifyFolders {
public:
    // Opens the instance; `readable` runs on `owner`'s thread whenever events wait. When the
    // kernel refuses an instance, isOpen() is false and nothing is ever watched.
    InotifyFolders(QObject* owner, std::function<void()> readable);
    ~InotifyFolders();
    InotifyFolders(const InotifyFolders&) = delete;
    InotifyFolders& operator=(const InotifyFolders&) = delete;

    bool isOpen() const { return m_fd >= 0; }
    int fd() const { return m_fd; }
    // Stops reading and closes the instance: isOpen() is false from now on.
    void close();

    // Watches `folder` for `events` (true when it already was); false with errno set when the
    // kernel refuses (the folder is gone, or the user's watch limit is reached).
    bool add(const FilePath& folder, uint32_t events);
    // Removes every watch.
    void clear();

    // Reads every event waiting, giving each to `each` in the kernel's order; false when there
    // was none.
    bool readEvents(const std::function<void(const inotify_event& event)>& each);
    // The watched folder `event` tells of, or nothing: for an overflow (`overflowed` is then
    // set), a folder that isn't watched, and one that went or was renamed (forgotten here: its
    // path no longer names it).
    std::optional<FilePath> folderOf(const inotify_event& event, bool& overflowed);

    qsizetype count() const { return m_watches.size(); }
    bool contains(const FilePath& folder) const { return m_watches.contains(folder); }

private:
    // Forgets the watch `wd`; `kernelDropped` when the kernel already removed it (IN_IGNORED).
    void forget(int wd, bool kernelDropped);

    int m_fd = -1;
    QSocketNotifier* m_notifier = nullptr;
    QHash<int, FilePath> m_folders; // watch descriptor → folder
    QHash<FilePath, int> m_watches;
};

} // namespace orwick

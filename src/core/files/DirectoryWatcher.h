#pragma once
// DirectoryWatcher: tells when anything in one folder changes (created, deleted, renamed,
// written, attributes), or the folder itself goes. inotify on the GUI thread; a folder that
// can't be watched is simply not watched.
//
// The other form watches the names (made, removed, renamed) in many folders through one
// inotify instance — the name index's folders — and says which folder changed. A watched folder
// that goes or is renamed is forgotten (whoever watches it learns that through its parent).

#include "base/FilePath.h"
#include "platform/InotifyFolders.h"

#include <QHash>
#include <QObject>

namespace orwick {

class DirectoryWatcher : public QObject {
    Q_OBJECT
public:
    explicit DirectoryWatcher(const FilePath& folder, QObject* parent = nullptr);
    // Watches no folder yet: add them with watchNames().
    explicit DirectoryWatcher(QObject* parent = nullptr);
    ~DirectoryWatcher() override;

    bool isWatching() const { return m_inotify.isOpen(); }

    // Watches the names in `folder` too; false when the kernel refuses (gone, or its limit).
    bool watchNames(const FilePath& folder);
    bool isWatching(const FilePath& folder) const { return m_inotify.contains(folder); }
    qsizetype watchCount() const { return m_inotify.count(); }

Q_SIGNALS:
    // Emitted at most once per batch of kernel events.
    void changed();
    // Names in a folder added with watchNames() changed; once per folder per batch.
    void folderChanged(const orwick::FilePath& folder);
    // The kernel dropped events: any watched folder may have changed.
    void overflowed();
    // An entry of the one watched folder was renamed away (arrived false) or in (true); the kernel
    // gives both halves of one rename the same cookie, also when they reach different watchers.
    // After changed(), in the kernel's order.
    void itemMoved(quint32 cookie, const orwick::FilePath& path, bool arrived);

private:
    void drain();

    FilePath m_folder; // the one-folder form's folder
    InotifyFolders m_inotify; // the folders of watchNames(); the one-folder form's watch isn't among them
};

} // namespace orwick

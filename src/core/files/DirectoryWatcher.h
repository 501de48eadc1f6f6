#pragma once
// DirectoryWatcher: tells when anything in one folder changes (created, deleted, renamed,
// written, attributes), or the folder itself goes. inotify on the GUI thread; a folder that
// can't be watched is simply not watched.

#include "files/FilePath.h"

#include <QObject>

class QSocketNotifier;

namespace orwick {

class DirectoryWatcher : public QObject {
    Q_OBJECT
public:
    explicit DirectoryWatcher(const FilePath& folder, QObject* parent = nullptr);
    ~DirectoryWatcher() override;

    bool isWatching() const { return m_fd >= 0; }

Q_SIGNALS:
    // Emitted at most once per batch of kernel events.
    void changed();

private:
    void drain();

    int m_fd = -1;
    QSocketNotifier* m_notifier = nullptr;
};

} // namespace orwick

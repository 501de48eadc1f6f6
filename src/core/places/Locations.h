#pragma once
// Locations: what the sidebar's Locations section shows besides This Computer — the mounted
// drives (Drives.h) and the connected servers (ServerMounts.h) with their free space, and how
// many items lie in all the user's Trash folders (AllTrashes.h). One per sidebar model, on the
// GUI thread.
//
// Reading a mount's free space can hang on a network share that went away, so the drives are
// read on a thread of their own: at most one read runs at a time, and a read that has not
// answered within kReadTimeoutMs leaves the last list shown (and marks it stale) instead of
// waiting. refresh() starts a read; the object refreshes itself every kRefreshMs.
//
// Signals: changed() follows every new drive list or Trash count.

#include "places/Place.h"

#include <QObject>
#include <QTimer>
#include <atomic>
#include <memory>

namespace orwick {

class Locations : public QObject {
    Q_OBJECT
public:
    static constexpr int kRefreshMs = 5000;
    static constexpr int kReadTimeoutMs = 3000;
    // Each connected server's free space is waited for this long; then it reads "not answering".
    static constexpr int kServerSpaceLimitMs = 1000;

    explicit Locations(QObject* parent = nullptr);
    ~Locations() override;

    // The drives as rows: name, mount point, free space as trailing text, the used share.
    const QList<Place>& drives() const { return m_drives; }
    int trashCount() const { return m_trashCount; }
    // Whether the last read of the drives took too long and the list may be out of date.
    bool isStale() const { return m_stale; }
    bool hasRead() const { return m_hasRead; }

    void refresh();

    // The drives the latest read of any Locations found, for what lists them without a sidebar
    // of its own (the palette's "Go to" rows): never a read of its own, so never a wait on a
    // mount. Empty before the first read, and again once the Locations that read them is gone,
    // as nothing keeps them up to date then. GUI thread only.
    static QList<Place> lastReadDrives();

    // Items directly in `trash`/files (the home Trash when empty).
    static int countTrashItems(const FilePath& trash = {});

Q_SIGNALS:
    void changed();

private:
    struct Reading;
    QList<Place> m_drives;
    int m_trashCount = 0;
    bool m_stale = false, m_hasRead = false;
    std::shared_ptr<Reading> m_reading; // the read on its way, if any
    QTimer m_refresh;
    QTimer m_timeout;
};

} // namespace orwick

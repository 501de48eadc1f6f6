#include "places/Locations.h"

#include "async/DetachedThread.h"
#include "async/GuiDelivery.h"
#include "base/Formatting.h"
#include "platform/AllTrashes.h"
#include "platform/Drives.h"
#include "platform/XdgPaths.h"
#include "servers/ServerMounts.h"

#include <QPointer>
#include <condition_variable>
#include <mutex>
#include <sys/statvfs.h>

namespace orwick {

struct Locations::Reading {
    std::atomic<bool> abandoned{false};
};

namespace {

struct Space {
    qint64 total = 0;
    qint64 free = 0;
};

// A server's free space, or none when it doesn't answer within kServerSpaceLimitMs: the read
// goes on on its own thread, so one dead server holds up neither the drives nor the others.
std::optional<Space> serverSpace(const FilePath& path)
{
    struct Answer {
        std::mutex lock;
        std::condition_variable ready;
        std::optional<Space> space;
        bool done = false;
    };
    auto answer = std::make_shared<Answer>();
    startDetached([answer, path] {
        struct statvfs st {};
        std::optional<Space> space;
        if (::statvfs(path.c_str(), &st) == 0)
            space = Space{qint64(st.f_blocks) * qint64(st.f_frsize), qint64(st.f_bavail) * qint64(st.f_frsize)};
        std::lock_guard locked(answer->lock);
        answer->space = space;
        answer->done = true;
        answer->ready.notify_all();
    });
    std::unique_lock locked(answer->lock);
    answer->ready.wait_for(locked, std::chrono::milliseconds(Locations::kServerSpaceLimitMs), [&answer] { return answer->done; });
    return answer->space;
}

QList<Place> driveRows()
{
    QList<Place> rows;
    for (const Drive& drive : listDrives()) {
        Place row = Place::at(drive.name, drive.url, drive.isNetwork ? QStringLiteral("network") : drive.isEjectable ? QStringLiteral("externaldrive") : QStringLiteral("internaldrive"));
        row.isEjectable = drive.isEjectable || drive.isNetwork;
        row.trailing = formatByteCount(drive.free) + QStringLiteral(" free");
        row.detail = drive.freeText();
        if (drive.total > 0)
            row.fillRatio = double(drive.total - drive.free) / double(drive.total);
        rows.append(row);
    }
    for (const MountedServer& server : ServerMounts::mounted()) {
        Place row = Place::at(server.address.displayName(), server.localPath, QStringLiteral("network"));
        row.isEjectable = true;
        const auto space = serverSpace(server.localPath);
        row.trailing = !space ? QStringLiteral("not answering") : formatByteCount(space->free) + QStringLiteral(" free");
        row.detail = server.address.toString();
        if (space && space->total > 0)
            row.fillRatio = double(space->total - space->free) / double(space->total);
        rows.append(row);
    }
    return rows;
}

// The latest drive list read, and by whom (lastReadDrives()).
struct LastRead {
    const Locations* reader = nullptr;
    QList<Place> drives;
};
LastRead& lastRead()
{
    static LastRead last;
    return last;
}

} // namespace

Locations::Locations(QObject* parent) : QObject(parent)
{
    m_refresh.setInterval(kRefreshMs);
    connect(&m_refresh, &QTimer::timeout, this, &Locations::refresh);
    m_refresh.start();
    m_timeout.setSingleShot(true);
    m_timeout.setInterval(kReadTimeoutMs);
    connect(&m_timeout, &QTimer::timeout, this, [this] {
        // The read stays on its thread; its answer is dropped and a later refresh starts anew.
        if (m_reading)
            m_reading->abandoned = true;
        m_reading.reset();
        m_stale = true;
        Q_EMIT changed();
    });
    refresh();
}

Locations::~Locations()
{
    if (m_reading)
        m_reading->abandoned = true;
    if (lastRead().reader == this)
        lastRead() = {};
}

QList<Place> Locations::lastReadDrives() { return lastRead().drives; }

int Locations::countTrashItems(const FilePath& trash)
{
    return trash::countItems(trash.isEmpty() ? xdg::homeTrash() : trash);
}

void Locations::refresh()
{
    if (m_reading)
        return; // one read at a time
    auto reading = std::make_shared<Reading>();
    m_reading = reading;
    m_timeout.start();
    QPointer<Locations> self(this);
    startDetached([reading, self] {
        QList<Place> rows = driveRows();
        const int trashCount = trash::countAllItems();
        if (reading->abandoned)
            return;
        deliverToGui(self, [reading, rows = std::move(rows), trashCount](Locations& locations) {
            if (reading->abandoned || locations.m_reading != reading)
                return;
            locations.m_reading.reset();
            locations.m_timeout.stop();
            const bool same = locations.m_hasRead && !locations.m_stale && locations.m_drives == rows && locations.m_trashCount == trashCount;
            locations.m_drives = rows;
            locations.m_trashCount = trashCount;
            locations.m_stale = false;
            locations.m_hasRead = true;
            lastRead() = {&locations, locations.m_drives};
            if (!same)
                Q_EMIT locations.changed();
        });
    });
}

} // namespace orwick

#include "moc_Locations.cpp"

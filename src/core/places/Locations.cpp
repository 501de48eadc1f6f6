#include "places/Locations.h"

#include "files/Formatting.h"
#include "platform/Drives.h"
#include "platform/XdgPaths.h"

#include <QCoreApplication>
#include <QPointer>
#include <dirent.h>
#include <thread>

namespace orwick {

struct Locations::Reading {
    std::atomic<bool> abandoned{false};
};

namespace {

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
    return rows;
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
}

int Locations::countTrashItems(const FilePath& trash)
{
    const FilePath files = (trash.isEmpty() ? xdg::homeTrash() : trash).child(QByteArrayView("files"));
    DIR* dir = ::opendir(files.c_str());
    if (!dir)
        return 0;
    int count = 0;
    while (const dirent* entry = ::readdir(dir))
        if (qstrcmp(entry->d_name, ".") != 0 && qstrcmp(entry->d_name, "..") != 0)
            ++count;
    ::closedir(dir);
    return count;
}

void Locations::refresh()
{
    if (m_reading)
        return; // one read at a time
    auto reading = std::make_shared<Reading>();
    m_reading = reading;
    m_timeout.start();
    QPointer<Locations> self(this);
    std::thread([reading, self] {
        QList<Place> rows = driveRows();
        const int trashCount = countTrashItems();
        if (reading->abandoned)
            return;
        QMetaObject::invokeMethod(QCoreApplication::instance(), [reading, self, rows = std::move(rows), trashCount] {
            if (!self || reading->abandoned || self->m_reading != reading)
                return;
            self->m_reading.reset();
            self->m_timeout.stop();
            const bool same = self->m_hasRead && !self->m_stale && self->m_drives == rows && self->m_trashCount == trashCount;
            self->m_drives = rows;
            self->m_trashCount = trashCount;
            self->m_stale = false;
            self->m_hasRead = true;
            if (!same)
                Q_EMIT self->changed();
        }, Qt::QueuedConnection);
    }).detach();
}

} // namespace orwick

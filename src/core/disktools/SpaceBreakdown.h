#pragma once
// SpaceBreakdown: the drives view of the space tools. Lists the mounted drives (real devices and
// network shares) with free and total space, and measures the places that fill a Linux home
// (caches, apps' data, downloads, Flatpak and Snap apps, language package caches), keeping the
// last measurement in the preferences store under "spaceBreakdown" so it shows again next time.
// drives() and measure() do file-system work: call them off the GUI thread.

#include "async/CancelFlag.h"
#include "files/FilePath.h"

#include <QDateTime>
#include <QJsonObject>
#include <optional>
#include <vector>

namespace orwick {

struct Drive {
    FilePath url;
    QString name;
    qint64 total = 0;
    qint64 free = 0;
    QString format;    // the file system's name: "ext4", "btrfs", "nfs4"…
    bool isStartup = false;
    bool isEjectable = false;
    bool isNetwork = false;

    // "12.3 GB free of 256.1 GB"
    QString freeText() const;
};

namespace SpaceBreakdown {

struct Row {
    FilePath url;
    std::optional<qint64> bytes; // absent until measured
    bool operator==(const Row&) const = default;
};

struct Saved {
    QDateTime at;
    std::vector<Row> rows;
    QJsonObject toJson() const;
    static std::optional<Saved> fromJson(const QJsonObject& json);
    bool operator==(const Saved&) const = default;
};

inline constexpr const char* settingsKey = "spaceBreakdown";
inline constexpr const char* remainderTitle = "System, apps' data and everything else";

// Mounted drives that hold files a user cares about: devices and network shares, not the
// kernel's pseudo file systems, snaps' images or overlays. The startup drive first.
std::vector<Drive> drives();

// The fixed home places, in the order shown; each row unmeasured.
std::vector<Row> homeRows();
// The title a row shows: "Caches (.cache)", "Downloads"…
QString rowTitle(const Row& row);

// Measures every row (all cores); a row that does not exist measures 0. Nothing when cancelled.
std::optional<std::vector<Row>> measure(std::vector<Row> rows, const CancelFlag& cancel);

// What the drive's used space holds beyond the measured rows (never below 0).
qint64 remainder(const Drive& drive, const std::vector<Row>& rows);

void save(const Saved& saved);
std::optional<Saved> load(); // nothing when absent or damaged

} // namespace SpaceBreakdown
} // namespace orwick

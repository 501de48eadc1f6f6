#pragma once
// SpaceBreakdown: the drives view of the space tools. Beside the mounted drives (listDrives()), it
// measures the places that fill a Linux home (caches, apps' data, downloads, Flatpak and Snap
// apps, language package caches), keeping the last measurement in the preferences store under
// "spaceBreakdown" so it shows again next time. measure() reads every file: call it off the GUI
// thread.

#include "base/CancelFlag.h"
#include "base/FilePath.h"
#include "platform/Drives.h"

#include <QDateTime>
#include <QJsonObject>
#include <optional>
#include <vector>

namespace orwick {


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

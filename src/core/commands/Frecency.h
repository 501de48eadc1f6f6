#pragma once
// Frecency: which folders the user visits, how often and how lately. One per process, owned by
// the application and used on the GUI thread only; navigation records visits, the palette reads
// the ranking to weigh folder rows.
//
// The record lives in frecency.json in Orwick's data folder: an object from folder path to
// {"count": visit weight, "lastVisit": ISO 8601 time}. It is read once at construction; a
// missing, damaged or differently shaped file gives an empty record, which the next save
// overwrites. Saves are batched: each change restarts a short delay, and when it ends a snapshot
// of the record is written off the GUI thread, whole and atomically. Snapshots are written in
// the order they were taken, and one still pending when the object goes is written at once.
//
// Signals: saved() follows each snapshot written; saveFailed(message) follows a write that did
// not succeed, with the sentence to show.

#include "files/FilePath.h"

#include <QDateTime>
#include <QHash>
#include <QObject>
#include <QTimer>
#include <memory>
#include <vector>

namespace orwick {

// One remembered folder with its frecency score (visit weight × a weight for its age).
struct FrecentFolder {
    FilePath path;
    double score = 0.0;
};

class Frecency : public QObject {
    Q_OBJECT
public:
    struct Entry {
        double count = 0.0;   // the visit weight
        qint64 lastVisit = 0; // milliseconds since the epoch
        bool operator==(const Entry&) const = default;
    };

    static constexpr double kAgingThreshold = 2000.0; // a larger sum of counts ages the record
    static constexpr double kAgingFactor = 0.9;
    static constexpr double kForgetBelow = 1.0;
    static constexpr int kDefaultSaveDelayMs = 1000;

    // Loads `file` (frecency.json in Orwick's data folder when empty).
    explicit Frecency(const FilePath& file = {}, QObject* parent = nullptr);
    ~Frecency() override;

    const FilePath& fileUrl() const { return m_file; }
    const QHash<FilePath, Entry>& entries() const { return m_entries; }

    // Notes a visit to `folder`: one more visit, dated `now`; ages the record when the counts
    // grow too large; schedules a save.
    void record(const FilePath& folder, const QDateTime& now = QDateTime::currentDateTimeUtc());

    // Every remembered folder that still exists with its score, best first (ties: the latest
    // visit first). Folders that no longer exist are left out and forgotten. Folders on
    // removable and network volumes (/media, /mnt, /run/media, gvfs mounts) are not checked.
    std::vector<FrecentFolder> ranked(const QDateTime& now = QDateTime::currentDateTimeUtc());

    // The weight of a visit made `secondsAgo` seconds ago.
    static double ageWeight(qint64 secondsAgo);

    // The delay that batches saves (tests shorten it).
    void setSaveDelay(int milliseconds) { m_saveTimer.setInterval(milliseconds); }
    bool hasPendingSave() const { return m_saveTimer.isActive(); }

Q_SIGNALS:
    void saved();
    void saveFailed(const QString& message);

private:
    struct Writer;
    void load();
    void scheduleSave();
    void saveNow(bool inBackground);

    FilePath m_file;
    QHash<FilePath, Entry> m_entries;
    QTimer m_saveTimer;
    std::shared_ptr<Writer> m_writer;
    quint64 m_snapshots = 0;
};

} // namespace orwick

#pragma once
// Frecency: which folders the user visits, how often and how lately. One per process, owned by
// the application and used on the GUI thread only; navigation records visits, the palette reads
// the ranking to weigh folder rows.
//
// The record lives in frecency.json in Orwick's data folder, kept through a StoreFile: an object
// from folder path to {"count": visit weight, "lastVisit": ISO 8601 time}. It is read once at
// construction; a missing or differently shaped entry is left out, and a damaged file is set
// aside with a notice and gives an empty record. Saves are batched: each change restarts a short
// delay, and when it ends the changes made since the last save (visits, forgotten folders) are
// applied off the GUI thread to what is on disk then, under the file's lock, so that several
// Orwick processes add up their visits; the merged record becomes this one's. One save runs at a
// time, and changes still unsaved when the object goes are saved at once. A save that fails
// keeps its changes here for the next one; the window hears of it once (StoreNotices).
//
// Signals: saved() follows each save written; saveFailed(message) follows a save that did not
// succeed, with the sentence to show.

#include "base/FilePath.h"
#include "platform/StoreFile.h"

#include <QDateTime>
#include <QHash>
#include <QJsonDocument>
#include <QObject>
#include <QTimer>
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

    // The sound entries of a frecency.json document (anything else in it is ignored), and the
    // document that holds a record.
    static QHash<FilePath, Entry> fromJson(const QJsonDocument& document);
    static QJsonDocument toJson(const QHash<FilePath, Entry>& entries);

    // The delay that batches saves (tests shorten it).
    void setSaveDelay(int milliseconds) { m_saveTimer.setInterval(milliseconds); }
    bool hasPendingSave() const { return m_saveTimer.isActive(); }

    // One change to the record, kept until it is on disk.
    struct Change {
        FilePath folder;
        qint64 at = 0;       // the visit's time, in milliseconds since the epoch
        bool forget = false; // the folder is gone: drop its entry
    };

Q_SIGNALS:
    void saved();
    void saveFailed(const QString& message);

private:
    void load();
    void change(Change change);
    void scheduleSave();
    void saveNow(bool inBackground);

    FilePath m_file;
    StoreFile m_store;
    QHash<FilePath, Entry> m_entries;
    QList<Change> m_unsaved;
    QTimer m_saveTimer;
    bool m_saving = false;
};

} // namespace orwick

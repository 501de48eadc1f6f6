#pragma once
// Shelf: a holding place for files and folders the user gathers from several folders and then
// lands in one go (Copy Shelf Here, Move Shelf Here). It holds paths only, never the files: what
// is on disk changes only when a landing runs through FileOperations.
//
// One per process (shared()), on the GUI thread, shared by every window; orwick-cli changes the
// same file. The shelf lives in shelf.json in Orwick's data folder, kept through a StoreFile:
// {"items": [path, …]}, each path as StoredPath writes it (a name that is not UTF-8 as its file
// URL, so every byte survives). A missing file is an empty shelf; a damaged one is set aside
// with a notice and gives an empty shelf, and the next change writes the file afresh. Entries
// that aren't paths are left out, and a path listed twice is kept once.
//
// Saving: each change is applied here at once and then, off the GUI thread, to what is on disk
// under the file's lock, so that a change made by orwick-cli meanwhile is kept; the merged
// shelf becomes this one's. One save runs at a time; changes still unsaved when the object goes
// are written before the destructor returns. A save that fails keeps its changes for the next.
//
// Other processes: the store watches its file's folder and reads the file again when it changes
// (reload()), while nothing of its own is waiting to be saved.
//
// Signals: itemsChanged() follows every change of items(); saved() follows each write that
// succeeded; saveFailed(message) follows one that didn't, with the sentence to show.

#include "base/FilePath.h"
#include "base/Result.h"
#include "platform/StoreFile.h"

#include <QJsonDocument>
#include <QList>
#include <QObject>
#include <memory>


namespace orwick {

class DirectoryWatcher;

class Shelf : public QObject {
    Q_OBJECT
public:
    // One change, applied the same way here and to what is on disk.
    struct Change {
        enum class Kind { add, remove, clear };
        Kind kind = Kind::add;
        QList<FilePath> items;
    };

    // Loads `file` (shelf.json in Orwick's data folder when empty).
    explicit Shelf(const FilePath& file = {}, QObject* parent = nullptr);
    ~Shelf() override;
    // The process's shelf, made on first use.
    static Shelf& shared();

    // In the order they were added.
    const QList<FilePath>& items() const { return m_items; }
    bool isEmpty() const { return m_items.isEmpty(); }
    qsizetype count() const { return m_items.size(); }
    bool contains(const FilePath& item) const { return m_items.contains(item); }
    const FilePath& file() const { return m_store.path(); }

    // Puts the items that aren't on the shelf yet after the others; returns those.
    QList<FilePath> add(const QList<FilePath>& items);
    void remove(const QList<FilePath>& items);
    void clear();
    // Reads the file again (another process changed it). Nothing while a change of this one
    // waits to be saved: that save merges what is on disk anyway.
    void reload();

    bool isSaving() const { return m_saving; }
    bool hasUnsavedChanges() const { return m_saving || !m_unsaved.isEmpty(); }

    // --- The file, for orwick-cli and the tests
    static StoreFile storeAt(const FilePath& file);
    static FilePath defaultFile();
    static QList<FilePath> apply(QList<FilePath> items, const Change& change);
    static QList<FilePath> fromJson(const QJsonDocument& document);
    static QJsonDocument toJson(const QList<FilePath>& items);
    // Applies `changes` to what is on disk, under the file's lock; returns the shelf written.
    // `before`, when given, gets what was on disk first.
    [[nodiscard]] static Result<QList<FilePath>> update(const StoreFile& store, const QList<Change>& changes,
                                                        QList<FilePath>* before = nullptr);

Q_SIGNALS:
    void itemsChanged();
    void saved();
    void saveFailed(const QString& message);

private:
    void change(Change change);
    void setItems(QList<FilePath> items);
    void startSave();
    void watchFolder();

    // Keeps a write left queued in the pool from landing after the destructor's.
    struct WriteOrder;
    std::shared_ptr<WriteOrder> m_writes;
    quint64 m_lastWrite = 0;

    StoreFile m_store;
    QList<FilePath> m_items;
    QList<Change> m_unsaved;
    QList<Change> m_inFlight; // the batch being written
    bool m_saving = false;
    DirectoryWatcher* m_watcher = nullptr;
};

} // namespace orwick

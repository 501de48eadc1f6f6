#pragma once
// EditSession: one text file being edited — its text as loaded (EditableText: read-only with a
// sentence when it can't be saved byte for byte), whether the editor holds changes, and the
// version of the file on disk the text came from (size, modification time, inode, a hash of
// the bytes), so that another program's change is noticed while editing and a save never
// overwrites it unasked.
//
// Saving goes through the file operations engine (FileOperations::rewriteFile, the undo step
// "Save" on the window's stack): atomic, undoable as one step. The engine's edit checks that
// the disk still holds the bytes the text came from and refuses otherwise, so a change that
// lands between the check here and the write is caught too. overwrite() ("Keep Mine") writes
// over whatever the disk holds; the other program's version is then what undo gives back.
//
// The disk is checked when the file's folder changes (inotify), when the engine says it
// rewrote the file (an undo of a save, a task ticked elsewhere), after every save, and before
// every save. The first three look in the background: a stat on the GUI thread, and when the
// file's stamp moved, the read and hash (up to 16 MB) on the thread pool, its answer dropped
// when a newer look, a save or a load came first. check() (before a save) looks at once.
//
// Signals: changedOnDisk() follows each check that finds a version of the file (or its
// absence) that is neither the one the text came from nor the one being saved, once per
// version; saveFinished(ok) follows every save() and overwrite() that reached the engine or
// was refused (with refusal(), the sentence, set when not ok). Lives on the GUI thread.

#include "async/Background.h"
#include "base/FilePath.h"
#include "editing/EditableText.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <functional>

class QUndoStack;

namespace orwick {

class DirectoryWatcher;
class FileOperations;

class EditSession : public QObject {
    Q_OBJECT
public:
    EditSession(const FilePath& file, FileOperations& operations, QUndoStack* undo, QObject* parent = nullptr);
    ~EditSession() override;

    // Reads the file (again): a failure sentence when it can't be edited at all (gone, not a
    // regular file, not text, too large). Afterwards the disk counts as unchanged.
    [[nodiscard]] Status load();

    const FilePath& file() const { return m_file; }
    const editing::EditableText& loaded() const { return m_loaded; }
    bool isReadOnly() const { return !m_loaded.readOnlyReason.isEmpty(); }

    // Whether the editor holds text that differs from the disk's (the editor says so).
    bool isModified() const { return m_modified; }
    void setModified(bool modified) { m_modified = modified; }

    enum class Disk { same, changed, gone };
    // What the last check found; check() looks again now.
    Disk disk() const { return m_disk; }
    Disk check();
    // The offer's sentence: "“note.md” was changed by another program." (or deleted or moved).
    QString changeText() const;

    // Saves `text`: refused when the file is read-only or the disk changed since the text came
    // from it; nothing written when the bytes are the disk's already. On success the saved
    // text is what the disk holds.
    void save(const QString& text);
    // "Keep Mine": writes `text` whatever the disk holds now; makes the file again when it went.
    void overwrite(const QString& text);
    bool isSaving() const { return m_saving; }
    const QString& refusal() const { return m_refusal; }

Q_SIGNALS:
    void changedOnDisk();
    void saveFinished(bool ok);

private:
    struct Version {
        qint64 size = -1;
        qint64 modifiedNs = 0;
        quint64 inode = 0;
        quint64 device = 0;
        QByteArray hash;
        bool operator==(const Version&) const = default;
        bool sameStamp(const Version& other) const
        {
            return size == other.size && modifiedNs == other.modifiedNs && inode == other.inode && device == other.device;
        }
    };
    // The file's version now, hashing its bytes only when its stamp differs from `known`;
    // nothing when it is gone.
    std::optional<Version> versionNow(const Version& known) const { return versionOf(m_file, known); }
    static std::optional<Version> versionOf(const FilePath& file, const Version& known);
    // What a look at the disk found, compared with the text's version; emits changedOnDisk().
    Disk apply(const std::optional<Version>& now);
    void checkInBackground();
    void write(const QByteArray& bytes, bool overwriting);
    void finishSave(bool ok, const QByteArray& hash, const QString& refusal);
    void refuse(const QString& sentence);

    FilePath m_file;
    FileOperations& m_operations;
    QPointer<QUndoStack> m_undo;
    editing::EditableText m_loaded;
    Version m_version;          // what the text came from, or what was last saved
    QByteArray m_savingHash;    // the bytes on their way to the disk
    QByteArray m_reportedHash;  // the last version changedOnDisk() told of ("gone" for absence)
    Disk m_disk = Disk::same;
    bool m_modified = false;
    bool m_saving = false;
    QString m_refusal;
    DirectoryWatcher* m_watcher = nullptr;
    QTimer m_settle; // folder events come in bursts: one check after them
    TaskSlot m_checking; // the background look at the disk
};

} // namespace orwick

#pragma once
// FileProperties: the one shared store of typed file properties and of every folder's database
// settings. Lives on the GUI thread; views read it and change it through it.
//
// load() reads the properties of a listing's items on a background task (at most the first
// 16,384 bytes of each note), one running load per folder; a newer load of the same folder
// cancels the older, and a cancelled load publishes nothing. Changes of files (set, rename,
// remove, renameOption, deleteOption) go to the notes' front matter or to the properties
// attribute of other files and folders through the file operations engine: one job off this
// thread (with progress when long) and one undo step on the stack passed in, which holds the
// folder's settings as they were, too. Their failures, toasts and undo refusals are the engine's
// (a note that changed on disk since it was read, isn't UTF-8, is read-only or huge is counted
// as not changed). The values of rewritten files are read again when the engine says so
// (contentsChanged), undo and redo included. The changes are built in PropertyChanges.cpp;
// option moves and colours touch only the folder's settings (a FolderColumnsCommand step).
// The GUI thread asks nothing of the disk for files a load or a reading saw (it remembers which
// are folders); only a file never read is read on the spot, once.
//
// Signals: valuesChanged() follows every change of values (revision() was bumped; a reading that
// found nothing new bumps revision() without it);
// columnsChanged(folder) follows every change of a folder's settings (already saved);
// writeFailed(message) reports settings that could not be saved.

#include "async/Background.h"
#include "files/FileItem.h"
#include "notes/ColumnsFile.h"
#include "notes/NoteFile.h"

#include <QObject>
#include <QPointer>
#include <memory>

class QUndoStack;

namespace orwick {

class FileOperations;

class FileProperties : public QObject {
    Q_OBJECT
public:
    // Reads the folder settings from `columnsFile` (columns.json in Orwick's data folder); files
    // are changed through `operations` (the shared engine when absent).
    explicit FileProperties(QObject* parent = nullptr, FilePath columnsFile = ColumnsFile::location(),
                            FileOperations* operations = nullptr);
    ~FileProperties() override;

    // Properties by file; only files with at least one property have an entry.
    const QHash<FilePath, PropertyMap>& values() const { return m_values; }
    std::optional<PropertyValue> value(const FilePath& path, const QString& key) const;
    int revision() const { return m_revision; }

    void load(const FileItems& items);
    bool isLoading() const;
    // Nothing under way: no load, no change of files, no reading after one.
    bool isSettled() const;
    // Stops the running load of a folder (a pane left it); what it read is not published.
    void cancelLoad(const FilePath& folder);
    // Puts loaded results in place (load() does this on arrival).
    void apply(const QList<notefile::Loaded>& loaded);

    // Each change below returns a refusal at once ("A property needs a name.") or starts its job.
    // Sets `key` on every path (removes it when `value` is absent): one undo step "Set key".
    Status set(const QString& key, const std::optional<PropertyValue>& value, const QList<FilePath>& paths,
               QUndoStack* undo = nullptr);
    // As set(), with the folder's settings becoming `columnsAfter` in the same undo step (a board
    // keeps the lanes a moved card leaves, FolderColumns as BoardView::keepingLanes gives them);
    // the settings stay as they are when no file needs the change.
    Status set(const QString& key, const std::optional<PropertyValue>& value, const QList<FilePath>& paths,
               const FilePath& folder, const FolderColumns& columnsAfter, QUndoStack* undo = nullptr);
    // Renames a key on every item of the folder that has it, and in the folder's settings.
    Status rename(const QString& key, const QString& newKey, const FilePath& folder, const FileItems& items,
                  QUndoStack* undo = nullptr);
    // Removes a key from every item of the folder that has it, and from the folder's settings:
    // one undo step "Delete key".
    Status remove(const QString& key, const FilePath& folder, const FileItems& items, QUndoStack* undo = nullptr);
    Status renameOption(const QString& key, const QString& from, const QString& to, const FilePath& folder,
                        const FileItems& items, QUndoStack* undo = nullptr);
    Status deleteOption(const QString& option, const QString& key, const FilePath& folder, const FileItems& items,
                        QUndoStack* undo = nullptr);
    // Moves an option before `before` (to the end when absent) in the folder's option order:
    // one undo step "Move option".
    void moveOption(const QString& option, const QString& key, const std::optional<QString>& before,
                    const FilePath& folder, const FileItems& items, QUndoStack* undo = nullptr);
    // Gives an option a colour index (none takes its colour away): one undo step "Color option".
    void setColor(std::optional<int> index, const QString& option, const QString& key, const FilePath& folder,
                  QUndoStack* undo = nullptr);

    // The folder's settings, or empty defaults.
    FolderColumns columns(const FilePath& folder) const;
    // Replaces and saves a folder's settings (shown columns, widths, filters, layout…).
    Status setColumns(const FilePath& folder, const FolderColumns& columns);

    PropertyType type(const QString& key, const FilePath& folder, const FileItems& items) const;
    QStringList options(const QString& key, const FilePath& folder, const FileItems& items) const;
    QList<PropertyColumn> shownColumns(const FilePath& folder, const FileItems& items) const;
    // Every key the items carry, sorted.
    QStringList keys(const FileItems& items) const;

    // The items that pass every filter of the folder, in their order.
    FileItems filtered(const FileItems& items, const FilePath& folder) const;
    // Sort values of one key for the arrangement, as a snapshot that is safe on any thread.
    std::function<std::optional<SortValue>(const FilePath&)> sortValues(const QString& key, PropertyType type) const;

    // Puts a folder's settings back as they were (undo), saving them.
    void restoreColumns(const FilePath& folder, const std::optional<FolderColumns>& columns);

Q_SIGNALS:
    void valuesChanged();
    void columnsChanged(const FilePath& folder);
    void writeFailed(const QString& message);

private:
    // One file's changes.
    struct FileEdit {
        FilePath path;
        QList<notefile::Change> changes;
    };
    // The properties of a file as last read; a file never read is read now (once).
    PropertyMap currentProperties(const FilePath& path);
    // Puts what a reading found in place and remembers which of the files are folders.
    void applyRead(const QList<notefile::Loaded>& loaded, const QList<notefile::Target>& targets);
    // Whether a file is a folder: as its last reading found, else asked of the disk.
    bool isFolder(const FilePath& path) const;
    // Edits that set `key` on the paths that don't have that value already.
    QList<FileEdit> settingEdits(const QString& key, const std::optional<PropertyValue>& value, const QList<FilePath>& paths);
    // Edits that rename an option of `key` (drop it when `replacement` is absent) in every item.
    QList<FileEdit> optionEdits(const QString& key, const QString& option, const std::optional<QString>& replacement,
                                const FileItems& items);
    // Hands the edits to the engine as one job and undo step, with the folder's settings as they
    // become (applied now); `texts.done` starts the toast.
    Status commit(const QString& actionName, const QString& verb, const QList<FileEdit>& edits, const FilePath& folder,
                  const std::optional<FolderColumns>& columnsAfter, QUndoStack* undo);
    // Reads the files again after the engine rewrote them.
    void refresh(const QList<FilePath>& files);
    void saveColumns();
    void bump();

    FilePath m_columnsPath;
    ColumnsFile m_columns;
    QPointer<FileOperations> m_operations;
    QHash<FilePath, PropertyMap> m_values;
    QHash<FilePath, notefile::Fingerprint> m_versions;   // notes as last read
    QHash<FilePath, bool> m_folders;                     // every file read, and whether it is a folder
    QHash<FilePath, int> m_changing;                     // files in running jobs of this store
    QHash<FilePath, quint64> m_writtenAt;                // write serial of each rewritten file
    quint64 m_writeSerial = 0;
    QHash<FilePath, std::shared_ptr<TaskSlot>> m_loads;  // one per folder
    // The last shownColumns() answer, kept while the folder's settings, the items (the same list)
    // and the values (the revision) it was made of stay: a table asks again after each change.
    struct ShownColumns {
        FilePath folder;
        FolderColumns settings;
        FileItems items; // held, so that its buffer is not reused by another list
        int revision = -1;
        QList<PropertyColumn> columns;
    };
    mutable std::optional<ShownColumns> m_shown;
    int m_jobs = 0;                                      // jobs started here and not yet ended
    int m_refreshes = 0;                                 // readings after a rewrite under way
    int m_revision = 0;
};


} // namespace orwick

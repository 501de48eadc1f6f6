#pragma once
// FileOperations: the one place that changes files on disk for the user — copy, move,
// duplicate, move to Trash and put back, rename, new folder, file and note, compress, extract,
// tidy up, symbolic links, tags, and rewrites of files' contents or attributes (note
// properties, tasks). Nothing else in the core writes a user's file (OneWriterTest keeps it so).
//
// Every operation runs its file work on a background task as a FileJob (listed in jobs() until
// it ends, progress by bytes), then on the interface thread: updates the trash log, emits
// itemsMoved() for what was moved or renamed, pushes exactly one FileOperationCommand on the
// given undo stack when anything changed, and either emits announced() with the toast, when all
// went well, or hands reportErrors the whole outcome (every failure, the items skipped, a cancel).
// Nothing throws; an item that vanished before its turn is skipped and counted; a cancelled job
// keeps what it finished and its undo step covers it.
// What an operation made (a copy or duplicate, a new file, folder or note, an archive or what
// came out of one) goes to the Trash on undo only while it is as it was made (MadeState.h): one
// the user wrote into, or a folder they filled, since is left where it is and the report says so
// ("Couldn’t move “a.txt” to the Trash: it was changed after it was made, so it was left as it
// is."); redo then leaves it be.
// Lives on the interface thread; all members must be called there.

#include "base/CancelFlag.h"
#include "fileops/FileChange.h"
#include "fileops/FileJob.h"
#include "fileops/OperationOutcome.h"
#include "fileops/TrashLog.h"
#include "fileops/UniqueName.h"

#include <QObject>
#include <QPointer>
#include <QThreadPool>
#include <QTimer>
#include <QUndoStack>
#include <functional>

namespace orwick {

class FileOperations : public QObject {
    Q_OBJECT
public:
    enum class Mode { copy, move };
    using Move = FileMove;
    enum class ConflictChoice { replace, keepBoth, skip, cancel };
    struct ConflictQuestion {
        QString title;   // "“a.txt” is already in “Docs”" / "3 items are already in “Docs”"
        QString message; // "Replacing moves the ones there now to the Trash."
        QList<Move> collisions;
    };
    using ConflictAnswer = std::function<void(ConflictChoice)>;
    // Shows the question and calls the answer once, now or later, on the interface thread.
    using ConflictResolver = std::function<void(const ConflictQuestion&, ConflictAnswer)>;
    using Created = std::function<void(const FilePath&)>;
    // Called once a job's results were applied, with the items it acted on in full.
    using Finished = std::function<void(const QList<FilePath>& done)>;
    // Called once a job's results were applied, and again after each undo and redo of its step,
    // with the moves that run made, in order (what itemsMoved() carries): the items that really
    // left their places and where they landed — back where they were, on undo. An item skipped,
    // failed or not reached is not among them. For callers that keep paths of their own.
    using Moved = std::function<void(const QList<Move>& moves)>;

    explicit FileOperations(QObject* parent = nullptr);
    ~FileOperations() override;
    // The application's one instance.
    static FileOperations& shared();

    const QList<FileJob>& jobs() const { return m_jobs; }
    bool isIdle() const { return m_jobs.isEmpty() && m_pendingReplays == 0; }
    void cancelJob(quint64 id);

    // Without a resolver, collisions keep both.
    void setResolveConflicts(ConflictResolver resolver) { m_resolveConflicts = std::move(resolver); }
    // Gets every operation that did not go entirely as asked — failures (all of them), items
    // that were gone, a cancel after something was done — and every refused request (its one
    // sentence as the outcome's only error). Without a reporter, these are only logged.
    using Reporter = std::function<void(const OperationOutcome&)>;
    void setReportErrors(Reporter report) { m_reportErrors = std::move(report); }
    // One window's answers: the conflict questions, reports and toasts of the jobs started with
    // `undo` (that window's undo stack; their undo and redo carry it too) go to these instead of
    // the shared resolver and reporter, so each window hears only about its own jobs.
    // announced() is emitted for every job all the same. Dropped when `owner` goes.
    struct WindowHandlers {
        ConflictResolver resolveConflicts;
        Reporter reportErrors;
        std::function<void(const Toast&)> announce;
    };
    void setWindowHandlers(QUndoStack* undo, QObject* owner, WindowHandlers handlers);
    TrashLog& trashLog() { return m_trashLog; }

    // `finished` gets where the items landed (a kept-both copy under its new name); skipped and
    // failed items are not among them. `moved` follows a move's items (see Moved); a copy moves
    // nothing.
    void transfer(const QList<FilePath>& items, const FilePath& folder, Mode mode, QUndoStack* undo, Finished finished = {},
                  Moved moved = {});
    // The worker under transfer: the moves as planned, nothing asked.
    void copy(const QList<Move>& moves, const QString& actionName, bool removingSources, QUndoStack* undo,
              const QList<FilePath>& replacing = {}, Finished finished = {}, Moved moved = {});
    void duplicate(const QList<FilePath>& items, QUndoStack* undo);
    // Brings two folders into line as one job and one undo step `actionName`: each copy is made
    // (a folder with all it holds); where its destination exists it is first moved to the Trash,
    // but only when `replacing` names it — anything else found there is left and the copy
    // skipped. Then each of `toTrash` goes to the Trash. Items gone meanwhile are skipped and
    // counted. `finished` gets the copies made and the items trashed.
    void sync(const QList<Move>& copies, const QList<FilePath>& replacing, const QList<FilePath>& toTrash,
              const QString& actionName, QUndoStack* undo, Finished finished = {});
    // `finished` gets the items that went to the Trash; the others are still where they were.
    void trash(const QList<FilePath>& items, const QString& actionName, QUndoStack* undo, bool announce = true,
               Finished finished = {});
    // Items lying in the Trash go back where they came from (the trash log, else their .trashinfo).
    void putBack(const QList<FilePath>& itemsInTrash, QUndoStack* undo);
    // Deletes `items` (lying in a Trash folder, as TrashContents found them) for good, with
    // their .trashinfo files and trash-log entries. There is no undo step — the window asks
    // first — and the toast has no Undo. Progress counts items; an item that can't be deleted
    // whole is reported by name and what is left of it stays in the Trash. `window` is the undo
    // stack whose window hears of the outcome; `finished` gets the items deleted.
    void emptyTrash(const QList<FilePath>& items, QUndoStack* window, Finished finished = {});
    void rename(const FilePath& item, const QByteArray& newName, QUndoStack* undo);
    // Several renames at once as one job and one undo step `actionName`, in two phases: an item
    // whose new name is free takes it at once, the others (new name still held by another item,
    // or a change of letter case only) wait under temporary names in their folder until the
    // first phase has freed the names, so names may swap, go round in cycles or change only
    // their letter case. An item that fails keeps its old name and the others go on; undo
    // covers the renames that were made. `finished` gets the items renamed and, for each that
    // wasn't, the reason in a few words ("It's no longer there").
    using RenamesFinished = std::function<void(const QList<FilePath>& done, const QHash<FilePath, QString>& failed)>;
    void renameMany(const QList<Move>& renames, const QString& actionName, QUndoStack* undo,
                    RenamesFinished finished = {});
    void newFolder(const FilePath& folder, QUndoStack* undo, Created created = {});
    void newFile(const FilePath& folder, const QByteArray& name, QUndoStack* undo, Created created = {});
    void compress(const QList<FilePath>& items, QUndoStack* undo);
    void extract(const QList<FilePath>& archives, QUndoStack* undo);
    void tidyUp(const FilePath& folder, QUndoStack* undo);
    // A symbolic link in `folder` to each item (its absolute path), named as the item, made
    // unique without the copy suffix ("name 2"). Undo removes exactly the links it made, and
    // only while each is still the link it made.
    void makeLinks(const QList<FilePath>& items, const FilePath& folder, QUndoStack* undo);
    // Adds one tag to each item, or removes it, keeping every other tag each file has (whoever
    // wrote it): one job and one undo step ("Add Red Tag", "Remove Red Tag") whose undo writes
    // each file's attribute back exactly as it was, or removes it where there was none. A file
    // whose disk refuses tags, or that can't be changed, is a failure with its reason; a file that
    // already was as asked counts as done and changes nothing.
    enum class TagChange { add, remove };
    void changeTag(const QList<FilePath>& items, const QString& tag, TagChange change, QUndoStack* undo);
    // Sets one item's permission bits, owner and group (FileAccess) as one job and one undo step
    // ("Change Permissions", or "Change Owner" when the owner or group changes) whose undo puts
    // back the exact old values. A refusal (not the owner, a read-only disk) is a failure with
    // its reason and changes nothing.
    void changeAccess(const FilePath& item, const FileAccess& wanted, QUndoStack* undo);
    // Rewrites one file's contents by `edit` (given what is on disk; see ChangeRunner::rewrite) as
    // one job and one undo step named `actionName` ("Complete Task"), with `toast` when it went
    // well. Undo puts the old contents back only while the file still holds the new ones.
    void rewriteFile(const FilePath& file, ChangeRunner::Rewrite edit, const QString& actionName, const QString& toast,
                     QUndoStack* undo, Finished finished = {});
    // One file of a batch rewrite: its contents, or with `attribute` named that extended
    // attribute (see ChangeRunner::rewriteAttribute), become what `edit` makes of them.
    struct Rewrite {
        FilePath file;
        ChangeRunner::Rewrite edit;
        QByteArray attribute = {};
    };
    // Words of a batch rewrite: the job's title ("Renaming status in 500 items"), the undo step's
    // name ("Rename status"), and the toast's start before the count or name ("Renamed status in").
    struct RewriteTexts {
        QString title;
        QString actionName;
        QString done;
        QString icon = QStringLiteral("pencil");
        QString counted = {}; // "note": the toast counts "1 note", "3 notes" instead of naming one file
    };
    // Rewrites many files as one job and one undo step, the way rewriteFile does one (see
    // ChangeRunner::rewrite: a file that is gone is skipped; one that isn't a regular file, is
    // larger than kLargestRewrite, or is read-only is a failure with its reason, as is every
    // refusal of its `edit`); each is counted in the report and never in the toast's count. `alongside`, when given, runs on this thread
    // with every undo (false) and redo (true) of the step (the caller's own settings that go
    // with the files), and makes the step even when no file needed changing.
    void rewriteFiles(QList<Rewrite> rewrites, const RewriteTexts& texts, QUndoStack* undo, Finished finished = {},
                      std::function<void(bool forward)> alongside = {});
    static constexpr qint64 kLargestRewrite = 16 << 20;
    // Makes the file `path` with `contents` (and the folders missing above it), as one job and one
    // undo step `actionName` ("New Note") whose undo moves what it made to the Trash. A file already
    // there is left as it is and still handed to `created`; nothing else is made then.
    void createFile(const FilePath& path, const QByteArray& contents, const QString& actionName, QUndoStack* undo,
                    Created created = {});
    // Lets another program put files back as they once were (a git discard) with a way back:
    // each item goes to the Trash first — with `copyBack`, a copy of it comes straight back to
    // its place for the program to change — then `replace` runs on the worker with the items it
    // may now change and answers its failure sentences. Whatever stands at an item's place
    // afterwards is recorded as made, so the one undo step `texts.actionName` moves that to the
    // Trash and puts the item back. An item that can't go to the Trash is left alone, with
    // keepFailure(item) as its sentence; an item that isn't there (deleted) goes to `replace` as
    // it is. `finished` gets the items handed to `replace`.
    using Replace = std::function<QStringList(const QList<FilePath>& items)>;
    void keepAndReplace(const QList<FilePath>& items, bool copyBack, const RewriteTexts& texts,
                        std::function<QString(const FilePath&)> keepFailure, Replace replace, QUndoStack* undo,
                        Finished finished = {});
    // Batch transforms (the picture tools). Words of one: the verb in messages ("Convert to
    // WebP": "Couldn’t do “Convert to WebP”"), the job's title ("Converting 200 pictures"), the
    // undo step's name, the toast's icon.
    struct TransformTexts {
        QString verb;
        QString title;
        QString actionName;
        QString icon = QStringLiteral("photo");
        QString done = {}; // replaceInPlace's toast before the count or name ("Removed metadata from"); empty: "Changed"
    };
    // One file a transform makes: where it would like to be (the engine takes the first free name
    // from there, without the copy suffix: "photo 2.webp") and its bytes.
    struct MadeFile {
        FilePath wanted;
        QByteArray contents;
    };
    // The batch transforms run as one job (progress counts sources) and one undo step
    // `texts.actionName`. The transform runs on workers, one source per core at once
    // (setTransformWorkers), so it must be safe to run so; it polls `cancel` between steps and,
    // when cancelled, may answer an empty sentence. It answers what it made of one source, or the
    // sentence why it couldn't, which the report gives as "Couldn’t do “VERB” on “NAME”: …" (a
    // sentence that names the source itself, "“a.png” can’t be read: …", is given as it is). Few
    // results are held at once, whatever the number of sources. A source that is gone by its turn
    // is skipped and counted; a cancel stops before the next source, keeps what was done and the
    // undo step covers it; a failed or skipped source is never counted done (`finished` gets the
    // sources done). Several failures read N + " files didn’t work: " + the first, and the
    // outcome names every one. Nothing assumes a window: orwick-cli runs them (EngineRun).
    //
    // makeFiles: each made file is written under a hidden temporary name in its folder, synced,
    // then renamed to the first free name from `wanted` — decided at that moment, in the order of
    // the sources, never replacing anything. Toast "Created N files" ("Created a.webp" for one).
    // Undo moves each made file to the Trash while it still holds what was made (one changed
    // since is left, and said); redo takes them back.
    using MakeTransform = std::function<Result<QList<MadeFile>>(const FilePath& source, const CancelFlag& cancel)>;
    void makeFiles(const QList<FilePath>& sources, const TransformTexts& texts, MakeTransform transform,
                   QUndoStack* undo, Finished finished = {});
    // replaceInPlace: each file (a link is followed) gets the bytes its transform answers and stays
    // the same file — mode, owner and group, extended attributes, and its other hard links (a file
    // with several names is written through its own inode, room reserved first; others through a
    // temporary file renamed over it, atomically). Its old version goes to the Trash as that file,
    // so the old bytes survive a crash; undo puts each file's exact old bytes and attributes back
    // while it still holds what the transform wrote (one changed since is left, and said), and
    // redo puts the new ones back again. A file that is read-only, on a read-only disk, in a
    // folder where nothing can be made, or whose old version can't go to the Trash is refused with
    // its reason before anything is written (a read-only one before its transform runs); a full
    // disk leaves the file as it was. Bytes that are the file's own change nothing. Toast
    // `texts.done` ("Changed" when empty) + " N files" or the name.
    using ReplaceTransform = std::function<Result<QByteArray>(const FilePath& file, const CancelFlag& cancel)>;
    void replaceInPlace(const QList<FilePath>& files, const TransformTexts& texts, ReplaceTransform transform,
                        QUndoStack* undo, Finished finished = {});
    // Items made by other code; undo moves them to the Trash while they are as they are now (their
    // state is taken here, on the calling thread: a folder is walked).
    void registerCreated(const QList<FilePath>& items, const QString& actionName, QUndoStack* undo);

    static FilePath uniqueURL(const FilePath& wanted, bool copySuffix) { return orwick::uniqueURL(wanted, copySuffix); }
    static bool isSameVolume(const FilePath& a, const FilePath& b) { return orwick::isSameVolume(a, b); }

    // Used by FileOperationCommand: runs the changes' inverse (or the changes again) as a job.
    // `window` is the undo stack that holds the step, whose window hears of failures; `moved`
    // gets the moves the run made.
    void replay(std::shared_ptr<std::vector<FileChange>> changes, bool forward, const QString& actionName,
                QUndoStack* window = nullptr, Moved moved = {});

    // Caps extraction for tests and callers with their own limit; 0 keeps the default rule.
    void setExtractionLimit(qint64 bytes) { m_extractionLimit = bytes; }
    // How many sources the batch transforms work on at once; 0 keeps one per core.
    void setTransformWorkers(int count) { m_transformWorkers = count; }

Q_SIGNALS:
    void jobsChanged();                            // a job started or ended
    void progressChanged();                        // about ten times a second while jobs run
    void announced(const orwick::Toast& toast);    // an operation finished well
    void itemsMoved(const QList<orwick::FileMove>& moves); // after every move or rename, undo included
    // After a move, transfer or rename that was asked for (not an undo or redo) moved items,
    // once its step is on `undo`: what the link updater follows.
    void itemsRelocated(const QList<orwick::FileMove>& moves, QUndoStack* undo);
    void operationFinished();                      // after the results of any job were applied
    // After every job that changed anything on disk, undo and redo included, before
    // operationFinished(): the paths that appeared, went or were replaced (pathsTouched()).
    void pathsChanged(const QList<orwick::FilePath>& paths);
    void tagsChanged(const QList<orwick::FilePath>& items); // after tags were written, undo and redo included
    // After files' contents or attributes were rewritten (rewriteFile, rewriteFiles), undo and
    // redo included, before operationFinished(): the files, whether or not every one went well.
    void contentsChanged(const QList<orwick::FilePath>& files);

public:
    // What a worker hands back besides its changes.
    struct JobOutput {
        ChangeReport report;
        QString toast;       // empty: no toast
        QString icon;
        FilePath made;       // the item made, for `Created` callbacks
        QList<FilePath> done; // the items acted on in full, for `Finished` callbacks and the counts
        bool irreversible = false; // changed the disk for good (emptying the Trash): a toast, no undo step
        QList<FilePath> touched; // paths changed besides the report's changes (an undo's or redo's)
        QList<FilePath> rewritten; // files rewritten besides the report's changes (an undo's or redo's)
        QString failures;    // the job's own summary of its failures (OperationOutcome::failuresText)
    };
    using Work = std::function<void(ChangeRunner&, JobOutput&)>;

private:
    struct JobRequest {
        QString title;
        QString actionName;
        QPointer<QUndoStack> undo;
        QPointer<QUndoStack> window; // whose handlers hear of the job; the undo stack when not set
        Work work;
        Created created;
        Finished finished;
        Moved moved; // also goes into the undo step, for its undo and redo
        bool announce = true;
        QThreadPool* pool = nullptr;
        std::function<void()> after; // runs last, after the results were applied
        std::function<void(bool forward)> alongside; // goes into the undo step (rewriteFiles)
    };
    void run(JobRequest request);
    void finish(quint64 id, JobOutput output);
    void report(const QString& message, QUndoStack* window);
    void report(const OperationOutcome& outcome, QUndoStack* window);
    void ask(const QList<Move>& collisions, const FilePath& folder, ConflictAnswer answer, QUndoStack* window);
    const WindowHandlers* handlersOf(QUndoStack* window) const;

    QList<FileJob> m_jobs;
    QHash<quint64, JobRequest> m_requests; // by job id, kept on this thread while the worker runs
    quint64 m_nextId = 1;
    int m_pendingReplays = 0;
    QTimer m_ticker;
    QThreadPool m_replayPool; // undo and redo run one at a time, in order
    ConflictResolver m_resolveConflicts;
    Reporter m_reportErrors;
    struct WindowEntry {
        QObject* owner; // compared only, once it is gone
        WindowHandlers handlers;
    };
    QHash<QUndoStack*, WindowEntry> m_windowHandlers;
    TrashLog m_trashLog;
    qint64 m_extractionLimit = 0;
    int m_transformWorkers = 0;
};

} // namespace orwick

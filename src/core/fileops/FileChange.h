#pragma once
// FileChange: one recorded change on disk, enough to undo and redo it exactly; ChangeRunner:
// the worker that makes changes (and their inverses) and reports what it did.
//
// An operation's undo step holds its changes in the order they were made. Undo runs their
// inverses backwards, redo runs them forwards again; both update the records (a copy undone
// waits in the Trash, and redo takes it back from there).

#include "base/FilePath.h"
#include "base/Result.h"
#include "fileops/CopyProgress.h"
#include "fileops/FileAccess.h"

#include <QList>
#include <functional>
#include <optional>
#include <QStringList>
#include <utility>
#include <vector>

namespace orwick {

struct CopyResult;

// One planned or made transfer of an item to its destination path.
struct FileMove {
    FilePath from;
    FilePath to;
    bool operator==(const FileMove&) const = default;
};

struct FileChange {
    enum class Kind {
        moved,      // from → to, by rename or across volumes; undo moves back
        copied,     // to is a new copy of from; undo puts it in the Trash while it is as made (madeStamp)
        created,    // to was made (new folder or file, archive, extracted item); undo puts it in the Trash
                    // while it is as made (madeStamp, digestAfter: see MadeState.h), else leaves it and says so
        madeFolder, // to was made as a holder (tidy up); undo removes it when empty
        trashed,    // from was moved to the Trash, where it lies at to; undo puts it back
        restored,   // from (in the Trash) was put back at to; undo trashes it again
        linked,     // to was made as a symbolic link to from; undo removes it while it is still that link
        tagged,     // from's tags attribute went from attributeBefore to attributeAfter; undo writes it back
        rewritten,  // from's bytes went from contentsBefore to contentsAfter; undo puts them back while it still holds the new ones
        attributeRewritten, // from's extended attribute `attribute` went from attributeBefore to attributeAfter; undo
                            // puts it back while it still holds the new value
        accessChanged, // from's mode, owner and group went from accessBefore to accessAfter; undo puts back
                       // each of them that still holds the new value
        replaced,   // from was rewritten whole by a transform; the version not in place lies in the Trash at
                    // to (the old one, after undo the new one); undo and redo swap them while from still
                    // holds the version they expect (digestAfter, digestBefore)
    };
    Kind kind = Kind::moved;
    FilePath from;
    FilePath to;
    FilePath parked; // copied/created while undone: where it waits in the Trash
    // tagged, attributeRewritten: the attribute's value before and after the change (nothing: no attribute).
    QByteArray attribute = {}; // attributeRewritten: the attribute's name
    std::optional<QByteArray> attributeBefore = {};
    std::optional<QByteArray> attributeAfter = {};
    // rewritten: the file's whole contents before and after.
    QByteArray contentsBefore = {};
    QByteArray contentsAfter = {};
    // accessChanged: the file's access before and after.
    FileAccess accessBefore = {};
    FileAccess accessAfter = {};
    // replaced: digests (fileversions::digestOf) of the file's contents before and after. created,
    // copied: digestAfter is the made file's contents, when read (madestate::State::digest).
    QByteArray digestBefore = {};
    QByteArray digestAfter = {};
    // created, copied: the item's madestate stamp when it was made (or last taken back by redo).
    // Undo moves it to the Trash only while it is unchanged by that stamp or digestAfter; with
    // neither, always.
    QByteArray madeStamp = {};
    // created, copied: undo left the item where it was made (changed since, or the Trash
    // refused it), so redo has nothing to bring back.
    bool leftByUndo = false;
};

// Notes in `change` how its made item (`to`) looks now (madeStamp, digestAfter), for undo to
// compare with; both are cleared when it can't be read.
void rememberMadeState(FileChange& change);

// Every path the changes made, removed or replaced, outside the Trash's own places (a change's
// `from` and `to`; for the Trash only the place the item left or came back to).
QList<FilePath> pathsTouched(const std::vector<FileChange>& changes);
// The files whose contents or attributes the changes rewrote (rewritten, attributeRewritten).
QList<FilePath> filesRewritten(const std::vector<FileChange>& changes);

// What a worker did, handed to the interface thread in one piece.
struct ChangeReport {
    std::vector<FileChange> changes;                       // made, in order
    QList<FileMove> moves;                                 // every move or rename made
    QList<std::pair<FilePath, FilePath>> trashLogAdded;    // place in the Trash → former path
    QList<FilePath> trashLogRemoved;                       // places in the Trash now empty
    QStringList errors;                                    // full sentences, first one shown
    int skipped = 0;                                       // items that vanished before their turn
    QStringList notes;                                     // what was kept differently, one sentence per item
    int leftOut = 0;                                       // items inside copies that weren't copied (sockets)
    int attributesLost = 0;                                // items that lost an extended attribute on the way
    int leftInPlace = 0;                                   // moved across disks, changed meanwhile, stayed
    bool cancelled = false;
    QList<FilePath> retagged;                              // files whose tags were written (undo and redo too)
};

// Makes changes for one job. Not shared between threads; the progress is.
class ChangeRunner {
public:
    explicit ChangeRunner(CopyProgress& progress) : m_progress(progress) {}

    ChangeReport& report() { return m_report; }
    CopyProgress& progress() { return m_progress; }
    bool isCancelled();

    // Each step records its change on success and an error sentence on failure, naming `verb`
    // ("Couldn’t copy “a.txt”: the disk is full."). False when nothing was done.
    bool copy(const FilePath& from, const FilePath& to);
    bool move(const FilePath& from, const FilePath& to, const QString& verb = QStringLiteral("move"));
    bool trash(const FilePath& item);
    bool putBack(const FilePath& inTrash, const FilePath& to);
    bool makeFolder(const FilePath& path);
    // Makes a symbolic link to `target` (its absolute path) at `wanted`, or at the first free
    // name beside it ("name 2") when that is taken, even by a program racing for it.
    bool link(const FilePath& target, const FilePath& wanted);
    void recordCreated(const FilePath& path);
    // Adds or removes one tag of the item, keeping its other tags (TagList). True when the item
    // carries the tags as asked afterwards, changed or not; only a change is recorded.
    bool changeTag(const FilePath& item, const QString& tag, bool adding);
    // Replaces the contents of `file` by what `edit` makes of them (nothing written when they
    // come back the same), keeping the file itself (see filereplace::replaceFile). A file that is
    // gone is skipped; one larger than FileOperations::kLargestRewrite or read-only is refused
    // before it is read; a refusal of `edit` is the failure sentence. True when the file holds the
    // edited contents afterwards.
    using Rewrite = std::function<Result<QByteArray>(const QByteArray& contents)>;
    bool rewrite(const FilePath& file, const Rewrite& edit);
    // Rewrites many files as rewrite() does each, but with one flush of the disk for them all
    // (filereplace::replaceFiles) instead of a sync per file. Progress counts the files read; a
    // cancel stops before the next one is read, and the ones read by then are still written.
    // For each edit, true when its file holds the edited contents afterwards.
    struct FileEdit {
        FilePath file;
        Rewrite edit;
    };
    QList<bool> rewriteMany(const QList<FileEdit>& edits);
    // Replaces the extended attribute `name` of `file` by what `edit` makes of its value (given
    // empty bytes when there is none; empty bytes back remove it). A refusal of `edit` is the
    // failure sentence. True when the file carries the edited value afterwards.
    bool rewriteAttribute(const FilePath& file, const QByteArray& name, const Rewrite& edit);
    // Sets the file's permission bits, owner and group to `wanted` (see AccessChange.cpp). A
    // refusal (not the owner, a read-only disk) is the failure sentence and leaves the file as it
    // was. True when the file has that access afterwards.
    bool changeAccess(const FilePath& item, const FileAccess& wanted);
    void fail(const QString& sentence) { m_report.errors.append(sentence); }

    // Runs the inverse of `changes` (last first) or the changes again (first first); the records
    // are updated in place to describe the state afterwards.
    void undo(std::vector<FileChange>& changes);
    void redo(std::vector<FileChange>& changes);

private:
    struct ReadEdit;
    // Reads `file` and edits it; nothing when there is nothing to write, with `done` set when
    // that is because the edit changed nothing (else the skip or failure is recorded).
    std::optional<ReadEdit> readAndEdit(const FilePath& file, const Rewrite& edit, bool* done);
    void recordRewrite(ReadEdit&& made);
    void moveInTwoPhases(const std::vector<FileChange*>& run, bool forward);
    bool takeFromTrash(const FilePath& inTrash, const FilePath& to, bool record);
    std::optional<FilePath> makeLink(const FilePath& target, const FilePath& wanted);
    void removeLink(const FileChange& change);
    void rewriteTags(const FileChange& change, bool forward);
    void rewriteContents(const FileChange& change, bool forward);
    void rewriteAttributeBack(const FileChange& change, bool forward);
    void rewriteAccess(const FileChange& change, bool forward);
    void swapVersions(const FileChange& change, bool forward);
    // created, copied: false (and the refusal recorded) when the item is no longer as made.
    bool stillAsMade(const FileChange& change);
    void keepNotes(const CopyResult& result);
    std::optional<FilePath> parkInTrash(const FilePath& item);

    CopyProgress& m_progress;
    ChangeReport m_report;
};

} // namespace orwick

#pragma once
// LinkUpdater: keeps Markdown notes' links whole when the files they point at move. After a
// move, transfer or rename the user asked for (FileOperations::itemsRelocated, never an undo or
// redo), it finds the notes that may link to the moved items (candidates), rewrites their
// relative Markdown links, images and [[wikilinks]] to the new places (rewrite), and has the
// engine write the changed notes together as one job and one undo step, "Update Links", with the
// toast "Updated links in N notes". Nothing is written here: the engine writes (rewriteFiles).
//
// What is never touched: targets with a URL scheme ("https:", "mailto:"), links inside fenced
// code blocks and inline code, notes that aren't UTF-8, are larger than kLargestNote or are
// read-only (those are skipped and counted), and links that still reach their target.
//
// The static functions are pure (or read the disk only) and safe on any thread; the object
// lives on the interface thread. Planning runs on a background task after the move is done.

#include "base/CancelFlag.h"
#include "base/FilePath.h"
#include "fileops/FileChange.h"

#include <QObject>
#include <QPointer>
#include <optional>

class QUndoStack;

namespace orwick {

class FileOperations;

// How many notes one link update changed and left alone.
struct LinkUpdateCount {
    int updated = 0;
    int skipped = 0; // not UTF-8, too large or read-only
};

class LinkUpdater : public QObject {
    Q_OBJECT
public:
    static constexpr qsizetype kLargestNote = 16 << 20;
    static constexpr int kFolderLimit = 500;  // notes read beside an item, in each folder
    static constexpr int kTreeLimit = 2000;   // notes read inside a moved folder, or near the item
    static constexpr int kVaultLimit = 5000;  // notes read in the item's vault

    // One planned change of a note: its path now, and the text it has and gets.
    struct Edit {
        FilePath note;
        FilePath oldNote; // where the note was before the moves (== note when it stayed)
        QByteArray oldBytes;
        QByteArray newBytes;
    };
    struct Plan {
        QList<Edit> edits;
        int skipped = 0;
        bool cancelled = false;
    };

    // Follows `operations`' moves while isEnabled().
    explicit LinkUpdater(FileOperations* operations, QObject* parent = nullptr);
    // The application's one instance, following FileOperations::shared().
    static LinkUpdater& shared();

    // The setting "updateLinksOnMove" (on unless turned off); setEnabled writes it at once.
    static bool isEnabled();
    static void setEnabled(bool on);

    // Plans the edits for `moves` off the interface thread, then has the engine write them on
    // `undo` as "Update Links". `finished`, when given, gets the counts once the notes are written.
    using Finished = std::function<void(LinkUpdateCount)>;
    void filesMoved(const QList<FileMove>& moves, QUndoStack* undo, Finished finished = {});
    // Writes a plan's edits as one job and undo step; each note is edited again from what it
    // holds when written, so a note changed meanwhile keeps that change.
    void apply(const Plan& plan, const QList<FileMove>& moves, QUndoStack* undo, Finished finished = {});

    // --- Pure parts ---

    // The notes that may hold links to the moved items (as they lie now, after the moves).
    static QList<FilePath> candidates(const QList<FileMove>& moves, const CancelFlag* cancel = nullptr);
    // The Markdown notes in `folder`, recursively to `maxDepth` levels below it (1: the folder's
    // own), stopping after `limit`. Hidden entries are passed over; links are not followed.
    static QList<FilePath> markdown(const FilePath& folder, bool recursive, int maxDepth, int limit,
                                    const CancelFlag* cancel = nullptr);
    // Reads the candidates and plans their edits.
    static Plan plan(const QList<FileMove>& moves, const CancelFlag* cancel = nullptr);

    // The new text of note `text` that lies at `note` now (and lay at `oldNote`), or nothing
    // when no link changes. Wikilinks that name a path are read inside `root` (the vault; the
    // note's old folder when empty).
    static std::optional<QString> rewrite(const QString& text, const FilePath& oldNote, const FilePath& note,
                                          const QList<FileMove>& moves, const FilePath& root = {});
    // The same on a note's bytes: nothing when unchanged or not UTF-8.
    static std::optional<QByteArray> rewriteBytes(const QByteArray& bytes, const FilePath& oldNote,
                                                  const FilePath& note, const QList<FileMove>& moves,
                                                  const FilePath& root = {});
    // The vault the moves happen in (the nearest folder above the first item holding ".obsidian").
    static FilePath vaultOf(const QList<FileMove>& moves);
    // Rewrites relative Markdown link and image targets of `text`, a note that lay in `oldFolder`
    // and lies in `newFolder` now.
    static QString relink(const QString& text, const FilePath& oldFolder, const FilePath& newFolder, bool noteMoved,
                          const QList<FileMove>& moves);
    // Rewrites [[wikilink]] names that name a moved note (by name, or by path inside `root`),
    // keeping alias and anchor.
    static QString renameWikilinks(const QString& text, const QList<FileMove>& moves, const FilePath& root);
    // "../../a.md": the relative path from `folder` to `file`.
    static QByteArray relativePath(const FilePath& folder, const FilePath& file);
    // Where `path` is after the moves (itself when none concerns it).
    static FilePath mapped(const FilePath& path, const QList<FileMove>& moves);
    // Where `path` was before the moves.
    static FilePath unmapped(const FilePath& path, const QList<FileMove>& moves);

Q_SIGNALS:
    // Once for every filesMoved(), after its notes were written, or at once when none needed it.
    void linksUpdated(orwick::LinkUpdateCount count);

private:
    void done(LinkUpdateCount count, const Finished& finished);

    QPointer<FileOperations> m_operations;
};

} // namespace orwick

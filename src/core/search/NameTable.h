#pragma once
// NameTable: the names of whole folder trees, kept compactly for the palette's name index.
//
// Every name's bytes sit in one arena; an entry holds its parent folder's index, the name's
// place in the arena, a few flags and a character mask for cheap query pre-checks. A home of
// 150,000 names takes a few megabytes, and a path is made on demand by walking up. Names stay
// bytes (a name that is not UTF-8 survives every edit and the index file).
//
// Shape: a root is an entry without a parent whose name is the root's whole path; every other
// entry lies in a folder entry that comes before it (a lower index), so walking up always ends.
// Removing marks entries (and everything under them) as removed; compacted() drops them. A
// folder the walks don't go into (a build folder, ".git", a network mount) is kept as a name
// only: it holds nothing and is neither watched nor read again.
//
// A value type, implicitly shared: copying is cheap, and a copy handed to a background task
// (a save, a rescan) stays as it was while the GUI thread edits its own. Not thread-safe.

#include "base/FilePath.h"

#include <QByteArrayView>
#include <QExplicitlySharedDataPointer>
#include <QSharedData>
#include <optional>
#include <span>
#include <vector>

namespace orwick {

class NameTable {
public:
    static constexpr quint32 kNone = 0xffffffffu;
    static constexpr qsizetype kMaxNames = 4'000'000; // beyond this the 32-bit offsets could overflow

    // Character mask bits: one per ASCII letter, four for digits (0-2, 3-5, 6-8, 9), one for any
    // other non-ASCII character, and one that only live files carry.
    static constexpr quint32 kNonAsciiBit = 1u << 30;
    static constexpr quint32 kLiveFileBit = 1u << 31;

    NameTable();
    NameTable(const NameTable&);
    NameTable& operator=(const NameTable&);
    ~NameTable();

    // --- Reading
    qsizetype size() const;      // entries, removed ones included
    qsizetype liveCount() const; // entries not removed
    qsizetype fileCount() const; // live entries that are not folders
    bool isEmpty() const { return liveCount() == 0; }

    QByteArrayView name(quint32 entry) const;
    quint32 parent(quint32 entry) const;
    bool isFolder(quint32 entry) const;
    bool isRemoved(quint32 entry) const;
    bool isEntered(quint32 entry) const; // a folder whose names the table holds
    // True when the name is plain ASCII (0x20..0x7e): its bytes are its text.
    bool isPlain(quint32 entry) const;
    quint32 mask(quint32 entry) const;
    std::span<const quint32> masks() const;

    FilePath path(quint32 entry) const;
    std::vector<quint32> roots() const; // live roots, in order
    std::vector<FilePath> rootPaths() const;

    // The live entry of `path`; kNone when the table doesn't hold it.
    quint32 find(const FilePath& path) const;
    quint32 findChild(quint32 folder, QByteArrayView name) const;
    // Live children of `folder`, most recently added first.
    std::vector<quint32> children(quint32 folder) const;

    // --- Editing
    // A new root (its whole path as the name); an existing live root is returned as it is.
    quint32 addRoot(const FilePath& path);
    // A name in `folder`, which must be a live, entered folder entry. No check for a name
    // already there. `isEntered` only matters for a folder.
    quint32 add(quint32 folder, QByteArrayView name, bool isFolder, bool isEntered = true);
    // Removes the entry and everything under it. A root loses everything under it but stays.
    void remove(quint32 entry);
    // Adds the tree of `subtree`'s root `subtreeRoot` as a folder named `name` in `folder`;
    // returns its entry.
    quint32 graft(quint32 folder, QByteArrayView name, const NameTable& subtree, quint32 subtreeRoot);

    // The same names without removed entries, shallow folders first (each level in the order it
    // had), so that a capped scan meets names near the roots first.
    NameTable compacted() const;

    // Heap bytes held (arena, entries, masks).
    size_t memoryBytes() const;

    // --- For the index file: the raw columns, and a table made from them (checked; nothing
    // when they don't form a table of the shape above).
    struct Columns {
        std::vector<quint32> parents;
        std::vector<quint32> offsets;
        std::vector<quint16> lengths;
        std::vector<quint8> folderFlags; // 0: file, 1: folder, 2: folder not entered
        QByteArray arena;
    };
    Columns columns() const; // of live entries only: call on a compacted table
    static std::optional<NameTable> fromColumns(Columns columns);

    // The mask a name's characters set (as the fuzzy matcher folds them).
    static quint32 maskOfName(QByteArrayView name, bool* isPlain = nullptr);

private:
    struct Data;
    QExplicitlySharedDataPointer<Data> d;
    Data& edit();
};

} // namespace orwick

#pragma once
// One file's properties on disk: read from a note's front matter or from the properties
// attribute of any other file or folder, and written back without losing anything else.
//
// Writes keep every other byte of a note, go through a temporary file and a rename, and refuse
// (with a sentence to show) rather than guess: a note whose front matter can't be read, a note
// that isn't UTF-8, a value the front matter can't hold, a note that changed on disk since it
// was read, a file system that refuses extended attributes. A refused write changes nothing.
//
// Pure functions of the file system; safe on any thread.

#include "async/CancelFlag.h"
#include "base/Result.h"
#include "files/FilePath.h"
#include "notes/PropertyValue.h"

#include <functional>

namespace orwick::notefile {

// How much of a note is read when a listing loads its properties.
inline constexpr qsizetype kHeadBytes = 16384;

// True for Markdown notes, by extension: md, markdown, mdown, mkd, mdx.
bool isNote(const FilePath& path);

// What identifies one version of a note on disk.
struct Fingerprint {
    qint64 modifiedNs = 0;
    qint64 size = 0;
    quint64 inode = 0;
    bool operator==(const Fingerprint&) const = default;
};

struct Loaded {
    FilePath path;
    PropertyMap values;
    std::optional<Fingerprint> fingerprint; // notes only
};

// A note's properties from its first kHeadBytes bytes, or the attribute's for anything else.
// Unreadable files, text that isn't UTF-8 and front matter outside the subset give none.
Loaded read(const FilePath& path, bool isFolder);

// The properties of note text (the head of a file): none unless it is UTF-8 with a readable
// block. A multi-byte character cut off at the end of the head is ignored.
PropertyMap propertiesOfNoteText(QByteArrayView bytes);

// Reads many files in order; nothing when cancelled before the end.
struct Target {
    FilePath path;
    bool isFolder = false;
};
std::optional<QList<Loaded>> readAll(const QList<Target>& targets, const CancelFlag* cancel = nullptr);

// One property change: `key` set to `value`, removed when `value` is absent, or renamed to
// `renameTo` (keeping its value and, in a note, its place) when that is given.
struct Change {
    QString key;
    std::optional<PropertyValue> value;
    std::optional<QString> renameTo;
};

// The note text with the changes applied, or the reason it can't be: the front matter is
// unreadable, a key can't be written, or a value would not read back as written.
[[nodiscard]] Result<QString> applyToNoteText(const QString& text, const QList<Change>& changes, const QString& name);

struct WriteOptions {
    // The version the caller read; a note that differs is refused.
    std::optional<Fingerprint> expected;
    // Runs just before the new note replaces the old one (tests use it to change the file).
    std::function<void()> beforeCommit;
};

// Writes the changes into a note or the attribute of any other item. For a note, returns the
// version written (or the unchanged version when nothing changed).
[[nodiscard]] Result<std::optional<Fingerprint>> write(const FilePath& path, bool isFolder, const QList<Change>& changes,
                                                       const WriteOptions& options = {});

// Puts a note's whole text back (undo and redo): replaces the note's bytes with `bytes` only if
// it still holds exactly `expected`; refuses otherwise and changes nothing.
[[nodiscard]] Result<Fingerprint> swapNoteBytes(const FilePath& path, const QByteArray& expected, const QByteArray& bytes);

// The current version of a note on disk, if it can be read.
std::optional<Fingerprint> fingerprint(const FilePath& path);

// Writes `bytes` over the file at `path` through a temporary file and a rename, keeping its
// permissions, unless the file no longer matches `original` (contents) and `originalVersion`.
[[nodiscard]] Result<Fingerprint> replaceFile(const FilePath& path, const QByteArray& original,
                                              const Fingerprint& originalVersion, const QByteArray& bytes,
                                              const std::function<void()>& beforeCommit = {});

// Reads a whole file with its version; a failure sentence when it can't be read.
struct FileBytes {
    QByteArray bytes;
    Fingerprint version;
    unsigned mode = 0;
};
[[nodiscard]] Result<FileBytes> readFile(const FilePath& path);

// A whole note decoded as UTF-8, with its bytes and version; a failure sentence when it can't be
// read or isn't UTF-8.
struct NoteText {
    FileBytes file;
    QString text;
};
[[nodiscard]] Result<NoteText> readNoteText(const FilePath& path);

// Sentences for changed and non-UTF-8 notes, shared with the task toggle.
QString changedOnDiskMessage(const FilePath& path);
QString notUtf8Message(const FilePath& path);

} // namespace orwick::notefile

#pragma once
// One file's properties on disk: read from a note's front matter or from the properties
// attribute of any other file or folder, and written back without losing anything else.
//
// Writes keep every other byte of a note (a UTF-8 byte-order mark included) and refuse (with a
// sentence to show) rather than guess: a read-only note, a note whose front matter can't be read,
// a note that isn't UTF-8, a value the front matter can't hold, a note that changed on disk since
// it was read, a file system that refuses extended attributes. A refused write changes nothing.
//
// A written note stays the same file to the user: same owner, group, mode and extended
// attributes, and hard links stay one file. Where that can be had with a temporary file and a
// rename (the note has one name, and its owner and attributes can all be given to the new file)
// the write is atomic; otherwise the new bytes go into the note's own inode (see replaceFile).
//
// Pure functions of the file system; safe on any thread.

#include "async/CancelFlag.h"
#include "base/Result.h"
#include "files/FilePath.h"
#include "notes/PropertyValue.h"

#include <functional>

struct stat;

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
// The version a stat() answer describes.
Fingerprint versionOf(const struct stat& st);

// Whether the note at `path` may be written, asked before anything else: refused with a sentence
// when its mode has no write bit for anyone (read-only to a user, even where root could write),
// when this process may not write it, or when it is on a read-only disk.
[[nodiscard]] Status checkWritable(const FilePath& path);

// Writes `bytes` over the file at `path` (a link is followed), unless the file no longer matches
// `original` (contents) and `originalVersion`. Refused, with nothing changed, when the file is
// read-only (checkWritable). A file with one name is replaced through a temporary file in its folder that
// gets the file's owner and group, mode and every extended attribute before the rename. A file
// with several hard links, or one whose owner, attributes or folder don't allow that, is
// rewritten in place (space reserved first, then written, truncated and synced on the same
// inode; a failure midway puts the original bytes back). Either way the modification time is
// the time of the write. Implemented in NoteFileReplace.cpp.
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
// A leading UTF-8 byte-order mark is not part of the text; byteOrderMark remembers it so that a
// write puts it back (noteBytes).
struct NoteText {
    FileBytes file;
    QString text;
    bool byteOrderMark = false;
};
[[nodiscard]] Result<NoteText> readNoteText(const FilePath& path);

// The bytes of note text as written to disk: UTF-8, after a byte-order mark when the note had one.
QByteArray noteBytes(const QString& text, bool byteOrderMark);

// Sentences for changed and non-UTF-8 notes, shared with the task toggle.
QString changedOnDiskMessage(const FilePath& path);
QString notUtf8Message(const FilePath& path);
// The sentence for a write that failed with `error` (an errno value).
QString writeFailure(const FilePath& path, int error);

} // namespace orwick::notefile

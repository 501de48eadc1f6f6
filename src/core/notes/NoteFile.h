#pragma once
// One file's properties on disk: read from a note's front matter or from the properties
// attribute of any other file or folder, and the new bytes of a note or attribute that a
// property change makes. Writing them is the file operations engine's (FileOperations::
// rewriteFiles, through FileProperties); nothing here writes a user's file.
//
// A change keeps every other byte of a note (a UTF-8 byte-order mark included) and is refused
// (with a sentence to show) rather than guessed: a note whose front matter can't be read, a note
// that isn't UTF-8, a value the front matter can't hold.
//
// Pure functions of the file system (reads only); safe on any thread.

#include "base/CancelFlag.h"
#include "base/FilePath.h"
#include "base/Result.h"
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

// Reads many files in order; nothing when cancelled before the end. A note whose version is
// still `known` (the one it had when last read) is left out of the result, so a folder read
// again after each reload of its listing reads only the notes that changed. A note modified in
// the last two seconds is always read: a file's time moves in clock ticks, so a rewrite of the
// same size just after the last read may show the same version.
struct Target {
    FilePath path;
    bool isFolder = false;
    std::optional<Fingerprint> known;
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

// A note's bytes with the changes applied (UTF-8, after the byte-order mark it had), or why
// they can't be ("Couldn’t change “a.md”: it isn’t UTF-8 text.").
[[nodiscard]] Result<QByteArray> changedNoteBytes(const QByteArray& bytes, const QList<Change>& changes,
                                                  const FilePath& path);
// The properties attribute's value with the changes applied: empty bytes stand for no attribute,
// given and returned.
[[nodiscard]] Result<QByteArray> changedAttribute(const QByteArray& value, const QList<Change>& changes,
                                                  const FilePath& path);

// The current version of a note on disk, if it can be read.
std::optional<Fingerprint> fingerprint(const FilePath& path);
// The version a stat() answer describes.
Fingerprint versionOf(const struct stat& st);

// Whether the file at `path` may be written, asked before anything else: refused ("Couldn’t
// change “a.md”: it is read-only.") when its mode has no write bit for anyone (read-only to a
// user, even where root could write), when this process may not write it, or when it is on a
// read-only disk. Only asks; writing is the engine's.
[[nodiscard]] Status checkWritable(const FilePath& path);

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

// Sentences for changed and non-UTF-8 notes, shared with the task toggle and the engine.
QString changedOnDiskMessage(const FilePath& path);
QString notUtf8Message(const FilePath& path);

} // namespace orwick::notefile

#pragma once
// The freedesktop Trash, written by our own code: an item goes to `files/` of the Trash on its
// own volume and gets an `info/NAME.trashinfo` with its percent-encoded former Path and the
// DeletionDate. The home Trash ($XDG_DATA_HOME/Trash) serves the home's volume; an item on
// another volume goes to $topdir/.Trash/$UID (when an admin made a sticky .Trash) or
// $topdir/.Trash-$UID, so trashing is always a rename, never a copy. A volume's Trash folder is
// used only when it passes the safety checks of TrashFolder.h (checked again on the open folder
// right before each item goes in); otherwise the item stays where it is and the reason says why.
// The home Trash and its folders are made with mode 0700.
//
// All functions are plain system calls, safe on any thread, and keep names as bytes.

#include "base/FilePath.h"
#include "base/Result.h"
#include "base/Timestamp.h"

#include <optional>

namespace orwick::trash {

// Moves `item` to the Trash of its volume; returns where it now lies (inside `files/`).
[[nodiscard]] Result<FilePath> trashItem(const FilePath& item);
// Moves `item` to the Trash of its volume as if it were `recordedAs` (its name there and the
// former path its .trashinfo records): the old version of a rewritten file, taken aside under a
// temporary name beside it, lies in the Trash as that file.
[[nodiscard]] Result<FilePath> trashItemAs(const FilePath& item, const FilePath& recordedAs);

// The Trash folder (holding files/ and info/) that an item at `path` goes to; made when needed.
[[nodiscard]] Result<FilePath> trashFolderFor(const FilePath& path);

// For an item lying in `files/` of a Trash: its .trashinfo file.
FilePath infoFileFor(const FilePath& trashedItem);

// What an item's .trashinfo records: where it was deleted from and when.
struct Record {
    std::optional<FilePath> originalPath;
    std::optional<Timestamp> deletionDate;
};

// The record of an item lying in `files/` of a Trash, if its .trashinfo can be read and the
// Trash folder holding it passes the safety checks (TrashFolder.h).
std::optional<Record> record(const FilePath& trashedItem);
// The record the text of `trashedItem`'s .trashinfo holds (see the two below).
Record recordIn(QByteArrayView info, const FilePath& trashedItem);

// The former path recorded in the item's .trashinfo, as record() reads it.
std::optional<FilePath> originalPath(const FilePath& trashedItem);
// The former path that the text of `trashedItem`'s .trashinfo records: none when there is no
// usable Path line, when it holds a NUL byte or when a relative path leads out of the volume.
std::optional<FilePath> originalPathIn(QByteArrayView info, const FilePath& trashedItem);
// The DeletionDate of a .trashinfo's text ("2024-05-01T10:20:30", the local time of deletion):
// none when the line is missing or isn't such a date.
std::optional<Timestamp> deletionDateIn(QByteArrayView info);

// Forgets a trashed item that was moved out of the Trash: removes its .trashinfo.
void removeInfo(const FilePath& trashedItem);

// True when `path` lies in `files/` of a Trash folder (home or per-volume).
bool isInTrash(const FilePath& path);
// True when `path` lies in `files/` of the home Trash or of a volume's Trash folder of the user
// that passes the safety checks: only such items are listed as ours and put back.
bool isInTrustedTrash(const FilePath& path);

} // namespace orwick::trash

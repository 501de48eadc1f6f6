#pragma once
// madestate: how an item looked when an operation made it (a new file or folder, a new note, a
// copy or duplicate, an archive or what came out of one), so that undo can tell whether the user
// changed it since. Undo moves a made item to the Trash only while it is unchanged; one the user
// wrote into or filled meanwhile is left where it is, and the report says so. Nothing done after
// the operation goes to the Trash behind the user's back.
//
// The rule:
// - A file is unchanged while its size, modification time and inode are still those it was made
//   with, or, when they moved (touched, saved by an editor through a new file), while its
//   contents still have the digest taken when it was made. Only made files up to kDigestLimit
//   are read for a digest, and copies never are (a copy job isn't made to read everything
//   twice); one without a digest whose size, time or inode moved counts as changed.
// - A folder is unchanged while everything inside it, to the bottom, has the names, kinds, sizes
//   and modification times it was made with. So an empty new folder is unchanged until something
//   is put in it, and a copied or extracted folder is changed once a file in it is added,
//   removed, renamed or edited. The folder's own times don't count (taking it to the Trash and
//   back moves them).
// - Anything else (a link, a pipe) is unchanged while its kind, size, modification time and
//   inode are.
//
// Pure functions of the file system, safe on any thread. A folder is walked once (one statx per
// entry, no contents read), so the state of a large copied tree costs about one listing of it.

#include "base/FilePath.h"

#include <QByteArray>
#include <optional>

namespace orwick::madestate {

inline constexpr qint64 kDigestLimit = 64 * 1024 * 1024;

struct State {
    QByteArray stamp;  // kind, size, time and inode; for a folder, a digest of its whole tree's
    QByteArray digest; // a file's contents (fileversions::digestOf); empty when not read
};

enum class Contents { digest, stampOnly };

// The item's state now; nothing when it can't be read (it is gone, or can't be opened). A file's
// contents are read for a digest only when asked (and no larger than kDigestLimit).
std::optional<State> of(const FilePath& item, Contents contents = Contents::digest);

// True while `item` is as `made` says it was made (see the rule above). An empty stamp is not
// compared: then only the digest counts.
bool unchanged(const State& made, const FilePath& item);

} // namespace orwick::madestate

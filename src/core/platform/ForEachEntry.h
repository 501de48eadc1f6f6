#pragma once
// forEachEntry: a folder's entries one at a time as readdir gives them, for the small readers
// that look at each entry as it comes (the Trash's size, the notes around a renamed one). The
// walkers that read many folders fast use DirectoryReader instead.

#include "base/CancelFlag.h"
#include "base/FilePath.h"

#include <QByteArrayView>
#include <functional>

namespace orwick {

// Calls `visit` with the name and the d_type (DT_DIR, DT_REG…; DT_UNKNOWN where the file system
// does not say) of every entry of `folder` but "." and "..", until `cancel` is set. The name is
// valid during the call only. False when the folder can't be opened.
bool forEachEntry(const FilePath& folder, const CancelFlag* cancel,
                  const std::function<void(QByteArrayView name, unsigned char type)>& visit);

// The type of the entry at `path` that forEachEntry gave as `type`: that type itself, or, where
// the file system didn't say, DT_DIR, DT_REG or DT_LNK (anything else) as lstat finds it, and
// DT_UNKNOWN when it is gone.
unsigned char entryType(const FilePath& path, unsigned char type);

} // namespace orwick

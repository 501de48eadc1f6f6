#pragma once
// KnownTags: what the shared FinderTags last knew of tagged files, for readers on any thread (the
// tag listing asks it before walking the home). FinderTags publishes here after each change.
//
// Kept apart from FinderTags so that a program that only lists folders (orwick-cli list) does not
// link the tag cache, which follows the file operations engine.

#include "base/FilePath.h"
#include "places/TagList.h"

#include <QHash>
#include <QList>
#include <optional>

namespace orwick::KnownTags {

using TaggedFolders = QHash<FilePath, QHash<FilePath, TagList>>; // folder → file → its tags

// Replaces what is known. A QHash copy shares its data until the publisher changes its own,
// so publishing costs no copying.
void publish(const TaggedFolders& folders, bool complete);

// The files under `root` carrying `tag`, while what was published is complete (every tagged
// file of the home); nothing otherwise.
std::optional<QList<FilePath>> tagged(const QString& tag, const FilePath& root);

} // namespace orwick::KnownTags

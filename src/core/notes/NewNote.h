#pragma once
// NewNote: what a new note made in a folder is called and starts with. Its file name comes from
// its title (characters a file name can't hold replaced, made unique beside the others: "Plan
// 2.md"); its front matter holds the initial properties — those the view it was made in gives
// (a board lane's option, a calendar day's date) over those the folder's filters ask for, so the
// new note stays visible where it was made. Making the file is the engine's (createFile).
// Pure apart from looking at the folder for a free name; safe on any thread.

#include "base/Result.h"
#include "notes/FolderColumns.h"

namespace orwick::NewNote {

inline constexpr auto kUntitled = "untitled";

// A file name for a title: "/" and control characters become spaces, runs of white space one
// space, leading dots dropped, cut to stay within the file-name limit; "untitled" when nothing
// is left. Always ends in ".md".
QByteArray fileName(const QString& title);

// The values the folder's filters ask a new item to have: "is" and "contains" give their operand
// (a list property gets a one-item list), "is checked" gives true, "is not empty" nothing.
PropertyMap valuesFromFilters(const FolderColumns& settings, const std::function<PropertyType(const QString&)>& typeOf);

struct Plan {
    FilePath path;
    QByteArray bytes;
};
// Where the note goes and its bytes: front matter with `values` (when any), then "# title" (when
// a title is given).
[[nodiscard]] Result<Plan> plan(const FilePath& folder, const QString& title, const PropertyMap& values);

} // namespace orwick::NewNote

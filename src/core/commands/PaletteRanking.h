#pragma once
// PaletteRanking: the rows of the main palette for a query, as a pure function of the query and
// the prepared candidates (PaletteCandidates). Runs on the GUI thread on every keystroke; it only
// scores prepared text and sorts, so 180 commands, 500 folders and 5,000 files rank well within
// a frame.
//
// With a query:
// - Folders: score against the abbreviated path plus the frecency bonus; best first, at most
//   kFolderRows, under "Folders".
// - Files: score against the name; best first, at most kFileRows, under "Files".
// - Commands: the best score of the title and of each keyword on its own (a keyword as a word
//   inside a text: it never earns the bonus of a text's first character); a command matched only
//   across its title and keywords together (letters scattered over the keyword list) comes after
//   those. At most kCommandRows, under "Commands". Disabled commands are kept, marked not
//   enabled, after the enabled ones. Commands whose letters match equally well (the same score
//   before the length penalty: "tras" in "Move to Trash", "Empty Trash…" and "Open Trash") come
//   with a title typed whole first, then those matched in their title, then in the order of
//   how handy their key is — fewer
//   modifiers first, no key last — since the everyday commands hold the handiest keys; then the
//   shorter first.
// - Ties keep the candidates' own order (frecency order, the folder's order, catalogue order).
// - Sections come in the order of their best row's score, so the strongest match is the first
//   row whatever its kind; on equal scores Folders come before Files before Commands.
// - Files elsewhere: the name index's files that match by name, best first, at most
//   kIndexedFileRows, under "Files Elsewhere", always after the sections above (a home of many
//   files matches almost any query, and would push commands and folders down); the shown
//   folder's files are not repeated there.
// An empty query shows the most frecent folders (at most kEmptyQueryFolderRows, frecency order)
// and then every command in catalogue order; no files.

#include "commands/PaletteCandidates.h"
#include "commands/PaletteItem.h"

namespace orwick::PaletteRanking {

inline constexpr qsizetype kFolderRows = 20;
inline constexpr qsizetype kFileRows = 20;
inline constexpr qsizetype kIndexedFileRows = 20;
inline constexpr qsizetype kCommandRows = 30;
inline constexpr qsizetype kEmptyQueryFolderRows = 8;

QList<PaletteSection> rank(const FuzzyQuery& query, const PaletteCandidates& candidates);

// Prepares the candidates and ranks them in one go (for tests and one-off callers).
QList<PaletteSection> rank(QStringView query, const QList<PaletteCommand>& commands,
                           std::span<const FrecentFolder> frecency, std::span<const FilePath> files);

// Folder rows alone, best first (the destination and projects modes use this too). With an
// empty query, the folders in their own order.
QList<PaletteItem> rankFolders(const FuzzyQuery& query, const PreparedFolders& folders, qsizetype limit);

} // namespace orwick::PaletteRanking

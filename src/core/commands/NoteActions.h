#pragma once
// The actions behind the note commands of the catalogue. Each acts on the window's active pane;
// a note is made by the file operations engine (one job, one undo step on the window's stack
// whose undo moves the note to the Trash), whose failures reach the window's messages.

#include "base/FilePath.h"

#include <QDate>
#include <functional>

class QUndoStack;

namespace orwick {

class FileOperations;
class WindowState;

namespace actions {

// Shows today's daily note — where the folder's Obsidian vault settings put it, else
// "yyyy-MM-dd.md" in the shown folder — selected in its folder, creating it (from the vault's
// template, when it has one; the folders on the way too) when it isn't there yet: undo "Today's Note".
void openTodaysNote(WindowState& window);

// A new note in the shown folder, starting with the properties the folder's filters ask for and
// those the pane's database view gives (actions::newNoteRequest): named from the title the view
// asked for, else "untitled.md" (made unique: "untitled 2.md"); selected and opened in the
// editor; undo "New Note".
void newNote(WindowState& window);

// "Edit File": opens the cursor's text file in the editor (WindowState::startEditing), or, while
// editing, goes back to the preview. canToggleEditing: while editing, or with the cursor on a
// file that may be text (a text, source or data file, or one without an extension; the editor
// says so when it isn't).
void toggleEditing(WindowState& window);
bool canToggleEditing(const WindowState& window);

// The daily note of `date` near `folder`: handed to `shown` once it is there (made through
// `operations` when missing, as the undo step "Today's Note" on `undo`).
void ensureDailyNote(FileOperations& operations, const FilePath& folder, QDate date, QUndoStack* undo,
                     std::function<void(const FilePath&)> shown);

} // namespace actions

} // namespace orwick

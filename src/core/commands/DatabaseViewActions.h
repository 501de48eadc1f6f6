#pragma once
// The actions behind the database view commands: showing the active pane's folder as a board,
// calendar or gallery, or its tasks, is kept per folder (the folder's `layout`, saved at once
// through the property store); choosing one of the file views (list, grid, table, columns)
// leaves it. The panes' decorations draw what the folder's layout says.
//
// A database view may also say what a note made in it starts with (the board lane's option, the
// calendar day's date) and which title it gets (asked there): newNoteRequest() asks the hook the
// pane's view set, if any.

#include "notes/PropertyValue.h"

#include <functional>

namespace orwick {

class PaneState;
class WindowState;

namespace actions {

// "board", "calendar", "gallery", "tasks": the layouts drawn instead of the file views.
bool isDatabaseLayout(const QString& layout);
// The layout the pane's folder shows, when it is one of the database layouts.
std::optional<QString> databaseLayout(const PaneState& pane);
// Shows the active pane's folder in `layout`, kept for the folder; a failed save is said.
void chooseDatabaseLayout(WindowState& window, const QString& layout);
// Leaves a database layout for the file views (the view mode commands call this).
void leaveDatabaseLayout(WindowState& window);
// Whether the active pane shows a folder whose settings can be kept.
bool canChooseDatabaseLayout(const WindowState& window);

struct NewNoteRequest {
    QString title;       // empty: "untitled", renamed in place
    PropertyMap values;  // what the view gives the note, over what the filters give
};
// Set by a pane's database view while it is shown (cleared with an empty function); returns
// nothing when the user declined.
using NewNoteHook = std::function<std::optional<NewNoteRequest>()>;
void setNewNoteHook(PaneState* pane, NewNoteHook hook);
// What the pane's view asks for a new note: the hook's answer, or a plain request.
std::optional<NewNoteRequest> newNoteRequest(PaneState* pane);

} // namespace actions

} // namespace orwick

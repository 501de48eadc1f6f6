#pragma once
// The actions behind "Export Note as HTML" and "Export Note as PDF": the note under the active
// pane's cursor is rendered off the GUI thread (NoteExport) and its export made beside it by the
// file operations engine (createFile: one job, one undo step "Export Note as HTML" / "… as PDF"
// whose undo moves the export to the Trash). The engine's toast names the file; when pictures
// were missing, a second message says how many ("2 pictures were missing in “Plan.html”").
// A note that can't be read or isn't UTF-8 is said in the window's messages; nothing is made.

#include "notes/NoteExport.h"

#include <functional>

class QUndoStack;

namespace orwick {

class FileOperations;
class WindowState;

namespace actions {

// Why the export commands are dimmed when they are.
inline constexpr const char* kExportNeedsNote = "Put the cursor on a Markdown note to export it";

// A Markdown note is under the active pane's cursor (and no name is being edited).
bool canExportNote(const WindowState& window);
void exportNote(WindowState& window, NoteExport::Format format);

// The same for `note` through `operations`: `done` gets the file made (empty when nothing was)
// and the sentence to show besides the engine's toast (a failure, or the missing pictures).
struct ExportDone {
    FilePath made;
    QString message;
};
void exportNoteTo(FileOperations& operations, const FilePath& note, NoteExport::Format format, QUndoStack* undo,
                  std::function<void(const ExportDone&)> done);

} // namespace actions
} // namespace orwick

#pragma once
// The actions behind commands that reach beyond the window state: the clipboard, git, other
// programs. Each takes the window, acts on its active pane's selection and reports failures
// through the window's messages.

#include "state/WindowState.h"

namespace orwick::actions {

void copyPath(WindowState& window);
void copyRelativePath(WindowState& window);   // relative to the repository, else to the shown folder
bool canCopyContents(const WindowState& window); // one file, under 10 MB
void copyContents(WindowState& window);
void copyDataURI(WindowState& window);
void showInSystemFileManager(WindowState& window);
bool hasGit(const WindowState& window);
void toggleHideIgnored(WindowState& window);
bool hidesIgnored(const WindowState& window); // git-ignored files are hidden now

// The code editor and terminal in use: the preferred ones, else the first found (ExternalPrograms).
QString editorName();   // "Code Editor" when none is known
QString terminalName(); // "Terminal" when none is known
bool hasEditor(const WindowState& window);
bool hasTerminal(const WindowState& window);
void openInEditor(WindowState& window);
void openInTerminal(WindowState& window);

} // namespace orwick::actions

#pragma once
// The window's terminal actions, as the commands call them: they change the selected tab's
// TabTerminals; the panel on screen follows its signals.

#include "base/FilePath.h"

namespace orwick {

class WindowState;

namespace terminalActions {

// Opens the panel with the keyboard in it (a first shell starts in the active pane's folder), or
// closes it.
void toggleTerminal(WindowState& window);
// Another shell in the panel, in the active pane's folder.
void newTerminal(WindowState& window);
// Ends the shown shell.
void closeTerminal(WindowState& window);
bool hasTerminal(const WindowState& window);
// Moves the keyboard between the terminal and the pane, opening the panel when it is closed.
void toggleTerminalFocus(WindowState& window);
// Opens the panel on a shell in `folder`: the shown one when it waits at its prompt (it changes
// folder), else a new one.
void openInTerminal(WindowState& window, const FilePath& folder);

} // namespace terminalActions
} // namespace orwick

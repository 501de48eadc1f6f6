#pragma once
// The window's workspace verbs, behind the "workspace." family of commands and the name prompt:
// save the window's tabs under a name, open a saved workspace, delete one. Each tells the user
// what happened through the window's messages (a toast).

#include "app/Workspaces.h"
#include "state/WindowState.h"

namespace orwick::workspaceActions {

// Saves the window's session as `name` (trimmed; replacing a workspace of that name ignoring
// case) and says "Saved workspace “NAME”", or why it couldn't. False for an empty name or a failure.
bool save(WindowState& window, const QString& name, Workspaces& workspaces = Workspaces::shared());
// Replaces the window's tabs by the workspace's.
void open(WindowState& window, const Workspace& workspace);
// Deletes the workspace and says "Deleted workspace “NAME”", or why it couldn't.
bool remove(WindowState& window, const QString& name, Workspaces& workspaces = Workspaces::shared());

} // namespace orwick::workspaceActions

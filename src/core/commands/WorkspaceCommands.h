#pragma once
// The workspace family of the command catalogue, rebuilt from the saved workspaces each time the
// catalogue is read: "workspace." + name ("Workspace: NAME") opens one, "saveWorkspace"
// ("Save Workspace…") asks the window for a name to save its tabs under, and
// "deleteWorkspace." + name ("Delete Workspace: NAME") deletes one. Each command captures its
// workspace by value.

#include "app/Workspaces.h"
#include "commands/AppCommand.h"

#include <QList>

namespace orwick::WorkspaceCommands {

inline constexpr QLatin1StringView kOpenPrefix("workspace.");
inline constexpr QLatin1StringView kDeletePrefix("deleteWorkspace.");
inline constexpr QLatin1StringView kSaveId("saveWorkspace");

// In catalogue order: one open command per workspace, the save command, one delete command per workspace.
QList<AppCommand> family(Workspaces& workspaces = Workspaces::shared());

} // namespace orwick::WorkspaceCommands

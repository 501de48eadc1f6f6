#pragma once
// CommandCatalog: every command of the program, in one ordered list. Menus, context menus, keys
// and the palette all read it, so a command's title, icon, key and enabled test live here once.
// Commands whose work is not built yet stay listed, disabled, with a note that says so.

#include "commands/AppCommand.h"

#include <QList>

namespace orwick {

namespace CommandCatalog {

// The fixed commands in catalogue order, built once.
const QList<AppCommand>& fixed();
// The fixed commands followed by the generated families (view modes, sort orders, "Go to" the
// sidebar's favourites, group folders, drives and servers, saved searches, tags, workspaces,
// themes with the appearances and accents, the image operations, the guide's topics), rebuilt
// on each call.
QList<AppCommand> all(const WindowState& window);
// A command by id (fixed or generated), or null. A workspace or theme command's pointer holds
// until the next call.
const AppCommand* find(const QString& id);

// Whether `id` is one of the "Go to" rows of the sidebar's places (favourites, group folders,
// drives and servers), whose icons are the sidebar's.
bool goesToPlace(const QString& id);

// Runs a command when it is enabled; returns whether it ran.
bool run(const AppCommand& command, WindowState& window);
bool run(const QString& id, WindowState& window);

} // namespace CommandCatalog

} // namespace orwick

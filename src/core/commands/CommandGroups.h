#pragma once
// CommandGroups: how the catalogue's commands are grouped for people — the menu bar's menus
// (File, Edit, View, Go, Git, Image, Window, Help) with their separators, in order. The menu bar is built
// from them and the Keyboard Shortcuts sheet lists commands under the same headings, so a
// command is found in the same place in both.

#include "commands/AppCommand.h"

#include <QList>
#include <QString>
#include <QStringList>

namespace orwick::CommandGroups {

struct Group {
    QString title;   // "File"
    QStringList ids; // command ids in menu order; "-" separates sections
};

// The menus, in menu bar order.
const QList<Group>& menus();

// `commands` (the catalogue, in its order) under the menus' headings: each command in the first
// menu that names it, in that menu's order, without separators; the commands no menu names
// follow under "More", in catalogue order. Empty groups are left out.
QList<QList<AppCommand>> grouped(const QList<AppCommand>& commands, QStringList* titles);

} // namespace orwick::CommandGroups

#pragma once
// The tag family of the command catalogue, rebuilt each time the catalogue is read: one command
// per colour tag and per other tag in use (FinderTags), "tag." + the name in lower case, titled
// with the tag's name alone (its colour dot says what it is; "tag" finds them all in the palette). Each toggles its tag on the selection: when every selected item carries
// it (as FinderTags last read them), it is removed from all; else it is added to those without
// it. Either way it is one job of the engine with one undo step. The colour tags have the keys
// Alt+1 … Alt+7 in menu order (Red … Gray); Ctrl+1 … Ctrl+4 choose the view mode.

#include "base/FilePath.h"
#include "commands/AppCommand.h"

#include <QList>

namespace orwick {

class FinderTags;

namespace TagCommands {

inline constexpr QLatin1StringView kPrefix("tag.");

// In catalogue order: the colour tags, then the other tags in use by name.
QList<AppCommand> family(const FinderTags& tags);
// Whether every one of `items` carries the tag, as `tags` last read them (false for none).
bool allCarry(const FinderTags& tags, const QList<FilePath>& items, const QString& tag);
// Adds the tag to the window's selection, or removes it when every selected item has it.
void toggle(WindowState& window, const QString& tag);

} // namespace TagCommands

} // namespace orwick

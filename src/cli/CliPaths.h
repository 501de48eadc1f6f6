#pragma once
// Path arguments of orwick-cli: read as the bytes the shell passed (a name need not be UTF-8),
// and checked before any work starts, so that a missing item, a file where a folder is needed
// or a path longer than the system takes is said in plain words instead of passed over.

#include "base/FilePath.h"
#include "rename/FolderNames.h"

#include <QByteArray>
#include <QString>
#include <optional>

namespace orwick::cli {

// The path an argument names, relative to the working folder; its bytes are kept as they are.
FilePath pathArgument(const QByteArray& argument);

// The argument as a message names it: in typographic quotes, shortened in the middle when long.
QString shownArgument(const QByteArray& argument);

enum class Expect { anything, folder };

// Nothing when the argument names something that is there (a folder, or a link to one, for
// Expect::folder); else the sentence that says why not: "“x” isn’t there.",
// "“x” isn’t a folder.", "“/a/b…” can’t be used: the path is 5000 bytes long, and Linux takes
// at most 4095.", "“x” can’t be reached: you don’t have permission."
std::optional<QString> problemWith(const QByteArray& argument, Expect expect);

// The items the arguments name that are there; the problem with each other one is said on the
// error output (problemWith) and it is left out.
QList<FilePath> usableItems(const QList<QByteArray>& arguments);

// One item named by each of many arguments (a shell's "*.jpg"), each with its problem as
// problemWith() says it; the working folder is read once, and a folder that holds many of the
// items is read once into `folders` instead of a stat for each.
struct ItemArgument {
    FilePath path;
    std::optional<QString> problem;
};
QList<ItemArgument> itemArguments(const QList<QByteArray>& arguments, FolderNamesCache& folders);

} // namespace orwick::cli

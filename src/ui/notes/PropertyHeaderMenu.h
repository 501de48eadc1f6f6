#pragma once
// The table header's menu in a folder of notes. On a property column: rename or delete the
// property across the folder, hide its column, choose its type, and for a select or list
// property rename, delete, reorder and colour its options. Always: show or hide a column for
// every key the folder's items carry, add a column for a new property, and show or hide the
// built-in Date Modified, Size and Kind columns. Changes to files are one undo step each on the
// window's stack ("Rename status", "Delete done"); column settings are saved in columns.json.

#include "notes/FileProperties.h"

#include <QPointer>
#include <functional>

class QMenu;
#include <QUndoStack>

namespace orwick {

struct HeaderMenuContext {
    QPointer<FileProperties> store;
    QPointer<QUndoStack> undo;
    FilePath folder;
    FileItems items;
    // The property column the menu was opened on, if any.
    std::optional<QString> key;
    // Asks the user for a text (a new name); nothing when cancelled.
    std::function<std::optional<QString>(const QString& title, const QString& label, const QString& text)> ask;
    // Shows a failure to the user.
    std::function<void(const QString& message)> report;
};

// Adds the menu's actions to `menu`; they act when triggered.
void fillHeaderMenu(QMenu* menu, const HeaderMenuContext& context);

} // namespace orwick

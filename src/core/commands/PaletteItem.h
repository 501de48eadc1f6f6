#pragma once
// PaletteItem: one row of the command palette, and PaletteSection: rows under one heading.
// Plain values, replaced whole on every keystroke; the view draws them and the window acts on
// the chosen one (a command by its id, a folder or file by its path).

#include "base/FilePath.h"

#include <QList>
#include <QString>

namespace orwick {

struct PaletteItem {
    enum class Kind { command, folder, file };

    QString id;        // unique in a result list: "cmd." + the command's id, else the path
    Kind kind = Kind::command;
    QString title;
    QString subtitle;  // the abbreviated parent folder, or why a command is dimmed; may be empty
    QString symbol;    // icon name
    QString shortcut;  // the command's shortcut as text; empty when none
    bool isEnabled = true; // a disabled row is shown dimmed and cannot be chosen
    QString commandId; // kind command: the command to run
    FilePath path;     // kind folder or file: what the row names

    bool operator==(const PaletteItem&) const = default;
};

struct PaletteSection {
    QString heading; // "Folders", "Files", "Commands", "Projects"…; empty for a single list
    QList<PaletteItem> items;

    bool operator==(const PaletteSection&) const = default;
};

// The rows of all sections in order, as the selection counts them.
inline QList<PaletteItem> flattenSections(const QList<PaletteSection>& sections)
{
    QList<PaletteItem> rows;
    for (const PaletteSection& section : sections)
        rows += section.items;
    return rows;
}

// A row naming a folder or file: its name as the title and its abbreviated parent below.
PaletteItem pathItem(const FilePath& path, PaletteItem::Kind kind);

} // namespace orwick

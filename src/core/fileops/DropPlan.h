#pragma once
// DropPlan: what dropping items on a folder will do, decided before anything is touched, so
// that the pointer can show it while dragging and the drop can refuse with a reason.
//
// The rule, as other Linux file managers have it: Ctrl copies, Shift moves, Ctrl+Shift makes
// symbolic links; a plain drop moves when every item lies on the folder's file system (a
// rename) and copies otherwise. A move of items into the folder they are already in does
// nothing. Refused, with one plain sentence: anything that is not a file on this computer, and
// a folder dropped into itself or into a folder inside it (judged by device and inode, so
// links and bind mounts count).
// Pure decisions over the file system's answers (stat); safe on any thread.

#include "base/FilePath.h"

#include <QList>
#include <QString>
#include <QUrl>

namespace orwick {

enum class DropAction { none, copy, move, link };

struct DropPlan {
    DropAction action = DropAction::none; // none: nothing to do, or refused
    QList<FilePath> items;                // what the action takes, in the order dropped
    FilePath folder;                      // where they go
    QString refusal;                      // why the drop can't be done; empty otherwise

    bool isRefused() const { return !refusal.isEmpty(); }
};

// The plan for dropping `urls` on `folder` with `modifiers` held.
DropPlan planDrop(const QList<QUrl>& urls, const FilePath& folder, Qt::KeyboardModifiers modifiers);

// Folders dropped on the tab bar: each opens in a tab of its own, in the order dropped.
struct TabDropPlan {
    QList<FilePath> folders;
    QString refusal; // nothing to open: why
};
TabDropPlan planTabDrop(const QList<QUrl>& urls);

} // namespace orwick

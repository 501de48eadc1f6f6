#pragma once
// The fixture of the property store tests: a temporary tree, a file operations engine of the
// test's own whose failures and announcements are kept, and a store over the tree's
// data/columns.json that writes through that engine. settle() waits until the engine is idle and
// the store has read back what it wrote; load() waits until the store has read the given files.

#include "fileops/FileOperations.h"
#include "notes/FileProperties.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QUndoStack>
#include <gtest/gtest.h>

namespace orwick::test {

inline FileItems itemsOf(const QList<FilePath>& paths)
{
    FileItems items;
    for (const FilePath& path : paths)
        items.append(FileItem::make(path));
    return items;
}

struct PropertyStoreTest : testing::Test {
    PropertyStoreTest()
    {
        ops.setReportErrors([this](const OperationOutcome& outcome) { reports.append(outcome); });
        QObject::connect(&ops, &FileOperations::announced, [this](const Toast& toast) { toasts.append(toast.text); });
    }
    FilePath columnsFile() const { return tree.path("data/columns.json"); }
    void settle(const FileProperties& which) { ASSERT_TRUE(waitUntil([&] { return ops.isIdle() && which.isSettled(); }, 60000)); }
    void settle() { settle(store); }
    void undo(QUndoStack& stack) { stack.undo(), settle(); }
    void loadItems(const FileItems& items, FileProperties& which)
    {
        const int revision = which.revision();
        which.load(items);
        ASSERT_TRUE(waitUntil([&] { return which.revision() > revision; }));
    }
    FileItems load(const QList<FilePath>& paths)
    {
        const FileItems items = itemsOf(paths);
        loadItems(items, store);
        return items;
    }

    TempTree tree;
    FileOperations ops;
    FileProperties store{nullptr, columnsFile(), &ops};
    QList<OperationOutcome> reports;
    QStringList toasts;
};

} // namespace orwick::test

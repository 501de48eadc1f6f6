#pragma once
// The fixture of the file operations tests: an engine, an undo stack, a temporary tree in the
// temporary home, and the errors, outcomes, toasts and moves the engine reported.

#include "fileops/FileOperations.h"
#include "support/TempHome.h"
#include "support/TestMain.h"

#include <QUndoStack>
#include <gtest/gtest.h>
#include <sys/stat.h>

// Readable failure messages for Qt's strings.
inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }
inline void PrintTo(const QByteArray& bytes, std::ostream* out) { *out << '"' << bytes.toStdString() << '"'; }

namespace orwick::test {

class FileOpsTest : public ::testing::Test {
public:
    // The names in a folder, sorted.
    static QList<QByteArray> names(const FilePath& folder);
    // Hidden names in a folder, which only the engine's temporary files would have (a disk's
    // .Trash folders aside).
    static QList<QByteArray> leftovers(const FilePath& folder);

protected:
    FileOpsTest()
    {
        ops.setReportErrors([this](const OperationOutcome& outcome) {
            errors += outcome.errors;
            reports.append(outcome);
        });
        QObject::connect(&ops, &FileOperations::announced, [this](const Toast& toast) { toasts.append(toast); });
        QObject::connect(&ops, &FileOperations::itemsMoved, [this](const QList<FileMove>& list) { moves += list; });
    }

    ~FileOpsTest() override { emptyTrash(); }

    // Waits until every job ended and its results were applied.
    void settle() { ASSERT_TRUE(waitUntil([this] { return ops.isIdle(); }, 30000)); }
    void undo() { stack.undo(); settle(); }
    void redo() { stack.redo(); settle(); }
    QString lastToast() const { return toasts.isEmpty() ? QString() : toasts.last().text; }

    static struct stat statOf(const FilePath& path)
    {
        struct stat st {};
        lstat(path.c_str(), &st);
        return st;
    }
    FilePath homeTrashFiles() const;
    FilePath file(const QString& relative, const QByteArray& content = {}) const { return tree.file(relative, content); }

    // Each test starts with an empty Trash and trash log (made before the engine reads the log).
    static bool emptyTrash();
    bool m_trashEmptied = emptyTrash();
    TempTree tree;
    FileOperations ops;
    QUndoStack stack;
    QStringList errors;              // every failure sentence reported
    QList<OperationOutcome> reports; // every outcome that did not go entirely as asked
    QList<Toast> toasts;
    QList<FileMove> moves;
};

} // namespace orwick::test

#pragma once
// FileJob: one running file operation as the progress card shows it.

#include "fileops/CopyProgress.h"

#include <QDateTime>
#include <QString>
#include <memory>

namespace orwick {

struct FileJob {
    quint64 id = 0;
    QString title;       // "Copying 12 items"
    QDateTime started;
    std::shared_ptr<CopyProgress> progress; // shared with the worker
};

// A short message after an operation: "Copied 3 items", with its icon and, when the operation
// registered an undo step, the stack to undo it on.
struct Toast {
    QString text;
    QString icon;         // symbol name ("doc.on.doc")
    bool canUndo = false;
    bool isError = false;
};

} // namespace orwick

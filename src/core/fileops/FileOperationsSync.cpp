// FileOperations: bringing two folders into line (the compare panel's sync) as one job and one
// undo step: copies (a file they replace goes to the Trash first) and moves to the Trash.

#include "fileops/FileOperations.h"
#include "fileops/ItemCopier.h"
#include "fileops/OperationTexts.h"

#include <QSet>

namespace orwick {

void FileOperations::sync(const QList<Move>& copies, const QList<FilePath>& replacing, const QList<FilePath>& toTrash,
                          const QString& actionName, QUndoStack* undo, Finished finished)
{
    if (copies.isEmpty() && toTrash.isEmpty())
        return;
    JobRequest request;
    request.title = QStringLiteral("Syncing ") + itemCount(copies.size() + toTrash.size());
    request.actionName = actionName;
    request.undo = undo;
    request.finished = std::move(finished);
    const QSet<FilePath> replace(replacing.begin(), replacing.end());
    request.work = [copies, replace, toTrash](ChangeRunner& runner, JobOutput& output) {
        qint64 total = 0;
        for (const Move& copy : copies)
            total += treeBytes(copy.from, &runner.progress());
        runner.progress().setTotalBytes(total);
        QList<FilePath> copied;
        QList<FilePath> trashed;
        for (const Move& copy : copies) {
            if (runner.isCancelled())
                break;
            if (!pathExists(copy.from)) {
                ++runner.report().skipped;
                continue;
            }
            if (pathExists(copy.to)) {
                // Only a file the plan means to replace is replaced; anything else that
                // appeared there since the comparison stays.
                if (!replace.contains(copy.to)) {
                    ++runner.report().skipped;
                    continue;
                }
                if (!runner.trash(copy.to))
                    continue;
            }
            if (runner.copy(copy.from, copy.to))
                copied.append(copy.to);
        }
        for (const FilePath& item : toTrash) {
            if (runner.isCancelled())
                break;
            if (!pathExists(item)) {
                ++runner.report().skipped;
                continue;
            }
            if (runner.trash(item))
                trashed.append(item);
        }
        QStringList parts;
        if (!copied.isEmpty())
            parts << QStringLiteral("Copied ") + countOrName(copied);
        if (!trashed.isEmpty())
            parts << (copied.isEmpty() ? QStringLiteral("Moved ") : QStringLiteral("moved ")) + countOrName(trashed)
                         + QStringLiteral(" to the Trash");
        output.toast = parts.isEmpty() ? QStringLiteral("Nothing needed syncing") : parts.join(QStringLiteral(", "));
        output.icon = QStringLiteral("arrow.triangle.2.circlepath");
        output.done = copied + trashed;
    };
    run(std::move(request));
}

} // namespace orwick

// FileOperations: Empty Trash, the one change that can't be undone, as one job of the engine.

#include "fileops/FileOperations.h"
#include "fileops/ItemCopier.h"
#include "fileops/OperationTexts.h"
#include "platform/DirectoryReader.h"
#include "platform/Trash.h"

namespace orwick {

void FileOperations::emptyTrash(const QList<FilePath>& items, QUndoStack* window, Finished finished)
{
    if (items.isEmpty())
        return;
    JobRequest request;
    request.title = QStringLiteral("Emptying the Trash");
    request.actionName = QStringLiteral("Empty Trash");
    request.window = window; // no undo stack: nothing here can be undone
    request.finished = std::move(finished);
    request.work = [items](ChangeRunner& runner, JobOutput& output) {
        runner.progress().setTotalItems(items.size());
        QList<FilePath> done;
        for (const FilePath& item : items) {
            if (runner.isCancelled())
                break;
            runner.progress().startFile(item.fileNameBytes(), 0);
            runner.progress().addFinished(1);
            // Only what lies in one of the user's own Trash folders is ever deleted here.
            if (!trash::isInTrustedTrash(item)) {
                runner.fail(QStringLiteral("Couldn’t delete %1: it isn’t in your Trash.").arg(quoted(item.fileName())));
                continue;
            }
            if (!statPath(item)) {
                ++runner.report().skipped; // put back or deleted meanwhile
                continue;
            }
            if (const Status removed = removeTree(item); !removed) {
                runner.fail(QStringLiteral("Couldn’t delete %1: %2.").arg(quoted(item.fileName()), removed.error()));
                continue;
            }
            trash::removeInfo(item);
            runner.report().trashLogRemoved.append(item);
            done.append(item);
        }
        output.toast = done.size() == items.size() ? QStringLiteral("Emptied the Trash")
                                                   : QStringLiteral("Deleted ") + countOrName(done) + QStringLiteral(" from the Trash");
        output.icon = QStringLiteral("trash");
        output.done = done;
        output.irreversible = true;
    };
    run(std::move(request));
}

} // namespace orwick

// FileOperations: symbolic links to items, as one job with undo.

#include "fileops/FileOperations.h"
#include "fileops/OperationTexts.h"

namespace orwick {

void FileOperations::makeLinks(const QList<FilePath>& items, const FilePath& folder, QUndoStack* undo)
{
    if (items.isEmpty())
        return;
    JobRequest request;
    request.title = QStringLiteral("Linking ") + itemCount(items.size());
    request.actionName = items.size() == 1 ? QStringLiteral("Make Link") : QStringLiteral("Make Links");
    request.undo = undo;
    request.work = [items, folder](ChangeRunner& runner, JobOutput& output) {
        runner.progress().setTotalItems(items.size());
        QList<FilePath> done;
        for (const FilePath& item : items) {
            if (runner.isCancelled())
                break;
            runner.progress().addFinished(1);
            if (!pathExists(item)) {
                ++runner.report().skipped;
                continue;
            }
            if (runner.link(item, folder.child(QByteArrayView(item.fileNameBytes()))))
                done.append(item);
        }
        output.toast = QStringLiteral("Linked ") + countOrName(done);
        output.icon = QStringLiteral("link");
        output.done = done;
    };
    run(std::move(request));
}

} // namespace orwick

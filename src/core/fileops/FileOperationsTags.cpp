// FileOperations: a tag added to or removed from several items, as one job with undo.

#include "fileops/FileOperations.h"
#include "fileops/OperationTexts.h"
#include "places/FinderTag.h"

namespace orwick {

void FileOperations::changeTag(const QList<FilePath>& items, const QString& tag, TagChange change, QUndoStack* undo)
{
    const QString name = FinderTag::named(tag).name;
    if (items.isEmpty())
        return;
    if (name.isEmpty()) {
        report(QStringLiteral("A tag needs a name."), undo);
        return;
    }
    const bool adding = change == TagChange::add;
    JobRequest request;
    request.title = adding ? QStringLiteral("Tagging ") + itemCount(items.size())
                           : QStringLiteral("Removing a tag from ") + itemCount(items.size());
    request.actionName = (adding ? QStringLiteral("Add %1 Tag") : QStringLiteral("Remove %1 Tag")).arg(name);
    request.undo = undo;
    request.work = [items, name, adding](ChangeRunner& runner, JobOutput& output) {
        runner.progress().setTotalItems(items.size());
        QList<FilePath> done;
        for (const FilePath& item : items) {
            if (runner.isCancelled())
                break;
            runner.progress().addFinished(1);
            if (runner.changeTag(item, name, adding))
                done.append(item);
        }
        output.toast = (adding ? QStringLiteral("Added %1 to ") : QStringLiteral("Removed %1 from ")).arg(name) + countOrName(done);
        output.icon = QStringLiteral("tag");
        output.done = done;
    };
    run(std::move(request));
}

} // namespace orwick

// FileOperations: one file's permissions, owner or group changed, as one job with undo.

#include "fileops/FileOperations.h"
#include "fileops/OperationTexts.h"

namespace orwick {

void FileOperations::changeAccess(const FilePath& item, const FileAccess& wanted, QUndoStack* undo)
{
    const std::optional<FileAccess> now = FileAccess::of(item);
    const bool owners = now && (now->owner != wanted.owner || now->group != wanted.group);
    JobRequest request;
    request.title = QStringLiteral("Changing the permissions of ") + quoted(item.fileName());
    request.actionName = owners ? QStringLiteral("Change Owner") : QStringLiteral("Change Permissions");
    request.undo = undo;
    request.work = [item, wanted](ChangeRunner& runner, JobOutput& output) {
        runner.progress().setTotalBytes(1);
        const bool done = runner.changeAccess(item, wanted);
        runner.progress().addFinished(1);
        output.toast = QStringLiteral("Changed the permissions of ") + quoted(item.fileName());
        output.icon = QStringLiteral("lock");
        if (done)
            output.done = {item};
    };
    run(std::move(request));
}

} // namespace orwick

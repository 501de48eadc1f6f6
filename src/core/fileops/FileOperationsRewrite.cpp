// FileOperations: one file's contents rewritten by an edit, as one job with undo.

#include "fileops/FileOperations.h"

namespace orwick {

void FileOperations::rewriteFile(const FilePath& file, ChangeRunner::Rewrite edit, const QString& actionName, const QString& toast,
                                 QUndoStack* undo, Finished finished)
{
    JobRequest request;
    request.title = actionName;
    request.actionName = actionName;
    request.undo = undo;
    request.finished = std::move(finished);
    request.work = [file, edit = std::move(edit), toast](ChangeRunner& runner, JobOutput& output) {
        if (runner.rewrite(file, edit)) {
            output.done = {file};
            output.toast = toast;
        }
    };
    run(std::move(request));
}

} // namespace orwick

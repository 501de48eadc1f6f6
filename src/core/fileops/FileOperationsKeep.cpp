// FileOperations: items kept in the Trash before another program puts them back as they once
// were (a git discard), as one job whose undo step brings them back.

#include "fileops/FileOperations.h"
#include "fileops/ItemCopier.h"
#include "fileops/OperationTexts.h"
#include "fileops/RewriteRequest.h"

#include <sys/stat.h>

namespace orwick {

namespace {

// True when something (even a dangling link) stands at `path`.
bool standsThere(const FilePath& path)
{
    struct stat info;
    return ::lstat(path.c_str(), &info) == 0;
}

} // namespace

void FileOperations::keepAndReplace(const QList<FilePath>& items, bool copyBack, const RewriteTexts& texts,
                                    std::function<QString(const FilePath&)> keepFailure, Replace replace, QUndoStack* undo,
                                    Finished finished)
{
    if (items.isEmpty())
        return;
    JobRequest request = rewriteRequest<JobRequest>(texts, undo, std::move(finished));
    request.work = [items, copyBack, texts, keepFailure = std::move(keepFailure),
                    replace = std::move(replace)](ChangeRunner& runner, JobOutput& output) {
        runner.progress().setTotalItems(items.size());
        QList<FilePath> handed;
        for (const FilePath& item : items) {
            runner.progress().addFinished(1);
            if (!standsThere(item)) { // deleted: nothing to keep, only to put back
                handed.append(item);
                continue;
            }
            const qsizetype errorsBefore = runner.report().errors.size();
            if (!runner.trash(item)) {
                // Its one sentence says the item was left alone.
                runner.report().errors.resize(errorsBefore);
                runner.fail(keepFailure(item));
                continue;
            }
            if (copyBack) {
                const FilePath kept = runner.report().changes.back().to;
                const CopyResult copied = copyItem(kept, item, runner.progress());
                if (!copied.ok()) {
                    runner.fail(QStringLiteral("Couldn’t copy %1 back from the Trash: %2.").arg(quoted(item.fileName()), copied.reason));
                    continue;
                }
            }
            handed.append(item);
        }
        if (!handed.isEmpty())
            for (const QString& sentence : replace(handed))
                runner.fail(sentence);
        // What stands in each place now is what undo moves aside before the item comes back.
        for (const FilePath& item : handed)
            if (standsThere(item))
                runner.recordCreated(item);
        if (!handed.isEmpty())
            output.toast = texts.done + u' ' + countOrName(handed);
        output.icon = texts.icon;
        output.done = handed;
    };
    run(std::move(request));
}

} // namespace orwick

// FileOperations: files' contents (or attributes) rewritten by edits, one file or many, as one
// job with one undo step.

#include "fileops/FileOperations.h"
#include "fileops/OperationTexts.h"
#include "fileops/RewriteRequest.h"

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

void FileOperations::rewriteFiles(QList<Rewrite> rewrites, const RewriteTexts& texts, QUndoStack* undo, Finished finished,
                                  std::function<void(bool forward)> alongside)
{
    if (rewrites.isEmpty() && !alongside)
        return;
    JobRequest request = rewriteRequest<JobRequest>(texts, undo, std::move(finished));
    request.alongside = std::move(alongside);
    request.work = [rewrites = std::move(rewrites), texts](ChangeRunner& runner, JobOutput& output) {
        runner.progress().setTotalItems(rewrites.size());
        // Contents go together, with one flush of the disk for all of them; attributes one by one.
        QList<ChangeRunner::FileEdit> contents;
        QList<qsizetype> contentsAt;
        for (qsizetype i = 0; i < rewrites.size(); ++i) {
            if (rewrites[i].attribute.isEmpty()) {
                contents.append({rewrites[i].file, rewrites[i].edit});
                contentsAt.append(i);
            }
        }
        QList<bool> ok(rewrites.size(), false);
        const QList<bool> written = runner.rewriteMany(contents);
        for (qsizetype k = 0; k < written.size(); ++k)
            ok[contentsAt[k]] = written[k];
        for (qsizetype i = 0; i < rewrites.size(); ++i) {
            const Rewrite& rewrite = rewrites[i];
            if (!rewrite.attribute.isEmpty() && !runner.isCancelled()) {
                runner.progress().addFinished(1);
                ok[i] = runner.rewriteAttribute(rewrite.file, rewrite.attribute, rewrite.edit);
            }
        }
        QList<FilePath> done;
        for (qsizetype i = 0; i < rewrites.size(); ++i)
            if (ok[i])
                done.append(rewrites[i].file);
        if (!done.isEmpty())
            output.toast = texts.done + u' '
                + (texts.counted.isEmpty() ? countOrName(done)
                                           : QStringLiteral("%1 %2%3").arg(done.size()).arg(texts.counted,
                                                                                              done.size() == 1 ? "" : "s"));
        output.icon = texts.icon;
        output.done = done;
    };
    run(std::move(request));
}

} // namespace orwick

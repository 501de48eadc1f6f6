// FileOperations: a new file with contents (a new note, today's note from its template), and
// the folders missing above it, as one job with undo.

#include "fileops/FileOperations.h"
#include "fileops/OperationTexts.h"
#include "platform/ErrorText.h"
#include "platform/UniqueFd.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace orwick {

namespace {

// Writes all of `bytes`; the errno value of a failure, else 0.
int writeAll(int fd, const QByteArray& bytes)
{
    for (qsizetype written = 0; written < bytes.size();) {
        const ssize_t n = ::write(fd, bytes.constData() + written, size_t(bytes.size() - written));
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return n < 0 ? errno : ENOSPC;
        written += n;
    }
    return 0;
}

} // namespace

void FileOperations::createFile(const FilePath& path, const QByteArray& contents, const QString& actionName,
                                QUndoStack* undo, Created created)
{
    JobRequest request;
    request.title = actionName;
    request.actionName = actionName;
    request.undo = undo;
    request.created = std::move(created);
    request.work = [path, contents](ChangeRunner& runner, JobOutput& output) {
        QList<FilePath> missing;
        for (FilePath folder = path.parent(); !folder.isRoot() && !pathExists(folder); folder = folder.parent())
            missing.prepend(folder);
        for (const FilePath& folder : missing)
            if (!runner.makeFolder(folder))
                return;
        UniqueFd fd(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOCTTY, 0644));
        if (!fd.ok()) {
            if (errno == EEXIST) { // made meanwhile, or there all along: shown, not replaced
                output.made = path;
                return;
            }
            runner.fail(QStringLiteral("Couldn’t create %1: %2.").arg(quoted(path.fileName()), errorReason(errno)));
            return;
        }
        if (const int error = writeAll(fd.get(), contents)) {
            ::unlink(path.c_str()); // only what this job just made
            runner.fail(QStringLiteral("Couldn’t create %1: %2.").arg(quoted(path.fileName()), errorReason(error)));
            return;
        }
        runner.recordCreated(path);
        output.made = path;
        output.done = {path};
        output.toast = QStringLiteral("Created ") + path.fileName();
        output.icon = QStringLiteral("doc.badge.plus");
    };
    run(std::move(request));
}

} // namespace orwick

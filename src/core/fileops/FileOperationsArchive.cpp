// FileOperations: compress and extract, as jobs with undo.

#include "fileops/ArchiveFiles.h"
#include "fileops/FileOperations.h"
#include "fileops/OperationTexts.h"

namespace orwick {

namespace {

// Carries an archive job's result into the change report; false when it was cancelled or failed.
template <typename JobOutput>
bool recordArchiveResult(const ArchiveResult& result, ChangeRunner& runner, JobOutput& output)
{
    if (result.cancelled) {
        runner.report().cancelled = true;
        return false;
    }
    if (!result.error.isEmpty()) {
        runner.fail(result.error);
        return false;
    }
    runner.recordCreated(result.made);
    output.made = result.made;
    return true;
}

} // namespace

void FileOperations::compress(const QList<FilePath>& items, QUndoStack* undo)
{
    if (items.isEmpty())
        return;
    const FilePath folder = items.first().parent();
    const QByteArray name = items.size() == 1 ? items.first().fileNameBytes() + ".zip" : QByteArray("Archive.zip");
    JobRequest request;
    request.title = QStringLiteral("Compressing ") + itemCount(items.size());
    request.actionName = QStringLiteral("Compress");
    request.undo = undo;
    request.work = [items, folder, name](ChangeRunner& runner, JobOutput& output) {
        const FilePath archive = uniqueURL(folder.child(QByteArrayView(name)), false);
        const ArchiveResult result = compressToZip(items, archive, runner.progress());
        if (!recordArchiveResult(result, runner, output))
            return;
        output.toast = QStringLiteral("Created ") + result.made.fileName();
        output.icon = QStringLiteral("archivebox");
    };
    run(std::move(request));
}

void FileOperations::extract(const QList<FilePath>& archives, QUndoStack* undo)
{
    for (const FilePath& archive : archives) {
        JobRequest request;
        request.title = QStringLiteral("Extracting ") + archive.fileName();
        request.actionName = QStringLiteral("Extract");
        request.undo = undo;
        request.work = [archive, limit = m_extractionLimit](ChangeRunner& runner, JobOutput& output) {
            const ArchiveResult result = extractArchive(archive, runner.progress(), limit);
            if (!recordArchiveResult(result, runner, output))
                return;
            if (result.refused > 0)
                runner.fail(QStringLiteral("Extracted %1, leaving out %2 that would have landed outside its folder.")
                                .arg(result.made.fileName(), result.refused == 1 ? QStringLiteral("1 item") : itemCount(result.refused)));
            output.toast = QStringLiteral("Extracted ") + result.made.fileName();
            output.icon = QStringLiteral("archivebox.circle");
        };
        run(std::move(request));
    }
}

} // namespace orwick

// FileOperations: the operations that name things — rename (one or many), new folder, new
// file, registering items made elsewhere — and tidy up.

#include "fileops/FileOperationCommand.h"
#include "fileops/FileOperations.h"
#include "fileops/ItemCopier.h"
#include "fileops/OperationTexts.h"
#include "fileops/RenameSteps.h"
#include "fileops/TidyUp.h"

#include <QSet>
#include "platform/DirectoryReader.h"
#include "platform/ErrorText.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orwick {

namespace {

// True when `a` and `b` are one item (a case-insensitive volume gives one file two names).
bool sameItem(const FilePath& a, const FilePath& b)
{
    const auto first = statPath(a);
    const auto second = statPath(b);
    return first && second && first->device == second->device && first->inode == second->inode;
}

// Renames through a temporary name in the same folder; how a change of letter case alone is
// made on a case-insensitive volume.
bool renameInTwoSteps(const FilePath& from, const FilePath& to)
{
    const FilePath temporary = temporarySibling(from, "rename");
    if (!renameNoReplace(from, temporary))
        return false;
    if (renameNoReplace(temporary, to))
        return true;
    const int error = errno;
    renameNoReplace(temporary, from);
    errno = error;
    return false;
}

} // namespace

void FileOperations::rename(const FilePath& item, const QByteArray& newName, QUndoStack* undo)
{
    if (newName.contains('/')) {
        report(QStringLiteral("A name can't contain “/”."), undo);
        return;
    }
    if (newName.isEmpty() || newName == item.fileNameBytes())
        return;
    const FilePath target = item.parent().child(QByteArrayView(newName));
    const bool special = newName == "." || newName == "..";
    if (special || (pathExists(target) && !sameItem(item, target))) {
        report(quoted(displayName(newName)) + QStringLiteral(" already exists in this folder."), undo);
        return;
    }
    const QString oldName = item.fileName();
    JobRequest request;
    request.title = QStringLiteral("Rename ") + oldName;
    request.actionName = QStringLiteral("Rename ") + oldName;
    request.undo = undo;
    request.work = [item, target, oldName](ChangeRunner& runner, JobOutput& output) {
        const bool caseOnly = sameItem(item, target)
            || item.fileName().compare(target.fileName(), Qt::CaseInsensitive) == 0;
        const bool ok = caseOnly ? renameInTwoSteps(item, target) : renameNoReplace(item, target);
        if (!ok) {
            runner.fail(QStringLiteral("Couldn’t rename %1: %2.").arg(quoted(oldName), errorReason(errno)));
            return;
        }
        runner.report().changes.push_back({FileChange::Kind::moved, item, target, {}});
        runner.report().moves.append({item, target});
        output.toast = QStringLiteral("Renamed ") + oldName;
        output.icon = QStringLiteral("pencil");
        output.made = target;
    };
    run(std::move(request));
}

void FileOperations::renameMany(const QList<Move>& renames, const QString& actionName, QUndoStack* undo,
                                RenamesFinished finished)
{
    JobRequest request;
    request.title = QStringLiteral("Renaming ") + itemCount(renames.size());
    request.actionName = actionName;
    request.undo = undo;
    // Filled by the worker, read on this thread once the job's results arrive.
    auto failures = std::make_shared<QHash<FilePath, QString>>();
    if (finished)
        request.finished = [finished = std::move(finished), failures](const QList<FilePath>& done) { finished(done, *failures); };
    request.work = [renames, failures](ChangeRunner& runner, JobOutput& output) {
        // Two phases where names have to wait for one another (swaps, cycles, letter case), one
        // rename for every other item (see RenameSteps). An item gone since the preview is
        // counted and the others go on.
        const std::vector<RenameStepResult> results =
            renameInSteps(renames, WhenNameTaken::fail, runner.progress(), [&] { return runner.isCancelled(); });
        ChangeReport& report = runner.report();
        report.changes.reserve(size_t(renames.size()));
        report.moves.reserve(renames.size());
        output.done.reserve(renames.size());
        const auto renamed = [&](const FilePath& from, const FilePath& to) {
            report.changes.push_back({FileChange::Kind::moved, from, to, {}});
            report.moves.append({from, to});
        };
        for (qsizetype i = 0; i < renames.size(); ++i) {
            const Move& move = renames[i];
            const RenameStepResult& result = results[size_t(i)];
            switch (result.outcome) {
            case RenameStepResult::Outcome::renamed:
                renamed(move.from, result.landed);
                output.done.append(move.from);
                break;
            case RenameStepResult::Outcome::vanished:
                ++report.skipped;
                failures->insert(move.from, QStringLiteral("It's no longer there"));
                break;
            case RenameStepResult::Outcome::failed:
                failures->insert(move.from, result.reason.isEmpty() ? result.reason
                                                                    : result.reason.front().toUpper() + result.reason.sliced(1));
                runner.fail(QStringLiteral("Couldn’t rename %1: %2.").arg(quoted(move.from.fileName()), result.reason));
                // Its old name was taken meanwhile: it keeps a free name beside it, and undo knows.
                if (result.landed != move.from)
                    renamed(move.from, result.landed);
                break;
            case RenameStepResult::Outcome::notTried:
                break;
            }
        }
        output.toast = QStringLiteral("Renamed ") + itemCount(output.done.size());
        output.icon = QStringLiteral("pencil");
    };
    run(std::move(request));
}

void FileOperations::newFolder(const FilePath& folder, QUndoStack* undo, Created created)
{
    JobRequest request;
    request.title = QStringLiteral("New Folder");
    request.actionName = QStringLiteral("New Folder");
    request.undo = undo;
    request.created = std::move(created);
    request.work = [folder](ChangeRunner& runner, JobOutput& output) {
        const FilePath path = uniqueURL(folder.child(QByteArrayView("untitled folder")), false);
        if (::mkdir(path.c_str(), 0755) != 0) {
            runner.fail(QStringLiteral("Couldn't create a folder in “%1”: %2.").arg(folder.fileName(), errorReason(errno)));
            return;
        }
        runner.recordCreated(path);
        output.made = path;
        output.toast = QStringLiteral("Created ") + path.fileName();
        output.icon = QStringLiteral("folder.badge.plus");
    };
    run(std::move(request));
}

void FileOperations::newFile(const FilePath& folder, const QByteArray& name, QUndoStack* undo, Created created)
{
    if (name.contains('/')) {
        report(QStringLiteral("A name can't contain “/”."), undo);
        return;
    }
    JobRequest request;
    request.title = QStringLiteral("New File");
    request.actionName = QStringLiteral("New File");
    request.undo = undo;
    request.created = std::move(created);
    request.work = [folder, name](ChangeRunner& runner, JobOutput& output) {
        const FilePath path = uniqueURL(folder.child(QByteArrayView(name)), false);
        const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
        if (fd < 0) {
            runner.fail(QStringLiteral("Couldn't create a file in “%1”").arg(folder.fileName()));
            return;
        }
        ::close(fd);
        runner.recordCreated(path);
        output.made = path;
        output.toast = QStringLiteral("Created ") + path.fileName();
        output.icon = QStringLiteral("doc.badge.plus");
    };
    run(std::move(request));
}

void FileOperations::registerCreated(const QList<FilePath>& items, const QString& actionName, QUndoStack* undo)
{
    if (!undo || items.isEmpty())
        return;
    std::vector<FileChange> changes;
    for (const FilePath& item : items) {
        changes.push_back({FileChange::Kind::created, {}, item, {}});
        rememberMadeState(changes.back());
    }
    undo->push(new FileOperationCommand(this, actionName, std::move(changes), undo));
}

void FileOperations::tidyUp(const FilePath& folder, QUndoStack* undo)
{
    JobRequest request;
    request.title = QStringLiteral("Tidying Up");
    request.actionName = QStringLiteral("Tidy Up");
    request.undo = undo;
    request.work = [folder](ChangeRunner& runner, JobOutput& output) {
        const TidyPlan plan = planTidyUp(folder);
        if (!plan.error.isEmpty()) {
            runner.fail(plan.error);
            return;
        }
        int files = 0;
        QSet<FilePath> folders;
        for (const Move& move : plan.moves) {
            if (runner.isCancelled())
                break;
            const FilePath holder = move.to.parent();
            if (!pathExists(holder) && !runner.makeFolder(holder))
                continue;
            if (runner.move(move.from, uniqueURL(move.to, false))) {
                ++files;
                folders.insert(holder);
            }
        }
        output.toast = QStringLiteral("Tidied %1 %2 into %3 %4")
                           .arg(files).arg(files == 1 ? QStringLiteral("file") : QStringLiteral("files"))
                           .arg(folders.size()).arg(folders.size() == 1 ? QStringLiteral("folder") : QStringLiteral("folders"));
        output.icon = QStringLiteral("tray.2");
    };
    run(std::move(request));
}

} // namespace orwick

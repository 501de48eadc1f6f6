#include "fileops/FileOperations.h"

#include "async/GuiDelivery.h"
#include "fileops/FileOperationCommand.h"
#include "fileops/ItemCopier.h"
#include "fileops/OperationTexts.h"
#include "fileops/TransferNotes.h"
#include "platform/Trash.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QSet>

namespace orwick {

Q_LOGGING_CATEGORY(lcFileOps, "orwick.fileops")

FileOperations::FileOperations(QObject* parent) : QObject(parent)
{
    m_ticker.setInterval(100);
    connect(&m_ticker, &QTimer::timeout, this, &FileOperations::progressChanged);
    m_replayPool.setMaxThreadCount(1);
}

FileOperations::~FileOperations()
{
    for (const FileJob& job : m_jobs)
        job.progress->cancel();
    m_replayPool.waitForDone();
}

FileOperations& FileOperations::shared()
{
    static QPointer<FileOperations> instance;
    if (!instance)
        instance = new FileOperations(QCoreApplication::instance());
    return *instance;
}

void FileOperations::cancelJob(quint64 id)
{
    for (const FileJob& job : m_jobs)
        if (job.id == id)
            job.progress->cancel();
}

void FileOperations::setWindowHandlers(QUndoStack* undo, QObject* owner, WindowHandlers handlers)
{
    m_windowHandlers.insert(undo, {owner, std::move(handlers)});
    // Only the owner's own handlers go with it: a later owner of the same stack keeps its own.
    connect(owner, &QObject::destroyed, this, [this, undo, owner] {
        if (const auto found = m_windowHandlers.constFind(undo); found != m_windowHandlers.constEnd() && found->owner == owner)
            m_windowHandlers.erase(found);
    });
    connect(undo, &QObject::destroyed, this, [this, undo] { m_windowHandlers.remove(undo); });
}

const FileOperations::WindowHandlers* FileOperations::handlersOf(QUndoStack* window) const
{
    const auto found = window ? m_windowHandlers.constFind(window) : m_windowHandlers.constEnd();
    return found == m_windowHandlers.constEnd() ? nullptr : &found->handlers;
}

void FileOperations::report(const QString& message, QUndoStack* window)
{
    OperationOutcome outcome;
    outcome.errors.append(message);
    report(outcome, window);
}

void FileOperations::report(const OperationOutcome& outcome, QUndoStack* window)
{
    if (const WindowHandlers* handlers = handlersOf(window); handlers && handlers->reportErrors)
        handlers->reportErrors(outcome);
    else if (m_reportErrors)
        m_reportErrors(outcome);
    else
        qCWarning(lcFileOps).noquote() << outcomeText(outcome) << outcome.errors;
}

void FileOperations::run(JobRequest request)
{
    FileJob job{m_nextId++, request.title, QDateTime::currentDateTime(), std::make_shared<CopyProgress>()};
    m_jobs.append(job);
    if (!m_ticker.isActive())
        m_ticker.start();
    Q_EMIT jobsChanged();

    QPointer<FileOperations> guard(this);
    auto progress = job.progress;
    Work work = std::move(request.work);
    QThreadPool* pool = request.pool ? request.pool : QThreadPool::globalInstance();
    const quint64 id = job.id;
    m_requests.insert(id, std::move(request));
    pool->start([guard, progress, work = std::move(work), id]() {
        auto output = std::make_shared<JobOutput>();
        ChangeRunner runner(*progress);
        work(runner, *output);
        output->report = std::move(runner.report());
        deliverToGui(guard, [id, output](FileOperations& operations) { operations.finish(id, std::move(*output)); });
    });
}

void FileOperations::finish(quint64 id, JobOutput output)
{
    const JobRequest request = m_requests.take(id);
    QUndoStack* window = request.window ? request.window.data() : request.undo.data();
    m_jobs.removeIf([id](const FileJob& job) { return job.id == id; });
    if (m_jobs.isEmpty())
        m_ticker.stop();
    Q_EMIT jobsChanged();

    ChangeReport& report = output.report;
    if (const Status saved = m_trashLog.update(report.trashLogAdded, report.trashLogRemoved); !saved)
        qCWarning(lcFileOps) << saved.error();
    if (!report.moves.isEmpty())
        Q_EMIT itemsMoved(report.moves);
    if (!report.retagged.isEmpty())
        Q_EMIT tagsChanged(report.retagged);
    const bool undoable = (!report.changes.empty() || request.alongside) && request.undo;
    const bool changed = !report.changes.empty() || (output.irreversible && !output.done.isEmpty());
    const QList<FilePath> touched = output.touched + pathsTouched(report.changes);
    const QList<FilePath> rewritten = output.rewritten + filesRewritten(report.changes);
    if (undoable)
        request.undo->push(new FileOperationCommand(this, request.actionName, std::move(report.changes), request.undo,
                                                    request.alongside, request.moved));
    OperationOutcome outcome;
    outcome.errors = report.errors;
    outcome.failuresText = output.failures;
    outcome.skipped = report.skipped;
    outcome.cancelled = report.cancelled;
    outcome.canUndo = undoable;
    outcome.icon = output.icon;
    outcome.done = int(output.done.size());
    // What was done is said beside what failed only by jobs that count their items; the others'
    // failure sentences say it already ("Extracted x, leaving out …").
    if (changed && (!output.done.isEmpty() || report.errors.isEmpty()))
        outcome.doneText = output.toast;
    if (outcome.isSuccess()) {
        if (request.announce && changed && !output.toast.isEmpty()) {
            const Toast toast{output.toast, output.icon, undoable, false};
            if (const WindowHandlers* handlers = handlersOf(window); handlers && handlers->announce)
                handlers->announce(toast);
            Q_EMIT announced(toast);
        }
    } else if (!outcome.errors.isEmpty() || request.announce) {
        this->report(outcome, window);
    }
    if (request.created && !output.made.isEmpty())
        request.created(output.made);
    if (request.finished)
        request.finished(output.done);
    if (request.moved)
        request.moved(report.moves);
    if (!report.moves.isEmpty() && request.pool != &m_replayPool)
        Q_EMIT itemsRelocated(report.moves, request.undo);
    if (request.after)
        request.after();
    if (!touched.isEmpty())
        Q_EMIT pathsChanged(touched);
    if (!rewritten.isEmpty())
        Q_EMIT contentsChanged(rewritten);
    Q_EMIT operationFinished();
}

void FileOperations::replay(std::shared_ptr<std::vector<FileChange>> changes, bool forward, const QString& actionName,
                            QUndoStack* window, Moved moved)
{
    ++m_pendingReplays;
    JobRequest request;
    request.window = window;
    request.moved = std::move(moved);
    request.title = (forward ? QStringLiteral("Redoing ") : QStringLiteral("Undoing ")) + actionName;
    request.announce = false;
    request.pool = &m_replayPool;
    request.work = [changes, forward](ChangeRunner& runner, JobOutput& output) {
        output.touched = pathsTouched(*changes); // where things were before
        if (forward)
            runner.redo(*changes);
        else
            runner.undo(*changes);
        output.touched += pathsTouched(*changes); // and where they are now
        output.rewritten = filesRewritten(*changes);
    };
    request.after = [this] { --m_pendingReplays; };
    run(std::move(request));
}

void FileOperations::ask(const QList<Move>& collisions, const FilePath& folder, ConflictAnswer answer, QUndoStack* window)
{
    ConflictQuestion question;
    question.collisions = collisions;
    question.title = collisions.size() == 1
        ? quoted(collisions.first().to.fileName()) + QStringLiteral(" is already in ") + quoted(folder.fileName())
        : QString::number(collisions.size()) + QStringLiteral(" items are already in ") + quoted(folder.fileName());
    question.message = QStringLiteral("Replacing moves the ones there now to the Trash.");
    if (const WindowHandlers* handlers = handlersOf(window); handlers && handlers->resolveConflicts)
        handlers->resolveConflicts(question, std::move(answer));
    else if (m_resolveConflicts)
        m_resolveConflicts(question, std::move(answer));
    else
        answer(ConflictChoice::keepBoth);
}

void FileOperations::transfer(const QList<FilePath>& items, const FilePath& folder, Mode mode, QUndoStack* undo, Finished finished,
                              Moved moved)
{
    for (const FilePath& item : items) {
        if (liesWithin(folder, item)) {
            report(quoted(item.fileName()) + QStringLiteral(" can't be put inside itself."), undo);
            return;
        }
    }
    QList<Move> moves;
    QList<Move> collisions;
    for (const FilePath& item : items) {
        Move move{item, folder.child(QByteArrayView(item.fileNameBytes()))};
        if (move.to == item) {
            if (mode == Mode::move)
                continue; // already there
            move.to = uniqueURL(move.to, true); // a copy into its own folder is a duplicate
        } else if (pathExists(move.to)) {
            collisions.append(move);
        }
        moves.append(move);
    }
    if (moves.isEmpty())
        return;
    const QString actionName = mode == Mode::copy ? QStringLiteral("Copy") : QStringLiteral("Move");
    auto proceed = [this, moves, collisions, actionName, mode, undo = QPointer<QUndoStack>(undo),
                    finished = std::move(finished), moved = std::move(moved)](ConflictChoice choice) mutable {
        QList<FilePath> replacing;
        if (choice == ConflictChoice::cancel)
            return;
        for (const Move& collision : collisions) {
            const auto at = std::find(moves.begin(), moves.end(), collision);
            if (choice == ConflictChoice::skip)
                moves.erase(at);
            else if (choice == ConflictChoice::keepBoth)
                at->to = uniqueURL(at->to, false);
            else
                replacing.append(collision.to);
        }
        if (!moves.isEmpty())
            copy(moves, actionName, mode == Mode::move, undo, replacing, std::move(finished), std::move(moved));
    };
    if (collisions.isEmpty())
        proceed(ConflictChoice::keepBoth);
    else
        ask(collisions, folder, std::move(proceed), undo);
}

void FileOperations::copy(const QList<Move>& moves, const QString& actionName, bool removingSources, QUndoStack* undo,
                          const QList<FilePath>& replacing, Finished finished, Moved moved)
{
    JobRequest request;
    request.finished = std::move(finished);
    request.moved = std::move(moved);
    request.title = (removingSources ? QStringLiteral("Moving ") : QStringLiteral("Copying ")) + itemCount(moves.size());
    request.actionName = actionName;
    request.undo = undo;
    const QSet<FilePath> replace(replacing.begin(), replacing.end());
    request.work = [moves, removingSources, replace](ChangeRunner& runner, JobOutput& output) {
        qint64 total = 0;
        for (const Move& move : moves)
            if (!removingSources || !isSameVolume(move.from, move.to.parent()))
                total += treeBytes(move.from, &runner.progress());
        runner.progress().setTotalBytes(total);
        QList<FilePath> done;
        for (const Move& move : moves) {
            if (runner.isCancelled())
                break;
            if (!pathExists(move.from)) {
                ++runner.report().skipped;
                continue;
            }
            if (replace.contains(move.to) && pathExists(move.to)) {
                if (move.to.contains(move.from)) {
                    runner.fail(quoted(move.from.fileName()) + QStringLiteral(" can't replace the folder that holds it."));
                    continue;
                }
                if (!runner.trash(move.to))
                    continue;
            }
            const bool ok = removingSources ? runner.move(move.from, move.to) : runner.copy(move.from, move.to);
            if (ok)
                done.append(move.to); // where it landed: the toast names a kept-both copy by its new name
        }
        output.toast = withTransferNotes((removingSources ? QStringLiteral("Moved ") : QStringLiteral("Copied ")) + countOrName(done),
                                         runner.report());
        output.icon = removingSources ? QStringLiteral("arrow.right.doc.on.clipboard") : QStringLiteral("doc.on.doc");
        output.done = done;
    };
    run(std::move(request));
}

void FileOperations::duplicate(const QList<FilePath>& items, QUndoStack* undo)
{
    JobRequest request;
    request.title = QStringLiteral("Duplicate");
    request.actionName = QStringLiteral("Duplicate");
    request.undo = undo;
    request.work = [items](ChangeRunner& runner, JobOutput& output) {
        qint64 total = 0;
        for (const FilePath& item : items)
            total += treeBytes(item, &runner.progress());
        runner.progress().setTotalBytes(total);
        QList<FilePath> done;
        for (const FilePath& item : items) {
            if (runner.isCancelled())
                break;
            if (runner.copy(item, uniqueURL(item, true)))
                done.append(item);
        }
        output.toast = withTransferNotes(QStringLiteral("Duplicated ") + countOrName(done), runner.report());
        output.icon = QStringLiteral("plus.square.on.square");
        output.done = done;
    };
    run(std::move(request));
}

void FileOperations::trash(const QList<FilePath>& items, const QString& actionName, QUndoStack* undo, bool announce,
                           Finished finished)
{
    JobRequest request;
    request.finished = std::move(finished);
    request.title = QStringLiteral("Moving ") + itemCount(items.size()) + QStringLiteral(" to the Trash");
    request.actionName = actionName;
    request.undo = undo;
    request.announce = announce;
    request.work = [items](ChangeRunner& runner, JobOutput& output) {
        runner.progress().setTotalItems(items.size());
        QList<FilePath> done;
        for (const FilePath& item : items) {
            if (runner.isCancelled())
                break;
            if (runner.trash(item))
                done.append(item);
            runner.progress().addFinished(1);
        }
        output.toast = QStringLiteral("Moved ") + countOrName(done) + QStringLiteral(" to the Trash");
        output.icon = QStringLiteral("trash");
        output.done = done;
    };
    run(std::move(request));
}

void FileOperations::putBack(const QList<FilePath>& itemsInTrash, QUndoStack* undo)
{
    QList<Move> moves;
    for (const FilePath& item : itemsInTrash) {
        auto former = m_trashLog.formerPath(item);
        if (!former)
            former = trash::originalPath(item);
        if (!former) {
            report(quoted(item.fileName()) + QStringLiteral(" can't be put back: where it came from isn't known."), undo);
            continue;
        }
        moves.append({item, *former});
    }
    if (moves.isEmpty())
        return;
    JobRequest request;
    request.title = QStringLiteral("Putting back ") + itemCount(moves.size());
    request.actionName = QStringLiteral("Put Back");
    request.undo = undo;
    request.work = [moves](ChangeRunner& runner, JobOutput& output) {
        QList<FilePath> done;
        for (const Move& move : moves) {
            if (runner.isCancelled())
                break;
            // The folder it came from may be gone: make it again.
            QList<FilePath> missing;
            for (FilePath folder = move.to.parent(); !folder.isRoot() && !pathExists(folder); folder = folder.parent())
                missing.prepend(folder);
            bool ok = true;
            for (const FilePath& folder : missing)
                ok = ok && runner.makeFolder(folder);
            if (ok && runner.putBack(move.from, uniqueURL(move.to, false)))
                done.append(move.to);
        }
        output.toast = QStringLiteral("Put back ") + countOrName(done);
        output.icon = QStringLiteral("arrow.uturn.backward");
        output.done = done;
    };
    run(std::move(request));
}

} // namespace orwick

#include "moc_FileOperations.cpp"

// FileOperations: the batch transforms (the picture tools) — new files made from each source,
// or each file rewritten in place — as one job and one undo step, the transform running on
// several sources at once (runInOrder) while this job's worker records what was done, in the
// order of the sources.

#include "fileops/FileOperations.h"
#include "fileops/FileVersions.h"
#include "fileops/OperationTexts.h"
#include "fileops/ParallelInOrder.h"
#include "fileops/RewriteRequest.h"

#include <QThread>

#include <unistd.h>

namespace orwick {

namespace {

// Lower-cases the first letter so that a sentence can follow a colon.
QString continuing(QString text)
{
    if (!text.isEmpty() && text.front().isUpper() && (text.size() < 2 || !text.at(1).isUpper()))
        text.front() = text.front().toLower();
    if (text.endsWith(u'.'))
        text.chop(1);
    return text;
}

// Makes `text` a sentence of its own: a capital first letter and a full stop.
QString asSentence(QString text)
{
    if (!text.isEmpty() && text.front().isLower())
        text.front() = text.front().toUpper();
    if (!text.endsWith(u'.'))
        text += u'.';
    return text;
}

// "Couldn’t do “Resize” on “a.jpg”: it is damaged." A reason that names the file is a sentence
// of its own ("“a.jpg” can’t be read: it isn’t a picture.") and is given as it is, rather than
// behind a second colon.
QString transformFailure(const QString& verb, const FilePath& source, const QString& reason)
{
    const QString name = quoted(source.fileName());
    if (!reason.isEmpty() && reason.contains(name))
        return asSentence(reason);
    const QString text = QStringLiteral("Couldn’t do ") + quoted(verb) + QStringLiteral(" on ") + name;
    if (reason.isEmpty())
        return text + u'.';
    return text + QStringLiteral(": ") + continuing(reason) + u'.';
}

// The report's words for several failures: "3 files didn’t work: " and the first of them.
QString failuresText(const QStringList& errors)
{
    if (errors.size() < 2)
        return {};
    return QStringLiteral("%1 files didn’t work: %2").arg(errors.size()).arg(errors.first());
}

// "a.webp" for one file, else "3 files".
QString fileCountOrName(const QList<FilePath>& files)
{
    return files.size() == 1 ? files.first().fileName() : QStringLiteral("%1 files").arg(files.size());
}

// How one source ended on its worker.
enum class Ending { done, skipped, failed, cancelled };

// A made file, written under a temporary name and waiting for its place.
struct Pending {
    FilePath temporary;
    FilePath wanted;
    QByteArray digest;
};

struct MadeFromSource {
    Ending ending = Ending::done;
    QString error;
    QList<Pending> files;
};

struct ReplacedFile {
    Ending ending = Ending::done;
    QString error;
    fileversions::Replaced replaced;
};

void removeTemporaries(const QList<Pending>& files, qsizetype from = 0)
{
    for (qsizetype i = from; i < files.size(); ++i)
        ::unlink(files[i].temporary.c_str());
}

// How many sources are transformed at once: the engine's setting, else one per core.
int transformWorkers(int configured)
{
    return configured > 0 ? configured : std::max(1, QThread::idealThreadCount());
}

// Counts a source that didn't end in a change on the report; true when it did end in one.
bool recordEnding(ChangeRunner& runner, Ending ending, const QString& error)
{
    switch (ending) {
    case Ending::skipped:
        ++runner.report().skipped;
        return false;
    case Ending::cancelled:
        runner.report().cancelled = true;
        return false;
    case Ending::failed:
        runner.fail(error);
        return false;
    case Ending::done:
        break;
    }
    return true;
}

// runInOrder's stop test: a cancelled job tells the running transforms, and its report says so.
auto stopWhenCancelled(ChangeRunner& runner, CancelFlag& cancel)
{
    return [&runner, &cancel] {
        if (!runner.progress().isCancelled())
            return false;
        cancel.cancel();
        runner.report().cancelled = true;
        return true;
    };
}

} // namespace

void FileOperations::makeFiles(const QList<FilePath>& sources, const TransformTexts& texts, MakeTransform transform,
                               QUndoStack* undo, Finished finished)
{
    if (sources.isEmpty())
        return;
    JobRequest request = rewriteRequest<JobRequest>(texts, undo, std::move(finished));
    const int workers = transformWorkers(m_transformWorkers);
    request.work = [sources, texts, transform = std::move(transform), workers](ChangeRunner& runner, JobOutput& output) {
        runner.progress().setTotalItems(sources.size());
        CancelFlag cancel;
        CopyProgress& progress = runner.progress(); // safe on any thread, unlike the runner
        auto produce = [&](qsizetype index) {
            const FilePath& source = sources[index];
            MadeFromSource made;
            if (progress.isCancelled())
                return MadeFromSource{Ending::cancelled, {}, {}};
            if (!pathExists(source))
                return MadeFromSource{Ending::skipped, {}, {}};
            progress.startFile(source.fileNameBytes(), 0); // shown as the file being worked on
            auto files = transform(source, cancel);
            if (!files) {
                if (cancel.isCancelled())
                    return MadeFromSource{Ending::cancelled, {}, {}};
                return MadeFromSource{Ending::failed, transformFailure(texts.verb, source, files.error()), {}};
            }
            // Each file's bytes go to the disk at once, so few are held in memory.
            for (MadeFile& file : *files) {
                auto temporary = fileversions::writeTemporary(file.wanted, file.contents);
                if (!temporary) {
                    removeTemporaries(made.files);
                    return MadeFromSource{Ending::failed, transformFailure(texts.verb, source, temporary.error()), {}};
                }
                made.files.append({*temporary, file.wanted, fileversions::digestOf(file.contents)});
                file.contents = QByteArray();
            }
            return made;
        };
        QList<FilePath> done;
        QList<FilePath> madeFiles;
        auto consume = [&](qsizetype index, MadeFromSource&& made) {
            runner.progress().addFinished(1);
            const FilePath& source = sources[index];
            if (!recordEnding(runner, made.ending, made.error))
                return;
            // Names are taken here, in the order of the sources, at the moment of each rename.
            for (qsizetype i = 0; i < made.files.size(); ++i) {
                const Pending& file = made.files[i];
                const auto placed = fileversions::placeTemporary(file.temporary, file.wanted);
                if (!placed) {
                    removeTemporaries(made.files, i);
                    runner.fail(transformFailure(texts.verb, source, placed.error()));
                    return;
                }
                FileChange change{FileChange::Kind::created, {}, *placed, {}};
                change.digestAfter = file.digest;
                runner.report().changes.push_back(std::move(change));
                madeFiles.append(*placed);
            }
            done.append(source);
        };
        runInOrder<MadeFromSource>(sources.size(), workers, 2 * qsizetype(workers), produce, consume,
                                   stopWhenCancelled(runner, cancel));
        if (!madeFiles.isEmpty())
            output.toast = QStringLiteral("Created ") + fileCountOrName(madeFiles);
        output.icon = texts.icon;
        output.done = done;
        output.failures = failuresText(runner.report().errors);
        if (madeFiles.size() == 1)
            output.made = madeFiles.first();
    };
    run(std::move(request));
}

void FileOperations::replaceInPlace(const QList<FilePath>& asked, const TransformTexts& texts, ReplaceTransform transform,
                                    QUndoStack* undo, Finished finished)
{
    // A file named twice is rewritten once: two workers never write one file.
    QList<FilePath> files;
    for (const FilePath& file : asked)
        if (!files.contains(file))
            files.append(file);
    if (files.isEmpty())
        return;
    JobRequest request = rewriteRequest<JobRequest>(texts, undo, std::move(finished));
    const int workers = transformWorkers(m_transformWorkers);
    request.work = [files, texts, transform = std::move(transform), workers](ChangeRunner& runner, JobOutput& output) {
        runner.progress().setTotalItems(files.size());
        CancelFlag cancel;
        CopyProgress& progress = runner.progress(); // safe on any thread, unlike the runner
        auto produce = [&](qsizetype index) {
            const FilePath& file = files[index];
            if (progress.isCancelled())
                return ReplacedFile{Ending::cancelled, {}, {}};
            // Refusals come before the transform: a read-only file isn't decoded for nothing.
            const auto found = fileversions::findForReplace(file);
            if (!found)
                return ReplacedFile{Ending::skipped, {}, {}};
            if (!*found)
                return ReplacedFile{Ending::failed, found->error(), {}};
            progress.startFile(file.fileNameBytes(), 0);
            auto bytes = transform(file, cancel);
            if (!bytes) {
                if (cancel.isCancelled())
                    return ReplacedFile{Ending::cancelled, {}, {}};
                return ReplacedFile{Ending::failed, transformFailure(texts.verb, file, bytes.error()), {}};
            }
            auto replaced = fileversions::replaceKeepingOld(**found, *bytes);
            if (!replaced)
                return ReplacedFile{Ending::failed, replaced.error(), {}};
            return ReplacedFile{Ending::done, {}, std::move(*replaced)};
        };
        QList<FilePath> done;
        auto consume = [&](qsizetype index, ReplacedFile&& result) {
            runner.progress().addFinished(1);
            if (!recordEnding(runner, result.ending, result.error))
                return;
            done.append(files[index]);
            const fileversions::Replaced& replaced = result.replaced;
            if (replaced.kept.isEmpty())
                return; // the transform changed nothing
            FileChange change{FileChange::Kind::replaced, replaced.target, replaced.kept, {}};
            change.digestBefore = replaced.digestBefore;
            change.digestAfter = replaced.digestAfter;
            runner.report().changes.push_back(std::move(change));
            runner.report().trashLogAdded.append({replaced.kept, replaced.target});
        };
        runInOrder<ReplacedFile>(files.size(), workers, 2 * qsizetype(workers), produce, consume,
                                 stopWhenCancelled(runner, cancel));
        if (!done.isEmpty())
            output.toast = (texts.done.isEmpty() ? QStringLiteral("Changed") : texts.done) + u' ' + fileCountOrName(done);
        output.icon = texts.icon;
        output.done = done;
        output.failures = failuresText(runner.report().errors);
    };
    run(std::move(request));
}

} // namespace orwick

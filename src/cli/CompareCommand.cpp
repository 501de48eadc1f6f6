// orwick-cli compare LEFT RIGHT [--all] [--limit N] [--sync missing|newer|mirror [--to-left]]: the
// folder comparison the compare panel shows. One entry per line, tab-separated: status (onlyLeft,
// onlyRight, changed, same), the path relative to both folders (a folder ends in "/" and, on one
// side only, is followed by the files it holds), then the left and right sizes in bytes ("-"
// where there is none). Same entries only with --all. Then the panel's summary line. Exits 0
// when nothing differs, 1 when something does, 2 when the folders can't be compared — as diff
// does.
// With --sync, the panel's sync instead: the same plan (FolderDiff::plan) run by the file
// operations engine as one job, toward the right folder unless --to-left. It prints the job's
// toast ("Copied 300 items, moved 300 items to the Trash"), or "Nothing to do for …", and each
// failure on standard error; exits 0 when everything was done, 1 when something wasn't.

#include "cli/CliCommand.h"
#include "cli/CliOutput.h"
#include "cli/CliPaths.h"
#include "cli/EngineRun.h"
#include "disktools/FolderDiff.h"
#include "platform/DirectoryReader.h"

namespace orwick::cli {
namespace {

QByteArray sizeText(const std::optional<qint64>& size) { return size ? QByteArray::number(*size) : QByteArray("-"); }

std::optional<FolderDiff::SyncMode> syncMode(const QByteArray& name, bool toRight)
{
    if (name == "missing")
        return FolderDiff::SyncMode::copyMissing(toRight);
    if (name == "newer")
        return FolderDiff::SyncMode::bothWays();
    if (name == "mirror")
        return FolderDiff::SyncMode::mirror(toRight);
    return std::nullopt;
}

#ifndef ORWICK_CLI_LIGHT
// The sync needs the engine, so it lives in orwick-cli-full only: the light orwick-cli hands a
// command line with --sync on before it runs (fullProgramOptions).
std::optional<qint64> modifiedTime(const FilePath& path)
{
    const auto st = statPath(path);
    return st ? std::optional<qint64>(st->modifiedNs) : std::nullopt;
}

// The compare panel's sync, run to its end by the engine.
int sync(const FolderDiff::Result& result, const FilePath& left, const FilePath& right, FolderDiff::SyncMode mode)
{
    const QString title = FolderDiff::syncTitle(mode, left, right);
    if (result.isPartial) {
        err() << "The comparison stopped at its file limit, so there is no whole plan to sync." << Qt::endl;
        return 1;
    }
    const FolderDiff::SyncPlan plan = FolderDiff::plan(result, left, right, mode, modifiedTime);
    if (plan.isEmpty()) {
        out() << "Nothing to do for “" << title << "”" << Qt::endl;
        return 0;
    }
    EngineRun run(false);
    bool reported = false;
    run.sayReports([&reported](const OperationOutcome&) { reported = true; });
    run.operations().sync(plan.copies, plan.replacing, plan.toTrash, title, nullptr);
    run.wait();
    if (!run.announcement().isEmpty())
        out() << run.announcement() << Qt::endl;
    return reported ? 1 : 0;
}

#endif

int compare(const Arguments& arguments)
{
    bool all = false;
    qint64 limit = 10'000'000;
    QByteArray syncName;
    bool toRight = true;
    QList<QByteArray> folders;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == "--all") {
            all = true;
        } else if (arguments[i] == "--sync" && i + 1 < arguments.size()) {
            syncName = arguments[++i];
        } else if (arguments[i] == "--to-left") {
            toRight = false;
        } else if (arguments[i] == "--limit" && i + 1 < arguments.size()) {
            bool ok = false;
            limit = arguments[++i].toLongLong(&ok);
            if (!ok || limit <= 0)
                return usageError(QStringLiteral("--limit takes a number of files"));
        } else {
            folders.append(arguments[i]);
        }
    }
    if (folders.size() != 2)
        return usageError(QStringLiteral("usage: orwick-cli compare LEFT RIGHT [--all] [--limit N] [--sync missing|newer|mirror [--to-left]]"));
    const auto mode = syncName.isEmpty() ? std::nullopt : syncMode(syncName, toRight);
    if (!syncName.isEmpty() && !mode)
        return usageError(QStringLiteral("--sync takes missing, newer or mirror"));
    for (const QByteArray& folder : folders) {
        if (const auto problem = problemWith(folder, Expect::folder)) {
            err() << *problem << Qt::endl;
            return 2;
        }
    }
    const FilePath left = pathArgument(folders[0]);
    const FilePath right = pathArgument(folders[1]);
    if (const auto problem = FolderDiff::problemWith(left, right)) {
        err() << *problem << Qt::endl;
        return 2;
    }
    CancelFlag never;
    const FolderDiff::Result result = FolderDiff::compare(left, right, limit, never);
#ifndef ORWICK_CLI_LIGHT
    if (mode)
        return sync(result, left, right, *mode);
#endif
    LineWriter lines;
    for (const FolderDiff::Entry& entry : result.entries) {
        if (entry.status == FolderDiff::Status::same && !all)
            continue;
        lines.add(FolderDiff::rawValue(entry.status).toLatin1());
        lines.add("\t");
        lines.add(entry.path);
        if (entry.isFolder)
            lines.add("/");
        lines.add("\t");
        lines.add(sizeText(entry.leftSize));
        lines.add("\t");
        lines.add(sizeText(entry.rightSize));
        if (entry.isFolder && entry.status != FolderDiff::Status::changed) {
            lines.add("\t");
            lines.add(counted(entry.files, "file").toUtf8());
        }
        lines.endLine();
    }
    lines.add((FolderDiff::summary(result) + FolderDiff::partialNote(result, limit)).toUtf8());
    lines.endLine();
    return result.hasDifferences() ? 1 : 0;
}

const CliRegistration registration({QStringLiteral("compare"), QStringLiteral("compare LEFT RIGHT [--all] [--limit N] [--sync MODE [--to-left]]"),
                                     QStringLiteral("what differs between two folders"), compare,
                                     QStringLiteral("One line per difference: status, path, left size, right size (tab-separated).\n"
                                                    "--all lists the files that are the same too; --limit N stops each side's\n"
                                                    "walk after N files. Exits 0 when nothing differs, 1 when something does.\n"
                                                    "--sync missing|newer|mirror brings the folders into line as the compare\n"
                                                    "panel's sync does (copy what's missing, both ways with the newer file\n"
                                                    "winning, or mirror with the extra files going to the Trash), toward the\n"
                                                    "right folder, or the left with --to-left; one undoable job of the engine."),
                                     {"--sync"}});

} // namespace
} // namespace orwick::cli

// orwick-cli compare LEFT RIGHT [--all] [--limit N]: the folder comparison the compare panel
// shows. One entry per line, tab-separated: status (onlyLeft, onlyRight, changed, same), the
// path relative to both folders (a folder ends in "/" and, on one side only, is followed by the
// files it holds), then the left and right sizes in bytes ("-" where there is none). Same
// entries only with --all. Then the panel's summary line. Exits 0 when nothing differs, 1 when
// something does, 2 when the folders can't be compared — as diff does.

#include "cli/CliCommand.h"
#include "cli/CliOutput.h"
#include "cli/CliPaths.h"
#include "disktools/FolderDiff.h"

namespace orwick::cli {
namespace {

QByteArray sizeText(const std::optional<qint64>& size) { return size ? QByteArray::number(*size) : QByteArray("-"); }

int compare(const Arguments& arguments)
{
    bool all = false;
    qint64 limit = 10'000'000;
    QList<QByteArray> folders;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == "--all") {
            all = true;
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
        return usageError(QStringLiteral("usage: orwick-cli compare LEFT RIGHT [--all] [--limit N]"));
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

const CliRegistration registration({QStringLiteral("compare"), QStringLiteral("compare LEFT RIGHT [--all] [--limit N]"),
                                     QStringLiteral("what differs between two folders"), compare,
                                     QStringLiteral("One line per difference: status, path, left size, right size (tab-separated).\n"
                                                    "--all lists the files that are the same too; --limit N stops each side's\n"
                                                    "walk after N files. Exits 0 when nothing differs, 1 when something does.")});

} // namespace
} // namespace orwick::cli

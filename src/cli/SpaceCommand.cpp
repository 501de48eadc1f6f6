// orwick-cli space DIR|FILE: the space scan the treemap draws. One row per child of the folder
// (allocated bytes, kind, name), largest first, the "Files under 1 MB, together" block, then a
// summary line with the total in bytes.
// A file gives its own row and the summary, with its length beside what it takes on disk.

#include "cli/CliCommand.h"
#include "cli/CliOutput.h"
#include "cli/CliPaths.h"
#include "disktools/DiskNames.h"
#include "disktools/SpaceScan.h"

#include <QLocale>
#include <sys/stat.h>

namespace orwick::cli {
namespace {

int space(const Arguments& arguments)
{
    if (arguments.size() != 1)
        return usageError(QStringLiteral("usage: orwick-cli space DIR|FILE"));
    if (const auto problem = problemWith(arguments.first(), Expect::anything)) {
        err() << *problem << Qt::endl;
        return 1;
    }
    const FilePath folder = pathArgument(arguments.first());
    struct stat info {};
    if (::stat(folder.native().constData(), &info) == 0 && !S_ISDIR(info.st_mode)) {
        // A file takes what the disk gave it; its one row and the same summary.
        const qint64 allocated = qint64(info.st_blocks) * 512;
        LineWriter lines;
        lines.add(QByteArray::number(allocated) + "\tfile\t" + folder.fileNameBytes());
        lines.endLine();
        lines.add(QStringLiteral("%1 bytes (%2) in %3 · %4 (%5 bytes long)")
                      .arg(allocated)
                      .arg(byteCountText(allocated), folder.text(), counted(1, "entry", "entries"))
                      .arg(qint64(info.st_size))
                      .toUtf8());
        lines.endLine();
        return 0;
    }
    CancelFlag never;
    SpaceScan::Shared shared(never);
    const auto root = SpaceScan::scan(folder, shared);
    LineWriter lines;
    for (const auto& child : root->children) {
        lines.add(QByteArray::number(child->size));
        lines.add(child->isPackage ? "\tpackage\t" : child->isFolder ? "\tfolder\t" : "\tfile\t");
        lines.add(child->name);
        lines.endLine();
    }
    if (root->smallCount > 0) {
        lines.add(QByteArray::number(root->smallFiles) + "\tsmall files\tFiles under 1 MB, together ("
                  + QByteArray::number(root->smallCount) + ")");
        lines.endLine();
    }
    const qint64 scanned = shared.scanned.load();
    const QString summary = QStringLiteral("%1 bytes (%2) in %3 · %4 %5")
                                .arg(root->size)
                                .arg(byteCountText(root->size), folder.text(), QLocale().toString(scanned),
                                     scanned == 1 ? QStringLiteral("entry") : QStringLiteral("entries"));
    lines.add(summary.toUtf8());
    lines.endLine();
    return 0;
}

const CliRegistration registration({QStringLiteral("space"), QStringLiteral("space DIR|FILE"),
                                     QStringLiteral("what takes the room in a folder, by allocated bytes"), space});

} // namespace
} // namespace orwick::cli

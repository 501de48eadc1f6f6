// orwick-cli space DIR: the space scan the treemap draws. One row per child of the folder
// (allocated bytes, kind, name), largest first, the "Files under 1 MB, together" block, then a
// summary line with the total in bytes.

#include "cli/CliCommand.h"
#include "cli/CliOutput.h"
#include "cli/CliPaths.h"
#include "disktools/DiskNames.h"
#include "disktools/SpaceScan.h"

#include <QLocale>

namespace orwick::cli {
namespace {

int space(const Arguments& arguments)
{
    if (arguments.size() != 1)
        return usageError(QStringLiteral("usage: orwick-cli space DIR"));
    if (const auto problem = problemWith(arguments.first(), Expect::folder)) {
        err() << *problem << Qt::endl;
        return 1;
    }
    const FilePath folder = pathArgument(arguments.first());
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
    const QString summary = QStringLiteral("%1 bytes (%2) in %3 · %4 entries")
                                .arg(root->size)
                                .arg(byteCountText(root->size), folder.text(), QLocale().toString(shared.scanned.load()));
    lines.add(summary.toUtf8());
    lines.endLine();
    return 0;
}

const CliRegistration registration({QStringLiteral("space"), QStringLiteral("space DIR"),
                                     QStringLiteral("what takes the room in a folder, by allocated bytes"), space});

} // namespace
} // namespace orwick::cli

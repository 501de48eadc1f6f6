// orwick-cli duplicates DIR [--min-size N]: the duplicate finder the panel uses. One group per
// line (size, then the members' paths, tab-separated, oldest first), largest waste first, then
// the panel's footer line.

#include "cli/CliCommand.h"
#include "cli/CliOutput.h"
#include "cli/CliPaths.h"
#include "disktools/Duplicates.h"

namespace orwick::cli {
namespace {

int duplicates(const Arguments& arguments)
{
    Duplicates::Options options;
    QByteArray target;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == "--min-size" && i + 1 < arguments.size()) {
            bool ok = false;
            options.minimumSize = arguments[++i].toLongLong(&ok);
            if (!ok || options.minimumSize < 0)
                return usageError(QStringLiteral("--min-size takes a number of bytes"));
        } else if (target.isEmpty()) {
            target = arguments[i];
        } else {
            return usageError(QStringLiteral("duplicates takes one folder"));
        }
    }
    if (target.isEmpty())
        return usageError(QStringLiteral("usage: orwick-cli duplicates DIR [--min-size N]"));
    if (const auto problem = problemWith(target, Expect::folder)) {
        err() << *problem << Qt::endl;
        return 1;
    }

    CancelFlag never;
    const Duplicates::Scan scan = Duplicates::find(pathArgument(target), options, never);
    LineWriter lines;
    for (const Duplicates::Group& group : scan.groups) {
        lines.add(QByteArray::number(group.size));
        for (const Duplicates::File& file : group.files) {
            lines.add("\t");
            lines.add(file.url.native());
        }
        lines.endLine();
    }
    lines.add(Duplicates::summary(&scan).toUtf8());
    lines.endLine();
    return 0;
}

const CliRegistration registration({QStringLiteral("duplicates"), QStringLiteral("duplicates DIR [--min-size N]"),
                                     QStringLiteral("groups of files with the same contents"), duplicates});

} // namespace
} // namespace orwick::cli

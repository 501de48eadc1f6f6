// orwick-cli cleanup DIR: the build folders the clean-up panel offers (seven levels down), each
// with its kind and allocated size, in walk order; then a summary line. Nothing is removed.

#include "cli/CliCommand.h"
#include "cli/CliOutput.h"
#include "cli/CliPaths.h"
#include "disktools/BuildJunk.h"
#include "disktools/DiskNames.h"

namespace orwick::cli {
namespace {

int cleanup(const Arguments& arguments)
{
    if (arguments.size() != 1)
        return usageError(QStringLiteral("usage: orwick-cli cleanup DIR"));
    if (const auto problem = problemWith(arguments.first(), Expect::folder)) {
        err() << *problem << Qt::endl;
        return 1;
    }
    CancelFlag never;
    const auto found = BuildJunk::find(pathArgument(arguments.first()), BuildJunk::searchDepth, never);
    const std::vector<qint64> sizes = BuildJunk::measureAll(found, never);
    LineWriter lines;
    qint64 total = 0;
    for (size_t i = 0; i < found.size(); ++i) {
        total += sizes[i];
        lines.add(found[i].kind.toUtf8() + '\t' + QByteArray::number(sizes[i]) + '\t' + found[i].url.native());
        lines.endLine();
    }
    lines.add(QStringLiteral("%1, %2").arg(counted(qint64(found.size()), "build folder")).arg(byteCountText(total)).toUtf8());
    lines.endLine();
    return 0;
}

const CliRegistration registration({QStringLiteral("cleanup"), QStringLiteral("cleanup DIR"),
                                     QStringLiteral("build folders that projects regenerate, with sizes"), cleanup});

} // namespace
} // namespace orwick::cli

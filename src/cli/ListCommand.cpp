// orwick-cli list DIR: the folder's items through the loader the window uses (the listing benchmark's hook).

#include "cli/CliCommand.h"
#include "cli/CliPaths.h"
#include "files/DirectoryLoader.h"
#include "files/ListingLoader.h"

#include <cstdio>

namespace orwick::cli {
namespace {

int list(const Arguments& arguments)
{
    bool showHidden = false;
    QByteArray target;
    for (const QByteArray& argument : arguments) {
        if (argument == "--hidden")
            showHidden = true;
        else if (target.isEmpty())
            target = argument;
        else
            return usageError(QStringLiteral("list takes one folder"));
    }
    if (target.isEmpty())
        return usageError(QStringLiteral("usage: orwick-cli list DIR|trash|recents|screenshots|tag:NAME [--hidden]"));
    const auto listing = Listing::fromName(argumentText(target));
    if (!listing) {
        if (const auto problem = problemWith(target, Expect::folder)) {
            err() << *problem << Qt::endl;
            return 1;
        }
    }
    const ListingResult result = listing ? ListingLoader::load(*listing, showHidden)
                                         : DirectoryLoader::load(pathArgument(target), showHidden);
    if (result.error) {
        err() << shownArgument(target) << ": " << *result.error << Qt::endl;
        return 1;
    }
    // One buffered write per line: printing must not cost more than the listing.
    QByteArray buffer;
    buffer.reserve(1 << 20);
    for (const FileItem& item : result.items) {
        buffer += categoryName(item.category).toLatin1();
        buffer += '\t';
        buffer += item.size ? QByteArray::number(*item.size) : QByteArray("-");
        buffer += '\t';
        buffer += item.url.fileNameBytes();
        buffer += '\n';
        if (buffer.size() > (1 << 20) - 4096) {
            fwrite(buffer.constData(), 1, size_t(buffer.size()), stdout);
            buffer.clear();
        }
    }
    fwrite(buffer.constData(), 1, size_t(buffer.size()), stdout);
    return 0;
}

const CliRegistration registration({QStringLiteral("list"), QStringLiteral("list DIR [--hidden]"),
                                     QStringLiteral("a folder's items: category, size, name"), list});

} // namespace
} // namespace orwick::cli

// orwick-cli shelf: the window's shelf on the command line, through the same shelf.json (a
// running Orwick picks the change up).
//
//   shelf                    prints what is on the shelf, one path a line, in the order added
//   shelf add PATH...        puts the items on it (each once) and says what it did
//   shelf remove PATH...     takes them off it (the files stay where they are)
//   shelf clear              empties it
//
// An item that isn't there is said on standard error with its reason and not added; the exit
// status is then 1. Paths are printed and taken as bytes, so names that are not UTF-8 work.

#include "cli/CliCommand.h"
#include "cli/CliOutput.h"
#include "cli/CliPaths.h"
#include "commands/ShelfActions.h"
#include "fileops/OperationTexts.h"
#include "places/Shelf.h"
#include "platform/StoreNotices.h"

namespace orwick::cli {
namespace {

const QString kUsage = QStringLiteral("usage: orwick-cli shelf [add|remove PATH... | clear]");

// The store's notices (a damaged shelf.json set aside) go to standard error.
void sayNotices()
{
    for (const QString& notice : StoreNotices::takePending())
        err() << notice << Qt::endl;
}

// Applies `change`; nothing on failure, after saying why.
std::optional<QList<FilePath>> change(const Shelf::Change& change, QList<FilePath>* before = nullptr)
{
    const auto written = Shelf::update(Shelf::storeAt(Shelf::defaultFile()), {change}, before);
    sayNotices();
    if (!written) {
        err() << written.error() << Qt::endl;
        return std::nullopt;
    }
    return *written;
}

int list()
{
    const auto document = Shelf::storeAt(Shelf::defaultFile()).read();
    sayNotices();
    LineWriter writer;
    for (const FilePath& item : document ? Shelf::fromJson(*document) : QList<FilePath>()) {
        writer.add(item.native());
        writer.endLine();
    }
    return 0;
}

int add(const Arguments& paths)
{
    const QList<FilePath> items = usableItems(paths);
    if (!items.isEmpty()) {
        QList<FilePath> before;
        const auto after = change({Shelf::Change::Kind::add, items}, &before);
        if (!after)
            return 1;
        QList<FilePath> added;
        for (const FilePath& item : *after)
            if (!before.contains(item))
                added.append(item);
        out() << shelfActions::addedText(items, added) << Qt::endl;
    }
    return items.size() == paths.size() ? 0 : 1;
}

int remove(const Arguments& paths)
{
    QList<FilePath> items;
    for (const QByteArray& argument : paths)
        items.append(pathArgument(argument));
    QList<FilePath> before;
    const auto after = change({Shelf::Change::Kind::remove, items}, &before);
    if (!after)
        return 1;
    const qsizetype removed = before.size() - after->size();
    out() << (removed == 0 ? QStringLiteral("None of them was on the shelf")
                           : QStringLiteral("Took %1 off the shelf").arg(itemCount(removed)))
          << Qt::endl;
    return 0;
}

int clear()
{
    QList<FilePath> before;
    if (!change({Shelf::Change::Kind::clear, {}}, &before))
        return 1;
    out() << (before.isEmpty() ? QStringLiteral("The shelf is empty") : QStringLiteral("Cleared the shelf (%1)").arg(itemCount(before.size())))
          << Qt::endl;
    return 0;
}

int run(const Arguments& arguments)
{
    const QByteArray verb = arguments.value(0);
    if (arguments.isEmpty())
        return list();
    if (verb == "clear" && arguments.size() == 1)
        return clear();
    if (verb == "add" && arguments.size() > 1)
        return add(arguments.mid(1));
    if (verb == "remove" && arguments.size() > 1)
        return remove(arguments.mid(1));
    return usageError(kUsage);
}

const CliRegistration registration({QStringLiteral("shelf"), QStringLiteral("shelf [add|remove PATH... | clear]"),
                                    QStringLiteral("print the shelf, put items on it or take them off, or empty it"), run,
                                    QStringLiteral("The shelf is the window's: a running Orwick shows the change.")});

} // namespace
} // namespace orwick::cli

// orwick-cli tag: colour and other tags on the command line, through the same engine and
// attribute rules as the window.
//
//   tag add NAME PATH...     adds the tag to each item (one job of the engine)
//   tag remove NAME PATH...  removes it from each item
//   tag list NAME PATH...    prints every item among the PATHs, and below the folders among
//                            them, that carries the tag (hidden names left out, as in the window)
//   tag show PATH...         prints each item's tags: "PATH: Red, project-x"
//
// add and remove print the window's toast when all went well ("Added Red to 3 items"); each item
// that failed is said on standard error with its reason, standard output then gets the count of
// what was done ("Tagged 1 of 3 items; 2 failed"), and the exit status is 1.

#include "cli/CliCommand.h"
#include "cli/CliOutput.h"
#include "cli/CliPaths.h"
#include "fileops/FileOperations.h"
#include "places/TagList.h"
#include "platform/Xattr.h"
#include "search/QuerySearch.h"

#include <QEventLoop>
#include <algorithm>
#include <mutex>
#include <sys/stat.h>

namespace orwick::cli {
namespace {

const QString kUsage = QStringLiteral("usage: orwick-cli tag add|remove|list NAME PATH...  or  orwick-cli tag show PATH...");

int change(const QString& name, const Arguments& paths, FileOperations::TagChange how)
{
    const bool adding = how == FileOperations::TagChange::add;
    const QList<FilePath> items = usableItems(paths);
    FileOperations operations;
    QString announcement;
    OperationOutcome failed;
    bool reported = false;
    operations.setReportErrors([&](const OperationOutcome& outcome) {
        reported = true;
        failed = outcome;
        for (const QString& error : outcome.errors)
            err() << error << Qt::endl;
        if (outcome.skipped > 0)
            err() << skippedText(outcome.skipped) << "." << Qt::endl;
    });
    QObject::connect(&operations, &FileOperations::announced, [&](const Toast& toast) { announcement = toast.text; });
    if (!items.isEmpty()) {
        QEventLoop loop;
        QObject::connect(&operations, &FileOperations::operationFinished, &loop, [&] {
            if (operations.isIdle())
                loop.quit();
        });
        operations.changeTag(items, name, how, nullptr);
        if (!operations.isIdle())
            loop.exec();
    }
    const qsizetype asked = paths.size();
    if (!reported && items.size() == asked) {
        if (!announcement.isEmpty())
            out() << announcement << Qt::endl;
        else // every item already was as asked
            out() << (adding ? QStringLiteral("Every item already has %1") : QStringLiteral("No item has %1")).arg(FinderTag::named(name).name)
                  << Qt::endl;
        return 0;
    }
    const qsizetype done = reported ? failed.done : items.size();
    out() << (adding ? "Tagged " : "Untagged ") << done << " of " << asked << (asked == 1 ? " item" : " items") << "; "
          << asked - done << " failed" << Qt::endl;
    return 1;
}

TagList tagsOf(const FilePath& path)
{
    const auto value = xattr::get(path, xattr::tags);
    return value ? TagList::parse(*value) : TagList();
}

int list(const QString& name, const Arguments& paths)
{
    const QList<FilePath> items = usableItems(paths);
    QList<FilePath> found;
    std::mutex lock;
    for (const FilePath& item : items) {
        if (tagsOf(item).contains(name))
            found.append(item);
        struct stat st {};
        if (::lstat(item.c_str(), &st) != 0 || !S_ISDIR(st.st_mode))
            continue;
        CancelFlag never;
        QuerySearch::runTag(name, item, false, [&](SearchBatch&& batch) {
            std::lock_guard locked(lock);
            found += batch.paths;
        }, never);
    }
    std::sort(found.begin(), found.end());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    LineWriter writer;
    for (const FilePath& path : found) {
        writer.add(path.native());
        writer.endLine();
    }
    return items.size() == paths.size() ? 0 : 1;
}

int show(const Arguments& paths)
{
    const QList<FilePath> items = usableItems(paths);
    LineWriter writer;
    for (const FilePath& item : items) {
        const TagList tags = tagsOf(item);
        writer.add(item.native());
        writer.add(": ");
        writer.add(tags.isEmpty() ? QByteArray("no tags") : tags.items().join(", "));
        writer.endLine();
    }
    return items.size() == paths.size() ? 0 : 1;
}

int run(const Arguments& arguments)
{
    const QByteArray verb = arguments.value(0);
    if (verb == "show")
        return arguments.size() < 2 ? usageError(kUsage) : show(arguments.mid(1));
    if ((verb != "add" && verb != "remove" && verb != "list") || arguments.size() < 3)
        return usageError(kUsage);
    const QString name = argumentText(arguments.at(1)).trimmed();
    if (name.isEmpty()) {
        err() << "A tag needs a name." << Qt::endl;
        return 2;
    }
    if (verb == "list")
        return list(name, arguments.mid(2));
    return change(name, arguments.mid(2), verb == "add" ? FileOperations::TagChange::add : FileOperations::TagChange::remove);
}

const CliRegistration registration({QStringLiteral("tag"), QStringLiteral("tag add|remove|list NAME PATH..."),
                                    QStringLiteral("add, remove or find a tag; tag show PATH... prints items' tags"), run,
                                    QStringLiteral("       orwick-cli tag show PATH...   prints each item's tags")});

} // namespace
} // namespace orwick::cli

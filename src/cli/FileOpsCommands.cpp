// orwick-cli copy/move/trash: the file operations engine the window uses, on the command line
// (the file operations benchmark's hook). Conflicts keep both; errors go to standard error.

#include "cli/CliCommand.h"
#include "fileops/FileOperations.h"

#include <QEventLoop>
#include <QFile>

namespace orwick::cli {
namespace {

// Runs one operation to its end; prints its toast or its error.
int runToEnd(const std::function<void(FileOperations&)>& start)
{
    FileOperations operations;
    int code = 0;
    operations.setReportErrors([&code](const QString& message) {
        err() << message << Qt::endl;
        code = 1;
    });
    QObject::connect(&operations, &FileOperations::announced, [](const Toast& toast) { out() << toast.text << Qt::endl; });
    QEventLoop loop;
    QObject::connect(&operations, &FileOperations::operationFinished, &loop, [&] {
        if (operations.isIdle())
            loop.quit();
    });
    start(operations);
    if (!operations.isIdle())
        loop.exec();
    return code;
}

QList<FilePath> paths(const QStringList& arguments)
{
    QList<FilePath> list;
    for (const QString& argument : arguments)
        list.append(FilePath::fromNative(QFile::encodeName(argument)));
    return list;
}

int transfer(const QStringList& arguments, FileOperations::Mode mode)
{
    if (arguments.size() < 2)
        return usageError(QStringLiteral("usage: orwick-cli %1 SRC... DEST").arg(mode == FileOperations::Mode::copy ? "copy" : "move"));
    QList<FilePath> items = paths(arguments);
    const FilePath destination = items.takeLast();
    return runToEnd([&](FileOperations& operations) { operations.transfer(items, destination, mode, nullptr); });
}

int trashItems(const QStringList& arguments)
{
    if (arguments.isEmpty())
        return usageError(QStringLiteral("usage: orwick-cli trash PATH..."));
    const QList<FilePath> items = paths(arguments);
    return runToEnd([&](FileOperations& operations) { operations.trash(items, QStringLiteral("Move to Trash"), nullptr); });
}

const CliRegistration copyRegistration({QStringLiteral("copy"), QStringLiteral("copy SRC... DEST"),
                                         QStringLiteral("copy items into a folder"),
                                         [](const QStringList& a) { return transfer(a, FileOperations::Mode::copy); }});
const CliRegistration moveRegistration({QStringLiteral("move"), QStringLiteral("move SRC... DEST"),
                                         QStringLiteral("move items into a folder"),
                                         [](const QStringList& a) { return transfer(a, FileOperations::Mode::move); }});
const CliRegistration trashRegistration({QStringLiteral("trash"), QStringLiteral("trash PATH..."),
                                          QStringLiteral("move items to the Trash"), trashItems});

} // namespace
} // namespace orwick::cli

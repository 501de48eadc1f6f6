// orwick-cli copy/move/trash: the file operations engine the window uses, on the command line
// (the file operations benchmark's hook). Conflicts keep both.
//
// Every item that isn't done is said on standard error, one line each with its reason: an
// argument that isn't there or can't be used, and each failure of the engine. Standard output
// gets the summary: the window's toast when all went well ("Copied 3 items"), else the count of
// what was done out of what was asked ("Copied 3 of 4 items; 1 failed"), and the exit status is 1.
// A move updates the links of the notes that point at what moved, as the window does (unless
// --no-links or the setting is off; see EngineRun), and says how many notes it changed.

#include "cli/CliCommand.h"
#include "cli/CliPaths.h"
#include "cli/EngineRun.h"

namespace orwick::cli {
namespace {

struct Verb {
    const char* command;   // "copy"
    const char* past;      // "Copied"
    const char* place;     // "" or " to the Trash"
};
constexpr Verb kCopy{"copy", "Copied", ""};
constexpr Verb kMove{"move", "Moved", ""};
constexpr Verb kTrash{"trash", "Moved", " to the Trash"};

// Runs the engine on `items` to its end and prints the outcome; `asked` counts every argument.
int runToEnd(const Verb& verb, qsizetype asked, const QList<FilePath>& items,
             const std::function<void(FileOperations&, const QList<FilePath>&)>& start, bool updateLinks = false)
{
    EngineRun run(updateLinks);
    FileOperations& operations = run.operations();
    bool reported = false;
    qsizetype doneInReports = 0;
    run.sayReports([&](const OperationOutcome& outcome) {
        reported = true;
        doneInReports += outcome.done;
    });
    if (!items.isEmpty()) {
        start(operations, items);
        run.wait();
    }
    const QString& announcement = run.announcement();
    if (!reported && items.size() == asked) {
        if (!announcement.isEmpty())
            out() << announcement << Qt::endl;
        run.sayLinks(); // after the summary: what the move did to notes' links
        return 0;
    }
    // Only a job that went all the way is announced; then all the items it was given were done.
    const qsizetype done = announcement.isEmpty() ? doneInReports : doneInReports + items.size();
    out() << verb.past << ' ' << done << " of " << asked << (asked == 1 ? " item" : " items") << verb.place << "; "
          << asked - done << " failed" << Qt::endl;
    run.sayLinks();
    return 1;
}

int transfer(const Arguments& given, FileOperations::Mode mode)
{
    const Verb& verb = mode == FileOperations::Mode::copy ? kCopy : kMove;
    Arguments arguments = given;
    const bool updateLinks = mode == FileOperations::Mode::move && EngineRun::followsLinks(arguments);
    if (arguments.size() < 2)
        return usageError(mode == FileOperations::Mode::move
                              ? QStringLiteral("usage: orwick-cli move [--no-links] SRC... DEST")
                              : QStringLiteral("usage: orwick-cli %1 SRC... DEST").arg(QLatin1StringView(verb.command)));
    Arguments sources = arguments;
    const QByteArray destination = sources.takeLast();
    if (const auto problem = problemWith(destination, Expect::folder)) {
        err() << *problem << Qt::endl;
        return 1;
    }
    const FilePath folder = pathArgument(destination);
    return runToEnd(verb, sources.size(), usableItems(sources), [&](FileOperations& operations, const QList<FilePath>& items) {
        operations.transfer(items, folder, mode, nullptr);
    }, updateLinks);
}

int trashItems(const Arguments& arguments)
{
    if (arguments.isEmpty())
        return usageError(QStringLiteral("usage: orwick-cli trash PATH..."));
    return runToEnd(kTrash, arguments.size(), usableItems(arguments), [](FileOperations& operations, const QList<FilePath>& items) {
        operations.trash(items, QStringLiteral("Move to Trash"), nullptr);
    });
}

const CliRegistration copyRegistration({QStringLiteral("copy"), QStringLiteral("copy SRC... DEST"),
                                         QStringLiteral("copy items into a folder"),
                                         [](const Arguments& a) { return transfer(a, FileOperations::Mode::copy); }});
const CliRegistration moveRegistration({QStringLiteral("move"), QStringLiteral("move [--no-links] SRC... DEST"),
                                         QStringLiteral("move items into a folder, updating links to them in notes"),
                                         [](const Arguments& a) { return transfer(a, FileOperations::Mode::move); }});
const CliRegistration trashRegistration({QStringLiteral("trash"), QStringLiteral("trash PATH..."),
                                          QStringLiteral("move items to the Trash"), trashItems});

} // namespace
} // namespace orwick::cli

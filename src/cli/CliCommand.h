#pragma once
// orwick-cli sub-commands. Each file in this folder registers its own with a static
// CliRegistration, so adding a command never touches another file.
//
// Commands get their arguments as the bytes the shell passed: a path argument goes to the system
// unchanged (see CliPaths.h), so names that are not UTF-8 work; options and queries are read as
// text with argumentText().

#include <QByteArray>
#include <QList>
#include <QTextStream>
#include <functional>

namespace orwick::cli {

using Arguments = QList<QByteArray>;

// Every command answers "--help" (or "-h") with its usage, summary and details, and refuses an
// option that its usage and details don't name ("--" ends the options: what follows is taken as
// written, so a file named "--help" can be given as "-- --help"). Both are checked before the
// command runs, so a command only ever sees the options it documents, and no "--" marker.
struct CliCommand {
    QString name;      // "list"
    QString usage;     // "list DIR [--hidden]": names every option the command takes
    QString summary;   // one line for the help text
    // Gets the arguments after the name; returns the process exit code.
    std::function<int(const Arguments& arguments)> run;
    QString details = {}; // more lines for "--help", naming any options the usage leaves out
    // Options whose work needs orwick-cli-full's libraries: given one, the light orwick-cli hands
    // the command line on (see HandOn.h) instead of running the command.
    QList<QByteArray> fullProgramOptions = {};
    // The command's first argument that isn't one of its options is a query, taken as written
    // even when it begins with "-": `grep -dash` searches for "-dash" without needing "--".
    bool queryMayBeginWithDash = false;
};

void registerCommand(CliCommand command);
const QList<CliCommand>& commands();
// The command of that name; null when there is none.
const CliCommand* findCommand(const QString& name);

struct CliRegistration {
    explicit CliRegistration(CliCommand command) { registerCommand(std::move(command)); }
};

// Standard output and error as text streams (UTF-8), flushed at exit.
QTextStream& out();
QTextStream& err();

// Prints "orwick-cli: message" to standard error and returns 2 (the usage-error code).
int usageError(const QString& message);

// "1 line", "3 lines": a count and its noun, agreeing (plain digits, for scripts that read them).
inline QString counted(qint64 count, const char* singular, const char* plural = nullptr)
{
    return QString::number(count) + QLatin1Char(' ')
        + QString::fromUtf8(count == 1 ? singular : plural ? plural : (QByteArray(singular) + 's').constData());
}

// An argument as text, decoded as the system's locale does (UTF-8 here).
inline QString argumentText(const QByteArray& argument) { return QString::fromLocal8Bit(argument); }

} // namespace orwick::cli

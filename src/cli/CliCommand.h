#pragma once
// orwick-cli sub-commands. Each file in this folder registers its own with a static
// CliRegistration, so adding a command never touches another file.

#include <QStringList>
#include <QTextStream>
#include <functional>

namespace orwick::cli {

struct CliCommand {
    QString name;      // "list"
    QString usage;     // "list DIR"
    QString summary;   // one line for the help text
    // Gets the arguments after the name; returns the process exit code.
    std::function<int(const QStringList& arguments)> run;
};

void registerCommand(CliCommand command);
const QList<CliCommand>& commands();

struct CliRegistration {
    explicit CliRegistration(CliCommand command) { registerCommand(std::move(command)); }
};

// Standard output and error as text streams (UTF-8), flushed at exit.
QTextStream& out();
QTextStream& err();

// Prints "orwick-cli: message" to standard error and returns 2 (the usage-error code).
int usageError(const QString& message);

} // namespace orwick::cli

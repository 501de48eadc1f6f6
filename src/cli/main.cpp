// orwick-cli: Orwick's engines on the command line, for scripts, checks and benchmarks: the
// commands with Qt (HandOn.h says which program holds which).

#include "cli/CliCommand.h"
#ifdef ORWICK_CLI_LIGHT
#include "cli/HandOn.h"
#endif

#include <QCoreApplication>
#include <QRegularExpression>
#include <QSet>
#include <cstdio>

namespace orwick::cli {

namespace {
QList<CliCommand>& registry()
{
    static QList<CliCommand> list;
    return list;
}
} // namespace

void registerCommand(CliCommand command) { registry().append(std::move(command)); }
const QList<CliCommand>& commands() { return registry(); }

const CliCommand* findCommand(const QString& name)
{
    for (const CliCommand& command : commands())
        if (command.name == name)
            return &command;
    return nullptr;
}

QTextStream& out()
{
    static QTextStream stream(stdout);
    return stream;
}

QTextStream& err()
{
    static QTextStream stream(stderr);
    return stream;
}

int usageError(const QString& message)
{
    err() << "orwick-cli: " << message << Qt::endl;
    return 2;
}

namespace {

void printOverview()
{
    out() << "usage: orwick-cli COMMAND [ARGUMENTS]\n"
             "       orwick-cli COMMAND --help      what one command takes\n"
             "       orwick-cli --version\n\n";
    // Summaries in one column; a usage too long for it has its summary on the next line.
    constexpr int kUsageColumn = 40, kGap = 2;
    for (const CliCommand& command : commands()) {
        out() << "  " << command.usage;
        if (command.usage.size() + kGap <= kUsageColumn)
            out() << QString(kUsageColumn - command.usage.size(), QLatin1Char(' '));
        else
            out() << "\n" << QString(2 + kUsageColumn, QLatin1Char(' '));
        out() << command.summary << "\n";
    }
    out().flush();
}

void printHelp(const CliCommand& command)
{
    out() << "usage: orwick-cli " << command.usage << "\n" << command.summary << "\n";
    if (!command.details.isEmpty())
        out() << "\n" << command.details << "\n";
    out().flush();
}

// The options a command documents: every "--word" and every one-letter "-m" in its usage and
// details.
QSet<QByteArray> documentedOptions(const CliCommand& command)
{
    QSet<QByteArray> options;
    static const QRegularExpression option(QStringLiteral("(?<![\\w-])(?:--[a-z][a-z-]*|-[a-zA-Z](?![\\w-]))"));
    for (const QString& text : {command.usage, command.details})
        for (const QRegularExpressionMatch& match : option.globalMatch(text))
            options.insert(match.captured().toLatin1());
    return options;
}

// Runs `command` after answering --help and refusing options it doesn't document.
int runChecked(const CliCommand& command, Arguments arguments)
{
    const QSet<QByteArray> known = documentedOptions(command);
    bool queryTaken = !command.queryMayBeginWithDash;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QByteArray& argument = arguments[i];
        if (argument == "--") {
            arguments.removeAt(i);
            break; // the rest is taken as written
        }
        if (argument == "--help" || argument == "-h") {
            printHelp(command);
            return 0;
        }
        if (known.contains(argument))
            continue;
        if (!queryTaken) {
            queryTaken = true; // this is the query, however it begins
            continue;
        }
        if (argument.size() > 1 && argument.startsWith('-'))
            return usageError(QStringLiteral("%1 has no option “%2”; see orwick-cli %1 --help")
                                  .arg(command.name, argumentText(argument)));
    }
    const int code = command.run(arguments);
    out().flush();
    err().flush();
    return code;
}

} // namespace

} // namespace orwick::cli

#ifdef ORWICK_CLI_LIGHT
// The light commands are a library that orwick-cli loads when it doesn't answer the command line
// itself (CommandsLibrary.h).
extern "C" int orwickCliMain(int argc, char** argv)
#else
int main(int argc, char** argv)
#endif
{
    using namespace orwick::cli;
#ifdef ORWICK_CLI_LIGHT
    if (!runsHere(argc, argv))
        return handOn(argv);
#endif
    QCoreApplication app(argc, argv);
    // The raw bytes: decoding argv to text would lose names that are not UTF-8.
    Arguments arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QByteArray(argv[i]));
    if (arguments.isEmpty()) {
        printOverview();
        return 2;
    }
    const QByteArray first = arguments.takeFirst();
    if (first == "--help" || first == "-h" || first == "help") {
        if (arguments.isEmpty()) {
            printOverview();
            return 0;
        }
        if (const CliCommand* command = findCommand(argumentText(arguments.first()))) {
            printHelp(*command);
            return 0;
        }
        return usageError(QStringLiteral("there is no command “%1”; see orwick-cli help").arg(argumentText(arguments.first())));
    }
    if (first == "--version" || first == "-V") {
        out() << "orwick-cli " << ORWICK_VERSION << Qt::endl;
        return 0;
    }
    if (first.startsWith('-'))
        return usageError(QStringLiteral("there is no option “%1”; see orwick-cli help").arg(argumentText(first)));
    if (const CliCommand* command = findCommand(argumentText(first)))
        return runChecked(*command, arguments);
    return usageError(QStringLiteral("unknown command “%1”; see orwick-cli help").arg(argumentText(first)));
}

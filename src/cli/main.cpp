// orwick-cli: Orwick's engines on the command line, for scripts, checks and benchmarks.

#include "cli/CliCommand.h"

#include <QCoreApplication>
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

} // namespace orwick::cli

int main(int argc, char** argv)
{
    using namespace orwick::cli;
    QCoreApplication app(argc, argv);
    // The raw bytes: decoding argv to text would lose names that are not UTF-8.
    Arguments arguments;
    for (int i = 1; i < argc; ++i)
        arguments.append(QByteArray(argv[i]));
    if (arguments.isEmpty() || arguments.first() == "--help" || arguments.first() == "-h") {
        out() << "usage: orwick-cli COMMAND [ARGUMENTS]\n\n";
        for (const CliCommand& command : commands())
            out() << "  " << command.usage.leftJustified(40) << command.summary << "\n";
        out().flush();
        return arguments.isEmpty() ? 2 : 0;
    }
    const QString name = argumentText(arguments.takeFirst());
    for (const CliCommand& command : commands()) {
        if (command.name == name) {
            const int code = command.run(arguments);
            out().flush();
            err().flush();
            return code;
        }
    }
    return usageError(QStringLiteral("unknown command “%1”; see orwick-cli --help").arg(name));
}

#include "app/CommandLine.h"

#include "app/OpenRouter.h"

#include <QSet>

namespace orwick {

namespace {

// Qt's options that take a value, so the value isn't read as a folder.
bool isQtOptionWithValue(QByteArrayView option)
{
    static const QSet<QByteArray> withValue{"-platform", "-platformpluginpath", "-platformtheme", "-plugin",
                                            "-qwindowgeometry", "-qwindowtitle", "-qwindowicon", "-style",
                                            "-stylesheet", "-display", "-geometry", "-session", "-name", "-title"};
    return withValue.contains(option.toByteArray());
}

} // namespace

Result<CommandLine> CommandLine::parse(const QList<QByteArray>& arguments)
{
    CommandLine line;
    bool optionsEnded = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QByteArray& argument = arguments[i];
        if (optionsEnded || !argument.startsWith('-') || argument == "-") {
            line.items.append(argument);
        } else if (argument == "--") {
            optionsEnded = true;
        } else if (argument == "--help" || argument == "-h") {
            line.action = Action::help;
        } else if (argument == "--version") {
            line.action = Action::version;
        } else if (argument.startsWith("--activation-token=")) {
            line.activationToken = argument.mid(19);
        } else if (argument == "--new-window") {
            line.newWindow = true;
        } else if (argument == "--show" || argument.startsWith("--show=")) {
            const bool joined = argument.startsWith("--show=");
            if (!joined && i + 1 >= arguments.size())
                return failure(QStringLiteral("orwick: --show takes trash, recents, screenshots, drives or tag:NAME"));
            const QByteArray name = joined ? argument.mid(7) : arguments[++i];
            line.listing = Listing::fromName(QString::fromUtf8(name));
            if (!line.listing)
                return failure(QStringLiteral("orwick: --show takes trash, recents, screenshots, drives or tag:NAME"));
        } else if (!argument.startsWith("--")) {
            if (isQtOptionWithValue(argument))
                ++i;
        } else {
            return failure(QStringLiteral("orwick: there is no option “%1” (orwick --help lists them)").arg(QString::fromUtf8(argument)));
        }
    }
    return line;
}

OpenRequests CommandLine::requests(const FilePath& workingFolder) const
{
    return OpenRouter::requestsFromArguments(items, workingFolder);
}

QString CommandLine::helpText()
{
    return QStringLiteral(
        "Usage: orwick [--new-window] [FOLDER|FILE|URL]…\n"
        "       orwick --show trash|recents|screenshots|drives|tag:NAME\n"
        "\n"
        "Opens each folder in a tab; a file opens its folder with the file selected. When Orwick\n"
        "is running already, they open in its front window and this command returns at once.\n"
        "\n"
        "  --new-window   open them in a new window\n"
        "  --show NAME    show the Trash, Recents, Screenshots, Drives or the files with a tag\n"
        "  --help         show this text\n"
        "  --version      show Orwick's version\n"
        "\n"
        "Links: orwick://open?path=/a/folder   (add &reveal=1 to select it in its parent)\n");
}

QString CommandLine::versionText() { return QStringLiteral("Orwick " ORWICK_VERSION "\n"); }

} // namespace orwick

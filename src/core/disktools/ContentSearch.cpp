#include "disktools/ContentSearch.h"

#include <QStandardPaths>

namespace orwick::ContentSearch {

const Tools& Tools::installed()
{
    static const Tools tools = find();
    return tools;
}

Tools Tools::find()
{
    return {QStandardPaths::findExecutable(QStringLiteral("rg")), QStandardPaths::findExecutable(QStringLiteral("git")),
            QStandardPaths::findExecutable(QStringLiteral("grep"))};
}

std::optional<Command> command(const QString& query, const Options& options, bool isRepository, const Tools& tools)
{
    // The query always follows "-e", so one that starts with "-" is still the pattern.
    if (!tools.ripgrep.isEmpty()) {
        QStringList arguments{QStringLiteral("--line-number"), QStringLiteral("--no-heading"), QStringLiteral("--null"),
                              QStringLiteral("--color"), QStringLiteral("never"), QStringLiteral("--max-columns"),
                              QString::number(kMaxColumns)};
        if (!options.regex)
            arguments << QStringLiteral("--fixed-strings");
        arguments << (options.matchCase ? QStringLiteral("--case-sensitive") : QStringLiteral("--ignore-case"));
        arguments << QStringLiteral("-e") << query << QStringLiteral(".");
        return Command{Tool::ripgrep, tools.ripgrep, arguments};
    }
    const QString patternMode = options.regex ? QStringLiteral("-E") : QStringLiteral("-F");
    if (isRepository && !tools.git.isEmpty()) {
        QStringList arguments{QStringLiteral("-c"), QStringLiteral("core.quotepath=off"), QStringLiteral("grep"),
                              QStringLiteral("-n"), QStringLiteral("-I"), QStringLiteral("-z"),
                              QStringLiteral("--untracked"), QStringLiteral("--no-color"), patternMode};
        if (!options.matchCase)
            arguments << QStringLiteral("-i");
        arguments << QStringLiteral("-e") << query << QStringLiteral("--") << QStringLiteral(".");
        return Command{Tool::gitGrep, tools.git, arguments};
    }
    if (!tools.grep.isEmpty()) {
        QStringList arguments{QStringLiteral("-r"), QStringLiteral("-n"), QStringLiteral("-I"), QStringLiteral("--null"),
                              patternMode};
        if (!options.matchCase)
            arguments << QStringLiteral("-i");
        for (const char* folder : kGrepExcludedFolders)
            arguments << QStringLiteral("--exclude-dir=") + QString::fromLatin1(folder);
        arguments << QStringLiteral("-e") << query << QStringLiteral(".");
        return Command{Tool::grep, tools.grep, arguments};
    }
    return std::nullopt;
}

QString noToolMessage()
{
    return QStringLiteral("No search tool found. Find in Files looks for ripgrep (rg), then git (in a repository), "
                          "then grep on your PATH.");
}

} // namespace orwick::ContentSearch

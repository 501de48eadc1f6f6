// orwick-cli grep QUERY [DIR] [--regex] [--case]: Find in Files on the command line, through the
// same ContentSearch code as the panel (ripgrep, else git grep in a repository, else grep). One
// match per line: the path relative to DIR, the line number and the line, ":"-separated, paths
// and text printed as their bytes. Exits 0 when something matched, 1 when nothing did, 2 when
// the search couldn't run (no tool, a pattern the tool refuses).

#include "cli/CliCommand.h"
#include "cli/CliOutput.h"
#include "cli/CliPaths.h"
#include "disktools/ContentSearchRun.h"

namespace orwick::cli {
namespace {

int grep(const Arguments& arguments)
{
    ContentSearch::Options options;
    QList<QByteArray> positional;
    for (const QByteArray& argument : arguments) {
        if (argument == "--regex")
            options.regex = true;
        else if (argument == "--case")
            options.matchCase = true;
        else
            positional.append(argument);
    }
    if (positional.isEmpty() || positional.size() > 2)
        return usageError(QStringLiteral("usage: orwick-cli grep QUERY [DIR] [--regex] [--case]"));
    const QByteArray folderArgument = positional.size() == 2 ? positional[1] : QByteArray(".");
    if (const auto problem = problemWith(folderArgument, Expect::folder)) {
        err() << *problem << Qt::endl;
        return 2;
    }
    LineWriter lines;
    CancelFlag never;
    const auto outcome = ContentSearch::runSearch(argumentText(positional[0]), pathArgument(folderArgument), options, never,
                                                  [&lines](std::vector<ContentSearch::FileMatches>&& batch) {
        for (const ContentSearch::FileMatches& file : batch) {
            for (const ContentSearch::Match& match : file.matches) {
                lines.add(file.path);
                lines.add(":");
                lines.add(QByteArray::number(match.line));
                lines.add(":");
                lines.add(match.bytes);
                lines.endLine();
            }
        }
    });
    lines.flush();
    if (outcome.failure) {
        err() << *outcome.failure << Qt::endl;
        return 2;
    }
    return outcome.matches > 0 ? 0 : 1;
}

const CliRegistration registration({QStringLiteral("grep"), QStringLiteral("grep QUERY [DIR] [--regex] [--case]"),
                                     QStringLiteral("lines of files that hold QUERY (Find in Files)"), grep,
                                     QStringLiteral("Searches with ripgrep (rg) when it is on PATH, else git grep inside a\n"
                                                    "repository, else grep. The query is literal text unless --regex is\n"
                                                    "given, and matched ignoring case unless --case is given. A query may\n"
                                                    "begin with \"-\": the first argument that isn't --regex or --case is it."),
                                     {}, true});

} // namespace
} // namespace orwick::cli

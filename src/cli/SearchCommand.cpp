// orwick-cli search TEXT [DIR]: every item below DIR (the working folder when absent) whose name
// holds TEXT — case and accents folded, the text taken literally — through the walker the
// window's search uses; with --content, text files that hold it too. One path per line, as its
// bytes. Exit status: 0 when something matched, 1 when nothing did, 2 on a bad argument.

#include "cli/CliCommand.h"
#include "cli/CliOutput.h"
#include "cli/CliPaths.h"
#include "search/QuerySearch.h"

#include <mutex>

namespace orwick::cli {
namespace {

const QString kUsage = QStringLiteral(
    "usage: orwick-cli search TEXT [DIR] [--kind K] [--changed C] [--content] [--hidden] [--here]\n"
    "  TEXT        found anywhere in a name; letter case and accents don't matter, * ? [ ] \\ . are plain characters\n"
    "  DIR         where to look (the working folder when left out); everything below it is searched\n"
    "  --kind K    any, folders, documents, images, media, code, pdfs\n"
    "  --changed C any, today, week, month, year\n"
    "  --content   also find text files whose contents hold TEXT (up to 10 MB each, binary files skipped)\n"
    "  --hidden    include hidden items and look inside hidden folders\n"
    "  --here      only DIR's own items\n"
    "Build output (node_modules, target beside Cargo.toml…), .git and network drives are not searched.\n"
    "Exit status: 0 when something matched, 1 when nothing did, 2 on a bad argument.");

template <class Enum>
std::optional<Enum> choice(const QByteArray& value, Enum (*fromName)(const QString&), QString (*nameOf)(Enum))
{
    const QString text = argumentText(value);
    const Enum parsed = fromName(text);
    if (nameOf(parsed) != text)
        return std::nullopt;
    return parsed;
}

int search(const Arguments& arguments)
{
    SearchQuery query;
    QuerySearch::Options options;
    options.contents = false;
    options.makeItems = false;
    std::optional<QByteArray> text;
    std::optional<QByteArray> folder;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QByteArray& argument = arguments[i];
        if (argument == "--help" || argument == "-h") {
            out() << kUsage << Qt::endl;
            return 0;
        }
        if (argument == "--content") {
            options.contents = true;
        } else if (argument == "--hidden") {
            options.showHidden = true;
        } else if (argument == "--here") {
            query.scope = SearchQuery::Scope::here;
        } else if (argument == "--kind" || argument == "--changed") {
            if (i + 1 >= arguments.size())
                return usageError(QStringLiteral("%1 needs a value; see orwick-cli search --help").arg(argumentText(argument)));
            const QByteArray& value = arguments[++i];
            if (argument == "--kind") {
                const auto kind = choice(value, &SearchQuery::kindFromName, &SearchQuery::kindName);
                if (!kind)
                    return usageError(QStringLiteral("unknown kind “%1”: use any, folders, documents, images, media, code or pdfs").arg(argumentText(value)));
                query.kind = *kind;
            } else {
                const auto changed = choice(value, &SearchQuery::changedFromName, &SearchQuery::changedName);
                if (!changed)
                    return usageError(QStringLiteral("unknown date “%1”: use any, today, week, month or year").arg(argumentText(value)));
                query.changed = *changed;
            }
        } else if (argument.startsWith("--") && argument.size() > 2) {
            return usageError(QStringLiteral("unknown option “%1”; see orwick-cli search --help").arg(argumentText(argument)));
        } else if (!text) {
            text = argument;
        } else if (!folder) {
            folder = argument;
        } else {
            return usageError(QStringLiteral("search takes one text and one folder; see orwick-cli search --help"));
        }
    }
    if (!text)
        return usageError(kUsage);
    query.text = argumentText(*text);
    if (!query.isRunnable())
        return usageError(QStringLiteral("there is nothing to search for: give a text, --kind or --changed"));
    if (folder) {
        if (const auto problem = problemWith(*folder, Expect::folder))
            return usageError(*problem);
        query.folder = pathArgument(*folder);
    } else {
        query.folder = pathArgument(".");
    }

    LineWriter writer;
    std::mutex printing; // batches come one at a time; the lock keeps that explicit
    const qint64 hits = QuerySearch::run(query, options, [&](SearchBatch&& batch) {
        std::lock_guard lock(printing);
        for (const FilePath& path : batch.paths) {
            writer.add(path.native());
            writer.endLine();
        }
    }, CancelFlag());
    writer.flush();
    return hits > 0 ? 0 : 1;
}

const CliRegistration registration({QStringLiteral("search"), QStringLiteral("search TEXT [DIR] [--content…]"),
                                     QStringLiteral("items whose names (or texts) hold TEXT; search --help for more"), search,
                                     kUsage.section(QLatin1Char('\n'), 1)});

} // namespace
} // namespace orwick::cli

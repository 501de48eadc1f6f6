// orwick-cli rename: the batch rename of the window on the command line — the same rule, the
// same preview with its problems, and the same two-phase commit as one job of the engine.
//
// Standard output gets one line per item that changes ("dir/a.txt → b.txt"), with the problem
// after it when it can't be renamed, then the summary ("3 of 4 will change"), then, unless
// --dry-run, the engine's toast ("Renamed 3 items"). Items with a problem are left as they are
// and the others renamed, as the panel does; each failure is said on standard error. The exit
// status is 0 when every changing item was renamed, 1 when some weren't, 2 for a usage error or
// a rule that gives no names (a pattern that doesn't compile).
//
// Renaming notes, pictures or folders updates the links of the notes that point at them, as a
// rename in the window does (the same LinkUpdater on the engine; see EngineRun), unless
// --no-links is given or the setting is off; the count of notes changed follows the toast.

#include "cli/CliCommand.h"
#include "cli/CliOutput.h"
#include "cli/CliPaths.h"
#include "cli/EngineRun.h"
#include "rename/RenamePreview.h"

#include <variant>

namespace orwick::cli {
namespace {

const QString kUsage = QStringLiteral(
    "rename FILE... (--replace FIND --with TEXT [--regex] [--ignore-case] | --add TEXT [--at-end] | "
    "--number NAME [--start N]) [--dry-run] [--no-links]");
const QString kDetails = QStringLiteral(
    "Other rules: --case lower|upper|title, --template TEXT ({name} {ext} {n} {date:yyyy-MM-dd} {parent};\n"
    "the extension is kept; {n} counts from --start), --remove CHARACTERS (taken out of each name).\n"
    "--replace works on the whole name, the others keep the extension; --number \"\" keeps each one's name.\n"
    "The items are numbered in the order given. --dry-run shows the new names and renames nothing.\n"
    "Links in notes to what was renamed are updated as the window does; --no-links leaves notes alone.");

struct Request {
    BatchRename rule;
    Arguments files;
    bool dryRun = false;
    bool followLinks = true;
};

// Reads the arguments into a rule; a sentence for the usage error when they don't make one.
std::variant<Request, QString> readArguments(const Arguments& arguments)
{
    Request request;
    QStringList modes;
    bool hasWith = false;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QByteArray& argument = arguments[i];
        const auto value = [&]() -> std::optional<QString> {
            if (i + 1 >= arguments.size())
                return std::nullopt;
            return argumentText(arguments[++i]);
        };
        const auto needs = [&](const char* option) { return QStringLiteral("%1 needs a value").arg(QLatin1StringView(option)); };
        BatchRename& rule = request.rule;
        if (argument == "--replace" || argument == "--add" || argument == "--number" || argument == "--case"
            || argument == "--template" || argument == "--remove") {
            const auto text = value();
            if (!text)
                return needs(argument.constData());
            modes.append(QString::fromLatin1(argument));
            if (argument == "--replace") {
                rule.mode = BatchRename::Mode::replace;
                rule.find = *text;
            } else if (argument == "--add") {
                rule.mode = BatchRename::Mode::add;
                rule.text = *text;
            } else if (argument == "--number") {
                rule.mode = BatchRename::Mode::number;
                rule.baseName = *text;
            } else if (argument == "--template") {
                rule.mode = BatchRename::Mode::fromTemplate;
                rule.templateText = *text;
            } else if (argument == "--remove") {
                rule.mode = BatchRename::Mode::remove;
                rule.characters = *text;
            } else {
                rule.mode = BatchRename::Mode::changeCase;
                if (*text == u"lower")
                    rule.letterCase = BatchRename::LetterCase::lower;
                else if (*text == u"upper")
                    rule.letterCase = BatchRename::LetterCase::upper;
                else if (*text == u"title")
                    rule.letterCase = BatchRename::LetterCase::title;
                else
                    return QStringLiteral("--case takes lower, upper or title");
            }
        } else if (argument == "--with") {
            const auto text = value();
            if (!text)
                return needs("--with");
            rule.replacement = *text;
            hasWith = true;
        } else if (argument == "--start") {
            const auto text = value();
            bool ok = false;
            rule.startAt = text ? text->toInt(&ok) : 0;
            if (!ok)
                return QStringLiteral("--start takes a whole number");
        } else if (argument == "--regex") {
            rule.usesRegex = true;
        } else if (argument == "--ignore-case") {
            rule.ignoresCase = true;
        } else if (argument == "--at-end") {
            rule.addsAtEnd = true;
        } else if (argument == "--dry-run") {
            request.dryRun = true;
        } else if (argument == "--no-links") {
            request.followLinks = false;
        } else {
            request.files.append(argument);
        }
    }
    if (modes.size() != 1)
        return QStringLiteral("give one of --replace, --add, --number, --case, --template or --remove");
    if (request.rule.mode == BatchRename::Mode::replace && !hasWith)
        return QStringLiteral("--replace needs --with (--with \"\" takes the text out)");
    if (request.files.isEmpty())
        return QStringLiteral("name the files to rename");
    return request;
}

// Adds a name as visibleName() shows it; a name of printable ASCII shows as its own bytes, so
// thousands of lines make no text of them.
void addVisible(LineWriter& lines, const QByteArray& name)
{
    for (const char c : name) {
        if (c < ' ' || c >= 0x7f) {
            lines.add(visibleName(name).toUtf8());
            return;
        }
    }
    lines.add(name);
}

// Commits the renames through the engine and waits for it and the link update after it; the
// items that were not renamed.
int commit(const QList<FileMove>& renames, bool followLinks)
{
    EngineRun run(followLinks);
    FileOperations& operations = run.operations();
    QString announcement; // the rename's own toast, not the link update's after it
    int failed = 0;
    operations.setReportErrors([&](const OperationOutcome& outcome) {
        for (const QString& error : outcome.errors)
            err() << error << Qt::endl;
        if (outcome.skipped > 0)
            err() << skippedText(outcome.skipped) << "." << Qt::endl;
        if (announcement.isEmpty() && !outcome.doneText.isEmpty())
            announcement = outcome.doneText;
    });
    QObject::connect(&operations, &FileOperations::announced, [&](const Toast& toast) {
        if (announcement.isEmpty())
            announcement = toast.text;
    });
    operations.renameMany(renames, batchRenameTitle(renames.size()), nullptr,
                          [&](const QList<FilePath>& done, const QHash<FilePath, QString>&) {
                              failed = int(renames.size() - done.size());
                          });
    run.wait();
    if (!announcement.isEmpty())
        out() << announcement << Qt::endl;
    run.sayLinks();
    return failed;
}

int renameFiles(const Arguments& arguments)
{
    const auto read = readArguments(arguments);
    if (const auto* message = std::get_if<QString>(&read))
        return usageError(*message + QStringLiteral("\nusage: orwick-cli ") + kUsage);
    const Request& request = std::get<Request>(read);

    QList<FilePath> items;
    QList<qsizetype> argumentOf; // the argument each item was named by, by index
    items.reserve(request.files.size());
    argumentOf.reserve(request.files.size());
    bool missing = false;
    FolderNamesCache folders; // read once, for the arguments and then the new names
    const QList<ItemArgument> named = itemArguments(request.files, folders);
    for (qsizetype i = 0; i < named.size(); ++i) {
        if (named[i].problem) {
            err() << *named[i].problem << Qt::endl;
            missing = true;
            continue;
        }
        items.append(named[i].path);
        argumentOf.append(i);
    }
    const BatchRenamer renamer(request.rule);
    if (!renamer.problem().isEmpty())
        return usageError(renamer.problem());
    const RenamePreview preview = previewRenames(renamer, items, {}, &folders);
    out().flush(); // what was said before the lines comes before them
    {
        LineWriter lines;
        for (qsizetype i = 0; i < qsizetype(preview.entries.size()); ++i) {
            const BatchRenameEntry& entry = preview.entries[i];
            if (!entry.changes())
                continue;
            addVisible(lines, request.files[argumentOf[i]]);
            lines.add(" → ");
            addVisible(lines, entry.newName);
            if (!entry.problem.isEmpty()) {
                lines.add("  (");
                lines.add(entry.problem.toUtf8());
                lines.add(")");
            }
            lines.endLine();
        }
    }
    out() << preview.summary() << Qt::endl;
    const QList<FileMove> renames = preview.renames();
    int failed = 0;
    if (!request.dryRun && !renames.isEmpty())
        failed = commit(renames, request.followLinks && LinkUpdater::isEnabled());
    return missing || preview.problems > 0 || failed > 0 ? 1 : 0;
}

const CliRegistration registration({QStringLiteral("rename"), kUsage,
                                     QStringLiteral("rename items by one rule, showing each new name"), renameFiles,
                                     kDetails});

} // namespace
} // namespace orwick::cli

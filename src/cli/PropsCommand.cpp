// orwick-cli props DIR: every item's typed properties through the loader the window uses, one
// JSON object per line; with --set KEY=VALUE FILE…, sets one property, and with --rename KEY=NEW
// renames a key across the folder, through the store and the file operations engine the window
// uses (one job; its toast or failures are printed, and how long the job took).

#include "cli/CliCommand.h"
#include "cli/CliPaths.h"
#include "fileops/FileOperations.h"
#include "files/DirectoryLoader.h"
#include "notes/FileProperties.h"
#include "notes/NoteFile.h"

#include <QElapsedTimer>
#include <QEventLoop>
#include <QTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>
#include <sys/stat.h>

namespace orwick::cli {
namespace {

const QString kUsage = QStringLiteral("usage: orwick-cli props DIR [--hidden] [--set KEY=VALUE FILE…] [--rename KEY=NEW]");

int show(const FilePath& folder, bool showHidden)
{
    QElapsedTimer timer;
    timer.start();
    const ListingResult listing = DirectoryLoader::load(folder, showHidden);
    if (listing.error) {
        err() << folder.abbreviated() << ": " << *listing.error << Qt::endl;
        return 1;
    }
    QList<notefile::Target> targets;
    targets.reserve(listing.items.size());
    for (const FileItem& item : listing.items)
        targets.append({item.url, item.isFolder});
    const QList<notefile::Loaded> loaded = *notefile::readAll(targets);
    const qint64 elapsed = timer.elapsed();

    QByteArray buffer;
    qsizetype withProperties = 0;
    for (const notefile::Loaded& entry : loaded) {
        if (entry.values.isEmpty())
            continue;
        ++withProperties;
        const QJsonObject line{{QStringLiteral("path"), entry.path.text()},
                               {QStringLiteral("properties"), propertyMapToJson(entry.values)}};
        buffer += QJsonDocument(line).toJson(QJsonDocument::Compact);
        buffer += '\n';
        if (buffer.size() > (1 << 20)) {
            fwrite(buffer.constData(), 1, size_t(buffer.size()), stdout);
            buffer.clear();
        }
    }
    fwrite(buffer.constData(), 1, size_t(buffer.size()), stdout);
    fflush(stdout);
    err() << withProperties << " of " << counted(loaded.size(), "item") << (withProperties == 1 ? " has" : " have") << " properties (read in " << elapsed << " ms)"
          << Qt::endl;
    return 0;
}

// "KEY=VALUE" with VALUE read as a front-matter value ("done", "3", "true", "[a, b]");
// "KEY=" removes the key.
std::optional<notefile::Change> parseAssignment(const QString& assignment)
{
    const qsizetype equals = assignment.indexOf(u'=');
    if (equals <= 0)
        return std::nullopt;
    const QString key = assignment.left(equals);
    const QString value = assignment.mid(equals + 1);
    if (value.trimmed().isEmpty())
        return notefile::Change{key, std::nullopt, {}};
    const auto parsed = FrontMatter::parse(QStringLiteral("value: ") + value);
    if (!parsed || parsed->size() != 1)
        return std::nullopt;
    return notefile::Change{key, PropertyValue::fromYaml(parsed->first()), {}};
}

// Runs one change of the store through the engine and waits for it; prints its toast or its
// failures and how long it took.
int runChange(const std::function<Status(FileProperties&)>& change)
{
    FileOperations operations;
    FileProperties store(nullptr, ColumnsFile::location(), &operations);
    int failures = 0;
    operations.setReportErrors([&](const OperationOutcome& outcome) {
        ++failures;
        out() << outcomeText(outcome) << Qt::endl;
    });
    QObject::connect(&operations, &FileOperations::announced, [&](const Toast& toast) { out() << toast.text << Qt::endl; });
    QElapsedTimer timer;
    timer.start();
    if (const Status asked = change(store); !asked) {
        err() << asked.error() << Qt::endl;
        return 1;
    }
    QEventLoop loop;
    QTimer poll;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        if (operations.isIdle() && store.isSettled())
            loop.quit();
    });
    poll.start(5);
    loop.exec();
    err() << "changed in " << timer.elapsed() << " ms" << Qt::endl;
    return failures ? 1 : 0;
}

int set(const FilePath& folder, const notefile::Change& change, const Arguments& files)
{
    QList<FilePath> paths;
    for (const QByteArray& name : files) {
        const FilePath path = name.startsWith('/') ? pathArgument(name) : FilePath::fromNative(folder.native() + '/' + name);
        if (const auto problem = problemWith(path.native(), Expect::anything)) {
            err() << *problem << Qt::endl;
            return 1;
        }
        paths.append(path);
    }
    return runChange([&](FileProperties& store) { return store.set(change.key, change.value, paths); });
}

int rename(const FilePath& folder, const QString& assignment, bool showHidden)
{
    const qsizetype equals = assignment.indexOf(u'=');
    if (equals <= 0)
        return usageError(QStringLiteral("--rename takes KEY=NEW"));
    const ListingResult listing = DirectoryLoader::load(folder, showHidden);
    if (listing.error) {
        err() << folder.abbreviated() << ": " << *listing.error << Qt::endl;
        return 1;
    }
    return runChange([&](FileProperties& store) {
        store.apply(*notefile::readAll([&] {
            QList<notefile::Target> targets;
            for (const FileItem& item : listing.items)
                targets.append({item.url, item.isFolder});
            return targets;
        }()));
        return store.rename(assignment.left(equals), assignment.mid(equals + 1), folder, listing.items);
    });
}

int props(const Arguments& arguments)
{
    bool showHidden = false;
    std::optional<notefile::Change> change;
    std::optional<QString> renaming;
    Arguments positional;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QByteArray& argument = arguments[i];
        if (argument == "--hidden") {
            showHidden = true;
        } else if (argument == "--set") {
            if (i + 1 >= arguments.size())
                return usageError(kUsage);
            change = parseAssignment(argumentText(arguments[++i]));
            if (!change)
                return usageError(QStringLiteral("--set takes KEY=VALUE, where VALUE is a plain value or a list like [a, b]"));
        } else if (argument == "--rename") {
            if (i + 1 >= arguments.size())
                return usageError(kUsage);
            renaming = argumentText(arguments[++i]);
        } else {
            positional.append(argument);
        }
    }
    if (positional.isEmpty())
        return usageError(kUsage);
    const QByteArray folderArgument = positional.takeFirst();
    if (const auto problem = problemWith(folderArgument, Expect::folder)) {
        err() << *problem << Qt::endl;
        return 1;
    }
    const FilePath folder = pathArgument(folderArgument);
    if (change) {
        if (positional.isEmpty())
            return usageError(QStringLiteral("--set needs the files to change"));
        return set(folder, *change, positional);
    }
    if (!positional.isEmpty())
        return usageError(QStringLiteral("props takes one folder"));
    if (renaming)
        return rename(folder, *renaming, showHidden);
    return show(folder, showHidden);
}

const CliRegistration registration({QStringLiteral("props"), QStringLiteral("props DIR [--hidden] [--set KEY=VALUE FILE…] [--rename KEY=NEW]"),
                                     QStringLiteral("items' typed properties as JSON lines, or set one"), props});

} // namespace
} // namespace orwick::cli

// orwick-cli props DIR: every item's typed properties through the loader the window uses, one
// JSON object per line; with --set KEY=VALUE FILE…, writes one property through the same writer.

#include "cli/CliCommand.h"
#include "cli/CliPaths.h"
#include "files/DirectoryLoader.h"
#include "notes/NoteFile.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>
#include <sys/stat.h>

namespace orwick::cli {
namespace {

const QString kUsage = QStringLiteral("usage: orwick-cli props DIR [--hidden] [--set KEY=VALUE FILE…]");

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
    err() << withProperties << " of " << loaded.size() << " items have properties (read in " << elapsed << " ms)"
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

int set(const FilePath& folder, const notefile::Change& change, const Arguments& files)
{
    int failures = 0;
    for (const QByteArray& name : files) {
        const FilePath path = name.startsWith('/') ? pathArgument(name) : FilePath::fromNative(folder.native() + '/' + name);
        if (const auto problem = problemWith(path.native(), Expect::anything)) {
            err() << *problem << Qt::endl;
            ++failures;
            continue;
        }
        struct stat st;
        const bool isFolder = ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
        const auto written = notefile::write(path, isFolder, {change});
        if (written) {
            out() << (change.value ? "set\t" : "removed\t") << path.text() << '\n';
        } else {
            err() << path.abbreviated() << ": " << written.error() << Qt::endl;
            ++failures;
        }
    }
    err() << files.size() - failures << " of " << files.size() << " files changed" << Qt::endl;
    return failures ? 1 : 0;
}

int props(const Arguments& arguments)
{
    bool showHidden = false;
    std::optional<notefile::Change> change;
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
    return show(folder, showHidden);
}

const CliRegistration registration({QStringLiteral("props"), QStringLiteral("props DIR [--set KEY=VALUE FILE…]"),
                                     QStringLiteral("items' typed properties as JSON lines, or set one"), props});

} // namespace
} // namespace orwick::cli

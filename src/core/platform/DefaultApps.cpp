#include "platform/DefaultApps.h"

#include "platform/XdgPaths.h"

#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QMimeDatabase>
#include <QSet>

namespace orwick::defaultApps {

namespace {

QStringList splitDirs(const char* variable, const QString& fallback)
{
    const QString value = qEnvironmentVariable(variable);
    QStringList dirs = (value.isEmpty() ? fallback : value).split(QLatin1Char(':'), Qt::SkipEmptyParts);
    return dirs;
}

// Data folders in order of precedence: $XDG_DATA_HOME, then $XDG_DATA_DIRS.
QStringList dataDirs()
{
    return QStringList{xdg::dataHome().text()} + splitDirs("XDG_DATA_DIRS", QStringLiteral("/usr/local/share:/usr/share"));
}

// The mimeapps.list files in order of precedence.
QStringList mimeappsLists()
{
    QStringList lists;
    const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").toLower().split(QLatin1Char(':'), Qt::SkipEmptyParts);
    auto addIn = [&](const QString& dir) {
        for (const QString& desktop : desktops)
            lists << dir + QLatin1Char('/') + desktop + QStringLiteral("-mimeapps.list");
        lists << dir + QStringLiteral("/mimeapps.list");
    };
    addIn(xdg::configHome().text());
    for (const QString& dir : splitDirs("XDG_CONFIG_DIRS", QStringLiteral("/etc/xdg")))
        addIn(dir);
    for (const QString& dir : dataDirs())
        addIn(dir + QStringLiteral("/applications"));
    return lists;
}

// The desktop file id of an installed application, by id: its path (the first data folder wins).
QHash<QString, QString> installedApplications()
{
    QHash<QString, QString> found;
    for (const QString& dir : dataDirs()) {
        const QString root = dir + QStringLiteral("/applications/");
        QDirIterator it(root, {QStringLiteral("*.desktop")}, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const QString path = it.next();
            const QString id = path.mid(root.size()).replace(QLatin1Char('/'), QLatin1Char('-'));
            if (!found.contains(id))
                found.insert(id, path);
        }
    }
    return found;
}

// The values of `key` in group `group` of an INI-like desktop file, split at ';'.
QStringList valuesIn(const QString& path, const QString& group, const QString& key)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    bool inGroup = false;
    const QByteArray wantedGroup = '[' + group.toUtf8() + ']';
    const QByteArray wantedKey = key.toUtf8();
    while (!file.atEnd()) {
        const QByteArray line = file.readLine().trimmed();
        if (line.startsWith('[')) {
            inGroup = line == wantedGroup;
            continue;
        }
        if (!inGroup)
            continue;
        const qsizetype equals = line.indexOf('=');
        if (equals > 0 && line.left(equals).trimmed() == wantedKey)
            return QString::fromUtf8(line.mid(equals + 1).trimmed()).split(QLatin1Char(';'), Qt::SkipEmptyParts);
    }
    return {};
}

bool isUsable(const QString& desktopFile)
{
    return !valuesIn(desktopFile, QStringLiteral("Desktop Entry"), QStringLiteral("Hidden")).contains(QStringLiteral("true"));
}

// The applications that open any of `types` (the first type's default first), from `installed`.
QStringList applicationsFor(const QStringList& types, const QHash<QString, QString>& installed)
{
    QStringList chosen;
    QSet<QString> removed;
    auto add = [&](const QString& id) {
        if (!chosen.contains(id) && !removed.contains(id) && installed.contains(id) && isUsable(installed.value(id)))
            chosen << id;
    };
    const QStringList lists = mimeappsLists();
    for (const QString& type : types)
        for (const QString& list : lists)
            for (const QString& id : valuesIn(list, QStringLiteral("Default Applications"), type))
                add(id);
    for (const QString& type : types)
        for (const QString& list : lists) {
            for (const QString& id : valuesIn(list, QStringLiteral("Removed Associations"), type))
                removed.insert(id);
            for (const QString& id : valuesIn(list, QStringLiteral("Added Associations"), type))
                add(id);
        }
    for (auto it = installed.cbegin(); it != installed.cend(); ++it) {
        const QStringList listed = valuesIn(it.value(), QStringLiteral("Desktop Entry"), QStringLiteral("MimeType"));
        for (const QString& type : types)
            if (listed.contains(type))
                add(it.key());
    }
    return chosen;
}

} // namespace

QStringList applicationsFor(const QString& mimeType)
{
    return applicationsFor(QStringList{mimeType}, installedApplications());
}

QStringList applicationsOpening(const QString& mimeType)
{
    static const QMimeDatabase database;
    const QMimeType type = database.mimeTypeForName(mimeType);
    QStringList candidates{mimeType};
    // Every type inherits "any bytes"; a program that opens any bytes is asked for by name only.
    if (type.isValid())
        for (const QString& ancestor : type.allAncestors())
            if (ancestor != QLatin1StringView("application/octet-stream"))
                candidates << ancestor;
    return applicationsFor(candidates, installedApplications());
}

QHash<QString, QString> installed() { return installedApplications(); }

bool canOpen(const QString& mimeType) { return !applicationsOpening(mimeType).isEmpty(); }

} // namespace orwick::defaultApps

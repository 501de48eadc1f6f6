#include "platform/DesktopApps.h"

#include "platform/DefaultApps.h"
#include "platform/XdgPaths.h"

#include <QCollator>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QSaveFile>
#include <QStandardPaths>
#include <algorithm>

namespace orwick::DesktopApps {
namespace {

// A string value of a desktop file, its escapes undone (\s \n \t \r \\).
QString unescapeValue(QStringView value)
{
    QString out;
    out.reserve(value.size());
    for (qsizetype i = 0; i < value.size(); ++i) {
        if (value[i] != u'\\' || i + 1 == value.size()) {
            out += value[i];
            continue;
        }
        const QChar next = value[++i];
        out += next == u's' ? QChar(u' ') : next == u'n' ? QChar(u'\n') : next == u't' ? QChar(u'\t') : next == u'r' ? QChar(u'\r') : next;
    }
    return out;
}

// The keys of the [Desktop Entry] group (unlocalised ones only).
QHash<QString, QString> desktopEntry(const QString& path)
{
    QHash<QString, QString> keys;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return keys;
    bool inEntry = false;
    while (!file.atEnd()) {
        const QString line = QString::fromUtf8(file.readLine()).trimmed();
        if (line.startsWith(u'[')) {
            if (inEntry)
                break; // the entry's group is over
            inEntry = line == QLatin1StringView("[Desktop Entry]");
            continue;
        }
        const qsizetype equals = line.indexOf(u'=');
        if (!inEntry || equals <= 0 || line.startsWith(u'#'))
            continue;
        const QString key = line.left(equals).trimmed();
        if (!keys.contains(key))
            keys.insert(key, unescapeValue(QStringView(line).sliced(equals + 1).trimmed()));
    }
    return keys;
}

std::optional<Application> read(const QString& id, const QString& path)
{
    const QHash<QString, QString> entry = desktopEntry(path);
    const auto isTrue = [&entry](const char* key) { return entry.value(QLatin1StringView(key)) == QLatin1StringView("true"); };
    if (entry.value(QStringLiteral("Type"), QStringLiteral("Application")) != QLatin1StringView("Application") || isTrue("Hidden"))
        return std::nullopt;
    Application app{id, entry.value(QStringLiteral("Name")), entry.value(QStringLiteral("Icon")), entry.value(QStringLiteral("Exec")), path,
                    isTrue("Terminal")};
    if (app.name.isEmpty() || app.exec.isEmpty() || !commandLine(app, FilePath::fromText(QStringLiteral("/"))))
        return std::nullopt;
    return app;
}

// The Exec line split into arguments by its quoting rules; absent on an unclosed quote.
std::optional<QStringList> splitExec(QStringView exec)
{
    QStringList words;
    QString word;
    bool inWord = false, quoted = false;
    for (qsizetype i = 0; i < exec.size(); ++i) {
        const QChar c = exec[i];
        if (quoted) {
            if (c == u'\\' && i + 1 < exec.size() && QStringView(u"\"`$\\").contains(exec[i + 1]))
                word += exec[++i];
            else if (c == u'"')
                quoted = false;
            else
                word += c;
        } else if (c == u'"') {
            quoted = inWord = true;
        } else if (c.isSpace()) {
            if (inWord)
                words.append(std::exchange(word, QString()));
            inWord = false;
        } else {
            word += c;
            inWord = true;
        }
    }
    if (quoted)
        return std::nullopt;
    if (inWord)
        words.append(word);
    return words;
}

} // namespace

std::optional<Application> find(const QString& id)
{
    const QHash<QString, QString> installed = defaultApps::installed();
    const auto it = installed.constFind(id);
    return it == installed.cend() ? std::nullopt : read(id, it.value());
}

QList<Application> forType(const QString& mimeType)
{
    const QHash<QString, QString> installed = defaultApps::installed();
    QList<Application> apps;
    for (const QString& id : defaultApps::applicationsOpening(mimeType))
        if (const auto app = read(id, installed.value(id)))
            apps.append(*app);
    return apps;
}

QList<Application> all()
{
    const QHash<QString, QString> installed = defaultApps::installed();
    QList<Application> apps;
    for (auto it = installed.cbegin(); it != installed.cend(); ++it)
        if (const auto app = read(it.key(), it.value()); app && desktopEntry(it.value()).value(QStringLiteral("NoDisplay")) != QLatin1StringView("true"))
            apps.append(*app);
    QCollator collator;
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    std::sort(apps.begin(), apps.end(), [&collator](const Application& a, const Application& b) {
        const int order = collator.compare(a.name, b.name);
        return order != 0 ? order < 0 : a.id < b.id;
    });
    return apps;
}

std::optional<QStringList> commandLine(const Application& app, const FilePath& file)
{
    const auto words = splitExec(app.exec);
    if (!words || words->isEmpty())
        return std::nullopt;
    QStringList arguments;
    bool tookFile = false;
    for (const QString& word : *words) {
        if (word == QLatin1StringView("%f") || word == QLatin1StringView("%F")) {
            arguments.append(file.text());
            tookFile = true;
            continue;
        }
        if (word == QLatin1StringView("%u") || word == QLatin1StringView("%U")) {
            arguments.append(file.toUrl().toString(QUrl::FullyEncoded));
            tookFile = true;
            continue;
        }
        if (word == QLatin1StringView("%i")) {
            if (!app.icon.isEmpty())
                arguments << QStringLiteral("--icon") << app.icon;
            continue;
        }
        QString expanded;
        for (qsizetype i = 0; i < word.size(); ++i) {
            if (word[i] != u'%' || i + 1 == word.size()) {
                expanded += word[i];
                continue;
            }
            const QChar code = word[++i];
            if (code == u'%')
                expanded += u'%';
            else if (code == u'c')
                expanded += app.name;
            else if (code == u'k')
                expanded += app.desktopFile;
            else if (code == u'f' || code == u'F') {
                expanded += file.text();
                tookFile = true;
            } else if (code == u'u' || code == u'U') {
                expanded += file.toUrl().toString(QUrl::FullyEncoded);
                tookFile = true;
            }
            // %d %D %n %N %v %m and unknown codes are dropped, as the desktop does
        }
        if (!expanded.isEmpty())
            arguments.append(expanded);
    }
    if (arguments.isEmpty())
        return std::nullopt;
    // A program that names no file field still gets the file, as the desktop's launcher does.
    if (!tookFile)
        arguments.append(file.text());
    return arguments;
}

QString launch(const Application& app, const FilePath& file)
{
    auto arguments = commandLine(app, file);
    if (!arguments)
        return QStringLiteral("“%1” can’t be started: its desktop file has no usable command").arg(app.name);
    if (app.terminal) {
        const QString terminal = QStandardPaths::findExecutable(QStringLiteral("x-terminal-emulator"));
        if (terminal.isEmpty())
            return QStringLiteral("“%1” runs in a terminal, and no terminal program was found").arg(app.name);
        arguments->prepend(QStringLiteral("-e"));
        arguments->prepend(terminal);
    }
    const QString program = arguments->takeFirst();
    const QString found = program.contains(u'/') ? (QFileInfo(program).isExecutable() ? program : QString())
                                                 : QStandardPaths::findExecutable(program);
    if (found.isEmpty())
        return QStringLiteral("“%1” can’t be started: the program “%2” isn’t installed").arg(app.name, program);
    if (!QProcess::startDetached(found, *arguments, file.parent().text()))
        return QStringLiteral("Couldn’t start “%1”").arg(app.name);
    return {};
}

QString setDefault(const QString& mimeType, const Application& app)
{
    const QString folder = xdg::configHome().text();
    const QString path = folder + QStringLiteral("/mimeapps.list");
    QStringList lines;
    if (QFile existing(path); existing.open(QIODevice::ReadOnly | QIODevice::Text))
        lines = QString::fromUtf8(existing.readAll()).split(u'\n');
    while (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    const QString entry = mimeType + u'=' + app.id + u';';
    const qsizetype header = lines.indexOf(QStringLiteral("[Default Applications]"));
    if (header < 0) {
        if (!lines.isEmpty())
            lines.append(QString());
        lines << QStringLiteral("[Default Applications]") << entry;
    } else {
        qsizetype at = header + 1;
        bool replaced = false;
        for (; at < lines.size() && !lines[at].trimmed().startsWith(u'['); ++at) {
            const qsizetype equals = lines[at].indexOf(u'=');
            if (equals > 0 && lines[at].left(equals).trimmed() == mimeType) {
                lines[at] = entry;
                replaced = true;
                break;
            }
        }
        if (!replaced)
            lines.insert(header + 1, entry);
    }
    if (!QDir().mkpath(folder))
        return QStringLiteral("Couldn’t make the folder “%1”").arg(folder);
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write((lines.join(u'\n') + u'\n').toUtf8()) < 0 || !file.commit())
        return QStringLiteral("Couldn’t save the default application: %1").arg(file.errorString());
    return {};
}

} // namespace orwick::DesktopApps

#include "notes/DailyNotes.h"

#include "platform/JsonFile.h"

#include <QFile>
#include <QLocale>
#include <QTime>
#include <sys/stat.h>

namespace orwick::DailyNotes {

namespace {

bool isDirectory(const FilePath& path)
{
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool isFile(const FilePath& path)
{
    struct stat st;
    return ::stat(path.c_str(), &st) == 0 && S_ISREG(st.st_mode);
}

QString ordinal(int n)
{
    const int lastTwo = n % 100;
    const char* suffix = (lastTwo >= 11 && lastTwo <= 13) ? "th" : n % 10 == 1 ? "st" : n % 10 == 2 ? "nd" : n % 10 == 3 ? "rd" : "th";
    return QString::number(n) + QLatin1StringView(suffix);
}

FilePath relativeTo(const FilePath& base, const QString& relative)
{
    QString cleaned = relative.trimmed();
    while (cleaned.startsWith(u'/'))
        cleaned.remove(0, 1);
    return cleaned.isEmpty() ? base : FilePath::fromNative(base.native() + '/' + cleaned.toUtf8());
}

} // namespace

Settings Settings::fromJson(const QJsonObject& object)
{
    Settings settings;
    if (const QJsonValue folder = object.value(QStringLiteral("folder")); folder.isString())
        settings.folder = folder.toString();
    if (const QJsonValue format = object.value(QStringLiteral("format")); format.isString() && !format.toString().trimmed().isEmpty())
        settings.format = format.toString();
    if (const QJsonValue path = object.value(QStringLiteral("template")); path.isString())
        settings.templatePath = path.toString();
    return settings;
}

std::optional<FilePath> vault(const FilePath& folder)
{
    for (FilePath at = folder;; at = at.parent()) {
        if (isDirectory(at.child(QStringLiteral(".obsidian"))))
            return at;
        if (at.isRoot() || at.isEmpty())
            return std::nullopt;
    }
}

Settings settings(const FilePath& vaultFolder)
{
    const auto document = readJsonFile(vaultFolder.child(QStringLiteral(".obsidian")).child(QStringLiteral("daily-notes.json")));
    return document && document->isObject() ? Settings::fromJson(document->object()) : Settings();
}

QString format(QDate date, const QString& momentFormat)
{
    // Longest tokens first, so "MMMM" wins over "MM".
    static const std::pair<const char*, const char*> tokens[] = {
        {"YYYY", "yyyy"}, {"YY", "yy"},   {"MMMM", "MMMM"}, {"MMM", "MMM"}, {"MM", "MM"},   {"M", "M"},
        {"DDDD", nullptr}, {"Do", nullptr}, {"DD", "dd"},   {"D", "d"},     {"dddd", "dddd"}, {"ddd", "ddd"},
        {"dd", nullptr},  {"d", nullptr},  {"E", nullptr},  {"ww", nullptr}, {"w", nullptr}, {"Q", nullptr},
    };
    const QLocale posix = QLocale::c();
    QString out;
    qsizetype i = 0;
    while (i < momentFormat.size()) {
        if (momentFormat[i] == u'[') {
            const qsizetype close = momentFormat.indexOf(u']', i + 1);
            if (close > i) {
                out += momentFormat.sliced(i + 1, close - i - 1);
                i = close + 1;
                continue;
            }
        }
        bool matched = false;
        for (const auto& [moment, qt] : tokens) {
            const QLatin1StringView token(moment);
            if (!QStringView(momentFormat).sliced(i).startsWith(token))
                continue;
            if (qt)
                out += posix.toString(date, QString::fromLatin1(qt));
            else if (token == "DDDD")
                out += QString::number(date.dayOfYear()).rightJustified(3, u'0');
            else if (token == "Do")
                out += ordinal(date.day());
            else if (token == "dd")
                out += posix.toString(date, QStringLiteral("ddd")).left(2);
            else if (token == "d")
                out += QString::number(date.dayOfWeek() % 7);
            else if (token == "E")
                out += QString::number(date.dayOfWeek());
            else if (token == "ww")
                out += QString::number(date.weekNumber()).rightJustified(2, u'0');
            else if (token == "w")
                out += QString::number(date.weekNumber());
            else if (token == "Q")
                out += QString::number((date.month() - 1) / 3 + 1);
            i += token.size();
            matched = true;
            break;
        }
        if (!matched)
            out += momentFormat[i++];
    }
    return out;
}

Plan plan(const FilePath& folder, QDate date)
{
    const std::optional<FilePath> root = vault(folder);
    const Settings chosen = root ? settings(*root) : Settings();
    const FilePath base = root ? relativeTo(*root, chosen.folder) : folder;
    const QString title = format(date, chosen.format);
    QString name = title;
    if (!name.endsWith(QStringLiteral(".md"), Qt::CaseInsensitive))
        name += QStringLiteral(".md");
    Plan result{relativeTo(base, name), {}, false};
    result.exists = isFile(result.url);
    if (root && !chosen.templatePath.trimmed().isEmpty()) {
        QString templateName = chosen.templatePath.trimmed();
        if (!templateName.endsWith(QStringLiteral(".md"), Qt::CaseInsensitive))
            templateName += QStringLiteral(".md");
        QFile file(relativeTo(*root, templateName).text());
        if (file.open(QIODevice::ReadOnly)) {
            QString text = QString::fromUtf8(file.readAll());
            text.replace(QStringLiteral("{{date}}"), title);
            text.replace(QStringLiteral("{{title}}"), title);
            text.replace(QStringLiteral("{{time}}"), QLocale::c().toString(QTime::currentTime(), QStringLiteral("HH:mm")));
            result.text = text;
        }
    }
    return result;
}

} // namespace orwick::DailyNotes

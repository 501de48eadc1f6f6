#include "platform/RecentFiles.h"

#include "platform/XdgPaths.h"

#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QXmlStreamReader>
#include <algorithm>

namespace orwick::RecentFiles {

namespace {

QDateTime parseDate(QStringView text)
{
    QDateTime date = QDateTime::fromString(text.toString(), Qt::ISODateWithMs);
    if (!date.isValid())
        date = QDateTime::fromString(text.toString(), Qt::ISODate);
    return date;
}

QDateTime later(const QDateTime& a, const QDateTime& b)
{
    if (!a.isValid())
        return b;
    if (!b.isValid())
        return a;
    return std::max(a, b);
}

} // namespace

QList<Entry> read()
{
    QFile file(xdg::recentFilesList().text());
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return parse(file.readAll());
}

QList<Entry> parse(QByteArrayView xbel)
{
    QList<Entry> entries;
    QXmlStreamReader xml(xbel.toByteArray());
    Entry current;
    bool inBookmark = false;
    while (!xml.atEnd()) {
        const auto token = xml.readNext();
        if (token == QXmlStreamReader::StartElement) {
            const auto attributes = xml.attributes();
            if (xml.name() == QLatin1StringView("bookmark")) {
                const QUrl url(attributes.value(QLatin1StringView("href")).toString());
                current = Entry{FilePath::fromUrl(url), later(parseDate(attributes.value(QLatin1StringView("modified"))),
                                                            parseDate(attributes.value(QLatin1StringView("visited"))))};
                inBookmark = url.isLocalFile();
            } else if (inBookmark && xml.name() == QLatin1StringView("application")) {
                current.lastUsed = later(current.lastUsed, parseDate(attributes.value(QLatin1StringView("modified"))));
            }
        } else if (token == QXmlStreamReader::EndElement && xml.name() == QLatin1StringView("bookmark")) {
            if (inBookmark && !current.path.isEmpty())
                entries.append(current);
            inBookmark = false;
        }
    }
    std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.lastUsed > b.lastUsed; });
    return entries;
}

void add(const FilePath& path, const QString& mimeType)
{
    const FilePath listPath = xdg::recentFilesList();
    QFile file(listPath.text());
    QByteArray content;
    if (file.open(QIODevice::ReadOnly))
        content = file.readAll();
    file.close();
    const QByteArray added = adding(content, path, mimeType, QDateTime::currentDateTimeUtc());
    if (added == content)
        return; // a list this can't add to stays as it was
    content = added;
    QDir().mkpath(listPath.parent().text());
    QSaveFile save(listPath.text());
    if (save.open(QIODevice::WriteOnly)) {
        save.write(content);
        save.commit();
    }
}

bool isUtf8List(QByteArrayView content)
{
    QXmlStreamReader xml(content.toByteArray());
    if (xml.readNext() != QXmlStreamReader::StartDocument)
        return true; // no declaration: XML's own default, UTF-8
    const QStringView encoding = xml.documentEncoding();
    return encoding.isEmpty() || encoding.compare(u"UTF-8", Qt::CaseInsensitive) == 0;
}

QByteArray adding(QByteArray content, const FilePath& path, const QString& mimeType, const QDateTime& date)
{
    if (!isUtf8List(content))
        return content;
    const QString now = date.toUTC().toString(Qt::ISODateWithMs);
    const QByteArray href = path.toUrl().toEncoded();
    // Drop an older bookmark of the same file, then add ours before the closing tag.
    const qsizetype old = content.indexOf(QByteArray("<bookmark href=\"" + href + "\""));
    if (old >= 0) {
        const qsizetype end = content.indexOf("</bookmark>", old);
        if (end >= 0)
            content.remove(old, end + 11 - old);
    }
    if (!content.contains("</xbel>")) {
        content = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                  "<xbel version=\"1.0\" xmlns:bookmark=\"http://www.freedesktop.org/standards/desktop-bookmarks\" "
                  "xmlns:mime=\"http://www.freedesktop.org/standards/shared-mime-info\">\n</xbel>\n";
    }
    const QByteArray bookmark =
        "  <bookmark href=\"" + href + "\" added=\"" + now.toUtf8() + "\" modified=\"" + now.toUtf8() + "\" visited=\""
        + now.toUtf8() + "\">\n    <info>\n      <metadata owner=\"http://freedesktop.org\">\n        <mime:mime-type type=\""
        + mimeType.toHtmlEscaped().toUtf8() + "\"/>\n        <bookmark:applications>\n          <bookmark:application name=\"Orwick\" "
        "exec=\"&apos;orwick %u&apos;\" modified=\"" + now.toUtf8()
        + "\" count=\"1\"/>\n        </bookmark:applications>\n      </metadata>\n    </info>\n  </bookmark>\n";
    content.insert(content.lastIndexOf("</xbel>"), bookmark);
    return content;
}

} // namespace orwick::RecentFiles

#include "fileops/FileClipboard.h"

#include <QSysInfo>
#include <QUrl>

namespace orwick {

namespace {

const QString kUriList = QStringLiteral("text/uri-list");
const QString kGnome = QStringLiteral("x-special/gnome-copied-files");
const QString kKdeCut = QStringLiteral("application/x-kde-cutselection");

QList<QUrl> parseUris(const QByteArray& text)
{
    QList<QUrl> uris;
    for (QByteArray line : text.split('\n')) {
        line = line.trimmed();
        if (!line.isEmpty() && !line.startsWith('#'))
            uris.append(QUrl::fromEncoded(line));
    }
    return uris;
}

QList<FilePath> localFiles(const QList<QUrl>& uris)
{
    QList<FilePath> items;
    for (const QUrl& uri : uris) {
        const FilePath path = isLocalFileUrl(uri) ? FilePath::fromUrl(uri) : FilePath();
        if (!path.isEmpty())
            items.append(path);
    }
    return items;
}

// The GNOME list's first line says "copy" or "cut"; the URIs follow.
QByteArray gnomeUris(const QByteArray& gnome)
{
    const qsizetype newline = gnome.indexOf('\n');
    return newline < 0 ? QByteArray() : gnome.mid(newline + 1);
}

} // namespace

bool isLocalFileUrl(const QUrl& url)
{
    if (url.scheme() != QLatin1StringView("file") || url.path().isEmpty())
        return false;
    const QString host = url.host();
    return host.isEmpty() || host.compare(QLatin1StringView("localhost"), Qt::CaseInsensitive) == 0
        || host.compare(QSysInfo::machineHostName(), Qt::CaseInsensitive) == 0;
}

QList<QUrl> readUris(const QMimeData* data)
{
    QList<QUrl> uris;
    if (data && data->hasFormat(kGnome))
        uris = parseUris(gnomeUris(data->data(kGnome)));
    if (data && uris.isEmpty() && data->hasFormat(kUriList))
        uris = parseUris(data->data(kUriList));
    return uris;
}

std::unique_ptr<QMimeData> makeFileClipboard(const QList<FilePath>& items, bool cut)
{
    QByteArray uris;
    QByteArray gnome = cut ? "cut" : "copy";
    QStringList paths;
    for (const FilePath& item : items) {
        const QByteArray uri = item.toUrl().toEncoded();
        uris += uri + "\r\n";
        gnome += '\n' + uri;
        paths.append(item.text());
    }
    auto data = std::make_unique<QMimeData>();
    data->setData(kUriList, uris);
    data->setData(kGnome, gnome);
    data->setData(kKdeCut, cut ? "1" : "0");
    data->setText(paths.join('\n'));
    return data;
}

ClipboardFiles readFileClipboard(const QMimeData* data)
{
    ClipboardFiles files;
    if (!data)
        return files;
    if (data->hasFormat(kGnome)) {
        const QByteArray gnome = data->data(kGnome);
        files.cut = gnome.split('\n').first().trimmed() == "cut";
        files.items = localFiles(parseUris(gnomeUris(gnome)));
    }
    if (files.items.isEmpty() && data->hasFormat(kUriList))
        files.items = localFiles(parseUris(data->data(kUriList)));
    if (data->hasFormat(kKdeCut))
        files.cut = files.cut || data->data(kKdeCut).startsWith('1');
    return files;
}

} // namespace orwick

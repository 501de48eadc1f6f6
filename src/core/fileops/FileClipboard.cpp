#include "fileops/FileClipboard.h"

#include <QUrl>

namespace orwick {

namespace {

const QString kUriList = QStringLiteral("text/uri-list");
const QString kGnome = QStringLiteral("x-special/gnome-copied-files");
const QString kKdeCut = QStringLiteral("application/x-kde-cutselection");

QList<FilePath> parseUris(const QByteArray& text)
{
    QList<FilePath> items;
    for (QByteArray line : text.split('\n')) {
        line = line.trimmed();
        if (line.isEmpty() || line.startsWith('#'))
            continue;
        const FilePath path = FilePath::fromUrl(QUrl::fromEncoded(line));
        if (!path.isEmpty() && line.startsWith("file:"))
            items.append(path);
    }
    return items;
}

} // namespace

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
        const qsizetype newline = gnome.indexOf('\n');
        files.cut = gnome.left(newline < 0 ? gnome.size() : newline).trimmed() == "cut";
        files.items = parseUris(newline < 0 ? QByteArray() : gnome.mid(newline + 1));
    }
    if (files.items.isEmpty() && data->hasFormat(kUriList))
        files.items = parseUris(data->data(kUriList));
    if (data->hasFormat(kKdeCut))
        files.cut = files.cut || data->data(kKdeCut).startsWith('1');
    return files;
}

} // namespace orwick
